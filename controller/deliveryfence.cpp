// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/deliveryfence.h"

#include <QCoreApplication>
#include <QMutexLocker>
#include <QThread>

DeliveryFence::DeliveryFence(QObject *parent)
    : QObject(parent)
{
    connect(this, &DeliveryFence::emissionEnded, this, &DeliveryFence::countDelivered,
            Qt::QueuedConnection);
}

DeliveryFence::Emission::Emission(DeliveryFence &owner)
    : fence(owner)
{
    ++fence.undelivered;
}

DeliveryFence::Emission::~Emission()
{
    // Events of one priority are delivered in the order posted, so this one arrives after every
    // signal of the Emission.
    emit fence.emissionEnded();
}

void DeliveryFence::deliverPending(QDeadlineTimer deadline)
{
    // Only MetaCall events are delivered, no input: no click is handled in between.
    // sendPostedEvents() ends at the events that were queued when it began, so what is emitted
    // after the last Emission stays queued.
    while (!isClear() && !deadline.hasExpired()) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
        QThread::yieldCurrentThread();
    }
}

void DeliveryFence::waitUntilDelivered()
{
    const QMutexLocker locker(&mutex);
    while (!isClear() && cleared.wait(&mutex, longestWait))
        continue;
}

void DeliveryFence::countDelivered()
{
    const QMutexLocker locker(&mutex);
    if (--undelivered == 0)
        cleared.wakeAll();
}
