// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A run: the checked rows go to the worker one at a time, the next only after
// the verdict on the last. A shredded row leaves the list and a failed one is
// unchecked, so the lowest checked row always moves on and each is tried once.

#include "controller/walle.h"

#include "engine/filecrusher.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMutexLocker>

#include <sys/stat.h>

namespace
{

/// True for a device, fifo or socket. One look decides: of several one may fail, and a file would
/// pass for something that exists and is of no known kind.
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
    stopPending = false;
    emit setCrushStarted(RunState::Running);
    crushNext();
}

void Walle::stopCrush()
{
    // Opened before requestStop(): stoppedWalle() then waits until the two signals below are
    // delivered, or the window would show "stopping" for ever.
    const DeliveryFence::Emission emission(fence);
    // One answer is enough for several stops; a second would come into the next run.
    if (acceptStop())
        crusher->requestStop(true);
    stopPending = true;
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
    if (!isOfAnotherKind(path))
        crusher->addPath(path);
    // A device or fifo that took the path's place after admission is not handed over. No
    // verdict will come, and the run stays open until the user stops it.

    // A stop or the end of the window may have emptied the queue before addPath(); so it is
    // emptied again.
    if (stopPending || runPhase == RunPhase::Silent)
        takeBack();
}

/// Takes back what the worker has not begun. Left in the queue it would be shredded after the
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

/// The last report comes with the run over: a start in answer to it is accepted.
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
    return true;
}

/// False when the answer to an earlier stop is still to come, or after the window has gone.
bool Walle::acceptStop()
{
    const QMutexLocker locker(&listMutex);
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

bool Walle::runGoesOn() const
{
    const RunPhase phase = runPhase;
    return phase == RunPhase::Running || phase == RunPhase::Stopping
           || phase == RunPhase::TakenBack;
}

void Walle::finishOneWalle(QString path)
{
    takeFinished(path);
    if (!runGoesOn())
        releaseHistory();
}

void Walle::takeFinished(const QString &path)
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
    // A failed row stays where it is, so the order of the rows needs no guarding here; the
    // verdict and the history are what must not mix.
    const QMutexLocker locker(&historyMutex);
    // Whatever the path: the lowest checked row is the one that was handed over. The window is
    // not told; the row stays as it is drawn until the result report.
    if (!uncheckFirstInStep())
        return;
    ++failedCount;
    finishPercentWalle(path, 0);
    crushNext();
    if (!runGoesOn())
        recorder.release();
}

void Walle::stoppedWalle()
{
    bool takenBack = false;
    {
        // A stop that is under way is either told by now and answered by this, or will ask anew.
        const std::unique_lock<QMutex> lock = lockListInStep();
        takenBack = runPhase == RunPhase::TakenBack;
        if (runPhase != RunPhase::Silent)
            runPhase = RunPhase::Ending;
    }
    releaseHistory();
    emit setCrushStarted(RunState::Idle);
    refreshControls(ControlSituation::Stopped);
    // No verdict will come that would end the run with its report.
    if (takenBack)
        emitEnd();
    else
        leaveEnding();
}

void Walle::fallSilent()
{
    // The window first, so that what the worker still reports opens no dialog any more.
    disconnect(this, nullptr, nullptr, nullptr);
    {
        const QMutexLocker locker(&queueMutex);
        commandQueue.clear();
    }
    {
        const QMutexLocker locker(&listMutex);
        runPhase = RunPhase::Silent;
    }
    stopPending = true;
    crusher->requestStop(true);
    takeBack();
    disconnect(crusher, nullptr, nullptr, nullptr);
    // What the worker had reported by then still arrives: an item that was just removed gets its
    // history entry.
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    disconnect(&fence, nullptr, nullptr, nullptr);
}
