// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "gallerystage.h"

#include "controller/protocol.h"
#include "controller/walle.h"

#include <QDateTime>
#include <QDialog>
#include <QFile>
#include <QScrollBar>

namespace testsupport
{

namespace
{

QVector<StagedRow> threeRows()
{
    return {
        {"/home/lina/文档/2019年度报税材料.xlsx"},
        {"/home/lina/下载/旧手机备份", StagedRow::Folder},
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
void takeScrolled(const GalleryStage &stage, const QByteArray &name, const QTableWidget *table,
                  const QWidget *subject = nullptr)
{
    QScrollBar *bar = table->verticalScrollBar();
    stage.takePicture(name + "-top", subject);
    bar->setValue(bar->maximum() / 2);
    stage.takePicture(name + "-middle", subject);
    bar->setValue(bar->maximum());
    stage.takePicture(name + "-end", subject);
}

} // namespace

void showTables()
{
    GalleryStage().takePicture("empty");
    {
        GalleryStage one;
        one.addRows(threeRows().mid(0, 1));
        one.takePicture("one-row");
    }
    {
        GalleryStage three;
        three.addRows(threeRows());
        three.takePicture("three-rows");
        three.takeTooltip("row-tooltip", three.partOf(1, "nameLabel"));
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
    const QVector<QPair<const char *, const char *>> hovered = {
        {"addButton", "hover-add"},
        {"removeButton", "hover-remove"},
        {"crushButton", "hover-crush"},
        {"closeButton", "hover-close"},
        {"historyLink", "hover-history-link"},
        {"selectAllCheckBox", "hover-select-all"},
    };
    for (const auto &picture : hovered)
        stage.takeHovered(picture.second, stage.find(picture.first));
    stage.takePressed("pressed-crush", stage.find("crushButton"));
    stage.takePressed("pressed-close", stage.find("closeButton"));
    stage.takePressed("pressed-add", stage.find("addButton"));

    // Nothing is ticked, so there is nothing to remove or shred.
    GalleryStage unticked;
    QVector<StagedRow> rows = threeRows();
    for (StagedRow &row : rows)
        row.ticked = false;
    unticked.addRows(rows);
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
    const auto awaitDialog = [&](const char *name) {
        driver.next(Answer::Escape,
                    [&stage, name](const QDialog &dialog) { stage.takePicture(name, &dialog); });
    };
    const QVector<QPair<uint, const char *>> refusals = {
        {0x01, "dialog-refusal-one"}, {0x10, "dialog-refusal-limit"}, {0x3f, "dialog-refusal-six"}};
    for (const auto &refusal : refusals) {
        awaitDialog(refusal.second);
        stage.window->alertDialogEva(refusal.first);
    }
    awaitDialog("dialog-success");
    stage.window->showResultDialogEva(0, 3, 0);
    awaitDialog("dialog-partial");
    stage.window->showResultDialogEva(0, 197, 3);
    awaitDialog("dialog-failure");
    stage.window->showResultDialogEva(0, 0, 3);
    awaitDialog("dialog-question");
    stage.window->crushFilesEva();

    driver.next(Answer::Escape, [&stage](const QDialog &dialog) {
        const auto button = [&](const char *name) {
            return dialog.findChild<QWidget *>(QString::fromLatin1(name));
        };
        stage.takePicture("question-over-window");
        stage.takeHovered("dialog-hover-ok", button("okButton"), &dialog);
        stage.takePressed("dialog-pressed-cancel", button("cancelButton"), &dialog);
        stage.takeHovered("dialog-hover-close", button("closeButton"), &dialog);
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
        const QWidget *history = openHistory(few, usualEntries(), usualEntries().size());
        few.takePicture("history-short", history);
        few.takePicture("history-over-window");
        few.takeTooltip("history-tooltip", label(few, 1, "nameLabel"), history);
        few.takeHovered("history-hover-copy", few.find("copyButton"), history);
        few.takeHovered("history-hover-close", few.find("historyCloseButton"), history);
        few.takePressed("history-pressed-clear", few.find("clearHistoryButton"), history);
    }
    {
        const GalleryStage many;
        const QWidget *history = openHistory(many, usualEntries(), 500);
        takeScrolled(many, "history-long", many.find<QTableWidget>("historyTable"), history);
    }
    const GalleryStage wide;
    const QWidget *history = openHistory(wide, longEntries(), longEntries().size());
    wide.takePicture("history-long-names", history);
    wide.takeTooltip("history-long-tooltip", label(wide, 2, "pathLabel"), history);
}

} // namespace testsupport
