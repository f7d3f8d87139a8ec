// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Windows without a frame are moved by the strip at their top.

#include "endtoendtest.h"
#include "suites.h"

#include <QTest>

using namespace testsupport;

namespace
{
constexpr int rightButton = 3;
constexpr QPoint grip{200, 20};
} // namespace

class TestEndToEndWindows : public EndToEndTest
{
    Q_OBJECT

private slots:
    void mainWindowFollowsItsStrip();
    void rightButtonGoesOnFromTheLastLeftPress();
    void placeOfTheButtonsDoesNotDrag();
    void historyWindowFollowsItsStrip();
    void dialogFollowsItsStripAndOpensOverTheMovedWindow();

private:
    QPoint place() const { return desktop.geometryOf(shredder->mainWindowId()).topLeft(); }
};

void TestEndToEndWindows::mainWindowFollowsItsStrip()
{
    QVERIFY(openWith());
    const QPoint start = mainwindow::onScreen.topLeft();
    desktop.drag(start + grip, start + grip + QPoint(300, 120));
    QTRY_COMPARE_WITH_TIMEOUT(place(), start + QPoint(300, 120), patience);
    // Beyond the edge of the screen too.
    desktop.drag(start + grip + QPoint(300, 120), QPoint(60, 500));
    QTRY_COMPARE_WITH_TIMEOUT(place(), QPoint(60, 500) - grip, patience);
    // Let go, it stays.
    desktop.movePointer(QPoint(700, 700));
    QVERIFY(shredder->isRunning());
    QCOMPARE(place(), QPoint(60, 500) - grip);
}

void TestEndToEndWindows::rightButtonGoesOnFromTheLastLeftPress()
{
    QVERIFY(openWith());
    const QPoint start = mainwindow::onScreen.topLeft();
    desktop.drag(start + grip, start + grip + QPoint(40, 40));
    QTRY_COMPARE_WITH_TIMEOUT(place(), start + QPoint(40, 40), patience);
    // Pressed far from there, the strip is held where the left button held it.
    const QPoint end(900, 400);
    desktop.drag(start + QPoint(40, 40) + QPoint(500, 10), end, rightButton);
    QTRY_COMPARE_WITH_TIMEOUT(place(), end - grip, patience);
}

void TestEndToEndWindows::placeOfTheButtonsDoesNotDrag()
{
    QVERIFY(openWith());
    const QPoint start = mainwindow::onScreen.topLeft();
    // Below the close button, where nothing takes the press but the strip.
    desktop.drag(start + QPoint(750, 35), start + QPoint(850, 235));
    desktop.drag(start + grip, start + grip + QPoint(10, 10));
    QTRY_COMPARE_WITH_TIMEOUT(place(), start + QPoint(10, 10), patience);
}

void TestEndToEndWindows::historyWindowFollowsItsStrip()
{
    QVERIFY(user->writeHistory(2));
    QVERIFY(openWith());
    shredder->click(mainwindow::historyLink);
    const std::optional<WindowId> history = shredder->waitForOtherWindow();
    QVERIFY(history && !shredder->drawnWindow(*history).isNull());
    const QPoint start = mainwindow::onScreen.topLeft() + historywindow::overMainWindow;
    // Unlike the main window's, this strip drags up to its close button.
    const QPoint held(650, 20);
    desktop.drag(start + held, start + held + QPoint(-200, 150));
    QTRY_COMPARE_WITH_TIMEOUT(desktop.geometryOf(*history).topLeft(), start + QPoint(-200, 150),
                              patience);
    QCOMPARE(place(), mainwindow::onScreen.topLeft());
    desktop.drag(desktop.geometryOf(*history).topLeft() + QPoint(10, 10), QPoint(900, 300),
                 rightButton);
    QTRY_COMPARE_WITH_TIMEOUT(desktop.geometryOf(*history).topLeft(), QPoint(900, 300) - held,
                              patience);
}

void TestEndToEndWindows::dialogFollowsItsStripAndOpensOverTheMovedWindow()
{
    QVERIFY(openWith());
    const QPoint start = mainwindow::onScreen.topLeft();
    desktop.drag(start + grip, start + grip + QPoint(200, -100));
    QTRY_COMPARE_WITH_TIMEOUT(place(), start + QPoint(200, -100), patience);
    QVERIFY(shredder->drop({tree->path(QStringLiteral("nothing"))}));
    const std::optional<WindowId> report = shredder->waitForDialog();
    QVERIFY(report && !shredder->drawnWindow(*report).isNull());
    const QPoint centred = start + QPoint(200, -100)
                           + QPoint((mainwindow::size.width() - dialog::size.width()) / 2,
                                    (mainwindow::size.height() - dialog::size.height()) / 2);
    QCOMPARE(desktop.geometryOf(*report).topLeft(), centred);
    desktop.drag(centred + grip, grip + QPoint(300, 300));
    QTRY_COMPARE_WITH_TIMEOUT(desktop.geometryOf(*report).topLeft(), QPoint(300, 300), patience);
    QVERIFY(shredder->answerDialog(dialog::reportOk));
}

TEST_SUITE(windows, TestEndToEndWindows)
#include "windows.moc"
