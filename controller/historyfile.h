// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The history: a text file with three lines of UTF-8 an entry (time, name, folder).
// Free functions without state. The controller decides when and under which lock
// they run. A file that cannot be used is skipped without a message.

#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <atomic>

class QIODevice;

namespace historyfile
{

constexpr int linesPerEntry = 3;

/// The three lines of the entry for the removed item @p path. A line feed within a name is written
/// as U+2424, so that an entry has three lines whatever an item is called.
QByteArray entryFor(const QString &path, const QDateTime &time);

/// Appends @p entry to the regular file @p file, which is created for its owner alone when missing
/// and must be readable and writable. When the write fails or comes short the file is as before.
void append(const QString &file, const QByteArray &entry);

/// The lines of the regular file @p file, which must be readable and writable; none otherwise.
/// See linesOf().
QStringList load(const QString &file, const std::atomic<bool> &aborted);

/// The lines of @p device, open for reading text, from its position on: decoded from UTF-8 and
/// trimmed. Ends early at a read error, and once @p aborted is set, which any thread may do.
QStringList linesOf(QIODevice &device, const std::atomic<bool> &aborted);

/// Removes @p file if it is writable and no directory.
void clear(const QString &file);

/// The text for the clipboard: one line for each whole entry of @p lines.
QString clipboardText(const QStringList &lines);

} // namespace historyfile
