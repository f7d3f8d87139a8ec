// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Waiting for what takes thousands of turns of the event loop. QTest rests for 10
// milliseconds after every turn that leaves nothing to do, and a thread that waits
// for the answer to each of its signals gets no further meanwhile.

#pragma once

#include "eventually.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

namespace testsupport
{

/// Waits until @p condition holds and returns whether it does; looks after every event.
template <class Condition>
bool promptly(Condition condition)
{
    constexpr int lookWithoutEvents = 20; // milliseconds
    QTimer alarm;
    alarm.start(lookWithoutEvents);
    const QDeadlineTimer deadline(patience);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

} // namespace testsupport

/// As QTRY_VERIFY() and QTRY_COMPARE(), with promptly().
#define PROMPTLY_VERIFY(condition)                                                                 \
    do {                                                                                           \
        testsupport::promptly([&] { return static_cast<bool>(condition); });                       \
        QVERIFY(condition);                                                                        \
    } while (false)

#define PROMPTLY_COMPARE(actual, ...)                                                              \
    do {                                                                                           \
        testsupport::promptly([&] { return (actual) == (__VA_ARGS__); });                          \
        QCOMPARE(actual, (__VA_ARGS__));                                                           \
    } while (false)
