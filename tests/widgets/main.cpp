// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "suites.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
    return testsupport::runSuite<QApplication>(argc, argv);
}
