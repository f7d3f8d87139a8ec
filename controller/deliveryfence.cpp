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
    // Only calls are delivered, no input: nobody can click in between. Qt ends a delivery at the
    // calls that were there when it began, so what is emitted after the last bracket stays out.
    while (!isClear()) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
        QThread::yieldCurrentThread();
    }
}

void DeliveryFence::waitUntilDelivered()
{
    const QMutexLocker locker(&mutex);
    while (!isClear())
        cleared.wait(&mutex);
}

void DeliveryFence::notePassed()
{
    const QMutexLocker locker(&mutex);
    if (--undelivered == 0)
        cleared.wakeAll();
}
