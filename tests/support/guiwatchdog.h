// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Watches the event loop of the thread that made it and aborts the program, which leaves
// the stacks of all threads in a core file, when that stands still for too long. A dialog
// serves events like any other loop, so it does not count. Nor does the time that the
// thread was ready to run and the machine had no processor for it.

#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QSemaphore>
#include <QTimer>

#include <atomic>
#include <thread>

#include <unistd.h>

namespace testsupport
{

class GuiWatchdog
{
public:
    /// Ends the program after a standstill of @p tooLong milliseconds.
    explicit GuiWatchdog(int tooLong)
        : statistics(QStringLiteral("/proc/self/task/%1/schedstat").arg(::gettid()))
        , thread([this, tooLong] { watch(tooLong); })
    {
        QObject::connect(&heart, &QTimer::timeout, &heart, [this] { beaten = true; });
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
    int longest() const { return most; }

private:
    static constexpr int turn = 10; // milliseconds

    void watch(int tooLong)
    {
        QElapsedTimer sinceBeat;
        sinceBeat.start();
        qint64 readyAtBeat = millisecondsReadyToRun();
        while (!done.tryAcquire(1, turn)) {
            if (beaten.exchange(false)) {
                sinceBeat.restart();
                readyAtBeat = millisecondsReadyToRun();
                continue;
            }
            const qint64 ready = millisecondsReadyToRun() - readyAtBeat;
            const auto still = static_cast<int>(sinceBeat.elapsed() - ready);
            most = qMax(most.load(), still);
            if (still > tooLong)
                qFatal("the window has not moved for %d milliseconds", still);
        }
    }

    /// In the watched thread's life, without a processor.
    qint64 millisecondsReadyToRun() const
    {
        constexpr int place = 1; // in schedstat
        constexpr qint64 nanosecondsInOne = 1000000;
        QFile file(statistics);
        if (!file.open(QIODevice::ReadOnly))
            return 0;
        return file.readAll().split(' ').value(place).toLongLong() / nanosecondsInOne;
    }

    const QString statistics; ///< the file in which the kernel counts for the watched thread
    QTimer heart;
    std::atomic<bool> beaten{false};
    std::atomic<int> most{0};
    QSemaphore done;
    std::thread thread; ///< last, as it uses all the others from its start
};

} // namespace testsupport
