// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "guiwatchdog.h"

#include <QElapsedTimer>
#include <QFile>

#include <unistd.h>

namespace testsupport
{

namespace
{

constexpr int turn = 10; // milliseconds

} // namespace

GuiWatchdog::GuiWatchdog(int tooLong)
    : statistics("/proc/self/task/" + QByteArray::number(::gettid()) + "/schedstat")
    , thread([this, tooLong] { watch(tooLong); })
{
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
    qint64 readyAtBeat = millisecondsReadyToRun();
    while (!done.tryAcquire(1, turn)) {
        if (beaten.exchange(false)) {
            sinceBeat.restart();
            readyAtBeat = millisecondsReadyToRun();
            continue;
        }
        const qint64 ready = millisecondsReadyToRun() - readyAtBeat;
        const auto still = static_cast<int>(sinceBeat.elapsed() - ready);
        most = qMax(most.load(), still);
        if (still > tooLong)
            qFatal("the window has not moved for %d milliseconds", still);
    }
}

/// In the watched thread's life, without a processor.
qint64 GuiWatchdog::millisecondsReadyToRun() const
{
    constexpr int place = 1; // in schedstat
    constexpr qint64 nanosecondsInOne = 1000000;
    QFile file(QString::fromLatin1(statistics));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(place).toLongLong() / nanosecondsInOne;
}

} // namespace testsupport
