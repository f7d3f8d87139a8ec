// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "engine/pendingwrites.h"

#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr off_t toTheEnd = 0; // as a length

void startWriting(int file, off_t offset, off_t length)
{
    static_cast<void>(::sync_file_range(file, offset, length, SYNC_FILE_RANGE_WRITE));
}

/// False where the file system or the kernel does not know this call, or a write has failed.
bool waitForWriting(int file, off_t offset, off_t length)
{
    return ::sync_file_range(file, offset, length,
                             SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE
                                 | SYNC_FILE_RANGE_WAIT_AFTER)
           == 0;
}

} // namespace

void PendingWrites::add(Descriptor file, quint64 size)
{
    startWriting(file.get(), 0, toTheEnd);
    while (!files.empty() && (files.size() >= maxFiles || bytes + size > maxBytes))
        waitForOldest();
    files.push_back(File{std::move(file), size});
    bytes += size;
}

void PendingWrites::waitForOldest()
{
    const File oldest = std::move(files.front());
    files.pop_front();
    bytes -= oldest.size;
    if (!waitForWriting(oldest.descriptor.get(), 0, toTheEnd))
        ::fdatasync(oldest.descriptor.get());
}

void PendingWrites::waitForAll()
{
    while (files.size() > 1)
        waitForOldest();
    if (files.empty())
        return;
    // sync_file_range leaves what the drive itself still holds; one fdatasync has it written too.
    ::fdatasync(files.front().descriptor.get());
    files.clear();
    bytes = 0;
}

void WriteWindow::advanceTo(quint64 overwritten)
{
    const auto end = static_cast<off_t>(overwritten);
    if (end - started < windowSize)
        return;
    startWriting(file, started, windowSize);
    if (started >= windowSize)
        waitForWriting(file, started - windowSize, windowSize);
    started += windowSize;
}
