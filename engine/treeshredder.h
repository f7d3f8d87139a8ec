// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Shreds the files and removes the links of one tree, breadth-first, then its
// directories in the reverse order of their discovery. A file that fails does not end
// the walk; it shows when its directory cannot be removed. Worker thread only; made
// for one walk.

#pragma once

#include "engine/directorytree.h"
#include "engine/fileat.h"

#include <QByteArray>
#include <QString>

#include <atomic>

class FileCrusher;
class Overwriter;

class TreeShredder final
{
public:
    /// An entry: the open folder that holds it, its name there, its path in reports.
    struct Entry {
        int directory;
        QByteArray name;
        QString path;
    };

    /// Reports through the signals of @p crusher, under the path @p topDirectory. The tree holds
    /// @p totalBytes, of which @p doneBytes are gone.
    TreeShredder(FileCrusher &crusher, Overwriter &overwriter, const QString &topDirectory,
                 quint64 totalBytes, quint64 doneBytes = 0);

    /// Empties @p tree, which so far knows its top only; every directory found is added to it.
    /// False as soon as @p stopRequested is set, which stays set.
    bool shredFiles(DirectoryTree &tree, const std::atomic<bool> &stopRequested);
    /// Removes the directories, emptied by then. The first that does not go ends it.
    bool removeDirectories(DirectoryTree &tree);
    /// Shreds one regular file. Returns a CrushResult or the bytes overwritten.
    qint64 shredFile(const Entry &entry);

private:
    bool shredEntries(DirectoryTree &tree, int index, const std::atomic<bool> &stopRequested);
    void shredEntry(DirectoryTree &tree, int index, const Entry &entry);
    qint64 removeEmptyFile(const Entry &entry);

    FileCrusher &crusher;
    Overwriter &overwriter;
    const QString topDirectory;
    const quint64 totalBytes;
    quint64 doneBytes;
};
