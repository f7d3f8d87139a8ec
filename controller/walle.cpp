// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Construction, the request queues and the controller thread's loop.

#include "controller/walle.h"

#include "engine/filecrusher.h"

namespace
{

constexpr unsigned long pollMilliseconds = 10;

} // namespace

Walle::Walle(QObject *parent)
    : QThread(parent)
    , crusher(new FileCrusher(this))
{
    setObjectName(QStringLiteral("Walle"));
    connectWorker();
    crusher->start(QThread::InheritPriority);
    systemDirectories = QStringList{
        QStringLiteral("/"),     QStringLiteral("/proc"), QStringLiteral("/usr/sbin"),
        QStringLiteral("/sbin"), QStringLiteral("/etc"),  QStringLiteral("/dev"),
        QStringLiteral("/mnt"),  QStringLiteral("/bin"),  QStringLiteral("/lib"),
        QStringLiteral("/sys"),
    };
}

Walle::~Walle()
{
    delete crusher;
}

void Walle::connectWorker()
{
    // The worker waits for each slot, so that list and history are up to date when it goes on.
    const auto blocking = Qt::BlockingQueuedConnection;
    connect(crusher, &FileCrusher::finishOne, this, &Walle::finishOneWalle, blocking);
    connect(crusher, &FileCrusher::failedOne, this, &Walle::failedOneWalle, blocking);
    connect(crusher, &FileCrusher::finishPercent, this, &Walle::finishPercentWalle, blocking);
    connect(crusher, &FileCrusher::addToHistory, this, &Walle::addToHistoryWalle, blocking);
    connect(crusher, &FileCrusher::stopped, this, &Walle::stoppedWalle, blocking);
}

void Walle::postCommand(int code)
{
    const QMutexLocker locker(&queueMutex);
    commandQueue.append(code);
}

void Walle::postCellToggle(const CellToggle &entry)
{
    const QMutexLocker locker(&queueMutex);
    toggleQueue.append(entry);
}

void Walle::addChosenFiles(const QStringList &names)
{
    const QMutexLocker locker(&queueMutex);
    chosenBatches.append(names);
}

void Walle::addDroppedUrls(const QList<QUrl> &urls)
{
    const QMutexLocker locker(&queueMutex);
    droppedBatches.append(urls);
}

void Walle::abortHistoryLoad()
{
    historyLoadAborted = true;
}

void Walle::run()
{
    while (running) {
        msleep(pollMilliseconds);
        if (const std::optional<int> code = takeCommand())
            perform(*code);
    }
}

std::optional<int> Walle::takeCommand()
{
    {
        const QMutexLocker locker(&queueMutex);
        if (commandQueue.startsWith(CommandStartCrush) && isStartHeld())
            return std::nullopt;
    }
    return takeOldest(commandQueue);
}

/// The stopped() of the last stop would end the new run, and the signals of the last run's end
/// would be emitted in the middle of it. Either comes within 40 ms, or once the open report is
/// closed.
bool Walle::isStartHeld() const
{
    const RunPhase phase = runPhase;
    return phase == RunPhase::Ending || phase == RunPhase::AwaitingAnswer;
}

void Walle::perform(int code)
{
    switch (code) {
    case CommandRemoveChecked:
        return removeChecked();
    case CommandStartCrush:
        return startCrush();
    case CommandClearHistory:
        return clearHistory();
    case CommandCopyHistory:
        return copyHistory();
    case CommandAddDropped:
        return reportRefusals(admitDropped());
    case CommandAddChosen:
        return reportRefusals(admitChosen());
    case CommandCheckAll:
        return setAllChecked(true);
    case CommandUncheckAll:
        return setAllChecked(false);
    case CommandToggleRow:
        return toggleRow();
    case CommandStopCrush:
        return stopCrush();
    case CommandLoadHistory:
        return loadHistory();
    default:
        return;
    }
}
