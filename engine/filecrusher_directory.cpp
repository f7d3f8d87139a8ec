// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Shredding a folder: its size first, so that progress is a share of bytes;
// then breadth-first through the tree, removing links and shredding files; at
// last the directories, in the reverse order of their discovery. A file that
// fails does not end the walk; it shows when its directory cannot be removed.

#include "engine/filecrusher.h"
#include "engine/heldtree.h"

#include <fcntl.h>

QList<QFileInfo> FileCrusher::listDirectory(const char *path)
{
    QList<QFileInfo> entries;
    if (path == nullptr)
        return entries;
    const Descriptor directory(::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const QString prefix = QString::fromUtf8(path) + QLatin1Char('/');
    const QVector<ListedEntry> listed = entriesIn(directory.get());
    for (const ListedEntry &entry : listed)
        entries.append(QFileInfo(prefix + textOf(entry.name)));
    return entries;
}

quint64 FileCrusher::directorySize(const char *path)
{
    HeldTree tree(QString::fromUtf8(path));
    quint64 bytes = 0;
    for (int index = 0; tree.isOpen() && index < tree.size(); ++index) {
        const int directory = tree.descriptorOf(index);
        const QVector<ListedEntry> entries = entriesIn(directory);
        for (const ListedEntry &entry : entries) {
            const QByteArray &name = entry.name;
            if (!isUtf8(name))
                continue;
            const EntryState state = lookAt(directory, name);
            if (state.kind == EntryKind::File)
                bytes += state.size;
            else if (state.kind == EntryKind::Link)
                bytes += sizeThrough(directory, name);
            else if (state.kind == EntryKind::Directory)
                tree.append(index, name, state.identity);
        }
    }
    return bytes;
}

qint64 FileCrusher::shredDirectory(const char *path)
{
    if (path == nullptr)
        return CrushResult::NullPath;
    const QString topDirectory = QString::fromUtf8(path);
    if (!QFileInfo(topDirectory).isDir())
        return CrushResult::DirectoryFailed;
    const quint64 totalBytes = directorySize(path);
    if (!QFileInfo::exists(topDirectory))
        return CrushResult::NoSuchDirectory;
    // A link to a directory is none, also where a slash behind its name hides that.
    HeldTree tree(topDirectory);
    if (!tree.isOpen())
        return CrushResult::DirectoryFailed;

    if (!walkTree(tree, totalBytes)) {
        emit finishPercent(topDirectory, 0);
        return CrushResult::Stopped;
    }
    if (!removeDirectories(tree))
        return CrushResult::DirectoryFailed;
    emit finishPercent(topDirectory, 100);
    emit addToHistory(topDirectory);
    return CrushResult::Success;
}

/// Empties @p tree, which so far knows its top only; every directory found is added to it. False
/// as soon as a stop is requested; the request is left standing.
bool FileCrusher::walkTree(HeldTree &tree, quint64 totalBytes)
{
    quint64 doneBytes = 0;
    for (int index = 0; index < tree.size(); ++index) {
        if (stopRequested || !shredEntries(tree, index, totalBytes, doneBytes))
            return false;
    }
    return !stopRequested;
}

/// Shreds the files and removes the links of directory @p index and adds the directories in it
/// to @p tree. False as soon as a stop is requested.
bool FileCrusher::shredEntries(HeldTree &tree, int index, quint64 totalBytes, quint64 &doneBytes)
{
    const int directory = tree.descriptorOf(index);
    const QVector<ListedEntry> entries = entriesIn(directory);
    for (const ListedEntry &entry : entries) {
        if (stopRequested)
            return false;
        if (!isUtf8(entry.name))
            continue;
        const FilePlace place{directory, entry.name, tree.pathOf(index, textOf(entry.name))};
        const qint64 result = entry.listedAsFile && totalBytes != 0
                                  ? shredListedFile(tree, index, place, totalBytes, doneBytes)
                                  : shredEntry(tree, index, place, totalBytes, doneBytes);
        // The share done is kept in the low 32 bits of each result; a failure counts as 0.
        const auto bytes = static_cast<qint32>(static_cast<quint32>(result));
        doneBytes += static_cast<quint64>(qMax(0, bytes));
    }
    return true;
}

/// What is listed as a file mostly still is one, and opening it then tells all that a look would.
/// Whatever else is there by now is at most opened and closed again.
qint64 FileCrusher::shredListedFile(HeldTree &tree, int index, const FilePlace &place,
                                    quint64 totalBytes, quint64 doneBytes)
{
    const OpenFile file = openForOverwriting(place.directory, place.name);
    if (file.isOpen())
        return shredOpenFile(file, place, totalBytes, doneBytes, tree.pathOf(0));
    if (lookAt(place.directory, place.name).kind == EntryKind::File)
        return CrushResult::OpenFailed;
    return shredEntry(tree, index, place, totalBytes, doneBytes);
}

qint64 FileCrusher::shredEntry(HeldTree &tree, int index, const FilePlace &place,
                               quint64 totalBytes, quint64 doneBytes)
{
    const EntryState state = lookAt(place.directory, place.name);
    if (state.kind == EntryKind::Link) {
        if (removeNameIn(place.directory, place.name))
            emit addToHistory(place.path);
    } else if (state.kind == EntryKind::Directory) {
        tree.append(index, place.name, state.identity);
    } else if (state.kind == EntryKind::File) {
        // A tree that was found to hold nothing holds something after all when it could not be
        // read then, or was filled since; no file goes without having been overwritten.
        if (totalBytes == 0)
            return shredTreeFile(place, sizeThrough(place.directory, place.name), 0,
                                 tree.pathOf(0));
        return shredTreeFile(place, totalBytes, doneBytes, tree.pathOf(0));
    }
    // Devices, sockets and fifos are left alone; their directory then fails to go.
    return CrushResult::Success;
}

/// Removes the directories, emptied by then, from the one found last back to the top. The first
/// that does not go ends it.
bool FileCrusher::removeDirectories(HeldTree &tree)
{
    for (int index = tree.size() - 1; index >= 0; --index) {
        if (!tree.remove(index))
            return false;
        if (index > 0)
            emit addToHistory(tree.pathOf(index));
    }
    return true;
}
