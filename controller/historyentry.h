// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Makes one history entry after another. A run removes the files of a folder in a
// row and many in a second, so the lines that an entry has in common with the one
// before are kept. No locks: guarded by whoever owns it.

#pragma once

#include <QByteArray>
#include <QString>

class HistoryEntry final
{
public:
    /// The three lines of the entry for @p path, removed @p second seconds after the epoch: what
    /// historyfile::entryFor() gives.
    QByteArray of(const QString &path, qint64 second);

private:
    const QByteArray &timeLineOf(qint64 second);
    const QByteArray &folderLineOf(const QString &path, const QStringRef &folder);

    qint64 keptSecond = -1;
    QByteArray timeLine;
    QString keptFolder; ///< as the path tells it, with the slash
    QByteArray folderLine;
};
