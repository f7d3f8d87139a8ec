// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A run: the checked rows go to the worker one at a time, the next only after
// the verdict on the last. A verdict is finishOne or failedOne. A shredded row is
// removed and a failed one is unchecked, so each checked row is tried once.

#include "controller/walle.h"

#include "engine/filecrusher.h"

#include <QCoreApplication>
#include <QEvent>

#include <sys/stat.h>

namespace
{

/// True for a device, fifo or socket. One lstat() decides: QFileInfo makes several calls, of which
/// one may fail, and a file would seem to exist and be of no known kind.
bool isOfAnotherKind(const QString &path)
{
    struct stat status = {};
    return ::lstat(path.toUtf8().constData(), &status) == 0 && !S_ISREG(status.st_mode)
           && !S_ISDIR(status.st_mode) && !S_ISLNK(status.st_mode);
}

} // namespace

void Walle::startCrush()
{
    if (!acceptStart())
        return;
    const DeliveryFence::Emission emission(fence);
    succeededCount = 0;
    failedCount = 0;
    resultKind = 1;
    emit setCrushStarted(RunState::Running);
    crushNext();
}

void Walle::stopCrush()
{
    // Constructed before requestStop(): stoppedWalle() then waits until the two signals below are
    // delivered. Otherwise the window would show "stopping" for ever.
    const DeliveryFence::Emission emission(fence);
    // Several stops are answered by one stopped(); a second would arrive in the next run.
    if (acceptStop())
        crusher->requestStop(true);
    takeBack();
    refreshControls(ControlSituation::StopAsked);
    emit setCrushStarted(RunState::Stopping);
}

/// Hands over the lowest checked row, or ends the run when there is none or a stop is pending.
void Walle::crushNext()
{
    if (crusher == nullptr)
        return;
    const Job job = firstChecked();
    if (job.row >= 0 && !stopPending)
        handOver(job.path);
    else
        endRun();
}

void Walle::handOver(const QString &path)
{
    // A path that became a device or fifo after admission is not handed over. No verdict will
    // come, and the run stays open until the user stops it.
    if (!isOfAnotherKind(path))
        crusher->addPath(path);
    // stopCrush() or shutDown() may have called takeBack() just before addPath().
    if (stopPending)
        takeBack();
}

/// Removes from the worker's queue what it has not begun. It would otherwise be shredded after the
/// window shows idle.
void Walle::takeBack()
{
    if (!crusher->takeBackPaths())
        return;
    const QMutexLocker locker(&listMutex);
    if (runPhase == RunPhase::Stopping)
        runPhase = RunPhase::TakenBack;
}

void Walle::endRun()
{
    {
        const QMutexLocker locker(&listMutex);
        if (runPhase == RunPhase::Running)
            runPhase = RunPhase::Ending;
        else if (runPhase == RunPhase::Stopping || runPhase == RunPhase::TakenBack)
            runPhase = RunPhase::AwaitingAnswer;
    }
    emitEnd();
}

/// showResultDialog comes after leaveEnding(): a start posted in answer to it is accepted.
void Walle::emitEnd()
{
    emit setCrushStarted(RunState::Idle);
    emit finishAll(finishedCount);
    refreshControls(ControlSituation::RowsRemoved);
    finishedCount = 0;
    const quint32 succeeded = succeededCount;
    const quint32 failed = failedCount;
    leaveEnding();
    emit showResultDialog(resultKind, succeeded, failed);
}

/// False when a start is not accepted.
bool Walle::acceptStart()
{
    const QMutexLocker locker(&listMutex);
    if (runPhase != RunPhase::Idle)
        return false;
    runPhase = RunPhase::Running;
    stopPending = false;
    return true;
}

/// False when the worker has yet to answer an earlier stop, or after shutDown().
bool Walle::acceptStop()
{
    const QMutexLocker locker(&listMutex);
    stopPending = true;
    switch (runPhase) {
    case RunPhase::Running:
        runPhase = RunPhase::Stopping;
        return true;
    case RunPhase::Idle:
    case RunPhase::Ending:
        runPhase = RunPhase::AwaitingAnswer;
        return true;
    default:
        return false;
    }
}

void Walle::leaveEnding()
{
    const QMutexLocker locker(&listMutex);
    if (runPhase == RunPhase::Ending)
        runPhase = RunPhase::Idle;
}

void Walle::finishOneWalle(QString path)
{
    const QMutexLocker locker(&jobMutex);
    fence.deliverPending();
    const Job job = firstChecked();
    if (job.row < 0)
        return;
    if (job.path == path) {
        removeJob(job.row);
        emit removeRowFromMainTable(job.row);
        ++finishedCount;
        ++succeededCount;
    }
    crushNext();
}

void Walle::failedOneWalle(QString path)
{
    // Not jobMutex: a failed row is not removed, so the rows keep their order. historyMutex keeps
    // clearHistory() from running between a verdict and what follows from it.
    const QMutexLocker locker(&historyMutex);
    // Whatever the path: the lowest checked row is the one that was handed over. No signal is
    // emitted; the row keeps its tick in the table until the result report.
    if (!uncheckFirst())
        return;
    ++failedCount;
    finishPercentWalle(path, 0);
    crushNext();
}

void Walle::stoppedWalle()
{
    bool takenBack = false;
    {
        // A stopCrush() in progress has either delivered its signals by now, and this is its
        // answer, or it will find the phase Ending and call requestStop() again.
        const std::unique_lock<QMutex> lock = lockListDelivered();
        takenBack = runPhase == RunPhase::TakenBack;
        if (runPhase != RunPhase::ShutDown)
            runPhase = RunPhase::Ending;
    }
    emit setCrushStarted(RunState::Idle);
    refreshControls(ControlSituation::Stopped);
    // No verdict will come, so the result is reported here.
    if (takenBack)
        emitEnd();
    else
        leaveEnding();
}

void Walle::shutDown()
{
    // The window first, so that the worker's last verdict opens no dialog any more.
    disconnect(this, nullptr, nullptr, nullptr);
    {
        const QMutexLocker locker(&queueMutex);
        commandQueue.clear();
    }
    {
        const QMutexLocker locker(&listMutex);
        runPhase = RunPhase::ShutDown;
        stopPending = true;
    }
    crusher->requestStop(true);
    takeBack();
    disconnect(crusher, nullptr, nullptr, nullptr);
    // Calls that are already posted are still delivered: an item that was just removed gets its
    // history entry.
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    disconnect(&fence, nullptr, nullptr, nullptr);
}
