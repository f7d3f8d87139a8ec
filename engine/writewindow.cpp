// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "engine/writewindow.h"

#include <fcntl.h>

void startWriting(int file, off_t offset, off_t length)
{
    static_cast<void>(::sync_file_range(file, offset, length, SYNC_FILE_RANGE_WRITE));
}

bool waitForWriting(int file, off_t offset, off_t length)
{
    constexpr unsigned flags =
        SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
    return ::sync_file_range(file, offset, length, flags) == 0;
}

void WriteWindow::advanceTo(quint64 overwrittenBytes)
{
    if (static_cast<off_t>(overwrittenBytes) - started < windowSize)
        return;
    startWriting(file, started, windowSize);
    // What could not be written is tried again when the whole file is written out.
    if (started >= windowSize)
        static_cast<void>(waitForWriting(file, started - windowSize, windowSize));
    started += windowSize;
}
