// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// FileCrusher is the worker: a thread that takes queued paths one at a time, overwrites
// and removes what they name, and reports each outcome. It lives in the GUI thread and
// belongs to the controller; all but addPath(), takeBackPaths() and requestStop() runs in
// the worker thread.

// What it promises: every byte that a regular file holds when its size is asked is
// overwritten once, in place, before the name goes; and before the verdict on a queued path
// goes out, the new bytes of all its files have been written to the disk and the drive was
// asked to empty its cache. Links are removed and never followed; nothing outside the given
// path is opened for writing.
//
// What it cannot promise: a write that fails, or a file for which no second descriptor was
// to be had, goes unnoticed. Copy-on-write, log-structured and data-journaling file systems,
// SSDs and flash cards put new bytes elsewhere and may keep the old ones; snapshots and
// backups may hold copies; names stay readable in directories and journals. A file with a
// second hard link is overwritten but stays under its other name. A program killed or a
// machine that loses power before the verdict may leave the old bytes of the files removed
// last. The folders above the given path are looked up by name when its turn comes; and what
// somebody puts in the place of an entry in the moment before that entry is removed goes
// without having been overwritten.

#pragma once

#include "engine/overwriter.h"

#include <QFileInfo>
#include <QList>
#include <QMutex>
#include <QString>
#include <QStringList>
#include <QThread>

#include <atomic>
#include <cstddef>

class ParentDirectory;

/// Results of the shredding routines: these, 0 for nothing to do, or the bytes overwritten.
namespace CrushResult
{
constexpr qint64 Success = 0;
constexpr qint64 Stopped = 255;
constexpr qint64 NullPath = -1;
constexpr qint64 OpenFailed = -2;      ///< a file that cannot be opened for reading and writing
constexpr qint64 NoSuchDirectory = -2; ///< a directory that went before it was walked
constexpr qint64 SizeUnusable = -3;    ///< stat failed, or the path names another file by now
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
    explicit FileCrusher(QObject *parent = nullptr);
    ~FileCrusher() override;

    /// Queues @p path as the last one. Any thread; returns at once, checks nothing.
    void addPath(const QString &path);
    /// Empties the queue: what the worker has not begun by now it never begins. False when there
    /// was nothing to take back. Any thread.
    bool takeBackPaths();
    /// Asks for a stop (true) or takes the request back. Any thread; returns at once.
    void requestStop(bool value);

    // The steps of shredding, as the worker takes them; each may be called by itself while the
    // worker does not run. Paths are UTF-8.

    /// Shreds one file, or removes one link, given by itself. Returns a CrushResult or the
    /// number of bytes overwritten.
    qint64 shredFile(const char *path);
    /// Shreds a whole tree. Returns a CrushResult.
    qint64 shredDirectory(const char *path);
    /// Bytes of all regular files and link targets of the tree; 0 when it is no directory.
    static quint64 directorySize(const char *path);
    /// Fills @p buffer with the @p count bytes of the current second.
    void fillRandom(char *buffer, std::size_t count);
    /// Size in bytes that stat(2) tells; -1 for a null path and when stat fails.
    static qint64 statSize(const char *path);

    // For callers from outside only; the worker goes by open folders instead of paths.

    /// Shreds one regular file of the tree @p topDirectory, which holds @p totalBytes in all,
    /// @p doneBytes of them already gone. A link is refused. Returns a CrushResult or the bytes
    /// overwritten.
    qint64 shredFileInDirectory(const char *path, quint64 totalBytes, quint64 doneBytes,
                                const QString &topDirectory);
    /// The entries of a directory but "." and "..", in the order the system reads them; empty
    /// when it cannot be read.
    static QList<QFileInfo> listDirectory(const char *path);

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

    qint64 removeLink(const ParentDirectory &parent, const QString &path, const QFileInfo &info);
    qint64 removeEmptyFile(const ParentDirectory &parent, const QString &path);
    qint64 overwriteAndRemove(const ParentDirectory &parent, const QString &path);

    QStringList pathQueue; ///< guarded by queueMutex
    /// Nothing clears it: the thread lives until the process ends.
    std::atomic<bool> keepRunning{true};
    std::atomic<bool> stopRequested{false};
    QMutex queueMutex;
    Overwriter overwriter; ///< worker thread only
};
