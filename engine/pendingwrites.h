// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Writes overwritten files to the disk after their removal. Written bytes stay in the
// kernel's memory at first, and the kernel drops them when the last name and the last
// descriptor of the file are gone. So a removed file is kept open here until it is
// written, many at a time, as waiting for each alone takes twice as long. A write that
// fails is not noticed. Owned by Overwriter; worker thread only.

#pragma once

#include "engine/descriptor.h"

#include <QtGlobal>

#include <cstddef>
#include <deque>

#include <sys/types.h>

class PendingWrites final
{
public:
    /// At most this many files and bytes are kept; more of them save no time.
    static constexpr std::size_t maxFiles = 64;
    static constexpr quint64 maxBytes = 16 * quint64{1024} * 1024;

    PendingWrites();

    /// Starts writing all of @p file, which lies on @p device and holds @p size bytes. Waits for
    /// older files when there are too many.
    void add(Descriptor file, dev_t device, quint64 size);
    /// Waits for every file, then closes them; the last gets an fdatasync, which has the drive
    /// empty its cache too.
    void waitForAll();

private:
    struct File {
        Descriptor descriptor;
        dev_t device;
        quint64 size;
        bool inRanges; ///< sync_file_range writes it
    };

    void waitForOldest();

    std::size_t allowedFiles;
    std::deque<File> files; ///< oldest first
    quint64 bytes = 0;      ///< of all files
};
