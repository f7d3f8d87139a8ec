// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A run: the checked rows go to the worker one at a time, the next only after
// the verdict on the last. A shredded row leaves the list and a failed one is
// unchecked, so the lowest checked row always moves on and each is tried once.

#include "controller/walle.h"

#include "engine/filecrusher.h"

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
    const DeliveryFence::Emission emission(fence);
    succeededCount = 0;
    failedCount = 0;
    resultKind = 1;
    stopPending = false;
    runGoesOn = true;
    emit setCrushStarted(RunState::Running);
    crushNext();
}

void Walle::stopCrush()
{
    // Open before the worker hears of it: its answer must not overtake the two signals below,
    // or the window would say "stopping" for ever.
    const DeliveryFence::Emission emission(fence);
    stopPending = true;
    crusher->requestStop(true);
    // What the worker has not begun is spared. Left in its queue it would be shredded after the
    // window shows an idle program, and the next start would hand it over a second time.
    crusher->takeBackPaths();
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

    // A stop that came after crushNext() looked for one, or the end of the window, after which a
    // start may still be under way, has emptied the queue too early.
    if (stopPending || silent)
        crusher->takeBackPaths();
}

void Walle::endRun()
{
    runGoesOn = false;
    emit setCrushStarted(RunState::Idle);
    emit finishAll(finishedCount);
    refreshControls(ControlSituation::RowsRemoved);
    finishedCount = 0;
    // The result report unticks every row in the table. After a stop some are still checked
    // here; what is shown as unticked must not be shredded by the next run. The start command,
    // in the controller thread, comes here only with nothing checked.
    if (QThread::currentThread() == thread())
        uncheckAllInStep();
    emit showResultDialog(resultKind, succeededCount, failedCount);
}

void Walle::finishOneWalle(QString path)
{
    takeFinished(path);
    if (!runGoesOn)
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
    if (!runGoesOn)
        recorder.release();
}

void Walle::stoppedWalle()
{
    fence.deliverPending();
    runGoesOn = false;
    releaseHistory();
    emit setCrushStarted(RunState::Idle);
    refreshControls(ControlSituation::Stopped);
}

void Walle::fallSilent()
{
    // The window first, so that what the worker still reports opens no dialog any more.
    disconnect(this, nullptr, nullptr, nullptr);
    {
        const QMutexLocker locker(&queueMutex);
        commandQueue.clear();
    }
    silent = true;
    stopPending = true;
    crusher->requestStop(true);
    crusher->takeBackPaths();
    disconnect(crusher, nullptr, nullptr, nullptr);
    // What the worker had reported by then still arrives: an item that was just removed gets its
    // history entry.
    reports.runArrived();
    disconnect(&fence, nullptr, nullptr, nullptr);
}
