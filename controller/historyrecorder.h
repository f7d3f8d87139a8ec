// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Appends entries to the history. A run records thousands of them, so what stays
// the same from one to the next is kept until release(): the open file, as long
// as the name still leads to it and it still may be read and written, where it
// is, and the lines that entries share. Each entry is in the file, in one write,
// before record() returns. Guarded by the controller's historyMutex.

#pragma once

#include "controller/historyentry.h"
#include "engine/descriptor.h"

#include <QByteArray>
#include <QString>

#include <sys/stat.h>

class HistoryRecorder final
{
public:
    /// Appends the entry of the removed item @p path. Silent when that cannot be done.
    void record(const QString &path);
    /// Appends @p text to @p file, made first, for its owner alone, when missing. When the write
    /// fails or comes short the file is as it was before. Silent.
    void append(const QString &file, const QByteArray &text);
    /// Keeps nothing any more; a history that was deleted frees its space.
    void release();

private:
    bool isStill(const QByteArray &name);
    bool open(const QString &file);

    QString historyPath;
    Descriptor history;
    struct stat status = {}; ///< of the history, from before the last write
    HistoryEntry entry;
};
