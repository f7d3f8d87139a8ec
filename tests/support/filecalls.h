// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Stands between the program and the C library: every call about a file or folder
// that the program, Qt included, makes comes by here, and a test may look on, act
// right before it, or let it fail. A test program takes this in by naming
// itself in watch_file_calls() (tests/filecalls.cmake).

#pragma once

#include <functional>

namespace testsupport
{

enum class FileCall {
    Open,
    Read,
    Write,
    WriteOut,
    Close,
    Look,
    Remove,
    RemoveFolder,
    OpenFolder,
    ReadFolder
};

/// What becomes of a call: it is done, fails with an error number, or does half of its work.
struct CallFate {
    int error = 0;
    bool half = false;
};

/// As long as it exists @p watch is asked about every call, in the thread that makes it, one call
/// at a time; what it calls itself passes unseen. One at a time, made and ended by the test's
/// thread.
class FileCallWatch
{
public:
    using Watch = std::function<CallFate(FileCall)>;

    explicit FileCallWatch(Watch watch);
    ~FileCallWatch();
    FileCallWatch(const FileCallWatch &) = delete;
    FileCallWatch &operator=(const FileCallWatch &) = delete;
};

} // namespace testsupport
