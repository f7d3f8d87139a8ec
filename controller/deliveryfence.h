// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Keeps the window's table in step with the job list, which two threads change.
// What the controller thread emits reaches the window through the event queue,
// what the controller's slots emit in the GUI thread reaches it at once and
// would overtake it: a row number would then name another row. So the
// controller thread brackets a change and the signals that tell of it with an
// Emission, and a slot in the GUI thread first calls deliverPending().
// Lives in the GUI thread; owned by the controller.

#pragma once

#include <QMutex>
#include <QObject>
#include <QWaitCondition>

#include <atomic>

class DeliveryFence : public QObject
{
    Q_OBJECT

public:
    explicit DeliveryFence(QObject *parent = nullptr);

    /// Brackets a change of the job list and its signals; opened before the change. Whoever
    /// holds one must not wait for a lock that the GUI thread may hold.
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

    /// True when every Emission is closed and its signals have reached the window. Any thread.
    bool isClear() const { return undelivered == 0; }
    /// GUI thread: delivers what is on its way to the GUI thread's objects until isClear().
    void deliverPending();
    /// Any other thread: returns when the GUI thread has delivered everything.
    void waitUntilDelivered();

signals:
    /// Follows the signals of one Emission through the event queue.
    void passed();

private:
    void notePassed();

    std::atomic<int> undelivered{0};
    QMutex mutex; ///< guards the wait for undelivered to reach 0
    QWaitCondition cleared;
};
