// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The history of removed items: recording in the GUI thread while the worker
// waits; loading, copying and clearing in the controller thread. A history that
// cannot be used is silently done without.

#include "controller/historyfile.h"
#include "controller/walle.h"

#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>

QString Walle::historyFilePath()
{
    return historyfile::path();
}

void Walle::addToHistoryWalle(QString path)
{
    // Only what is really gone enters the history.
    if (!QFileInfo::exists(path))
        appendHistory(path);
}

void Walle::appendHistory(const QString &path)
{
    if (path.isEmpty())
        return;
    const QMutexLocker locker(&historyMutex);
    recorder.record(path);
    if (!runGoesOn()) // a run keeps the history open
        recorder.release();
}

void Walle::releaseHistory()
{
    // Whoever holds the mutex, perhaps this very thread, releases the history itself.
    if (!historyMutex.tryLock())
        return;
    recorder.release();
    historyMutex.unlock();
}

void Walle::loadHistory()
{
    historyLoadAborted = false;
    historyLines.clear();
    emit setHistoryButtonEnabled(false, LoadPhase::Begun);
    readHistory();
    if (historyLines.isEmpty())
        return;
    emit setHistoryButtonEnabled(true, LoadPhase::RowsComing);
    showHistory();
    emit setHistoryButtonEnabled(true, LoadPhase::Complete);
}

void Walle::readHistory()
{
    const QString path = historyFilePath();
    if (!historyfile::isUsable(path))
        return;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly | QIODevice::Text))
        historyLines = historyfile::linesOf(file, historyLoadAborted);
}

void Walle::showHistory()
{
    // Lines after the last whole entry are nobody's.
    for (int first = 0; first + historyfile::linesPerEntry <= historyLines.size();
         first += historyfile::linesPerEntry) {
        if (historyLoadAborted)
            return;
        emit addRowToHistoryTable(historyLines.at(first), historyLines.at(first + 1),
                                  historyLines.at(first + 2));
    }
}

void Walle::copyHistory()
{
    emit clipboardSetText(historyfile::clipboardText(historyLines));
}

void Walle::clearHistory()
{
    const QMutexLocker locker(&historyMutex);
    recorder.release();
    const QString path = historyFilePath();
    if (QFileInfo::exists(path) && QFileInfo(path).isWritable())
        QFile::remove(path);
}
