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
    /// How the report that waits, or the one before it, fares.
    enum State { Arrived, WorkerAsleep, Handled };

    /// One thread's way to wait for the other for a moment.
    class LookOut
    {
    public:
        template <class Condition>
        bool sees(const Condition &condition);

    private:
        int toLeaveOut = 0;
    };

    bool runOne();
    bool nextComes();

    std::atomic<const std::function<void()> *> waiting{nullptr};
    std::atomic<State> state{Handled};
    std::atomic<bool> lookingOut{false}; ///< the GUI thread needs no event to see the next report
    LookOut workersLookOut;              ///< worker thread only
    LookOut windowsLookOut;              ///< GUI thread only
    QSemaphore handled;                  ///< released once for each report that finds WorkerAsleep
};
