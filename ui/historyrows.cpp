// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "ui/historyrows.h"

#include "ui/historyrowframe.h"
#include "ui/rowtable.h"

#include <QScrollBar>

namespace
{

constexpr int screenRefreshMilliseconds = 16;
/// Up to this many rows, about two screens, each row is drawn as it arrives and keeps its frame.
/// Drawing the table takes far longer than adding a row.
constexpr int rowsShownAtOnce = 30;
/// Up to this many rows, each is added to the table as it arrives. Adding takes longer the more
/// there are, so later ones are added together, once a screen refresh.
constexpr int rowsAddedAtOnce = 10000;
/// Rows beyond either end of the view that have a frame, so that the wheel finds them made.
constexpr int rowsNearView = 3;

} // namespace

HistoryRows::HistoryRows(RowTable *owner, QWidget *parentOfFrames)
    : QObject(owner)
    , table(owner)
    , frameParent(parentOfFrames)
{
    showTimer.setSingleShot(true);
    connect(&showTimer, &QTimer::timeout, this, &HistoryRows::show);
    connect(table->verticalScrollBar(), &QScrollBar::valueChanged, this, &HistoryRows::fillView);
    sinceShown.start();
}

void HistoryRows::prepend(const QString &time, const QString &fileName, const QString &path)
{
    entries.append(Entry{time, fileName, path});
    if (entries.size() <= rowsShownAtOnce || sinceShown.elapsed() >= screenRefreshMilliseconds)
        return show();
    if (entries.size() <= rowsAddedAtOnce) {
        table->setUpdatesEnabled(false);
        table->setRowCount(entries.size());
    }
    if (!showTimer.isActive())
        showTimer.start(screenRefreshMilliseconds);
}

void HistoryRows::remove(int row)
{
    if (row < 0 || row >= entries.size())
        return;
    emit aboutToRemove();
    entries.removeAt(entries.size() - 1 - row);
    show();
}

void HistoryRows::clear()
{
    showTimer.stop();
    emit aboutToRemove();
    entries.clear();
    frames.clear();
    table->setRowCount(0);
    table->setUpdatesEnabled(true);
}

void HistoryRows::show()
{
    showTimer.stop();
    // Rows differ only by their frames, so it does not matter at which end they are added and
    // removed; at the bottom it costs least.
    table->setRowCount(entries.size());
    table->setUpdatesEnabled(true);
    fillView();
    sinceShown.restart();
}

/// Makes frames for the rows in and next to the view and removes those of all others, unless the
/// table is short.
void HistoryRows::fillView()
{
    const int firstInView = table->verticalScrollBar()->value();
    const int rowsInView = table->viewport()->height() / RowTable::entryHeight + 1;
    const int rows = table->rowCount();
    const bool isShort = rows <= rowsShownAtOnce;
    const int first = isShort ? 0 : qMax(0, firstInView - rowsNearView);
    const int last = isShort ? rows - 1 : qMin(rows - 1, firstInView + rowsInView + rowsNearView);
    const QList<int> framedRows = frames.keys();
    for (const int row : framedRows) {
        if (row < first || row > last) {
            frames.remove(row);
            table->removeCellWidget(row, 0);
        }
    }
    for (int row = first; row <= last; ++row)
        fillRow(row);
}

void HistoryRows::fillRow(int row)
{
    HistoryRowFrame *frame = frames.value(row);
    const Entry &entry = entryAt(row);
    if (frame != nullptr) {
        frame->setTexts(entry.time, entry.fileName, entry.path);
        return;
    }
    frame = new HistoryRowFrame(frameParent);
    frame->setTexts(entry.time, entry.fileName, entry.path);
    frames.insert(row, frame);
    table->setCellWidget(row, 0, frame);
    // The table sets the geometry of several new widgets only after the next paint, or before it
    // at the cost of a layout of all rows.
    frame->setGeometry(0, table->rowViewportPosition(row), table->columnWidth(0),
                       RowTable::entryHeight);
}
