// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The job list, its check states and the controls that depend on them. A command
// holds jobMutex from its first read to its last signal. Single accesses to the
// lists take listMutex within it.

#include "controller/walle.h"

void Walle::setAllChecked(bool state)
{
    const QMutexLocker locker(&jobMutex);
    const DeliveryFence::Emission emission(fence);
    const int rows = rowCount();
    for (int row = 0; row < rows; ++row) {
        if (isChecked(row) != state) {
            setChecked(row, state);
            emit setTableItemCheckBoxState(row, state);
        }
    }
    refreshControls(state ? ControlSituation::AllChecked : ControlSituation::NoneChecked);
}

void Walle::toggleRow()
{
    const std::optional<CellToggle> toggle = takeOldest(toggleQueue);
    if (!toggle)
        return;
    const QMutexLocker locker(&jobMutex);
    const int row = rowOf(*toggle);
    if (row < 0)
        return;
    const DeliveryFence::Emission emission(fence);
    if (isChecked(row)) {
        emit setTableItemCheckBoxState(row, false);
        setChecked(row, false);
        refreshControls(selection().anyChecked ? ControlSituation::RowUnchecked
                                               : ControlSituation::NoneChecked);
    } else {
        emit setTableItemCheckBoxState(row, true);
        setChecked(row, true);
        refreshControls(selection().anyUnchecked ? ControlSituation::RowChecked
                                                 : ControlSituation::AllChecked);
    }
}

void Walle::removeChecked()
{
    const QMutexLocker locker(&jobMutex);
    const DeliveryFence::Emission emission(fence);
    int row = 0;
    while (row < rowCount()) {
        if (isChecked(row)) {
            removeJob(row); // the next row now has this number
            emit removeRowFromMainTable(row);
        } else {
            ++row;
        }
    }
    refreshControls(ControlSituation::RowsRemoved);
}

/// The row that the clicked entry has now; -1 when it has been removed.
int Walle::rowOf(const CellToggle &toggle) const
{
    const QMutexLocker locker(&listMutex);
    if (!toggle.path.isEmpty())
        return jobPaths.indexOf(toggle.path);
    return toggle.row >= 0 && toggle.row < jobPaths.size() ? toggle.row : -1;
}

void Walle::appendJob(const QString &path)
{
    const QMutexLocker locker(&listMutex);
    jobPaths.append(path);
    jobChecked.append(true);
}

void Walle::removeJob(int row)
{
    const QMutexLocker locker(&listMutex);
    jobPaths.removeAt(row);
    jobChecked.removeAt(row);
}

bool Walle::isChecked(int row) const
{
    const QMutexLocker locker(&listMutex);
    return jobChecked.value(row);
}

void Walle::setChecked(int row, bool state)
{
    const QMutexLocker locker(&listMutex);
    if (row < jobChecked.size())
        jobChecked[row] = state;
}

/// False when no row is checked.
bool Walle::uncheckFirst()
{
    const std::unique_lock<QMutex> lock = lockListDelivered();
    const int row = jobChecked.indexOf(true);
    if (row < 0)
        return false;
    jobChecked[row] = false;
    return true;
}

/// Locks listMutex when the window has received every signal of the controller thread: a row then
/// has the same number and the same tick in the list and in the table. In a slot that the
/// controller thread waits for that never comes, so the wait has an end.
std::unique_lock<QMutex> Walle::lockListDelivered()
{
    const QDeadlineTimer deadline(DeliveryFence::longestWait);
    std::unique_lock<QMutex> lock(listMutex, std::defer_lock);
    for (;;) {
        fence.deliverPending(deadline);
        lock.lock();
        if (fence.isClear() || deadline.hasExpired())
            return lock;
        lock.unlock();
    }
}

Walle::Job Walle::firstChecked() const
{
    const QMutexLocker locker(&listMutex);
    const int row = jobChecked.indexOf(true);
    return Job{row, jobPaths.value(row)};
}

Walle::Selection Walle::selection() const
{
    const QMutexLocker locker(&listMutex);
    return Selection{jobPaths.size(), jobChecked.contains(true), jobChecked.contains(false)};
}

int Walle::rowCount() const
{
    const QMutexLocker locker(&listMutex);
    return jobPaths.size();
}

void Walle::finishPercentWalle(QString path, int percent)
{
    if (path.isEmpty() || static_cast<unsigned>(percent) > 100)
        return;
    int row = -1;
    {
        const std::unique_lock<QMutex> lock = lockListDelivered();
        row = jobPaths.indexOf(path);
    }
    if (row >= 0)
        emit setTableRowHeight(row, percent);
}

void Walle::refreshControls(int situation)
{
    const Selection now = selection();
    switch (situation) {
    case ControlSituation::BatchAdmitted:
        // Only enables and ticks: a batch adds rows and removes none.
        if (now.rows < 1)
            return;
        emit setSelectAllCheckBoxEnabled(true);
        if (now.anyChecked) {
            emit setCrushButtonEnabled(true);
            emit setRemoveButtonEnabled(true);
        }
        if (!now.anyUnchecked)
            emit setSelectAllCheckBoxState(true);
        return;
    case ControlSituation::RowsRemoved:
        if (!now.anyChecked) {
            emit setCrushButtonEnabled(false);
            emit setRemoveButtonEnabled(false);
        }
        if (now.rows < 1) {
            emit setSelectAllCheckBoxState(false);
            emit setSelectAllCheckBoxEnabled(false);
        }
        return;
    case ControlSituation::AllChecked:
    case ControlSituation::NoneChecked: {
        const bool state = situation == ControlSituation::AllChecked;
        emit setSelectAllCheckBoxState(state);
        emit setCrushButtonEnabled(state);
        emit setRemoveButtonEnabled(state);
        return;
    }
    case ControlSituation::RowChecked:
        emit setCrushButtonEnabled(true);
        emit setRemoveButtonEnabled(true);
        return;
    case ControlSituation::RowUnchecked:
        emit setSelectAllCheckBoxState(false);
        return;
    case ControlSituation::StopAsked:
        emit setCrushButtonEnabled(false);
        return;
    case ControlSituation::Stopped: {
        const bool anyRows = now.rows >= 1;
        emit setSelectAllCheckBoxEnabled(anyRows);
        emit setCrushButtonEnabled(anyRows && now.anyChecked);
        emit setRemoveButtonEnabled(anyRows && now.anyChecked);
        if (anyRows)
            emit setSelectAllCheckBoxState(!now.anyUnchecked);
        return;
    }
    default:
        return;
    }
}
