// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The start of a test program with a main window. It brings its sandbox home
// before the application exists: Qt looks a user name up while it starts, and from
// then on the user database is what it was. Qt's own settings go there too.

#pragma once

#include "sandboxhome.h"

#include <QApplication>
#include <QtTest>

namespace testsupport
{

/// The home of this test program.
const SandboxHome &testHome();

/// Brings the home and points Qt's environment to it; before the application.
void moveIntoTestHome();

} // namespace testsupport

/// In place of QTEST_MAIN().
#define WINDOW_TEST_MAIN(TestClass)                                                                \
    int main(int argc, char *argv[])                                                               \
    {                                                                                              \
        testsupport::moveIntoTestHome();                                                           \
        QApplication application(argc, argv);                                                      \
        application.setAttribute(Qt::AA_Use96Dpi, true);                                           \
        if (!testsupport::testHome().isInForce())                                                  \
            qFatal("%s", testsupport::SandboxHome::advice());                                      \
        TestClass test;                                                                            \
        QTEST_SET_MAIN_SOURCE_PATH                                                                 \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
