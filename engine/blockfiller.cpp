// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "engine/blockfiller.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

void BlockFiller::fill(char *buffer, std::size_t count, std::time_t second)
{
    if (count > blockSize)
        return generate(buffer, count, second);
    if (!blockValid || second != blockSecond) {
        generate(block.data(), blockSize, second);
        blockSecond = second;
        blockValid = true;
    }
    // Filling runs backwards from the last byte, so a shorter fill is the tail of the block.
    std::memcpy(buffer, block.data() + (blockSize - count), count);
}

void BlockFiller::generate(char *buffer, std::size_t count, std::time_t second)
{
    // The same sequence as srand() and rand(), from a state of our own: rand()'s
    // state belongs to the whole process, and whoever else draws from it in
    // between would change the bytes.
    constexpr std::size_t stateSize = 128;
    std::array<char, stateSize> state = {};
    random_data generator = {};
    initstate_r(static_cast<unsigned>(second), state.data(), state.size(), &generator);

    for (std::size_t left = count; left > 0; --left) {
        std::int32_t number = 0;
        random_r(&generator, &number);
        buffer[left - 1] = static_cast<char>(number & 0xFF);
    }
}
