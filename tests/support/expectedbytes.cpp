// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "expectedbytes.h"

#include <QByteArrayList>

#include <algorithm>
#include <cstdlib>

namespace testsupport
{

namespace
{
constexpr int blockSize = 4096;
}

// Each block starts the sequence of the current second anew and takes it from
// its last byte to its first.
QByteArray expectedBytes(int size, std::time_t second)
{
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

bool wasOverwritten(const QByteArray &found, std::time_t first, std::time_t last)
{
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
