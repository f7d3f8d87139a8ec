// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The window dragged from one to the other of two monitors.

#include "endtoendtest.h"
#include "suites.h"

#include <QTest>

#include <utility>

using namespace testsupport;

namespace
{
/// The right one has room for the window at twice its size.
constexpr QSize leftMonitor(1920, 1080);
constexpr QSize rightMonitor(2000, 1300);

constexpr QRect scaled(const QRect &place, int scale)
{
    return {place.topLeft() * scale, place.size() * scale};
}
} // namespace

class TestEndToEndMonitors : public EndToEndTest
{
    Q_OBJECT

private slots:
    void initTestCase();

    void windowIsDraggedToTheOtherMonitor_data();
    void windowIsDraggedToTheOtherMonitor();
    void windowIsWholeWhereverItIsCarried_data();
    void windowIsWholeWhereverItIsCarried();
    void windowLeavesTheScreensAsFarAsItIsDragged_data();
    void windowLeavesTheScreensAsFarAsItIsDragged();

private:
    bool openScaled(int left, int right);
};

void TestEndToEndMonitors::initTestCase()
{
    if (!DesktopSession::hasMonitors())
        QSKIP("needs Xephyr");
    QVERIFY2(desktop.startWithMonitors(leftMonitor, rightMonitor), qPrintable(desktop.problem()));
}

void TestEndToEndMonitors::windowIsDraggedToTheOtherMonitor_data()
{
    QTest::addColumn<int>("leftScale");
    QTest::addColumn<int>("rightScale");
    QTest::newRow("of the same scale") << 1 << 1;
    QTest::newRow("of the same scale, both dense") << 2 << 2;
    QTest::newRow("of twice the scale") << 1 << 2;
    QTest::newRow("of half the scale") << 2 << 1;
}

void TestEndToEndMonitors::windowIsDraggedToTheOtherMonitor()
{
    QFETCH(int, leftScale);
    QFETCH(int, rightScale);
    QVERIFY(openScaled(leftScale, rightScale));
    const QPoint start = shredder->mainWindowOnScreen().topLeft();
    const QPoint target(leftMonitor.width() + 600, 200);
    desktop.drag(start + mainwindow::grip * leftScale, target);
    const QRect window(target - mainwindow::grip * rightScale, mainwindow::size * rightScale);
    QTRY_COMPARE_WITH_TIMEOUT(desktop.geometryOf(shredder->mainWindowId()), window, patience);
    const auto click = [&](const QRect &place) {
        desktop.click(window.topLeft() + scaled(place, rightScale).center());
    };
    const auto isOver = [&](WindowId opened, const QRect &place) {
        return eventually([&] {
            return desktop.geometryOf(opened)
                   == scaled(place, rightScale).translated(window.topLeft());
        });
    };

    click(mainwindow::historyLink);
    const auto history = shredder->waitForOtherWindow();
    QVERIFY(history);
    QVERIFY(isOver(*history, {historywindow::overMainWindow, historywindow::size}));
    QVERIFY(!shredder->drawnWindow(*history).isNull());
    click(historywindow::closeButton.translated(historywindow::overMainWindow));
    QVERIFY(eventually([&] { return shredder->onlyMainWindowIsOpen(); }));

    click(mainwindow::addButton);
    const auto fileDialog = shredder->waitForOtherWindow();
    QVERIFY(fileDialog && desktop.givesKeyboardTo(*fileDialog));
    const QString file = tree->makeFile(QStringLiteral("file"), 10);
    // A busy dialog loses keys, or takes Return for its list of names.
    QVERIFY(eventually([&] {
        desktop.pressKey(QStringLiteral("ctrl+a"));
        desktop.type(file);
        desktop.pressKey(QStringLiteral("Return"));
        return eventually([&] { return shredder->onlyMainWindowIsOpen(); }, 2000);
    }));
    QVERIFY(eventually([&] {
        click(mainwindow::crushButton);
        return shredder->dialogIsOpen();
    }));
    QVERIFY(isOver(*shredder->waitForDialog(), {dialog::overMainWindow, dialog::size}));
}

void TestEndToEndMonitors::windowIsWholeWhereverItIsCarried_data()
{
    QTest::addColumn<int>("leftScale");
    QTest::addColumn<int>("rightScale");
    QTest::addColumn<int>("held");
    for (const int held : {100, 700}) {
        QTest::addRow("at %d, twice the scale on the right", held) << 1 << 2 << held;
        QTest::addRow("at %d, half the scale on the right", held) << 2 << 1 << held;
    }
}

void TestEndToEndMonitors::windowIsWholeWhereverItIsCarried()
{
    QFETCH(int, leftScale);
    QFETCH(int, rightScale);
    QFETCH(int, held);
    QVERIFY(openScaled(leftScale, rightScale));
    // One drag that pauses at each place. A press that reached the program before it knew of its
    // window's new scale would be taken for one elsewhere in the window.
    QRect window = shredder->mainWindowOnScreen();
    QPoint pointer = window.topLeft() + QPoint(held, mainwindow::grip.y()) * leftScale;
    desktop.press(pointer);
    for (const int beyondTheBorder : {-300, 0, -1, 300, -300}) {
        const QPoint target(leftMonitor.width() + beyondTheBorder, 200);
        desktop.carryPointer(std::exchange(pointer, target), target);
        // The monitor of the pointer has the window's middle and says its size.
        const int scale = beyondTheBorder < 0 ? leftScale : rightScale;
        const bool isThere = eventually([&] {
            window = desktop.geometryOf(shredder->mainWindowId());
            return window.size() == mainwindow::size * scale
                   && window.y() == target.y() - mainwindow::grip.y() * scale
                   && (window.center().x() < leftMonitor.width()) == (beyondTheBorder < 0)
                   && window.contains(target);
        });
        QVERIFY2(isThere, qPrintable(QStringLiteral("held at %1, carried to %2: %3 x %4 at %5")
                                         .arg(held)
                                         .arg(target.x())
                                         .arg(window.width())
                                         .arg(window.height())
                                         .arg(window.x())));
    }
    desktop.releaseButton();
}

void TestEndToEndMonitors::windowLeavesTheScreensAsFarAsItIsDragged_data()
{
    windowIsWholeWhereverItIsCarried_data();
}

void TestEndToEndMonitors::windowLeavesTheScreensAsFarAsItIsDragged()
{
    QFETCH(int, leftScale);
    QFETCH(int, rightScale);
    QFETCH(int, held);
    QVERIFY(openScaled(leftScale, rightScale));
    const QPoint grip = QPoint(held, mainwindow::grip.y()) * leftScale;
    QPoint pointer = shredder->mainWindowOnScreen().topLeft() + grip;
    desktop.press(pointer);
    // The window manager keeps a tenth of each window on the screen.
    const QPoint beyondTheBottom(300, leftMonitor.height() - 150);
    const QPoint beyondTheLeftEdge(10, 300);
    for (const QPoint &target : {beyondTheBottom, beyondTheLeftEdge}) {
        desktop.carryPointer(std::exchange(pointer, target), target);
        const QRect window(target - grip, mainwindow::size * leftScale);
        QTRY_COMPARE_WITH_TIMEOUT(desktop.geometryOf(shredder->mainWindowId()), window, patience);
    }
    desktop.releaseButton();
}

bool TestEndToEndMonitors::openScaled(int left, int right)
{
    if (left == right) // all that a desktop can say is one for all
        user->set(QStringLiteral("QT_FONT_DPI"), QString::number(96 * left));
    else
        user->set(QStringLiteral("QT_SCREEN_SCALE_FACTORS"),
                  QStringLiteral("%1;%2").arg(left).arg(right));
    return shredder->openWindow()
           && shredder->mainWindowOnScreen().size() == mainwindow::size * left;
}

TEST_SUITE(monitors, TestEndToEndMonitors)
#include "monitors.moc"
