// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Carries the worker's reports into the GUI thread, and the worker waits until
// each is handled, as over a blocking connection. A folder of small files brings
// one every few microseconds, though, and to put one thread to sleep and wake the
// other takes many times that. So both look out for each other a moment before
// they sleep. Lives in the GUI thread; owned by the controller.

#pragma once

#include <QObject>
#include <QSemaphore>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>

class WorkerReports : public QObject
{
    Q_OBJECT

public:
    explicit WorkerReports(QObject *parent = nullptr);

    /// Worker thread: returns when the GUI thread has run @p report.
    void deliver(const std::function<void()> &report);
    /// GUI thread: runs a report that has arrived and not been run yet.
    void runArrived();

    bool event(QEvent *event) override;

private:
    using Clock = std::chrono::steady_clock;

    static constexpr std::size_t cacheLine = 64; ///< bytes that processors pass to each other

    enum State {
        NoneAwaited, ///< no report is here, the GUI thread needs an event to see the next
        Awaited,     ///< no report is here, the GUI thread looks out for the next
        Arrived,     ///< a report is here or runs, the worker looks out for its end
        WorkerAsleep ///< the same, but the worker needs to be woken at its end
    };

    /// One thread's way to wait for the other for a moment.
    class LookOut
    {
    public:
        template <class Condition>
        bool sees(const Condition &condition);

    private:
        int toLeaveOut = 0;
        int leftOutNext = 1; ///< look-outs left out after the next one in vain
    };

    bool runOne(Clock::time_point turnEnd);
    void stopAwaiting();

    /// The only word that both threads write while the other looks at it: each such word is carried
    /// from one processor to the other, which is most of what a report costs.
    alignas(cacheLine) std::atomic<State> state{NoneAwaited};
    const std::function<void()> *next = nullptr; ///< the worker's until Arrived, then the GUI's
    alignas(cacheLine) LookOut workersLookOut;   ///< worker thread only
    alignas(cacheLine) LookOut windowsLookOut;   ///< GUI thread only
    bool running = false;                        ///< GUI thread only
    QSemaphore handled; ///< released once for each report that finds WorkerAsleep
};
