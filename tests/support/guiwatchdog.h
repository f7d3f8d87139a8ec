// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Ends the program when the event loop of the thread that made it stands still for too
// long. A dialog serves events like any other loop, so it does not count. Time is
// counted in turns of the watching thread: a machine that stops for all of us is no
// fault of the program's.

#pragma once

#include <QSemaphore>
#include <QTimer>

#include <atomic>
#include <thread>

namespace testsupport
{

class GuiWatchdog
{
public:
    explicit GuiWatchdog(int milliseconds)
        : thread([this, milliseconds] { watch(milliseconds); })
    {
        QObject::connect(&heart, &QTimer::timeout, &heart, [this] { turnsWithoutBeat = 0; });
        heart.start(turn);
    }
    ~GuiWatchdog()
    {
        done.release();
        thread.join();
    }
    GuiWatchdog(const GuiWatchdog &) = delete;
    GuiWatchdog &operator=(const GuiWatchdog &) = delete;

    /// The longest standstill so far, in milliseconds.
    int longest() const { return mostTurns * turn; }

private:
    static constexpr int turn = 10; // milliseconds

    void watch(int milliseconds)
    {
        while (!done.tryAcquire(1, turn)) {
            const int turns = ++turnsWithoutBeat;
            if (turns > mostTurns)
                mostTurns = turns;
            if (turns * turn > milliseconds)
                qFatal("the window has not moved for %d milliseconds", turns * turn);
        }
    }

    QTimer heart;
    std::atomic<int> turnsWithoutBeat{0};
    std::atomic<int> mostTurns{0};
    QSemaphore done;
    std::thread thread;
};

} // namespace testsupport
