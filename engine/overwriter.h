// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Overwrites open files one after the other, removes their names and has the new bytes
// written to the disk. Owned by FileCrusher; worker thread only.

#pragma once

#include "engine/blockfiller.h"
#include "engine/fileat.h"
#include "engine/pendingwrites.h"

#include <QByteArray>

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

    /// Fills @p buffer with the @p count bytes of the current second.
    void fillRandom(char *buffer, std::size_t count);

    /// Writes @p size bytes, as blocks of 4096 and one tail, from the start of @p stream. A write
    /// that fails is not noticed: whoever chose the file wants it gone.
    void overwrite(std::FILE *stream, quint64 size, const BlockWritten &blockWritten);

    /// Closes @p file, removes @p name from the open folder @p directory, and has the @p size bytes
    /// that were overwritten written to the disk, also when the name stays. False when it stays.
    bool closeAndRemove(OpenFile file, int directory, const QByteArray &name, quint64 size);

    /// Returns when all removed files are on the disk.
    void waitForDisk() { pendingWrites.waitForAll(); }

private:
    Descriptor duplicate(std::FILE *stream);

    BlockFiller filler;
    PendingWrites pendingWrites;
    /// Of the one file that is being overwritten.
    std::array<char, streamBufferSize> streamBuffer = {};
};
