// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Sees to it that what a file was overwritten with reaches the disk. Written bytes
// stay in the kernel's memory at first, and the kernel drops them unwritten when the
// last name and the last descriptor of the file are gone. So a removed file is kept
// open here until sync_file_range has written it, many at a time, as waiting for each
// alone takes twice as long. A write that fails is not noticed. Worker thread only.

#pragma once

#include "engine/descriptor.h"

#include <QtGlobal>

#include <deque>

#include <sys/types.h>

class PendingWrites final
{
public:
    /// At most this many files and bytes are kept; more of them save no time.
    static constexpr std::size_t maxFiles = 64;
    static constexpr quint64 maxBytes = 16 * quint64{1024} * 1024;

    /// Starts writing all of @p file, which holds @p size bytes. Waits for older files when there
    /// are too many.
    void add(Descriptor file, quint64 size);
    /// Returns when every file is written, with the drive's own cache, and lets go of them.
    void waitForAll();

private:
    void waitForOldest();

    struct File {
        Descriptor descriptor;
        quint64 size;
    };
    std::deque<File> files; ///< oldest first
    quint64 bytes = 0;      ///< of all files
};

/// Has a large file written to the disk while it is being overwritten, one part behind the other.
/// Without it gigabytes would gather in memory, and a wait of minutes follow the last percent.
class WriteWindow final
{
public:
    static constexpr off_t windowSize = 8 * off_t{1024} * 1024;

    explicit WriteWindow(int overwrittenFile)
        : file(overwrittenFile)
    {
    }
    /// To be told how many bytes of the file are overwritten so far.
    void advanceTo(quint64 bytes);

private:
    int file;
    off_t started = 0; ///< bytes whose writing was started
};
