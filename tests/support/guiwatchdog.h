// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Watches the event loop of the thread that made it and aborts the program, which leaves
// the stacks of all threads in a core file, when that stands still for too long. A dialog
// serves events like any other loop, so it does not count. Nor does the time that the
// thread was ready to run and the machine had no processor for it.

#pragma once

#include <QByteArray>
#include <QSemaphore>
#include <QTimer>

#include <atomic>
#include <thread>

namespace testsupport
{

class GuiWatchdog
{
public:
    /// Ends the program after a standstill of @p tooLong milliseconds.
    explicit GuiWatchdog(int tooLong);
    ~GuiWatchdog();
    GuiWatchdog(const GuiWatchdog &) = delete;
    GuiWatchdog &operator=(const GuiWatchdog &) = delete;

    /// The longest standstill so far, in milliseconds.
    int longest() const { return most; }

private:
    void watch(int tooLong);
    qint64 millisecondsReadyToRun() const;

    const QByteArray statistics; ///< the file in which the kernel counts for the watched thread
    QTimer heart;
    std::atomic<bool> beaten{false};
    std::atomic<int> most{0};
    QSemaphore done;
    std::thread thread; ///< last, as it uses all the others from its start
};

} // namespace testsupport
