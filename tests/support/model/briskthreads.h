// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Controller and worker that hardly pause, for tests of thousands of requests: at
// their own pace of 10 and 40 ms few would fit in. briskthreads.cpp, compiled into the
// test program, takes the place of the one sleep of Qt's that both use.

#pragma once

namespace testsupport
{

/// How often a worker has come to the end of a pass. Any thread.
int workerPasses();

} // namespace testsupport
