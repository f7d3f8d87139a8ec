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

struct Pauses {
    std::mutex mutex; ///< guards the rest
    std::condition_variable released;
    std::map<const QThread *, int> counts;
    const QThread *held = nullptr;
    bool heldStands = false;
};

/// Never ended: threads of the program go on until the process is gone.
Pauses &pauses()
{
    static auto *const theOnes = new Pauses;
    return *theOnes;
}

} // namespace

void QThread::msleep(unsigned long)
{
    const QThread *const thread = QThread::currentThread();
    {
        std::unique_lock<std::mutex> lock(pauses().mutex);
        ++pauses().counts[thread];
        if (pauses().held == thread) {
            pauses().heldStands = true;
            pauses().released.wait(lock, [thread] { return pauses().held != thread; });
        }
    }
    ::usleep(shortPause);
}

namespace testsupport
{

int pausesOf(const QThread *thread)
{
    const std::lock_guard<std::mutex> lock(pauses().mutex);
    return pauses().counts[thread];
}

HeldThread::HeldThread(const QThread *thread)
{
    const std::lock_guard<std::mutex> lock(pauses().mutex);
    pauses().held = thread;
    pauses().heldStands = false;
}

HeldThread::~HeldThread()
{
    const std::lock_guard<std::mutex> lock(pauses().mutex);
    pauses().held = nullptr;
    pauses().released.notify_all();
}

bool HeldThread::stands() const
{
    const std::lock_guard<std::mutex> lock(pauses().mutex);
    return pauses().heldStands;
}

} // namespace testsupport
