// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Makes the bytes that files are overwritten with. The bytes of a second are
// always the same: the C library's pseudo-random sequence seeded with that
// second, laid down from the last byte of the buffer to its first. So a block is
// generated once a second and copied from then on, which keeps overwriting as
// fast as the disk. Used by one thread at a time; owned by the worker.

#pragma once

#include <array>
#include <cstddef>
#include <ctime>

class BlockFiller final
{
public:
    /// Bytes that are kept from one fill to the next.
    static constexpr std::size_t blockSize = 4096;

    /// Fills @p buffer with the @p count bytes of @p second.
    void fill(char *buffer, std::size_t count, std::time_t second);

private:
    static void generate(char *buffer, std::size_t count, std::time_t second);

    std::array<char, blockSize> block = {};
    std::time_t blockSecond = 0;
    bool blockValid = false;
};
