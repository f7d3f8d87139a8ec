// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Stands between the program, Qt included, and the C library: a test may look on at the calls
// about files, act right before one, let it fail, or change what it tells; and it may set the
// clock and shorten the pauses. Without a hook every call passes. A test program takes this in
// by intercept_system_calls() (tests/intercept.cmake).

#pragma once

#include <functional>

namespace testsupport
{

enum class CallKind {
    Open,
    Read,
    Write,
    WriteOut, ///< to the disk
    Close,
    Look,
    Remove,
    RemoveFolder,
    OpenFolder,
    ReadFolder,
    Lock
};

/// A call about a file or folder; what the call does not have stays as it is here.
struct SystemCall {
    CallKind kind = CallKind::Look;
    const char *name = "";      ///< "stat" for stat64, __xstat and the like too
    int file = -1;              ///< the file, or the folder that @c path starts from
    const char *path = nullptr; ///< as it was given
    int flags = 0;              ///< or the command of fcntl
    long long offset = 0;
    long long length = 0; ///< bytes

    /// True for the call @p other by any of its names.
    bool is(const char *other) const;
};

/// What becomes of a call: it is done, fails with an error number, does half of its work, or
/// answers that it is done without having done anything.
struct CallFate {
    int error = 0;
    bool half = false;
    bool pretended = false;
};

/// As long as it exists its functions are asked about every call, in the thread that makes it, one
/// call at a time; what they call themselves passes unseen. Made and ended by the test's thread; of
/// several the one made last counts.
class CallHook
{
public:
    /// Called before; decides what becomes of the call.
    using Before = std::function<CallFate(const SystemCall &)>;
    /// Called after a success with what the call has filled in or returned: struct stat,
    /// struct statfs, dirent; may change it.
    using After = std::function<void(const SystemCall &, void *)>;

    explicit CallHook(Before before, After after = nullptr);
    ~CallHook();
    CallHook(const CallHook &) = delete;
    CallHook &operator=(const CallHook &) = delete;
};

/// As long as it exists time() tells what @p clock tells. One at a time; the test's thread.
class ClockHook
{
public:
    explicit ClockHook(std::function<long long()> clock);
    ~ClockHook();
    ClockHook(const ClockHook &) = delete;
    ClockHook &operator=(const ClockHook &) = delete;
};

/// As long as it exists every sleep, QThread::msleep() and the like, lasts 50 microseconds: a test
/// of thousands of requests would otherwise take minutes. One at a time; the test's thread.
class ShortPauses
{
public:
    ShortPauses();
    ~ShortPauses();
    ShortPauses(const ShortPauses &) = delete;
    ShortPauses &operator=(const ShortPauses &) = delete;
};

} // namespace testsupport
