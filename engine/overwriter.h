// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Overwrites open files, one after the other, and sees to it that the new bytes
// reach the disk. Worker thread only; owned by the worker.

#pragma once

#include "engine/blockfiller.h"
#include "engine/fileat.h"
#include "engine/pendingwrites.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <functional>

class Overwriter final
{
public:
    /// Called after each whole block, with the number of whole blocks and this one's index.
    using BlockWritten = std::function<void(quint64 blocks, quint64 index)>;

    /// Bytes that go to the kernel in one call.
    static constexpr std::size_t streamBufferSize = 32 * std::size_t{1024};

    /// Fills @p buffer with the @p count bytes (at most 4096) of the current second.
    void fillRandom(char *buffer, std::size_t count);

    /// Writes @p size bytes, as blocks of 4096 and one tail, from the start of @p stream. A write
    /// that fails is not noticed: whoever chose the file wants it gone.
    void overwrite(std::FILE *stream, quint64 size, const BlockWritten &blockWritten);

    /// Closes @p file and returns another descriptor of it, which keeps it alive when its name
    /// goes. Not open for an empty file, which has no bytes to write.
    Descriptor close(OpenFile file);

    /// Has all @p size bytes of @p file written to the disk; when its name is gone, or has turned
    /// out to stay. A file that is not open is passed over.
    void writeOut(Descriptor file, quint64 size);

    /// Returns when all files given to writeOut() are on the disk.
    void waitForDisk() { pendingWrites.waitForAll(); }

private:
    BlockFiller filler;
    PendingWrites pendingWrites;
    /// Of the one file that is being overwritten.
    std::array<char, streamBufferSize> streamBuffer = {};
};
