// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "suites.h"
#include "windowtest.h"

#include <QApplication>

int main(int argc, char **argv)
{
    testsupport::moveIntoTestHome();
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
    return testsupport::runSuite<QApplication>(argc, argv);
}
