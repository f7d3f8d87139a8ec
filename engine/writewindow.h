// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Writes a large file to the disk while it is being overwritten: starts each 8 MiB when
// they are complete and waits for the 8 MiB before. Otherwise gigabytes would gather in
// memory, and a wait of minutes would follow the last percent. One for each file, on the
// stack of Overwriter::overwrite(); worker thread only.

#pragma once

#include <QtGlobal>

#include <sys/types.h>

class WriteWindow final
{
public:
    static constexpr off_t windowSize = 8 * off_t{1024} * 1024;

    explicit WriteWindow(int overwrittenFile)
        : file(overwrittenFile)
    {
    }
    /// To be called with the number of bytes overwritten so far. The stream may still hold the last
    /// of them; waiting for the window later writes those too.
    void advanceTo(quint64 overwrittenBytes);

private:
    int file;
    off_t started = 0; ///< bytes whose writing was started
};

/// Has the kernel start writing @p length bytes of @p file from @p offset, or to its end for 0.
void startWriting(int file, off_t offset, off_t length);
/// Waits until they are written. False where the kernel does not know the call or a write failed.
bool waitForWriting(int file, off_t offset, off_t length);
