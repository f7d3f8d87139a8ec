// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The main window: its table, its buttons, a run from beginning to end.

#include "galleryscenes.h"

#include "controller/protocol.h"
#include "gallerystage.h"
#include "widgets/zztablecell.h"

#include <QLabel>
#include <QScrollBar>
#include <QTableWidget>

namespace testsupport
{

namespace
{

QVector<StagedRow> threeRows()
{
    return {
        {QStringLiteral("/home/lina/文档/2019年度报税材料.xlsx"), StagedRow::File, true},
        {QStringLiteral("/home/lina/下载/旧手机备份"), StagedRow::Folder, true},
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
                        "（征求意见稿，第三次修订）.docx"),
         StagedRow::File, true},
        {QStringLiteral("/home/lina/Documents/quarterly-financial-consolidation-worksheet-"
                        "final-version-2.xlsx"),
         StagedRow::File, true},
        {QStringLiteral("/home/lina/文档/客户资料/二〇二三年/华东区/上海/浦东新区/世纪大道营业部/"
                        "已经归档但尚未移交档案室的纸质合同扫描件/合同.pdf"),
         StagedRow::File, true},
        {QStringLiteral("/home/lina/mmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmmm/"
                        "WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW"),
         StagedRow::Folder, true},
        {QStringLiteral("/home/lina/文档/a"), StagedRow::File, true},
    };
}

const QWidget *labelOf(const GalleryStage &stage, int row, const char *name)
{
    return stage.shown.cell(row)->findChild<QLabel *>(QString::fromLatin1(name));
}

void scrollTo(const GalleryStage &stage, double part)
{
    QScrollBar *bar = stage.shown.table()->verticalScrollBar();
    bar->setValue(qRound(bar->maximum() * part));
}

} // namespace

void showTables(const QDir &folder)
{
    {
        const GalleryStage empty(folder);
        empty.takePicture(QStringLiteral("empty"));
    }
    {
        GalleryStage one(folder);
        one.addRows(threeRows().mid(0, 1));
        one.takePicture(QStringLiteral("one-row"));
    }
    {
        GalleryStage three(folder);
        three.addRows(threeRows());
        three.takePicture(QStringLiteral("three-rows"));
        three.waitForTooltip(labelOf(three, 1, "nameLabel"));
        three.takePicture(QStringLiteral("row-tooltip"));
    }
    {
        GalleryStage names(folder);
        names.addRows(longNames());
        names.takePicture(QStringLiteral("long-names"));
        names.waitForTooltip(labelOf(names, 2, "placeLabel"));
        names.takePicture(QStringLiteral("long-path-tooltip"));
    }
    GalleryStage full(folder);
    full.addRows(fullTable());
    full.takePicture(QStringLiteral("200-rows-top"));
    scrollTo(full, 0.5);
    full.takePicture(QStringLiteral("200-rows-middle"));
    scrollTo(full, 1);
    full.takePicture(QStringLiteral("200-rows-end"));
}

void showButtons(const QDir &folder)
{
    GalleryStage stage(folder);
    stage.addRows(threeRows());
    const auto hover = [&stage](const char *name, const QString &picture) {
        stage.pointAt(name);
        stage.takePicture(picture);
    };
    const auto press = [&stage](const char *name, const QString &picture) {
        stage.holdDown(name);
        stage.takePicture(picture);
        stage.withdraw();
    };
    hover("addButton", QStringLiteral("hover-add"));
    hover("removeButton", QStringLiteral("hover-remove"));
    hover("crushButton", QStringLiteral("hover-crush"));
    hover("closeButton", QStringLiteral("hover-close"));
    hover("historyLink", QStringLiteral("hover-history-link"));
    hover("selectAllCheckBox", QStringLiteral("hover-select-all"));
    press("crushButton", QStringLiteral("pressed-crush"));
    press("closeButton", QStringLiteral("pressed-close"));
    press("addButton", QStringLiteral("pressed-add"));

    // Nothing is ticked, so there is nothing to remove or shred.
    GalleryStage unticked(folder);
    QVector<StagedRow> rows = threeRows();
    for (StagedRow &row : rows)
        row.ticked = false;
    unticked.addRows(rows);
    unticked.takePicture(QStringLiteral("buttons-disabled"));
}

void showRun(const QDir &folder)
{
    GalleryStage stage(folder);
    stage.addRows(threeRows());
    stage.shown->setCrushStartedEva(RunState::Running);
    for (const int percent : {1, 50, 100}) {
        stage.shown->setTableRowHeightEva(0, percent);
        stage.takePicture(QStringLiteral("progress-%1").arg(percent));
    }
    stage.shown->removeRowFromMainTableEva(0);
    stage.shown->setTableRowHeightEva(0, 35);
    stage.takePicture(QStringLiteral("running"));
    stage.shown->setCrushStartedEva(RunState::Stopping);
    stage.takePicture(QStringLiteral("stopping"));
    stage.shown->removeRowFromMainTableEva(0);
    stage.shown->setCrushStartedEva(RunState::Idle);
    stage.shown->finishAllEva(2);
    stage.takePicture(QStringLiteral("after-run"));
}

} // namespace testsupport
