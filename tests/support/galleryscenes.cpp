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
        {QStringLiteral("/home/lina/文档/2019年度报税材料.xlsx")},
        {QStringLiteral("/home/lina/下载/旧手机备份"), StagedRow::Folder},
        {QStringLiteral("/home/lina/图片/证件/护照扫描件.jpg"), StagedRow::File, false},
    };
}

/// As many entries as the program takes, as one finds them in an old folder.
QVector<StagedRow> fullTable()
{
    constexpr int mostEntries = 200;
    const QStringList patterns = {
        QStringLiteral("/home/lina/文档/财务/银行对账单 %1.pdf"),
        QStringLiteral("/home/lina/图片/手机/IMG_%1.jpg"),
        QStringLiteral("/home/lina/文档/合同/租赁合同（第%1稿）.docx"),
        QStringLiteral("/home/lina/下载/归档/项目资料-%1"),
        QStringLiteral("/home/lina/文档/会议记录 %1.odt"),
    };
    constexpr int folderPattern = 3;
    QVector<StagedRow> rows;
    for (int index = 0; index < mostEntries; ++index) {
        const int pattern = index % patterns.size();
        rows.append({patterns.at(pattern).arg(index + 1, 3, 10, QLatin1Char('0')),
                     pattern == folderPattern ? StagedRow::Folder : StagedRow::File,
                     index % 7 != 4});
    }
    return rows;
}

QVector<StagedRow> longNames()
{
    return {
        {QStringLiteral("/home/lina/文档/关于调整本公司办公区域空调运行时间及节能措施的通知"
                        "（征求意见稿，第三次修订）.docx")},
        {QStringLiteral("/home/lina/Documents/quarterly-financial-consolidation-worksheet-"
                        "final-version-2.xlsx")},
        {QStringLiteral("/home/lina/文档/客户资料/二〇二三年/华东区/上海/浦东新区/世纪大道营业部/"
                        "已经归档但尚未移交档案室的纸质合同扫描件/合同.pdf")},
        {QStringLiteral("/home/lina/mmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmm/"
                        "WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW"),
         StagedRow::Folder},
        {QStringLiteral("/home/lina/文档/a")},
    };
}

struct Shredded {
    QString name;
    QString folder;
};

QVector<Shredded> usualEntries()
{
    return {
        {QStringLiteral("2019年度报税材料.xlsx"), QStringLiteral("/home/lina/文档")},
        {QStringLiteral("旧手机备份"), QStringLiteral("/home/lina/下载")},
        {QStringLiteral("护照扫描件.jpg"), QStringLiteral("/home/lina/图片/证件")},
        {QStringLiteral("离职交接.odt"), QStringLiteral("/home/lina/文档/工作")},
        {QStringLiteral("IMG_0417.jpg"), QStringLiteral("/home/lina/图片/手机")},
    };
}

QVector<Shredded> longEntries()
{
    return {
        {QStringLiteral("关于调整办公区域空调运行时间及节能措施的通知（第三次修订）.docx"),
         QStringLiteral("/home/lina/文档/客户资料/二〇二三年/华东区/上海/浦东新区/世纪大道营业部")},
        {QStringLiteral("quarterly-financial-consolidation-worksheet-final.xlsx"),
         QStringLiteral("/home/lina/Documents/Company/Finance/Quarterly reports/2023/Drafts")},
        {QStringLiteral("a"), QStringLiteral("/home/lina")},
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
        const QStringList lines = {time, entry.name, entry.folder, QString()};
        file.write(lines.join(QLatin1Char('\n')).toUtf8());
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
void takeScrolled(const GalleryStage &stage, const QString &name, const QTableWidget *table,
                  const QWidget *subject = nullptr)
{
    QScrollBar *bar = table->verticalScrollBar();
    stage.takePicture(name + QStringLiteral("-top"), subject);
    bar->setValue(bar->maximum() / 2);
    stage.takePicture(name + QStringLiteral("-middle"), subject);
    bar->setValue(bar->maximum());
    stage.takePicture(name + QStringLiteral("-end"), subject);
}

} // namespace

void showTables()
{
    GalleryStage().takePicture(QStringLiteral("empty"));
    {
        GalleryStage one;
        one.addRows(threeRows().mid(0, 1));
        one.takePicture(QStringLiteral("one-row"));
    }
    {
        GalleryStage three;
        three.addRows(threeRows());
        three.takePicture(QStringLiteral("three-rows"));
        three.takeTooltip(QStringLiteral("row-tooltip"), three.partOf(1, "nameLabel"));
    }
    {
        GalleryStage names;
        names.addRows(longNames());
        names.takePicture(QStringLiteral("long-names"));
        names.takeTooltip(QStringLiteral("long-path-tooltip"), names.partOf(2, "placeLabel"));
    }
    GalleryStage full;
    full.addRows(fullTable());
    takeScrolled(full, QStringLiteral("200-rows"), full.table());
}

void showButtons()
{
    GalleryStage stage;
    stage.addRows(threeRows());
    const QVector<QPair<const char *, QString>> hovered = {
        {"addButton", QStringLiteral("hover-add")},
        {"removeButton", QStringLiteral("hover-remove")},
        {"crushButton", QStringLiteral("hover-crush")},
        {"closeButton", QStringLiteral("hover-close")},
        {"historyLink", QStringLiteral("hover-history-link")},
        {"selectAllCheckBox", QStringLiteral("hover-select-all")},
    };
    for (const auto &picture : hovered)
        stage.takeHovered(picture.second, stage.find(picture.first));
    stage.takePressed(QStringLiteral("pressed-crush"), stage.find("crushButton"));
    stage.takePressed(QStringLiteral("pressed-close"), stage.find("closeButton"));
    stage.takePressed(QStringLiteral("pressed-add"), stage.find("addButton"));

    // Nothing is ticked, so there is nothing to remove or shred.
    GalleryStage unticked;
    QVector<StagedRow> rows = threeRows();
    for (StagedRow &row : rows)
        row.ticked = false;
    unticked.addRows(rows);
    unticked.takePicture(QStringLiteral("buttons-disabled"));
}

void showRun()
{
    GalleryStage stage;
    stage.addRows(threeRows());
    stage.window->setCrushStartedEva(RunState::Running);
    for (const int percent : {1, 50, 100}) {
        stage.window->setTableRowHeightEva(0, percent);
        stage.takePicture(QStringLiteral("progress-%1").arg(percent));
    }
    stage.window->removeRowFromMainTableEva(0);
    stage.window->setTableRowHeightEva(0, 35);
    stage.takePicture(QStringLiteral("running"));
    stage.window->setCrushStartedEva(RunState::Stopping);
    stage.takePicture(QStringLiteral("stopping"));
    stage.window->removeRowFromMainTableEva(0);
    stage.window->setCrushStartedEva(RunState::Idle);
    stage.window->finishAllEva(2);
    stage.takePicture(QStringLiteral("after-run"));
}

/// The dialogs, each opened by the window as in life and photographed from within.
void showDialogs()
{
    GalleryStage stage;
    DialogDriver driver;
    const auto awaitDialog = [&](const QString &name) {
        driver.next(Answer::Escape,
                    [&stage, name](const QDialog &dialog) { stage.takePicture(name, &dialog); });
    };
    const QVector<QPair<uint, QString>> refusals = {{0x01, QStringLiteral("dialog-refusal-one")},
                                                    {0x10, QStringLiteral("dialog-refusal-limit")},
                                                    {0x3f, QStringLiteral("dialog-refusal-six")}};
    for (const auto &refusal : refusals) {
        awaitDialog(refusal.second);
        stage.window->alertDialogEva(refusal.first);
    }
    awaitDialog(QStringLiteral("dialog-success"));
    stage.window->showResultDialogEva(0, 3, 0);
    awaitDialog(QStringLiteral("dialog-partial"));
    stage.window->showResultDialogEva(0, 197, 3);
    awaitDialog(QStringLiteral("dialog-failure"));
    stage.window->showResultDialogEva(0, 0, 3);
    awaitDialog(QStringLiteral("dialog-question"));
    stage.window->crushFilesEva();

    driver.next(Answer::Escape, [&stage](const QDialog &dialog) {
        const auto button = [&](const char *name) {
            return dialog.findChild<QWidget *>(QString::fromLatin1(name));
        };
        stage.takePicture(QStringLiteral("question-over-window"));
        stage.takeHovered(QStringLiteral("dialog-hover-ok"), button("okButton"), &dialog);
        stage.takePressed(QStringLiteral("dialog-pressed-cancel"), button("cancelButton"), &dialog);
        stage.takeHovered(QStringLiteral("dialog-hover-close"), button("closeButton"), &dialog);
    });
    stage.addRows({{QStringLiteral("/home/lina/文档/旧合同.docx")},
                   {QStringLiteral("/home/lina/下载/旧手机备份"), StagedRow::Folder}});
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
        none.takePicture(QStringLiteral("history-empty"), openHistory(none, {}, 0));
    }
    {
        const GalleryStage few;
        const QWidget *history = openHistory(few, usualEntries(), usualEntries().size());
        few.takePicture(QStringLiteral("history-short"), history);
        few.takePicture(QStringLiteral("history-over-window"));
        few.takeTooltip(QStringLiteral("history-tooltip"), label(few, 1, "nameLabel"), history);
        few.takeHovered(QStringLiteral("history-hover-copy"), few.find("copyButton"), history);
        few.takeHovered(QStringLiteral("history-hover-close"), few.find("historyCloseButton"),
                        history);
        few.takePressed(QStringLiteral("history-pressed-clear"), few.find("clearHistoryButton"),
                        history);
    }
    {
        const GalleryStage many;
        const QWidget *history = openHistory(many, usualEntries(), 500);
        takeScrolled(many, QStringLiteral("history-long"), many.find<QTableWidget>("historyTable"),
                     history);
    }
    const GalleryStage wide;
    const QWidget *history = openHistory(wide, longEntries(), longEntries().size());
    wide.takePicture(QStringLiteral("history-long-names"), history);
    wide.takeTooltip(QStringLiteral("history-long-tooltip"), label(wide, 2, "pathLabel"), history);
}

} // namespace testsupport
