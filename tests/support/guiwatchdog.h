// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Ends the program when the event loop of the thread that made it stands still for too
// long. A dialog serves events like any other loop, so it does not count. Nor does the time that
// the thread was ready to run and the machine had no processor for it.

#pragma once

#include <QByteArray>
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
    explicit GuiWatchdog(int milliseconds)
        : delays("/proc/self/task/" + QByteArray::number(::gettid()) + "/schedstat")
        , thread([this, milliseconds] { watch(milliseconds); })
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

    void watch(int milliseconds)
    {
        QElapsedTimer sinceBeat;
        sinceBeat.start();
        qint64 delayAtBeat = delay();
        while (!done.tryAcquire(1, turn)) {
            if (beaten.exchange(false)) {
                sinceBeat.restart();
                delayAtBeat = delay();
                continue;
            }
            const auto still = static_cast<int>(sinceBeat.elapsed() - (delay() - delayAtBeat));
            most = qMax(most.load(), still);
            if (still > milliseconds)
                qFatal("the window has not moved for %d milliseconds", still);
        }
    }

    /// Milliseconds that the watched thread has waited for a processor in its life.
    qint64 delay() const
    {
        constexpr qint64 nanosecondsInOne = 1000000;
        QFile file(QString::fromLatin1(delays));
        if (!file.open(QIODevice::ReadOnly))
            return 0;
        return file.readAll().split(' ').value(1).toLongLong() / nanosecondsInOne;
    }

    const QByteArray delays;
    QTimer heart;
    std::atomic<bool> beaten{false};
    std::atomic<int> most{0};
    QSemaphore done;
    std::thread thread; ///< last, as it uses all the others from its start
};

} // namespace testsupport
