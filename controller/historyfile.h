// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The form of the history: three lines of UTF-8 an entry (time, name, folder).
// Free functions without state; the controller decides when and under which
// lock they run.

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

/// Where the history of the user who runs the program is; asks the user database anew each time.
QString path();

/// @p time as the history shows it.
QString timeText(const QDateTime &time);

/// @p text as one line of the file. A line feed within it is shown as U+2424, so an entry has three
/// lines whatever an item is called.
QByteArray line(QString text);

/// The three lines of the entry for the removed item @p path.
QByteArray entryFor(const QString &path, const QDateTime &time);

/// True when @p file is a regular file that may be read and written.
bool isUsable(const QString &file);

/// Appends @p entry to @p file, made first, for its owner alone, when missing, in one write. When
/// the write fails or comes short the file is as it was before. Silent.
void append(const QString &file, const QByteArray &entry);

/// The lines of @p device, open for reading text, from where it stands: decoded from UTF-8 and
/// trimmed. Ends early at a read error, and once @p aborted is set, which any thread may do.
QStringList linesOf(QIODevice &device, const std::atomic<bool> &aborted);

/// The text for the clipboard: one line for each whole entry of @p lines.
QString clipboardText(const QStringList &lines);

} // namespace historyfile
