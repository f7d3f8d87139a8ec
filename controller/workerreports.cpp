// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/workerreports.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

#include <algorithm>

namespace
{

/// Longer than a small file takes, on a disk too; a report that comes later is worth sleeping for.
constexpr std::chrono::microseconds patience(400);

/// After a look-out in vain one is left out, after each further one twice as many, up to this: the
/// other thread has long work to do, or no processor, which looking out would only take from it.
constexpr int mostLeftOut = 64;

/// Then the window is drawn and hears its user, whatever else arrives.
constexpr std::chrono::milliseconds longestTurn(4);

QEvent::Type arrival()
{
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

/// Tells the processor, which may run another thread on the same core, that this one only waits.
void rest()
{
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#endif
}

} // namespace

/// Returns true as soon as @p condition holds; false when patience is over. The processor is not
/// offered to other programs meanwhile: it might come back only after milliseconds.
template <class Condition>
bool WorkerReports::LookOut::sees(const Condition &condition)
{
    static const bool alone = QThread::idealThreadCount() == 1; // nobody runs while we look
    if (alone)
        return condition();
    if (toLeaveOut > 0) {
        --toLeaveOut;
        return condition();
    }
    const auto end = Clock::now() + patience;
    while (!condition()) {
        if (Clock::now() > end) {
            toLeaveOut = leftOutNext;
            leftOutNext = std::min(2 * leftOutNext, mostLeftOut);
            return false;
        }
        rest();
    }
    leftOutNext = 1;
    return true;
}

WorkerReports::WorkerReports(QObject *parent)
    : QObject(parent)
{
    arrival(); // registered before there are two threads
}

void WorkerReports::deliver(const std::function<void()> &report)
{
    next = &report;
    if (state.exchange(Arrived) == NoneAwaited)
        QCoreApplication::postEvent(this, new QEvent(arrival()));
    if (workersLookOut.sees([this] { return state != Arrived; }))
        return;
    State expected = Arrived;
    if (state.compare_exchange_strong(expected, WorkerAsleep))
        handled.acquire();
}

bool WorkerReports::event(QEvent *event)
{
    if (event->type() != arrival())
        return QObject::event(event);
    const auto end = Clock::now() + longestTurn;
    while (runOne(end)) {
        if (!windowsLookOut.sees([this] { return state != Awaited; }))
            stopAwaiting();
    }
    return true;
}

void WorkerReports::runArrived()
{
    runOne(Clock::now());
}

/// Runs the report that has arrived; the next one is awaited if it is not yet @p turnEnd then.
/// False when it is not: either there was no report, as the event of one that was run without it
/// finds none, or the next will come with an event.
bool WorkerReports::runOne(Clock::time_point turnEnd)
{
    const State found = state;
    // While a report runs, its own event loop may bring events, but no report before its end.
    if (running || (found != Arrived && found != WorkerAsleep))
        return false;
    running = true;
    (*next)();
    running = false;
    const State after = Clock::now() < turnEnd ? Awaited : NoneAwaited;
    if (state.exchange(after) == WorkerAsleep)
        handled.release();
    return after == Awaited;
}

/// The next report will come with an event, unless it is here already.
void WorkerReports::stopAwaiting()
{
    State expected = Awaited;
    state.compare_exchange_strong(expected, NoneAwaited);
}
