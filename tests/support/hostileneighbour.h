// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Somebody else who works in the same folders at the same time and swaps one name
// for another as fast as the machine can.

#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <functional>
#include <thread>

namespace testsupport
{

/// Exchanges two names in one step, as no other means can: neither is missing for a moment.
/// False when one of them is not there.
bool exchangeNames(const QByteArray &one, const QByteArray &other);

/// Owns the thread that does the mischief; lives in the test's thread.
class HostileNeighbour
{
public:
    /// One attempt; gets the number of the attempt and returns whether it succeeded.
    using Mischief = std::function<bool(int)>;

    explicit HostileNeighbour(Mischief mischief);
    ~HostileNeighbour();
    HostileNeighbour(const HostileNeighbour &) = delete;
    HostileNeighbour &operator=(const HostileNeighbour &) = delete;

    /// Runs @p work while the neighbour is at it; afterwards the neighbour rests.
    void during(const std::function<void()> &work);
    /// The attempts that succeeded so far.
    int successes() const { return succeeded; }

private:
    void work();

    Mischief attempt;
    std::atomic<bool> wanted{false};
    std::atomic<bool> busy{false};
    std::atomic<bool> ended{false};
    std::atomic<int> succeeded{0};
    std::thread thread; ///< last, since it uses the others at once
};

} // namespace testsupport
