// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Where the windows open on a screen of 1920 x 1080, which this test is started with.

#include "suites.h"
#include "windowtest.h"

#include <QScreen>
#include <QtTest>

using namespace testsupport;

class TestScreen : public WindowTest
{
    Q_OBJECT

private slots:
    void windowOpensInTheMiddle();
};

void TestScreen::windowOpensInTheMiddle()
{
    QCOMPARE(QGuiApplication::primaryScreen()->availableGeometry(), QRect(0, 0, 1920, 1080));
    QCOMPARE(window->geometry(), QRect(560, 265, 800, 550));
    QCOMPARE(find("historyWindow")->geometry(), QRect(610, 290, 700, 500));
}

TEST_SUITE(screen, TestScreen)
#include "screen.moc"
