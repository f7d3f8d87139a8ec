// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Windows without a frame are moved by the strip at their top, under a window manager.

#include "endtoendtest.h"
#include "suites.h"

#include <QTest>

using namespace testsupport;

class TestEndToEndWindows : public EndToEndTest
{
    Q_OBJECT

private slots:
    void mainWindowFollowsItsStrip();
    void historyWindowFollowsItsStrip();
    void dialogFollowsItsStripAndOpensOverTheMovedWindow();

private:
    QPoint placeOf(WindowId window) const { return desktop.geometryOf(window).topLeft(); }
};

void TestEndToEndWindows::mainWindowFollowsItsStrip()
{
    QVERIFY(openWith());
    const WindowId window = shredder->mainWindowId();
    QPoint place = mainwindow::onScreen.topLeft();
    // Below the close button, where nothing takes the press but the strip, it does not follow.
    desktop.drag(place + QPoint(750, 35), place + QPoint(850, 235));
    // Beyond the edge of the screen too.
    for (const QPoint &target : {QPoint(1060, 405), QPoint(60, 500)}) {
        desktop.drag(place + mainwindow::grip, target);
        place = target - mainwindow::grip;
        QTRY_COMPARE_WITH_TIMEOUT(placeOf(window), place, patience);
    }
    // Let go, it stays; the right button holds it where the left one did.
    desktop.movePointer(QPoint(700, 700));
    desktop.drag(QPoint(300, 490), QPoint(900, 400), 3);
    QTRY_COMPARE_WITH_TIMEOUT(placeOf(window), QPoint(900, 400) - mainwindow::grip, patience);
}

void TestEndToEndWindows::historyWindowFollowsItsStrip()
{
    QVERIFY(openWith());
    const std::optional<WindowId> history = openBy(mainwindow::historyLink);
    QVERIFY(history && !shredder->drawnWindow(*history).isNull());
    const QPoint start = mainwindow::onScreen.topLeft() + historywindow::overMainWindow;
    // Unlike the main window's, this strip drags up to its close button.
    const QPoint held(650, 20);
    desktop.drag(start + held, start + held + QPoint(-200, 150));
    QTRY_COMPARE_WITH_TIMEOUT(placeOf(*history), start + QPoint(-200, 150), patience);
    QCOMPARE(placeOf(shredder->mainWindowId()), mainwindow::onScreen.topLeft());
}

void TestEndToEndWindows::dialogFollowsItsStripAndOpensOverTheMovedWindow()
{
    QVERIFY(openWith());
    const QPoint place = mainwindow::onScreen.topLeft() + QPoint(200, -100);
    desktop.drag(mainwindow::onScreen.topLeft() + mainwindow::grip, place + mainwindow::grip);
    QTRY_COMPARE_WITH_TIMEOUT(placeOf(shredder->mainWindowId()), place, patience);
    QVERIFY(shredder->drop({tree->path("nothing")}));
    const std::optional<WindowId> report = shredder->waitForDialog();
    QVERIFY(report && !shredder->drawnWindow(*report).isNull());
    const QPoint centred = place + dialog::overMainWindow;
    QCOMPARE(placeOf(*report), centred);
    desktop.drag(centred + mainwindow::grip, mainwindow::grip + QPoint(300, 300));
    QTRY_COMPARE_WITH_TIMEOUT(placeOf(*report), QPoint(300, 300), patience);
    QVERIFY(shredder->answerDialog(dialog::reportOk));
}

TEST_SUITE(windows, TestEndToEndWindows)
#include "windows.moc"
