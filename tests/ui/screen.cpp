// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Where the windows open on a screen of 1920 x 1080, which this test is started
// with.

#include "promptly.h"
#include "shownwindow.h"
#include "suites.h"
#include "windowtesthome.h"

#include <QGuiApplication>
#include <QScreen>
#include <QtTest>

using testsupport::ShownWindow;

class TestMainWindowScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void windowOpensInTheMiddle();
    void historyWindowOpensInTheMiddleOfTheWindow();
};

void TestMainWindowScreen::initTestCase()
{
    QCOMPARE(QGuiApplication::primaryScreen()->availableGeometry(), QRect(0, 0, 1920, 1080));
}

void TestMainWindowScreen::windowOpensInTheMiddle()
{
    ShownWindow window;
    QCOMPARE(window->geometry(), QRect(560, 265, 800, 550));
    QCOMPARE(window.find("historyWindow")->geometry(), QRect(610, 290, 700, 500));
}

void TestMainWindowScreen::historyWindowOpensInTheMiddleOfTheWindow()
{
    ShownWindow window;
    window->move(100, 100);
    PROMPTLY_COMPARE(window->pos(), QPoint(100, 100));
    window->slotShowHistoryEva();
    QVERIFY(QTest::qWaitForWindowExposed(window.find("historyWindow")));
    QCOMPARE(window.find("historyWindow")->geometry(), QRect(150, 125, 700, 500));
}

TEST_SUITE(screen, TestMainWindowScreen)
#include "screen.moc"
