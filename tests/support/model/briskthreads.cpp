// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "briskthreads.h"

#include <QThread>

#include <atomic>

#include <unistd.h>

namespace
{

constexpr unsigned long workersPause = 40;
constexpr useconds_t shortPause = 50;

std::atomic<int> passes{0};

} // namespace

void QThread::msleep(unsigned long milliseconds)
{
    if (milliseconds == workersPause)
        ++passes;
    ::usleep(shortPause);
}

int testsupport::workerPasses()
{
    return passes;
}
