// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/deliveryfence.h"

#include <QCoreApplication>
#include <QMutexLocker>
#include <QThread>

DeliveryFence::DeliveryFence(QObject *parent)
    : QObject(parent)
{
    connect(this, &DeliveryFence::passed, this, &DeliveryFence::notePassed, Qt::QueuedConnection);
}

DeliveryFence::Emission::Emission(DeliveryFence &owner)
    : fence(owner)
{
    ++fence.undelivered;
}

DeliveryFence::Emission::~Emission()
{
    // Events of one priority are delivered in the order posted, so this marker arrives after
    // every signal of the bracket.
    emit fence.passed();
}

void DeliveryFence::deliverPending()
{
    if (isClear())
        return;
    setDelivering(true);
    // Only calls are delivered, no input: nobody can click in between.
    while (!isClear()) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
        QThread::yieldCurrentThread();
    }
    setDelivering(false);
}

void DeliveryFence::waitUntilDelivered()
{
    const QMutexLocker locker(&mutex);
    while (!isClear() || delivering)
        cleared.wait(&mutex);
}

void DeliveryFence::setDelivering(bool value)
{
    const QMutexLocker locker(&mutex);
    delivering = value;
    if (!delivering)
        cleared.wakeAll();
}

void DeliveryFence::notePassed()
{
    const QMutexLocker locker(&mutex);
    if (--undelivered == 0)
        cleared.wakeAll();
}
