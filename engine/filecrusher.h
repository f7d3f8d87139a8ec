// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// FileCrusher is the worker: a thread that takes queued paths one at a time,
// overwrites and removes what they name, and reports each outcome. The object
// lives in the GUI thread and belongs to the controller; everything but
// addPath(), takeBackPaths() and requestStop() runs in the worker thread itself.
//
// What it promises: every byte that a regular file holds when its size is asked,
// as long as the file system writes in place, is overwritten once before the
// name goes, unless a write fails, which goes unnoticed; links are removed
// and never followed; nothing outside the given path is opened for writing.
//
// What it cannot promise: copy-on-write and log-structured file systems, SSDs
// and flash cards put new bytes elsewhere and may keep the old ones; journals,
// snapshots and backups may hold copies; a file with a second hard link is
// overwritten but stays under its other name. The overwriting is handed to the
// kernel, not forced to the medium, before the name is removed. The folders above
// the given path are looked up by name when its turn comes, wherever they lead by
// then; and what somebody puts in the place of an entry of the tree in the moment
// before that entry is removed goes without having been overwritten.

#pragma once

#include "engine/blockfiller.h"

#include <QByteArray>
#include <QFileInfo>
#include <QList>
#include <QMutex>
#include <QString>
#include <QStringList>
#include <QThread>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdio>

class HeldTree;
struct OpenFile;

/// Results of the shredding routines: these, 0 for nothing to do, or the bytes overwritten.
namespace CrushResult
{
constexpr qint64 Success = 0;
constexpr qint64 Stopped = 255;
constexpr qint64 NullPath = -1;
constexpr qint64 OpenFailed = -2;      ///< a file that cannot be opened for reading and writing
constexpr qint64 NoSuchDirectory = -2; ///< a directory that went before it was walked
constexpr qint64 SizeUnusable = -3;    ///< a file's size was not told, or is another's
constexpr qint64 DirectoryFailed = -3; ///< not a directory, or one could not be removed
constexpr qint64 WrongKind = -4;       ///< a directory given as a file, or no top directory
constexpr qint64 LinkFailed = -5;      ///< a link could not be removed
constexpr qint64 SizeVanished = -5;    ///< a file that had bytes when looked at has none now
constexpr qint64 SizeNegative = -6;    ///< a size below -1
constexpr qint64 RemoveFailed = -7;    ///< overwritten, but the name could not be removed
} // namespace CrushResult

class FileCrusher : public QThread
{
    Q_OBJECT

public:
    /// Bytes that go to the kernel in one call while a file is overwritten.
    static constexpr std::size_t streamBufferSize = 32 * std::size_t{1024};

    explicit FileCrusher(QObject *parent = nullptr);
    ~FileCrusher() override;

    /// Queues @p path as the last one. Any thread; returns at once, checks nothing.
    void addPath(const QString &path);
    /// Empties the queue: what the worker has not begun by now it never begins. Any thread.
    void takeBackPaths();
    /// Asks for a stop (true) or takes the request back. Any thread; returns at once.
    void requestStop(bool value);

    /// Fills @p buffer with the @p count (at most 4096) bytes of the current second.
    void fillRandom(char *buffer, std::size_t count);
    /// Size in bytes that stat(2) tells; -1 for a null path and when stat fails.
    static qint64 statSize(const char *path);

    /// Shreds one file, or removes one link, given by itself. Returns a CrushResult or the
    /// number of bytes overwritten.
    qint64 shredFile(const char *path);
    /// Shreds one regular file of the tree @p topDirectory, which holds @p totalBytes in all,
    /// @p doneBytes of them already gone. Returns a CrushResult or the bytes overwritten.
    qint64 shredFileInDirectory(const char *path, quint64 totalBytes, quint64 doneBytes,
                                const QString &topDirectory);

    /// The entries of a directory but "." and "..", in the order the system reads them; empty
    /// when it cannot be read.
    static QList<QFileInfo> listDirectory(const char *path);
    /// Bytes of all regular files and link targets of the tree; 0 when it is no directory.
    static quint64 directorySize(const char *path);
    /// Shreds a whole tree. Returns a CrushResult.
    qint64 shredDirectory(const char *path);

signals:
    /// @p path was processed and did not fail.
    void finishOne(QString path);
    /// @p path could not be shredded completely.
    void failedOne(QString path);
    /// @p percent (0 to 100) of the queued @p path is done.
    void finishPercent(QString path, int percent);
    /// One file, link or directory was removed.
    void addToHistory(QString path);
    /// A stop request was seen and cleared.
    void stopped();

protected:
    void run() override;

private:
    bool takeFirstPath(QString &path);
    qint64 shred(const QString &path);
    void report(const QString &path, qint64 result);

    void overwriteLoneFile(std::FILE *stream, quint64 size, const QString &path);
    void overwriteFileInTree(std::FILE *stream, quint64 size, quint64 totalBytes, quint64 doneBytes,
                             const QString &topDirectory);

    /// Where a file is: the open folder that holds it, its name there, its path in reports.
    struct FilePlace {
        int directory;
        QByteArray name;
        QString path;
    };

    qint64 shredTreeFile(const FilePlace &place, quint64 totalBytes, quint64 doneBytes,
                         const QString &topDirectory);
    qint64 shredOpenFile(const OpenFile &file, const FilePlace &place, quint64 totalBytes,
                         quint64 doneBytes, const QString &topDirectory);
    qint64 shredListedFile(HeldTree &tree, int index, const FilePlace &place, quint64 totalBytes,
                           quint64 doneBytes);
    qint64 shredEntry(HeldTree &tree, int index, const FilePlace &place, quint64 totalBytes,
                      quint64 doneBytes);
    bool walkTree(HeldTree &tree, quint64 totalBytes);
    bool shredEntries(HeldTree &tree, int index, quint64 totalBytes, quint64 &doneBytes);
    bool removeDirectories(HeldTree &tree);

    QStringList pathQueue; ///< guarded by queueMutex
    /// Nothing clears it: the thread lives until the process ends.
    std::atomic<bool> keepRunning{true};
    std::atomic<bool> stopRequested{false};
    QMutex queueMutex;
    BlockFiller filler; ///< worker thread only
    /// Of the one file that is being overwritten. Worker thread only.
    std::array<char, streamBufferSize> streamBuffer = {};
};
