// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "briskthreads.h"

#include <QThread>

#include <condition_variable>
#include <map>
#include <mutex>

#include <unistd.h>

namespace
{

constexpr useconds_t shortPause = 50;

std::mutex mutex;
std::condition_variable released;
std::map<const QThread *, int> pauses; ///< guarded by mutex
const QThread *held = nullptr;         ///< guarded by mutex
bool heldStands = false;               ///< guarded by mutex

} // namespace

void QThread::msleep(unsigned long)
{
    const QThread *const thread = QThread::currentThread();
    {
        std::unique_lock<std::mutex> lock(mutex);
        ++pauses[thread];
        if (held == thread) {
            heldStands = true;
            released.wait(lock, [thread] { return held != thread; });
        }
    }
    ::usleep(shortPause);
}

namespace testsupport
{

int pausesOf(const QThread *thread)
{
    const std::lock_guard<std::mutex> lock(mutex);
    return pauses[thread];
}

HeldThread::HeldThread(const QThread *thread)
{
    const std::lock_guard<std::mutex> lock(mutex);
    held = thread;
    heldStands = false;
}

HeldThread::~HeldThread()
{
    const std::lock_guard<std::mutex> lock(mutex);
    held = nullptr;
    released.notify_all();
}

bool HeldThread::stands() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return heldStands;
}

} // namespace testsupport
