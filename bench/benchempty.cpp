// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The least that a program with a window can be: what the start of the real one
// is compared with. The argument is the time (milliseconds, monotonic) of the start.

#include "firstpaint.h"

#include <QApplication>
#include <QWidget>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    return firstpaint::show<QWidget>(QCoreApplication::arguments().value(1).toDouble());
}
