// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Shredding one file, or removing one link, that was queued by itself.

#include "engine/fileat.h"
#include "engine/filecrusher.h"
#include "engine/shredprogress.h"
#include "engine/treeshredder.h"

#include <cerrno>
#include <utility>

#include <sys/stat.h>

namespace
{

/// The end of a file is told by its verdict, so its progress stops short of 100.
constexpr int lastPercent = 99;

/// What stat tells of a path.
struct NamedFile {
    qint64 size = -1; ///< bytes; -1 when stat fails
    FileIdentity identity;
};

NamedFile statPath(const char *path)
{
    struct stat status = {};
    if (::stat(path, &status) != 0)
        return NamedFile();
    return NamedFile{status.st_size, FileIdentity{status.st_dev, status.st_ino}};
}

} // namespace

void FileCrusher::fillRandom(char *buffer, std::size_t count)
{
    overwriter.fillRandom(buffer, count);
}

qint64 FileCrusher::statSize(const char *path)
{
    return path == nullptr ? -1 : statPath(path).size;
}

qint64 FileCrusher::shredFile(const char *path)
{
    if (path == nullptr)
        return CrushResult::NullPath;
    const QString name = QString::fromUtf8(path);
    const QFileInfo info(name);
    const ParentDirectory parent{QByteArray(path)};
    if (info.isSymLink())
        return removeLink(parent, name, info);
    if (!info.exists())
        return CrushResult::Success;
    if (info.isDir())
        return CrushResult::WrongKind;
    if (info.size() == 0)
        return removeEmptyFile(parent, name);
    return overwriteAndRemove(parent, name);
}

qint64 FileCrusher::removeLink(const ParentDirectory &parent, const QString &path,
                               const QFileInfo &info)
{
    if (statAt(parent.descriptor(), parent.name()).kind != EntryKind::Link
        || !unlinkAt(parent.descriptor(), parent.name()))
        return CrushResult::LinkFailed;
    emit addToHistory(path);
    // Asked only now that the link is gone: 0, so that no size of a target, 255 bytes say, is
    // taken for a verdict.
    return info.size();
}

qint64 FileCrusher::removeEmptyFile(const ParentDirectory &parent, const QString &path)
{
    if (!unlinkAt(parent.descriptor(), parent.name()))
        return CrushResult::RemoveFailed;
    emit addToHistory(path);
    return CrushResult::Success;
}

qint64 FileCrusher::overwriteAndRemove(const ParentDirectory &parent, const QString &path)
{
    OpenFile file = openFileAt(parent.descriptor(), parent.name());
    if (!file.isOpen())
        return CrushResult::OpenFailed;
    const NamedFile named = statPath(path.toUtf8().constData());
    if (named.size <= 0) {
        // The stream stays open on purpose: nothing that was found in this state is touched again,
        // not even by a close.
        static_cast<void>(file.stream.release());
        if (named.size == 0)
            return CrushResult::SizeVanished;
        return named.size == -1 ? CrushResult::SizeUnusable : CrushResult::SizeNegative;
    }
    // The path may lead to another file by now, whose size says nothing about this one.
    if (!(named.identity == file.identity))
        return CrushResult::SizeUnusable;

    int last = 0;
    overwriter.overwrite(file.stream.get(), static_cast<quint64>(named.size),
                         [&](quint64 blocks, quint64 index) {
                             const int percent = shredprogress::loneFilePercent(blocks, index);
                             if (!shredprogress::isStepAbove(static_cast<quint64>(percent),
                                                             static_cast<quint64>(last),
                                                             shredprogress::loneFileStep))
                                 return;
                             emit finishPercent(path, percent);
                             last = percent;
                         });
    emit finishPercent(path, lastPercent);
    const bool removed = overwriter.closeAndRemove(std::move(file), parent.descriptor(),
                                                   parent.name(), static_cast<quint64>(named.size));
    if (removed)
        emit addToHistory(path);
    overwriter.waitForDisk();
    return removed ? named.size : CrushResult::RemoveFailed;
}

qint64 FileCrusher::shredFileInDirectory(const char *path, quint64 totalBytes, quint64 doneBytes,
                                         const QString &topDirectory)
{
    if (path == nullptr)
        return CrushResult::NullPath;
    if (topDirectory.isEmpty())
        return CrushResult::WrongKind;
    const QString name = QString::fromUtf8(path);
    // By the whole path: behind a file's name a slash leads nowhere.
    if (!QFileInfo::exists(name))
        return CrushResult::Success;
    const ParentDirectory parent{QByteArray(path)};
    if (totalBytes == 0) {
        // As remove(3) does, a directory that is empty is removed too.
        if (!unlinkAt(parent.descriptor(), parent.name())
            && (errno != EISDIR || !removeDirectoryAt(parent.descriptor(), parent.name())))
            return CrushResult::RemoveFailed;
        emit addToHistory(QFileInfo(name).absoluteFilePath());
        return CrushResult::Success;
    }

    TreeShredder shredder(*this, overwriter, topDirectory, totalBytes, doneBytes);
    const qint64 result =
        shredder.shredFile(TreeShredder::Entry{parent.descriptor(), parent.name(), name});
    overwriter.waitForDisk();
    return result;
}
