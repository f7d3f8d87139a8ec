// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/workerreports.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

#include <chrono>

namespace
{

using Clock = std::chrono::steady_clock;

/// Longer than a small file takes; a report that comes later is worth sleeping for.
constexpr std::chrono::microseconds patience(100);

/// After a look-out in vain so many are left out: the other thread has long work to do, or no
/// processor, which looking out would only take from it.
constexpr int leftOut = 16;

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
            toLeaveOut = leftOut;
            return false;
        }
        rest();
    }
    return true;
}

WorkerReports::WorkerReports(QObject *parent)
    : QObject(parent)
{
    arrival(); // registered before there are two threads
}

void WorkerReports::deliver(const std::function<void()> &report)
{
    state = Arrived;
    waiting = &report;
    // Looked at only now: the GUI thread stops looking out before it looks for the last time, so
    // one of the two sees the other.
    if (!lookingOut)
        QCoreApplication::postEvent(this, new QEvent(arrival()));
    if (workersLookOut.sees([this] { return state == Handled; }))
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
    while (runOne()) {
        if (Clock::now() > end || !nextComes())
            break;
    }
    return true;
}

void WorkerReports::runArrived()
{
    runOne();
}

/// False when there is none: a report that was seen without its event leaves that with nothing to
/// find, or the next report.
bool WorkerReports::runOne()
{
    const std::function<void()> *report = waiting.exchange(nullptr);
    if (report == nullptr)
        return false;
    (*report)();
    if (state.exchange(Handled) == WorkerAsleep)
        handled.release();
    return true;
}

bool WorkerReports::nextComes()
{
    lookingOut = true;
    windowsLookOut.sees([this] { return waiting != nullptr; });
    lookingOut = false;
    return waiting != nullptr;
}
