// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "hostileneighbour.h"

#include <utility>

#include <cstdio>
#include <fcntl.h>

namespace testsupport
{

bool exchangeNames(const QByteArray &one, const QByteArray &other)
{
    return ::renameat2(AT_FDCWD, one.constData(), AT_FDCWD, other.constData(), RENAME_EXCHANGE)
           == 0;
}

HostileNeighbour::HostileNeighbour(Mischief mischief)
    : attempt(std::move(mischief))
    , thread([this] { work(); })
{
}

HostileNeighbour::~HostileNeighbour()
{
    ended = true;
    thread.join();
}

void HostileNeighbour::during(const std::function<void()> &work)
{
    // Both begin at the same moment, and neither is kept waiting by a lock.
    wanted = true;
    while (!busy)
        std::this_thread::yield();
    work();
    wanted = false;
    while (busy)
        std::this_thread::yield();
}

void HostileNeighbour::work()
{
    for (int number = 0; !ended; ++number) {
        busy = wanted.load();
        if (!busy)
            std::this_thread::yield();
        else if (attempt(number))
            ++succeeded;
    }
}

} // namespace testsupport
