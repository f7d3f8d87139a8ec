// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The main table. It mirrors the controller's job list row by row; only the controller's
// signals change it.

#include "ui/mainwindow.h"

#include "controller/walle.h"
#include "ui/rowtable.h"
#include "widgets/zztablecell.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QIcon>
#include <QImage>
#include <QMutexLocker>
#include <QTimerEvent>

namespace
{

constexpr int entryColumn = 0;

} // namespace

/// Rows that follow each other closely are drawn together, 30 times a second, because drawing the
/// table takes longer than adding a row.
void MainWindow::drawRowsTogether()
{
    constexpr int refreshMilliseconds = 32;
    if (rowsTimer.isActive())
        mainTable->setUpdatesEnabled(false);
    else
        rowsTimer.start(refreshMilliseconds, this);
}

void MainWindow::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != rowsTimer.timerId())
        return QFrame::timerEvent(event);
    rowsTimer.stop();
    mainTable->setUpdatesEnabled(true);
}

void MainWindow::addRowToMainTableEva(QString fullName)
{
    if (!mainTable || !emptyPanel || !successPanel || !rowBackground)
        return;
    const QIcon &icon = QFileInfo(fullName).isDir() ? folderIcon : fileIcon;
    const QMutexLocker locker(tableMutex.get());
    drawRowsTogether();
    const int row = mainTable->rowCount();
    mainTable->setRowCount(row + 1);
    mainTable->setRowHeight(row, RowTable::entryHeight);
    hidePanels();
    if (rowBackground->isNull())
        rowBackground->load(QStringLiteral(":/images/bk_item"));
    auto *cell = new ZZTableCell(mainTable);
    cell->build(fullName, icon, *rowBackground, rowBase + row, entryColumn);
    mainTable->setCellWidget(row, entryColumn, cell);
    mainTable->announceRow(row);
    connect(cell, &ZZTableCell::tableCellClicked, this, &MainWindow::tableCellClickedEva);
}

void MainWindow::removeRowFromMainTableEva(int rowIndex)
{
    if (!mainTable || !tableHost)
        return;
    const QMutexLocker locker(tableMutex.get());
    if (rowIndex < 0 || rowIndex >= mainTable->rowCount())
        return;
    for (int row = rowIndex; row < mainTable->rowCount(); ++row) {
        if (ZZTableCell *cell = cellAt(row))
            cell->setIndex(row - 1, entryColumn);
    }
    mainTable->removeRow(rowIndex);
}

void MainWindow::setTableItemCheckBoxStateEva(int rowIndex, bool state)
{
    if (!mainTable || !emptyPanel || !successPanel)
        return;
    ZZTableCell *cell = cellAt(rowIndex);
    if (!cell)
        return;
    cell->setChecked(state);
    hidePanels();
}

void MainWindow::tableCellClickedEva(int r, int c)
{
    if (!walle || c != entryColumn)
        return;
    const QMutexLocker locker(tableMutex.get());
    const int row = r - rowBase;
    const ZZTableCell *cell = cellAt(row);
    if (!cell)
        return;
    // With the path, because the entry may be in another row when the controller gets to the click.
    walle->postCellToggle(CellToggle{row, !cell->isChecked(), cell->fullPath()});
    walle->postCommand(CommandToggleRow);
}

void MainWindow::setTableRowHeightEva(int rowIndex, int percent)
{
    if (!mainTable)
        return;
    if (ZZTableCell *cell = cellAt(rowIndex))
        cell->setProgress(percent);
}

void MainWindow::setSelectAllCheckBoxEnabledEva(bool enabled)
{
    if (selectAllCheckBox)
        selectAllCheckBox->setEnabled(enabled);
}

void MainWindow::setSelectAllCheckBoxStateEva(bool state)
{
    if (selectAllCheckBox)
        selectAllCheckBox->setChecked(state);
}

void MainWindow::slotMoveTable(int, int y)
{
    constexpr int wholePercent = 100;
    if (mainTable && tableHost)
        mainTable->move(0, (tableHost->height() - mainTable->height()) * y / wholePercent);
}

/// Null when there is no such row, or no table.
ZZTableCell *MainWindow::cellAt(int row) const
{
    return mainTable ? qobject_cast<ZZTableCell *>(mainTable->cellWidget(row, entryColumn))
                     : nullptr;
}

void MainWindow::hidePanels()
{
    if (emptyPanel->isVisible())
        emptyPanel->hide();
    if (successPanel->isVisible())
        successPanel->hide();
}
