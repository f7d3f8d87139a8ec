// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "guiwatchdog.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <cstdio>
#include <ctime>

#include <csignal>
#include <execinfo.h>
#include <semaphore.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace testsupport
{

namespace
{

/// Places in a thread's schedstat.
constexpr int onProcessor = 0;
constexpr int readyToRun = 1;

constexpr int turn = 10;          // milliseconds
constexpr int noticeable = 1000;  // milliseconds of a standstill
constexpr int deepestStack = 100; // calls
sem_t printed;

void printOwnStack(int)
{
    void *calls[deepestStack];
    ::backtrace_symbols_fd(calls, ::backtrace(calls, deepestStack), STDERR_FILENO);
    ::sem_post(&printed);
}

/// A first call loads a library, which a signal handler must not do.
void prepareStacks()
{
    void *call = nullptr;
    ::backtrace(&call, 1);
    ::sem_init(&printed, 0, 0);
    struct sigaction action = {};
    action.sa_handler = printOwnStack;
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGUSR2, &action, nullptr);
}

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

/// By a signal, not by a debugger: that is loaded only when the standstill is over. A thread that
/// the kernel holds answers when it is let go, and shows the call that held it.
void printAllStacks()
{
    constexpr int longestWait = 5; // seconds
    const QString tasks = QStringLiteral("/proc/self/task/");
    const QStringList threads = QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &id : threads) {
        const QByteArray stat = contentsOf(tasks + id + QStringLiteral("/stat"));
        static_cast<void>(
            std::fprintf(stderr, "thread %s, in the kernel at %s:\n%s\n",
                         stat.left(stat.lastIndexOf(')') + 3).constData(),
                         contentsOf(tasks + id + QStringLiteral("/wchan")).constData(),
                         contentsOf(tasks + id + QStringLiteral("/stack")).constData()));
        if (id.toInt() == ::gettid() || ::syscall(SYS_tgkill, ::getpid(), id.toInt(), SIGUSR2) != 0)
            continue;
        timespec deadline = {};
        ::clock_gettime(CLOCK_REALTIME, &deadline);
        deadline.tv_sec += longestWait;
        ::sem_timedwait(&printed, &deadline);
    }
}

} // namespace

GuiWatchdog::GuiWatchdog(int tooLong)
    : statistics("/proc/self/task/" + QByteArray::number(::gettid()) + "/schedstat")
    , thread([this, tooLong] { watch(tooLong); })
{
    prepareStacks();
    QObject::connect(&heart, &QTimer::timeout, &heart, [this] { beaten = true; });
    heart.start(turn);
}

GuiWatchdog::~GuiWatchdog()
{
    done.release();
    thread.join();
}

void GuiWatchdog::watch(int tooLong)
{
    QElapsedTimer sinceBeat;
    sinceBeat.start();
    qint64 runAtBeat = milliseconds(onProcessor);
    qint64 delayAtBeat = milliseconds(readyToRun);
    bool stacksPrinted = false;
    while (!done.tryAcquire(1, turn)) {
        if (beaten.exchange(false)) {
            sinceBeat.restart();
            runAtBeat = milliseconds(onProcessor);
            delayAtBeat = milliseconds(readyToRun);
            stacksPrinted = false;
            continue;
        }
        const qint64 delay = milliseconds(readyToRun) - delayAtBeat;
        const auto still = static_cast<int>(sinceBeat.elapsed() - delay);
        most = qMax(most.load(), still);
        if (still > qMin(noticeable, tooLong) && !stacksPrinted) {
            static_cast<void>(std::fprintf(
                stderr, "no event for %lld ms: %lld on a processor, %lld ready to run\n",
                sinceBeat.elapsed(), milliseconds(onProcessor) - runAtBeat, delay));
            printAllStacks();
            stacksPrinted = true;
        }
        if (still > tooLong)
            qFatal("the window has not moved for %d milliseconds", still);
    }
}

/// What the watched thread has spent so in its life.
qint64 GuiWatchdog::milliseconds(int statistic) const
{
    constexpr qint64 nanosecondsInOne = 1000000;
    const QByteArray all = contentsOf(QString::fromLatin1(statistics));
    return all.split(' ').value(statistic).toLongLong() / nanosecondsInOne;
}

} // namespace testsupport
