// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "suites.h"

#include <QCoreApplication>

int main(int argc, char **argv)
{
    return testsupport::runSuite<QCoreApplication>(argc, argv);
}
