// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Shredding a folder: its size first, so that progress is a share of bytes;
// then breadth-first through the tree, removing links and shredding files; at
// last the directories, in the reverse order of their discovery. A file that
// fails does not end the walk; it shows when its directory cannot be removed.

#include "engine/filecrusher.h"

#include <QDir>

#include <cstring>
#include <memory>

#include <dirent.h>

namespace
{

struct DirectoryCloser {
    void operator()(DIR *directory) const { ::closedir(directory); }
};

/// "." and ".." are left out whatever type the file system reports for them: walking into
/// ".." would leave the tree.
bool isSelfOrParent(const char *name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

/// True for "name/" where name is a link to a directory: the slash makes the system look
/// through the link, and the walk would empty a directory that nobody chose.
bool isLinkBehindSlash(QString path)
{
    while (path.size() > 1 && path.endsWith(QLatin1Char('/')))
        path.chop(1);
    return QFileInfo(path).isSymLink();
}

} // namespace

QList<QFileInfo> FileCrusher::listDirectory(const char *path)
{
    QList<QFileInfo> entries;
    if (path == nullptr)
        return entries;
    const QString directory = QString::fromUtf8(path);
    if (!QFileInfo(directory).isDir())
        return entries;
    const std::unique_ptr<DIR, DirectoryCloser> stream(::opendir(path));
    if (!stream)
        return entries;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the stream is this call's own
    while (const dirent *entry = ::readdir(stream.get())) {
        if (!isSelfOrParent(entry->d_name)) {
            const QString name = QString::fromUtf8(entry->d_name);
            entries.append(QFileInfo(directory + QLatin1Char('/') + name));
        }
    }
    return entries;
}

quint64 FileCrusher::directorySize(const char *path)
{
    const QString top = QString::fromUtf8(path);
    if (!QFileInfo(top).isDir() || !QDir(top).exists())
        return 0;
    quint64 bytes = 0;
    QStringList directories{top};
    for (int index = 0; index < directories.size(); ++index) {
        const QList<QFileInfo> entries = listDirectory(directories.at(index).toUtf8().constData());
        for (const QFileInfo &entry : entries) {
            if (entry.isSymLink() || entry.isFile())
                bytes += static_cast<quint64>(entry.size());
            else if (entry.isDir())
                directories.append(entry.absoluteFilePath());
        }
    }
    return bytes;
}

qint64 FileCrusher::shredDirectory(const char *path)
{
    if (path == nullptr)
        return CrushResult::NullPath;
    const QString topDirectory = QString::fromUtf8(path);
    if (!QFileInfo(topDirectory).isDir() || isLinkBehindSlash(topDirectory))
        return CrushResult::DirectoryFailed;
    const quint64 totalBytes = directorySize(path);
    if (!QDir(topDirectory).exists())
        return CrushResult::NoSuchDirectory;

    QStringList directories{topDirectory};
    if (!walkTree(directories, totalBytes)) {
        emit finishPercent(topDirectory, 0);
        return CrushResult::Stopped;
    }
    if (!removeDirectories(directories))
        return CrushResult::DirectoryFailed;
    emit finishPercent(topDirectory, 100);
    emit addToHistory(topDirectory);
    return CrushResult::Success;
}

/// Empties the tree whose top is the only element of @p directories, to which every directory
/// found is appended. False as soon as a stop is requested; the request is left standing.
bool FileCrusher::walkTree(QStringList &directories, quint64 totalBytes)
{
    quint64 doneBytes = 0;
    for (int index = 0; index < directories.size(); ++index) {
        if (stopRequested)
            return false;
        const QList<QFileInfo> entries = listDirectory(directories.at(index).toUtf8().constData());
        if (!shredEntries(entries, directories, totalBytes, doneBytes))
            return false;
    }
    return !stopRequested;
}

/// Shreds the files and removes the links among @p entries and appends the directories among
/// them to @p directories. False as soon as a stop is requested.
bool FileCrusher::shredEntries(const QList<QFileInfo> &entries, QStringList &directories,
                               quint64 totalBytes, quint64 &doneBytes)
{
    const QString topDirectory = directories.first();
    for (const QFileInfo &entry : entries) {
        if (stopRequested)
            return false;
        const QString path = entry.absoluteFilePath();
        if (entry.isSymLink()) {
            if (QDir().remove(path))
                emit addToHistory(path);
        } else if (entry.isDir()) {
            directories.append(path);
        } else if (entry.isFile()) {
            const qint64 result = shredFileInDirectory(path.toUtf8().constData(), totalBytes,
                                                       doneBytes, topDirectory);
            // The share done is kept in the low 32 bits of each result; a failure counts as 0.
            const auto bytes = static_cast<qint32>(static_cast<quint32>(result));
            doneBytes += static_cast<quint64>(qMax(0, bytes));
        }
        // Devices, sockets and fifos are left alone; their directory then fails to go.
    }
    return true;
}

bool FileCrusher::removeDirectories(const QStringList &directories)
{
    for (int index = directories.size() - 1; index >= 0; --index) {
        if (!QDir().rmdir(directories.at(index)))
            return false;
        if (index > 0)
            emit addToHistory(directories.at(index));
    }
    return true;
}
