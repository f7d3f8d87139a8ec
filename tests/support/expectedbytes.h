// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What an overwritten file has to hold, as a second hard link shows it.

#pragma once

#include <QByteArrayList>

#include <algorithm>
#include <cstdlib>
#include <ctime>

namespace testsupport
{

/// The bytes of a file of @p size that was overwritten within the second @p second: each block
/// starts the sequence of the second anew and takes it from its last byte to its first.
inline QByteArray expectedBytes(int size, std::time_t second)
{
    constexpr int blockSize = 4096;
    QByteArray bytes(size, '\0');
    for (int start = 0; start < size; start += blockSize) {
        // The weakest of generators, but the one whose sequence was promised.
        std::srand(static_cast<unsigned>(second)); // NOLINT(cert-msc32-c,cert-msc51-cpp)
        for (int i = std::min(start + blockSize, size) - 1; i >= start; --i) {
            const int next = std::rand(); // NOLINT(cert-msc30-c,cert-msc50-cpp,concurrency-*)
            bytes[i] = static_cast<char>(next & 0xff);
        }
    }
    return bytes;
}

/// True when every block of @p found was overwritten in some second from
/// @p first to @p last; a run may cross from one second into the next anywhere.
inline bool wasOverwritten(const QByteArray &found, std::time_t first, std::time_t last)
{
    constexpr int blockSize = 4096;
    QByteArrayList blocks;
    QByteArrayList tails;
    for (std::time_t second = first; second <= last; ++second) {
        blocks.append(expectedBytes(blockSize, second));
        tails.append(expectedBytes(found.size() % blockSize, second));
    }
    for (int done = 0; done < found.size(); done += blockSize) {
        const QByteArray piece = found.mid(done, blockSize);
        if (!(piece.size() == blockSize ? blocks : tails).contains(piece))
            return false;
    }
    return true;
}

} // namespace testsupport
