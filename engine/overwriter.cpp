// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "engine/overwriter.h"

#include "engine/writewindow.h"

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
    // NOLINTNEXTLINE(cert-err33-c): a regular file can be sought in
    static_cast<void>(std::fseek(stream, 0, SEEK_SET));
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

bool Overwriter::closeAndRemove(OpenFile file, int directory, const QByteArray &name, quint64 size)
{
    // An empty file has nothing to write out.
    Descriptor overwritten = size > 0 ? duplicate(file.stream.get()) : Descriptor();
    file.stream.reset();
    const bool removed = unlinkAt(directory, name);
    // Without a second descriptor nothing can be written out; not reported, like a failed write.
    if (overwritten.isOpen())
        pendingWrites.add(std::move(overwritten), file.identity.device, size);
    return removed;
}

/// Another descriptor of the file, which keeps it alive when its name goes.
Descriptor Overwriter::duplicate(std::FILE *stream)
{
    const int file = ::fileno(stream);
    Descriptor second(::fcntl(file, F_DUPFD_CLOEXEC, 0));
    if (!second.isOpen()) {
        // EMFILE, perhaps because of the files held here: close them and try again.
        waitForDisk();
        second = Descriptor(::fcntl(file, F_DUPFD_CLOEXEC, 0));
    }
    return second;
}
