// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "engine/overwriter.h"

#include <ctime>
#include <utility>

#include <fcntl.h>

namespace
{

constexpr int blockShift = 12;
constexpr quint64 tailMask = 0xFFF;

using Block = std::array<char, BlockFiller::blockSize>;

void writeBytes(std::FILE *stream, const Block &block, std::size_t count)
{
    // NOLINTNEXTLINE(bugprone-unused-return-value, cert-err33-c): goes unnoticed
    static_cast<void>(std::fwrite(block.data(), 1, count, stream));
}

} // namespace

void Overwriter::fillRandom(char *buffer, std::size_t count)
{
    filler.fill(buffer, count, std::time(nullptr));
}

void Overwriter::overwrite(std::FILE *stream, quint64 size, const BlockWritten &blockWritten)
{
    // The stream gathers blocks for one call to the kernel; a call for each takes four times as
    // long. NOLINTNEXTLINE(cert-err33-c): without the buffer it is only slower
    static_cast<void>(std::setvbuf(stream, streamBuffer.data(), _IOFBF, streamBuffer.size()));
    Block block;
    WriteWindow window(::fileno(stream));
    const quint64 blocks = size >> blockShift;
    for (quint64 index = 0; index < blocks; ++index) {
        fillRandom(block.data(), block.size());
        writeBytes(stream, block, block.size());
        window.advanceTo((index + 1) << blockShift);
        blockWritten(blocks, index);
    }
    const auto tail = static_cast<std::size_t>(size & tailMask);
    fillRandom(block.data(), tail);
    writeBytes(stream, block, tail);
}

Descriptor Overwriter::close(OpenFile file)
{
    if (file.size <= 0)
        return Descriptor();
    const int stream = ::fileno(file.stream.get());
    Descriptor second(::fcntl(stream, F_DUPFD_CLOEXEC, 0));
    if (!second.isOpen()) {
        // Out of descriptors, perhaps for the files that are kept open here.
        waitForDisk();
        second = Descriptor(::fcntl(stream, F_DUPFD_CLOEXEC, 0));
    }
    return second;
}

void Overwriter::writeOut(Descriptor file, quint64 size)
{
    // A file that could not be kept open is as unnoticed as a failed write.
    if (file.isOpen())
        pendingWrites.add(std::move(file), size);
}
