// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Tells the thread sanitizer how Qt synchronises threads. The Qt library is not built
// with it and waits on futexes that it does not know, so it would take everything that
// a QMutex guards or a queued signal carries for a race. Compiled into each program of
// a build with the thread sanitizer, these take the place of Qt's functions where our
// code calls them, call Qt's, and say which thread has seen whose work:
//
// - whoever locks a mutex or takes from a semaphore sees what was done before it was
//   unlocked or released;
// - a slot sees what was done before the one emission that queued its call;
// - whoever emits a signal that waits for its slots sees what those calls did.
//
// Each is said of the one mutex, semaphore or queued call that it happened to. What a
// thread did merely earlier, or before another signal, stays a race.

#include <QByteArrayList>
#include <QDeadlineTimer>
#include <QEvent>
#include <QMetaMethod>
#include <QMutex>
#include <QSemaphore>
#include <QThread>
#include <QVarLengthArray>
#include <QWaitCondition>
#ifdef QT_WIDGETS_LIB
#include <QFrame>
#endif

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>

#include <dlfcn.h>

extern "C" {
void __tsan_acquire(void *address);
void __tsan_release(void *address);
void AnnotateIgnoreWritesBegin(const char *file, int line);
void AnnotateIgnoreWritesEnd(const char *file, int line);
}

namespace
{

/// A signal on its way to another thread. activate() allocates a QMetaCallEvent for each queued
/// call, among other things; whose addresses are events shows once they are handled.
struct Emission {
    bool waits = false;
    QVarLengthArray<void *, 64> allocated; ///< when it waits
};

thread_local Emission *innermost = nullptr;

/// Qt's own function of the mangled name @p symbol.
template <class Function>
Function *original(const char *symbol)
{
    void *found = ::dlsym(RTLD_NEXT, symbol);
    if (found == nullptr)
        qFatal("Qt has no %s", symbol);
    return reinterpret_cast<Function *>(found);
}

/// Stands for the answer to the call in @p event, which may be freed before that is seen.
void *answerTo(const void *event)
{
    static char answers[1 << 16];
    return answers
           + reinterpret_cast<std::uintptr_t>(event) / alignof(std::max_align_t) % sizeof answers;
}

/// True for the signals that are connected to wait for their slots.
bool isBlocking(const QMetaObject *meta, int signal)
{
    if (qstrcmp(meta->className(), "FileCrusher") == 0)
        return true;
    static const QByteArrayList blocking = {"addRowToMainTable",         "addRowToHistoryTable",
                                            "removeRowFromHistoryTable", "clipboardSetText",
                                            "setHistoryButtonEnabled",   "alertDialog"};
    return qstrcmp(meta->className(), "Walle") == 0
           && blocking.contains(meta->method(meta->methodOffset() + signal).name());
}

/// Handles @p event by @p handle, Qt's own function.
bool handled(QObject *object, QEvent *event, bool (*handle)(QObject *, QEvent *))
{
    __tsan_acquire(event);
    const bool isCall = event->type() == QEvent::MetaCall;
    const bool result = handle(object, event);
    if (isCall)
        __tsan_release(answerTo(event));
    return result;
}

} // namespace

// Qt's events are made with this. What Qt does with memory is not looked at.
void *operator new(std::size_t size) // NOLINT(cert-dcl54-cpp): free() gives it back
{
    AnnotateIgnoreWritesBegin(__FILE__, __LINE__);
    void *const block = std::malloc(size);
    AnnotateIgnoreWritesEnd(__FILE__, __LINE__);
    if (block == nullptr)
        throw std::bad_alloc();
    if (innermost != nullptr) {
        __tsan_release(block);
        if (innermost->waits)
            innermost->allocated.append(block);
    }
    return block;
}

void QMutex::lock() noexcept
{
    static const auto qtLock = original<void(QMutex *)>("_ZN6QMutex4lockEv");
    qtLock(this);
    __tsan_acquire(this);
}

void QMutex::unlock() noexcept
{
    static const auto qtUnlock = original<void(QMutex *)>("_ZN6QMutex6unlockEv");
    __tsan_release(this);
    qtUnlock(this);
}

bool QWaitCondition::wait(QMutex *mutex, QDeadlineTimer deadline)
{
    static const auto qtWait = original<bool(QWaitCondition *, QMutex *, QDeadlineTimer)>(
        "_ZN14QWaitCondition4waitEP6QMutex14QDeadlineTimer");
    __tsan_release(mutex);
    const bool woken = qtWait(this, mutex, deadline);
    __tsan_acquire(mutex);
    return woken;
}

void QSemaphore::release(int count)
{
    static const auto qtRelease = original<void(QSemaphore *, int)>("_ZN10QSemaphore7releaseEi");
    __tsan_release(this);
    qtRelease(this, count);
}

void QSemaphore::acquire(int count)
{
    static const auto qtAcquire = original<void(QSemaphore *, int)>("_ZN10QSemaphore7acquireEi");
    qtAcquire(this, count);
    __tsan_acquire(this);
}

bool QSemaphore::tryAcquire(int count, int timeout)
{
    static const auto qtTryAcquire =
        original<bool(QSemaphore *, int, int)>("_ZN10QSemaphore10tryAcquireEii");
    const bool acquired = qtTryAcquire(this, count, timeout);
    if (acquired)
        __tsan_acquire(this);
    return acquired;
}

void QMetaObject::activate(QObject *sender, const QMetaObject *meta, int signal, void **arguments)
{
    static const auto qtActivate = original<void(QObject *, const QMetaObject *, int, void **)>(
        "_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    if (sender->thread() == QThread::currentThread())
        return qtActivate(sender, meta, signal, arguments);
    Emission emission;
    emission.waits = isBlocking(meta, signal);
    Emission *const outer = std::exchange(innermost, &emission);
    qtActivate(sender, meta, signal, arguments);
    innermost = outer;
    for (const void *block : emission.allocated)
        __tsan_acquire(answerTo(block));
}

bool QObject::event(QEvent *event)
{
    static const auto qtEvent = original<bool(QObject *, QEvent *)>("_ZN7QObject5eventEP6QEvent");
    return handled(this, event, qtEvent);
}

bool QThread::event(QEvent *event)
{
    static const auto qtEvent = original<bool(QObject *, QEvent *)>("_ZN7QThread5eventEP6QEvent");
    return handled(this, event, qtEvent);
}

#ifdef QT_WIDGETS_LIB
bool QFrame::event(QEvent *event)
{
    static const auto qtEvent = original<bool(QObject *, QEvent *)>("_ZN6QFrame5eventEP6QEvent");
    return handled(this, event, qtEvent);
}
#endif
