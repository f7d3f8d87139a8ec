// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Shreds the files and removes the links of one tree, breadth-first, then its
// directories in the reverse order of their discovery. A file that fails does not end
// the walk; it shows when its directory cannot be removed. A local of the routines of
// FileCrusher; worker thread only.

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
    /// An entry: the open folder that holds it, which is not owned, its name there, its path in
    /// reports.
    struct Entry {
        int directory;
        QByteArray name;
        QString path;
    };

    /// Reports through the signals of @p reporter, under the path @p top. The tree holds @p total
    /// bytes, of which @p done are gone.
    TreeShredder(FileCrusher &reporter, Overwriter &fileOverwriter, const QString &top,
                 quint64 total, quint64 done = 0);

    /// Shreds all files and removes all links. @p tree holds only its top at first; directories are
    /// appended as they are found. False as soon as @p stopRequested is set, which stays set.
    bool shredFiles(DirectoryTree &tree, const std::atomic<bool> &stopRequested);
    /// Removes the directories, the one found last first. False at the first that cannot go.
    bool removeDirectories(DirectoryTree &tree);
    /// Shreds one regular file. Returns a CrushResult or the bytes overwritten.
    qint64 shredFile(const Entry &entry);

private:
    bool shredEntries(DirectoryTree &tree, int index, const std::atomic<bool> &stopRequested);
    void shredEntry(DirectoryTree &tree, int index, const Entry &entry);

    FileCrusher &crusher;
    Overwriter &overwriter;
    const QString topDirectory;
    const quint64 totalBytes;
    quint64 doneBytes;
};
