// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Shredding a folder: its size first, so that progress is a share of bytes; then its
// files and links; at last its directories.

#include "engine/directorytree.h"
#include "engine/filecrusher.h"
#include "engine/treeshredder.h"

#include <QDir>

#include <fcntl.h>

QList<QFileInfo> FileCrusher::listDirectory(const char *path)
{
    QList<QFileInfo> entries;
    if (path == nullptr)
        return entries;
    const QString prefix = QString::fromUtf8(path) + QLatin1Char('/');
    const QVector<QByteArray> names =
        namesIn(Descriptor(::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
    for (const QByteArray &name : names)
        entries.append(QFileInfo(prefix + textOf(name)));
    return entries;
}

quint64 FileCrusher::directorySize(const char *path)
{
    // A tree begins at no link, but the directory that @p path leads to can be measured.
    DirectoryTree tree(QFileInfo(QString::fromUtf8(path)).canonicalFilePath());
    quint64 bytes = 0;
    for (int index = 0; tree.isOpen() && index < tree.size(); ++index) {
        const int directory = tree.descriptorOf(index);
        const QVector<QByteArray> names = namesIn(directory);
        for (const QByteArray &name : names) {
            if (!isUtf8(name))
                continue;
            const EntryStatus status = statAt(directory, name);
            if (status.kind == EntryKind::File)
                bytes += status.size;
            else if (status.kind == EntryKind::Link)
                bytes += statTargetAt(directory, name).size;
            else if (status.kind == EntryKind::Directory)
                tree.append(index, name);
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
    if (!QDir(topDirectory).exists())
        return CrushResult::NoSuchDirectory;
    // A link to a directory is none, also where a slash behind its name hides that.
    DirectoryTree tree(topDirectory);
    if (!tree.isOpen())
        return CrushResult::DirectoryFailed;

    TreeShredder shredder(*this, overwriter, topDirectory, totalBytes);
    const bool finished = shredder.shredFiles(tree, stopRequested);
    // Before the first directory goes: network and FUSE file systems keep a removed file that is
    // still open under a hidden name in its directory.
    overwriter.waitForDisk();
    if (!finished) {
        emit finishPercent(topDirectory, 0);
        return CrushResult::Stopped;
    }
    if (!shredder.removeDirectories(tree))
        return CrushResult::DirectoryFailed;
    emit finishPercent(topDirectory, 100);
    emit addToHistory(topDirectory);
    return CrushResult::Success;
}
