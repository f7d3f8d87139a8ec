// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "engine/treeshredder.h"

#include "engine/filecrusher.h"
#include "engine/overwriter.h"
#include "engine/shredprogress.h"

#include <utility>

TreeShredder::TreeShredder(FileCrusher &reporter, Overwriter &fileOverwriter, const QString &top,
                           quint64 total, quint64 done)
    : crusher(reporter)
    , overwriter(fileOverwriter)
    , topDirectory(top)
    , totalBytes(total)
    , doneBytes(done)
{
}

bool TreeShredder::shredFiles(DirectoryTree &tree, const std::atomic<bool> &stopRequested)
{
    for (int index = 0; index < tree.size(); ++index) {
        if (stopRequested || !shredEntries(tree, index, stopRequested))
            return false;
    }
    return !stopRequested;
}

bool TreeShredder::shredEntries(DirectoryTree &tree, int index,
                                const std::atomic<bool> &stopRequested)
{
    const int directory = tree.descriptorOf(index);
    const QVector<QByteArray> names = namesIn(directory);
    for (const QByteArray &name : names) {
        if (stopRequested)
            return false;
        if (isUtf8(name))
            shredEntry(tree, index, Entry{directory, name, tree.pathOf(index, textOf(name))});
    }
    return true;
}

void TreeShredder::shredEntry(DirectoryTree &tree, int index, const Entry &entry)
{
    const EntryStatus status = statAt(entry.directory, entry.name);
    // A tree that was found to hold nothing may hold something after all: it could not be read
    // then, or was filled since. No byte goes without having been overwritten.
    const bool isEmptyFile = status.kind == EntryKind::File && totalBytes == 0 && status.size == 0;
    if (status.kind == EntryKind::Link || isEmptyFile) {
        if (unlinkAt(entry.directory, entry.name))
            emit crusher.addToHistory(entry.path);
    } else if (status.kind == EntryKind::Directory) {
        tree.append(index, entry.name);
    } else if (status.kind == EntryKind::File) {
        const qint64 result = shredFile(entry);
        // The share done is kept in the low 32 bits of each result; a failure counts as 0.
        const auto bytes = static_cast<qint32>(static_cast<quint32>(result));
        doneBytes += static_cast<quint64>(qMax(0, bytes));
    }
    // Devices, sockets and fifos are left alone; their directory then fails to go.
}

qint64 TreeShredder::shredFile(const Entry &entry)
{
    OpenFile file = openFileAt(entry.directory, entry.name);
    if (!file.isOpen())
        return CrushResult::OpenFailed;
    if (file.size < 0)
        return CrushResult::SizeUnusable;
    const auto size = static_cast<quint64>(file.size);
    // Without a total to be a share of, the file is all there is.
    const quint64 total = totalBytes != 0 ? totalBytes : qMax(size, quint64{1});
    const quint64 done = totalBytes != 0 ? doneBytes : 0;

    quint64 last = shredprogress::treePercent(done, total);
    overwriter.overwrite(file.stream.get(), size, [&](quint64 blocks, quint64 index) {
        // Counts down while the file is written, so it rises above the last report only at the
        // start of a file that is large within its tree.
        const quint64 percent = shredprogress::treePercentInFile(done, total, blocks, index);
        if (!shredprogress::isStepAbove(percent, last, shredprogress::treeStep))
            return;
        emit crusher.finishPercent(topDirectory, static_cast<int>(percent));
        last = percent;
    });
    if (!overwriter.closeAndRemove(std::move(file), entry.directory, entry.name, size))
        return CrushResult::RemoveFailed;
    emit crusher.finishPercent(topDirectory,
                               static_cast<int>(shredprogress::treePercent(done + size, total)));
    emit crusher.addToHistory(entry.path);
    return static_cast<qint64>(size);
}

bool TreeShredder::removeDirectories(DirectoryTree &tree)
{
    for (int index = tree.size() - 1; index >= 0; --index) {
        if (!tree.remove(index))
            return false;
        if (index > 0)
            emit crusher.addToHistory(tree.pathOf(index));
    }
    return true;
}
