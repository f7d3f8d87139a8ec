// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Controller and worker that hardly pause, for tests of thousands of requests. Compiled
// into the test program, this takes the place of Qt's sleep, which both end each pass with.

#include <QThread>

#include <unistd.h>

void QThread::msleep(unsigned long)
{
    constexpr useconds_t shortPause = 50;
    ::usleep(shortPause);
}
