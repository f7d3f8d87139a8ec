// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Overwriting and removing one file. A file is written once, in place, as whole
// blocks of 4096 bytes and one tail, then its name is removed. A write that
// fails is not noticed: the file is removed all the same, since whoever chose
// it wants it gone.

#include "engine/filecrusher.h"
#include "engine/helddirectory.h"
#include "engine/shredprogress.h"

#include <array>
#include <cstdio>
#include <ctime>

#include <sys/stat.h>

namespace
{

constexpr int blockShift = 12;
constexpr quint64 tailMask = 0xFFF;

/// Progress goes out in steps: each report holds the worker until the GUI has drawn it.
constexpr int loneFileStep = 1;
constexpr int treeStep = 5;
/// The end of a file is told by its verdict, so its progress stops short of 100.
constexpr int lastPercent = 99;

using Block = std::array<char, BlockFiller::blockSize>;

quint64 wholeBlocks(quint64 size)
{
    return size >> blockShift;
}

std::size_t tailBytes(quint64 size)
{
    return static_cast<std::size_t>(size & tailMask);
}

void writeBytes(std::FILE *stream, const Block &block, std::size_t count)
{
    // NOLINTNEXTLINE(bugprone-unused-return-value, cert-err33-c): see the head of this file
    static_cast<void>(std::fwrite(block.data(), 1, count, stream));
}

/// The stream gathers blocks until it has enough for a call to the kernel: a call for every block
/// would take four times as long.
void giveBuffer(std::FILE *stream, std::array<char, FileCrusher::streamBufferSize> &memory)
{
    // NOLINTNEXTLINE(cert-err33-c): a stream without it is only slower
    static_cast<void>(std::setvbuf(stream, memory.data(), _IOFBF, memory.size()));
}

void closeStream(std::FILE *stream)
{
    // NOLINTNEXTLINE(cert-err33-c): as with a failed write
    static_cast<void>(std::fclose(stream));
}

/// What a path leads to.
struct NamedFile {
    qint64 size = -1; ///< bytes; -1 when it leads nowhere
    FileIdentity identity;
};

NamedFile fileNamed(const char *path)
{
    struct stat status = {};
    if (::stat(path, &status) != 0)
        return NamedFile();
    return NamedFile{status.st_size, FileIdentity{status.st_dev, status.st_ino}};
}

} // namespace

void FileCrusher::fillRandom(char *buffer, std::size_t count)
{
    filler.fill(buffer, count, std::time(nullptr));
}

qint64 FileCrusher::statSize(const char *path)
{
    return path == nullptr ? -1 : fileNamed(path).size;
}

qint64 FileCrusher::shredFile(const char *path)
{
    if (path == nullptr)
        return CrushResult::NullPath;
    const QString name = QString::fromUtf8(path);
    const QFileInfo info(name);
    const HeldPlace place{QByteArray(path)};
    if (info.isSymLink()) {
        if (lookAt(place.directory(), place.name()).kind != EntryKind::Link
            || !removeNameIn(place.directory(), place.name()))
            return CrushResult::LinkFailed;
        emit addToHistory(name);
        // Asked only now that the link is gone: 0, so that no size of a target, 255 bytes say,
        // is taken for a verdict.
        return info.size();
    }
    if (!info.exists())
        return CrushResult::Success;
    if (info.isDir())
        return CrushResult::WrongKind;
    if (info.size() == 0) {
        if (!removeNameIn(place.directory(), place.name()))
            return CrushResult::RemoveFailed;
        emit addToHistory(name);
        return CrushResult::Success;
    }

    const OpenFile file = openForOverwriting(place.directory(), place.name());
    if (!file.isOpen())
        return CrushResult::OpenFailed;
    // A file whose path tells an unusable size keeps its stream open, on purpose: nothing that was
    // found in this state is touched again, not even by a close.
    const NamedFile named = fileNamed(path);
    const qint64 size = named.size;
    if (size == -1)
        return CrushResult::SizeUnusable;
    if (size == 0)
        return CrushResult::SizeVanished;
    if (size < 0)
        return CrushResult::SizeNegative;
    if (!(named.identity == file.identity)) {
        // The path leads to another file by now, whose size says nothing about this one.
        closeStream(file.stream);
        return CrushResult::SizeUnusable;
    }

    overwriteLoneFile(file.stream, static_cast<quint64>(size), name);
    closeStream(file.stream);
    if (!removeNameIn(place.directory(), place.name()))
        return CrushResult::RemoveFailed;
    emit addToHistory(name);
    return size;
}

void FileCrusher::overwriteLoneFile(std::FILE *stream, quint64 size, const QString &path)
{
    Block buffer;
    const quint64 blocks = wholeBlocks(size);
    int last = 0;
    giveBuffer(stream, streamBuffer);
    for (quint64 index = 0; index < blocks; ++index) {
        fillRandom(buffer.data(), buffer.size());
        writeBytes(stream, buffer, buffer.size());
        const int percent = shredprogress::loneFilePercent(blocks, index);
        if (percent - last > loneFileStep) {
            emit finishPercent(path, percent);
            last = percent;
        }
    }
    fillRandom(buffer.data(), tailBytes(size));
    writeBytes(stream, buffer, tailBytes(size));
    emit finishPercent(path, lastPercent);
}

qint64 FileCrusher::shredFileInDirectory(const char *path, quint64 totalBytes, quint64 doneBytes,
                                         const QString &topDirectory)
{
    if (path == nullptr)
        return CrushResult::NullPath;
    if (topDirectory.isEmpty())
        return CrushResult::WrongKind;
    const HeldPlace place{QByteArray(path)};
    if (lookAt(place.directory(), place.name()).kind == EntryKind::Missing)
        return CrushResult::Success;
    return shredTreeFile(FilePlace{place.directory(), place.name(), QString::fromUtf8(path)},
                         totalBytes, doneBytes, topDirectory);
}

qint64 FileCrusher::shredTreeFile(const FilePlace &place, quint64 totalBytes, quint64 doneBytes,
                                  const QString &topDirectory)
{
    if (totalBytes == 0) {
        if (!removeNameIn(place.directory, place.name))
            return CrushResult::RemoveFailed;
        emit addToHistory(QFileInfo(place.path).absoluteFilePath());
        return CrushResult::Success;
    }

    const OpenFile file = openForOverwriting(place.directory, place.name);
    if (!file.isOpen())
        return CrushResult::OpenFailed;
    return shredOpenFile(file, place, totalBytes, doneBytes, topDirectory);
}

/// Closes @p file in any case.
qint64 FileCrusher::shredOpenFile(const OpenFile &file, const FilePlace &place, quint64 totalBytes,
                                  quint64 doneBytes, const QString &topDirectory)
{
    const NamedFile named = fileNamed(place.path.toUtf8().constData());
    const qint64 size = named.size;
    if (size < 0 || !(named.identity == file.identity)) {
        // Closed, unlike a lone file: when a folder above is renamed during the walk, this is the
        // way of every file of the tree, and open ones would use up the descriptors.
        closeStream(file.stream);
        return CrushResult::SizeUnusable;
    }

    overwriteFileInTree(file.stream, static_cast<quint64>(size), totalBytes, doneBytes,
                        topDirectory);
    closeStream(file.stream);
    if (!removeNameIn(place.directory, place.name))
        return CrushResult::RemoveFailed;
    const quint64 done = doneBytes + static_cast<quint64>(size);
    emit finishPercent(topDirectory,
                       static_cast<int>(shredprogress::treePercent(done, totalBytes)));
    emit addToHistory(place.path);
    return size;
}

void FileCrusher::overwriteFileInTree(std::FILE *stream, quint64 size, quint64 totalBytes,
                                      quint64 doneBytes, const QString &topDirectory)
{
    Block buffer;
    const quint64 blocks = wholeBlocks(size);
    quint64 last = shredprogress::treePercent(doneBytes, totalBytes);
    giveBuffer(stream, streamBuffer);
    for (quint64 index = 0; index < blocks; ++index) {
        fillRandom(buffer.data(), buffer.size());
        writeBytes(stream, buffer, buffer.size());
        // Counts down while the file is written, so it rises above the last report only at the
        // start of a file that is large within its tree.
        const quint64 percent =
            shredprogress::treePercentInFile(doneBytes, totalBytes, blocks, index);
        if (shredprogress::isStepAbove(percent, last, treeStep)) {
            emit finishPercent(topDirectory, static_cast<int>(percent));
            last = percent;
        }
    }
    fillRandom(buffer.data(), tailBytes(size));
    writeBytes(stream, buffer, tailBytes(size));
}
