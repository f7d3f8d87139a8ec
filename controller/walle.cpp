// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Construction, the request queues and the controller thread's loop.

#include "controller/walle.h"

#include "engine/filecrusher.h"

#include <QMutexLocker>

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
    // The worker waits for each, so that it never runs ahead of the list and the history.
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
        int code = 0;
        if (takeCommand(code))
            perform(code);
    }
}

bool Walle::takeCommand(int &code)
{
    const QMutexLocker locker(&queueMutex);
    if (commandQueue.isEmpty())
        return false;
    if (commandQueue.first() == CommandStartCrush && isStartHeld())
        return false;
    code = commandQueue.takeFirst();
    return true;
}

/// The answer to the last stop would end the new run, and the end of the last would be told in the
/// middle of it. Either comes within 40 ms, or once the open report is closed.
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
        return report(admitDropped());
    case CommandAddChosen:
        return report(admitChosen());
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
