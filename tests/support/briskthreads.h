// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Controller and worker that hardly pause, for tests of thousands of requests: at
// their own pace of 10 and 40 ms few would fit in. briskthreads.cpp, compiled into the
// test program, takes the place of the one sleep of Qt's that both use.

#pragma once

class QThread;

namespace testsupport
{

/// How often @p thread has paused: a controller or worker does at the end of each pass. Any thread.
int pausesOf(const QThread *thread);

/// As long as it exists @p thread goes no further than its next pause. One at a time.
class HeldThread
{
public:
    explicit HeldThread(const QThread *thread);
    ~HeldThread();
    HeldThread(const HeldThread &) = delete;
    HeldThread &operator=(const HeldThread &) = delete;

    /// True once the thread has come there.
    bool stands() const;
};

} // namespace testsupport
