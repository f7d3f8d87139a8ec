// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The history of removed items: recording in the GUI thread while the worker
// waits; loading, copying and clearing in the controller thread.

#include "controller/historyfile.h"
#include "controller/homedirectory.h"
#include "controller/walle.h"

#include <QFileInfo>

#include <unistd.h>

QString Walle::historyFilePath()
{
    return homeDirectoryOf(getuid()) + QStringLiteral("/.fileshredderEx.dat");
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
    historyfile::append(historyFilePath(),
                        historyfile::entryFor(path, QDateTime::currentDateTime()));
}

void Walle::loadHistory()
{
    historyLoadAborted = false;
    historyLines.clear();
    emit setHistoryButtonEnabled(false, LoadPhase::Begun);
    historyLines = historyfile::load(historyFilePath(), historyLoadAborted);
    if (historyLines.isEmpty())
        return;
    emit setHistoryButtonEnabled(true, LoadPhase::RowsComing);
    showHistory();
    emit setHistoryButtonEnabled(true, LoadPhase::Complete);
}

void Walle::showHistory()
{
    // Lines after the last whole entry belong to no entry.
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
    historyfile::clear(historyFilePath());
}
