// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "gallerystage.h"

#include "controller/protocol.h"
#include "controller/walle.h"

#include <QDateTime>
#include <QDialog>
#include <QFile>
#include <QScrollBar>

#include <functional>

namespace testsupport
{

namespace
{

QVector<StagedRow> threeRows(bool ticked = true)
{
    return {
        {"/home/lina/文档/2019年度报税材料.xlsx", StagedRow::File, ticked},
        {"/home/lina/下载/旧手机备份", StagedRow::Folder, ticked},
        {"/home/lina/图片/证件/护照扫描件.jpg", StagedRow::File, false},
    };
}

/// As many entries as the program takes.
QVector<StagedRow> fullTable()
{
    constexpr int mostEntries = 200;
    const QByteArrayList patterns = {
        "/home/lina/文档/财务/银行对账单 %1.pdf",
        "/home/lina/图片/手机/IMG_%1.jpg",
        "/home/lina/文档/合同/租赁合同（第%1稿）.docx",
        "/home/lina/下载/归档/项目资料-%1",
        "/home/lina/文档/会议记录 %1.odt",
    };
    constexpr int folderPattern = 3;
    QVector<StagedRow> rows;
    for (int index = 0; index < mostEntries; ++index) {
        const int pattern = index % patterns.size();
        const QByteArray number = QByteArray::number(index + 1).rightJustified(3, '0');
        rows.append({QByteArray(patterns.at(pattern)).replace("%1", number),
                     pattern == folderPattern ? StagedRow::Folder : StagedRow::File,
                     index % 7 != 4});
    }
    return rows;
}

QVector<StagedRow> longNames()
{
    return {
        {"/home/lina/文档/关于调整本公司办公区域空调运行时间及节能措施的通知"
         "（征求意见稿，第三次修订）.docx"},
        {"/home/lina/Documents/quarterly-financial-consolidation-worksheet-"
         "final-version-2.xlsx"},
        {"/home/lina/文档/客户资料/二〇二三年/华东区/上海/浦东新区/世纪大道营业部/"
         "已经归档但尚未移交档案室的纸质合同扫描件/合同.pdf"},
        {"/home/lina/mmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmm/"
         "WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW",
         StagedRow::Folder},
        {"/home/lina/文档/a"},
    };
}

struct Shredded {
    QByteArray name;
    QByteArray folder;
};

QVector<Shredded> usualEntries()
{
    return {
        {"2019年度报税材料.xlsx", "/home/lina/文档"}, {"旧手机备份", "/home/lina/下载"},
        {"护照扫描件.jpg", "/home/lina/图片/证件"},   {"离职交接.odt", "/home/lina/文档/工作"},
        {"IMG_0417.jpg", "/home/lina/图片/手机"},
    };
}

QVector<Shredded> longEntries()
{
    return {
        {"关于调整办公区域空调运行时间及节能措施的通知（第三次修订）.docx",
         "/home/lina/文档/客户资料/二〇二三年/华东区/上海/浦东新区/世纪大道营业部"},
        {"quarterly-financial-consolidation-worksheet-final.xlsx",
         "/home/lina/Documents/Company/Finance/Quarterly reports/2023/Drafts"},
        {"a", "/home/lina"},
    };
}

/// Writes @p count entries over and over from @p entries, a fixed time apart, and opens the
/// history window, which is returned when all of them are there.
const QWidget *openHistory(const GalleryStage &stage, const QVector<Shredded> &entries, int count)
{
    constexpr int secondsApart = 5417;
    const QDateTime first(QDate(2024, 3, 1), QTime(9, 12, 40), Qt::UTC);
    QFile file(Walle::historyFilePath());
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write the history");
    for (int index = 0; index < count; ++index) {
        const Shredded &entry = entries.at(index % entries.size());
        const QString time = first.addSecs(qint64(index) * secondsApart)
                                 .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        file.write(time.toUtf8() + '\n' + entry.name + '\n' + entry.folder + '\n');
    }
    file.close();
    stage.window->slotShowHistoryEva();
    const auto *table = stage.find<QTableWidget>("historyTable");
    const auto loaded = [&] {
        return table->rowCount() == count && stage.isEnabled("copyButton") == (count > 0);
    };
    if (!eventually(loaded))
        qFatal("the history does not load");
    return stage.find("historyWindow");
}

/// Pictures of the upper end, the middle and the lower end of @p table.
void takeScrolled(const GalleryStage &stage, const QByteArray &name, const QTableWidget *table)
{
    QScrollBar *bar = table->verticalScrollBar();
    stage.takePicture(name + "-top", table->window());
    bar->setValue(bar->maximum() / 2);
    stage.takePicture(name + "-middle", table->window());
    bar->setValue(bar->maximum());
    stage.takePicture(name + "-end", table->window());
}

} // namespace

void showTables()
{
    {
        GalleryStage stage;
        stage.takePicture("empty");
        stage.addRows(threeRows().mid(0, 1));
        stage.takePicture("one-row");
        stage.addRows(threeRows().mid(1));
        stage.takePicture("three-rows");
        stage.takeTooltip("row-tooltip", stage.partOf(1, "nameLabel"));
    }
    {
        GalleryStage names;
        names.addRows(longNames());
        names.takePicture("long-names");
        names.takeTooltip("long-path-tooltip", names.partOf(2, "placeLabel"));
    }
    GalleryStage full;
    full.addRows(fullTable());
    takeScrolled(full, "200-rows", full.table());
}

void showButtons()
{
    GalleryStage stage;
    stage.addRows(threeRows());
    stage.takeHovered("hover-add", stage.find("addButton"));
    stage.takeHovered("hover-remove", stage.find("removeButton"));
    stage.takeHovered("hover-crush", stage.find("crushButton"));
    stage.takeHovered("hover-close", stage.find("closeButton"));
    stage.takeHovered("hover-history-link", stage.find("historyLink"));
    stage.takeHovered("hover-select-all", stage.find("selectAllCheckBox"));
    stage.takePressed("pressed-crush", stage.find("crushButton"));
    stage.takePressed("pressed-close", stage.find("closeButton"));
    stage.takePressed("pressed-add", stage.find("addButton"));

    // Nothing is ticked, so there is nothing to remove or shred.
    GalleryStage unticked;
    unticked.addRows(threeRows(false));
    unticked.takePicture("buttons-disabled");
}

void showRun()
{
    GalleryStage stage;
    stage.addRows(threeRows());
    stage.window->setCrushStartedEva(RunState::Running);
    for (const int percent : {1, 50, 100}) {
        stage.window->setTableRowHeightEva(0, percent);
        stage.takePicture("progress-" + QByteArray::number(percent));
    }
    stage.window->removeRowFromMainTableEva(0);
    stage.window->setTableRowHeightEva(0, 35);
    stage.takePicture("running");
    stage.window->setCrushStartedEva(RunState::Stopping);
    stage.takePicture("stopping");
    stage.window->removeRowFromMainTableEva(0);
    stage.window->setCrushStartedEva(RunState::Idle);
    stage.window->finishAllEva(2);
    stage.takePicture("after-run");
}

/// The dialogs, each opened by the window as in life and photographed from within.
void showDialogs()
{
    GalleryStage stage;
    DialogDriver driver;
    const auto take = [&](const char *name, const std::function<void()> &open) {
        driver.next(Answer::Escape,
                    [&stage, name](const QDialog &dialog) { stage.takePicture(name, &dialog); });
        open();
    };
    take("dialog-refusal-one", [&] { stage.window->alertDialogEva(0x01); });
    take("dialog-refusal-limit", [&] { stage.window->alertDialogEva(0x10); });
    take("dialog-refusal-six", [&] { stage.window->alertDialogEva(0x3f); });
    take("dialog-success", [&] { stage.window->showResultDialogEva(0, 3, 0); });
    take("dialog-partial", [&] { stage.window->showResultDialogEva(0, 197, 3); });
    take("dialog-failure", [&] { stage.window->showResultDialogEva(0, 0, 3); });
    take("dialog-question", [&] { stage.window->crushFilesEva(); });

    driver.next(Answer::Escape, [&stage](const QDialog &dialog) {
        const auto button = [&](const char *name) {
            return dialog.findChild<QWidget *>(QString::fromLatin1(name));
        };
        stage.takePicture("question-over-window");
        stage.takeHovered("dialog-hover-ok", button("okButton"));
        stage.takePressed("dialog-pressed-cancel", button("cancelButton"));
        stage.takeHovered("dialog-hover-close", button("closeButton"));
    });
    stage.addRows(
        {{"/home/lina/文档/旧合同.docx"}, {"/home/lina/下载/旧手机备份", StagedRow::Folder}});
    stage.window->crushFilesEva();
}

/// The history window, filled by the controller from a history file written for the purpose.
void showHistory()
{
    const auto label = [](const GalleryStage &stage, int row, const char *name) {
        return stage.find<QTableWidget>("historyTable")
            ->cellWidget(row, 0)
            ->findChild<QWidget *>(QString::fromLatin1(name));
    };
    {
        // Its buttons have nothing to copy or clear.
        const GalleryStage none;
        none.takePicture("history-empty", openHistory(none, {}, 0));
    }
    {
        const GalleryStage few;
        few.takePicture("history-short", openHistory(few, usualEntries(), usualEntries().size()));
        few.takePicture("history-over-window");
        few.takeTooltip("history-tooltip", label(few, 1, "nameLabel"));
        few.takeHovered("history-hover-copy", few.find("copyButton"));
        few.takeHovered("history-hover-close", few.find("historyCloseButton"));
        few.takePressed("history-pressed-clear", few.find("clearHistoryButton"));
    }
    {
        const GalleryStage many;
        openHistory(many, usualEntries(), 500);
        takeScrolled(many, "history-long", many.find<QTableWidget>("historyTable"));
    }
    const GalleryStage wide;
    wide.takePicture("history-long-names", openHistory(wide, longEntries(), longEntries().size()));
    wide.takeTooltip("history-long-tooltip", label(wide, 2, "pathLabel"));
}

} // namespace testsupport
