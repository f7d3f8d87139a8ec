// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Shows a window, tells how long after the start of the process it had drawn
// itself for the first time, and ends the program.

#pragma once

#include <QApplication>
#include <QPaintEvent>
#include <QTimer>

#include <chrono>
#include <cstdlib>
#include <iostream>

namespace firstpaint
{

template <class Window>
class Timed final : public Window
{
public:
    explicit Timed(double startOfProcess)
        : start(startOfProcess)
    {
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        Window::paintEvent(event);
        // Once the loop comes round, everything in the window has been drawn.
        QTimer::singleShot(0, this, [this] {
            const auto now = std::chrono::steady_clock::now().time_since_epoch();
            std::cout << "start_ms "
                      << std::chrono::duration<double, std::milli>(now).count() - start
                      << std::endl;
            std::_Exit(EXIT_SUCCESS);
        });
    }

private:
    double start;
};

/// @p startOfProcess in milliseconds of the monotonic clock.
template <class Window>
int show(double startOfProcess)
{
    Timed<Window> window(startOfProcess);
    window.resize(800, 550);
    window.show();
    return QApplication::exec();
}

} // namespace firstpaint
