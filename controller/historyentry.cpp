// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/historyentry.h"

#include "controller/historyfile.h"

#include <QDateTime>
#include <QFileInfo>

QByteArray HistoryEntry::of(const QString &path, qint64 second)
{
    const int nameStart = path.lastIndexOf(QLatin1Char('/')) + 1;
    const QStringRef folder = path.leftRef(nameStart);
    const QStringRef name = path.midRef(nameStart);
    // Names that stand for another folder, and paths that start from the current one, are rare
    // enough to be made out in full each time.
    const bool plain = path.startsWith(QLatin1Char('/')) && !name.isEmpty()
                       && name != QLatin1String(".") && name != QLatin1String("..");
    if (!plain)
        return historyfile::entryFor(path, QDateTime::fromSecsSinceEpoch(second));
    return timeLineOf(second) + historyfile::line(name.toString()) + folderLineOf(path, folder);
}

const QByteArray &HistoryEntry::timeLineOf(qint64 second)
{
    if (second != keptSecond) {
        keptSecond = second;
        timeLine = historyfile::line(historyfile::timeText(QDateTime::fromSecsSinceEpoch(second)));
    }
    return timeLine;
}

const QByteArray &HistoryEntry::folderLineOf(const QString &path, const QStringRef &folder)
{
    if (folder != keptFolder) {
        keptFolder = folder.toString();
        folderLine = historyfile::line(QFileInfo(path).absolutePath());
    }
    return folderLine;
}
