// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Orders the signals of the controller thread, which are queued, and of the controller's slots in
// the GUI thread, which are direct and would arrive earlier: before a slot reads the job list it
// calls deliverPending(), which delivers what was emitted within each Emission. Lives in the GUI
// thread; owned by the controller.

#pragma once

#include <QDeadlineTimer>
#include <QMutex>
#include <QObject>
#include <QWaitCondition>

#include <atomic>

class DeliveryFence : public QObject
{
    Q_OBJECT

public:
    explicit DeliveryFence(QObject *parent = nullptr);

    /// Exists from before a change of the job list until its signals are emitted. Meanwhile its
    /// thread must not wait for a lock that the GUI thread may hold, except for leaves.
    class Emission final
    {
    public:
        explicit Emission(DeliveryFence &fence);
        ~Emission();
        Emission(const Emission &) = delete;
        Emission &operator=(const Emission &) = delete;

    private:
        DeliveryFence &fence;
    };

    /// True when every Emission has ended and its signals are delivered. Any thread.
    bool isClear() const { return undelivered == 0; }
    /// GUI thread: delivers queued calls to the GUI thread's objects until isClear(), at most until
    /// @p deadline.
    void deliverPending(QDeadlineTimer deadline = QDeadlineTimer::Forever);
    /// Any other thread: returns when the GUI thread has delivered everything, or after longestWait
    /// if it serves no events.
    void waitUntilDelivered();

    static constexpr int longestWait = 1000; ///< milliseconds

signals:
    /// Queued behind the signals of one Emission.
    void emissionEnded();

private:
    void countDelivered();

    std::atomic<int> undelivered{0};
    QMutex mutex; ///< guards the wait for undelivered to reach 0
    QWaitCondition cleared;
};
