// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "engine/pendingwrites.h"

#include "engine/writewindow.h"

#include <algorithm>
#include <utility>

#include <linux/magic.h>
#include <sys/resource.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace
{

constexpr off_t toTheEnd = 0; // as a length

// Those that linux/magic.h does not name.
constexpr quint32 xfsMagic = 0x58465342;
constexpr quint32 exfatMagic = 0x2011BAB0;
constexpr quint32 ntfsMagic = 0x7366746E;

enum class WriteOut { InRanges, Whole, None };

/// How files of this file system are written out. Those on a disk of their own are known by name:
/// overlays, FUSE and network file systems answer sync_file_range with success and write nothing.
WriteOut writeOutOf(int file)
{
    struct statfs status = {};
    if (::fstatfs(file, &status) != 0)
        return WriteOut::Whole;
    switch (static_cast<quint32>(status.f_type)) {
    case EXT4_SUPER_MAGIC: // of ext2 and ext3 as well
    case xfsMagic:
    case BTRFS_SUPER_MAGIC:
    case F2FS_SUPER_MAGIC:
    case MSDOS_SUPER_MAGIC:
    case exfatMagic:
    case ntfsMagic:
        return WriteOut::InRanges;
    case TMPFS_MAGIC:
    case RAMFS_MAGIC:
        return WriteOut::None;
    default:
        return WriteOut::Whole;
    }
}

/// A small part of what the process may have open: others need descriptors too.
std::size_t affordableFiles()
{
    constexpr rlim_t share = 8;
    struct rlimit limit = {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return 1;
    return std::clamp(static_cast<std::size_t>(limit.rlim_cur / share), std::size_t{1},
                      PendingWrites::maxFiles);
}

} // namespace

PendingWrites::PendingWrites()
    : allowedFiles(affordableFiles())
{
}

void PendingWrites::add(Descriptor file, dev_t device, quint64 size)
{
    const WriteOut writeOut = writeOutOf(file.get());
    if (writeOut == WriteOut::None)
        return;
    const bool inRanges = writeOut == WriteOut::InRanges;
    if (inRanges)
        startWriting(file.get(), 0, toTheEnd);
    // Another file system may lie on another drive, so this one's cache is emptied first.
    if (!files.empty() && files.back().device != device)
        waitForAll();
    while (!files.empty() && (files.size() >= allowedFiles || bytes + size > maxBytes))
        waitForOldest();
    files.push_back(File{std::move(file), device, size, inRanges});
    bytes += size;
}

void PendingWrites::waitForOldest()
{
    const File oldest = std::move(files.front());
    files.pop_front();
    bytes -= oldest.size;
    if (!oldest.inRanges || !waitForWriting(oldest.descriptor.get(), 0, toTheEnd))
        ::fdatasync(oldest.descriptor.get());
}

void PendingWrites::waitForAll()
{
    while (files.size() > 1)
        waitForOldest();
    if (files.empty())
        return;
    ::fdatasync(files.front().descriptor.get());
    files.clear();
    bytes = 0;
}
