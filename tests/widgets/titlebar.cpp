// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "suites.h"
#include "widgets/customtitlebar.h"

#include <QMouseEvent>
#include <QWindow>
#include <QtTest>

#include <memory>

namespace
{

constexpr QPoint windowStart(200, 150);

/// A frameless window that counts the presses its children leave to it.
class CountingWindow : public QWidget
{
public:
    CountingWindow()
        : QWidget(nullptr, Qt::FramelessWindowHint)
    {
    }
    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent *) override { ++presses; }
};

} // namespace

class TestTitleBar : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { window.reset(); }

    void leftDragMovesTheWindowWithThePointer();
    void pressInTheButtonZoneStartsNoDrag_data();
    void pressInTheButtonZoneStartsNoDrag();
    void pressInTheButtonZoneIsLeftToTheWindow();
    void rightDragUsesTheGrabPointOfTheLastLeftPress();
    void releaseOfAnyButtonEndsTheDrag();
    void doubleClickChangesNothing();
    void grabPointCountsFromTheWindowsCorner();
    void fractionsOfPixelsAreRounded();

private:
    // Places are in the window's coordinates: the events take the road of real ones,
    // through the window to the widget that holds the mouse.
    void press(QPoint place, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(window->windowHandle(), button, Qt::NoModifier, place);
    }
    void moveTo(QPoint place) { QTest::mouseMove(window->windowHandle(), place); }
    void release(QPoint place, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseRelease(window->windowHandle(), button, Qt::NoModifier, place);
    }
    bool dragsFrom(QPoint place);

    std::unique_ptr<CountingWindow> window;
    CustomTitleBar *bar = nullptr;
};

void TestTitleBar::init()
{
    window = std::make_unique<CountingWindow>();
    window->setGeometry(QRect(windowStart, QSize(900, 400)));
    bar = new CustomTitleBar(window.get());
    bar->setGeometry(0, 0, 900, 40);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
}

bool TestTitleBar::dragsFrom(QPoint place)
{
    window->move(windowStart);
    press(place);
    moveTo(place + QPoint(-11, 7));
    const bool moved = window->pos() != windowStart;
    release(place);
    return moved;
}

void TestTitleBar::leftDragMovesTheWindowWithThePointer()
{
    moveTo(QPoint(150, 30));
    QCOMPARE(window->pos(), windowStart);
    press(QPoint(100, 20));
    moveTo(QPoint(130, 25));
    QCOMPARE(window->pos(), windowStart + QPoint(30, 5));
    moveTo(QPoint(90, 20));
    QCOMPARE(window->pos(), windowStart + QPoint(20, 5));
    moveTo(QPoint(-2000, -1000)); // it may leave the screen
    QCOMPARE(window->pos(), windowStart + QPoint(20 - 2100, 5 - 1020));
    release(QPoint(100, 20));
    QCOMPARE(window->pos(), windowStart + QPoint(20 - 2100, 5 - 1020));
    QCOMPARE(bar->geometry(), QRect(0, 0, 900, 40));
}

void TestTitleBar::pressInTheButtonZoneStartsNoDrag_data()
{
    QTest::addColumn<int>("minimizeSlot");
    QTest::addColumn<int>("maximizeSlot");
    QTest::addColumn<int>("barWidth");
    QTest::addColumn<int>("lastDraggingX");
    QTest::newRow("main window") << 1 << 0 << 800 << 736;
    QTest::newRow("close button only") << 0 << 0 << 800 << 768;
    QTest::newRow("three buttons") << 1 << 1 << 800 << 704;
    QTest::newRow("maximise and close") << 0 << 1 << 800 << 736;
    QTest::newRow("narrower bar") << 1 << 0 << 418 << 354;
    QTest::newRow("above zero counts once") << 7 << -7 << 800 << 736;
}

void TestTitleBar::pressInTheButtonZoneStartsNoDrag()
{
    QFETCH(int, minimizeSlot);
    QFETCH(int, maximizeSlot);
    QFETCH(int, barWidth);
    QFETCH(int, lastDraggingX);
    bar->setMinimizeSlot(minimizeSlot);
    bar->setMaximizeSlot(maximizeSlot);
    bar->setBarWidth(barWidth);
    QVERIFY(dragsFrom(QPoint(lastDraggingX, 20)));
    QVERIFY(!dragsFrom(QPoint(lastDraggingX + 1, 20)));
    QVERIFY(!dragsFrom(QPoint(lastDraggingX + 60, 20)));
}

void TestTitleBar::pressInTheButtonZoneIsLeftToTheWindow()
{
    press(QPoint(736, 20));
    QCOMPARE(window->presses, 0);
    release(QPoint(736, 20));
    press(QPoint(737, 20));
    QCOMPARE(window->presses, 1);
    release(QPoint(737, 20));
}

void TestTitleBar::rightDragUsesTheGrabPointOfTheLastLeftPress()
{
    // Without one it holds the window's corner.
    press(QPoint(300, 30), Qt::RightButton);
    moveTo(QPoint(310, 35));
    QCOMPARE(window->pos(), windowStart + QPoint(310, 35));
    release(QPoint(0, 0), Qt::RightButton);
    window->move(windowStart);
    press(QPoint(100, 20));
    release(QPoint(100, 20));
    press(QPoint(300, 30), Qt::RightButton);
    moveTo(QPoint(310, 30));
    QCOMPARE(window->pos(), windowStart + QPoint(210, 10));
    release(QPoint(300, 30), Qt::RightButton);
}

void TestTitleBar::releaseOfAnyButtonEndsTheDrag()
{
    press(QPoint(100, 20));
    press(QPoint(100, 20), Qt::RightButton);
    release(QPoint(100, 20), Qt::RightButton);
    moveTo(QPoint(150, 30));
    QCOMPARE(window->pos(), windowStart);
    release(QPoint(150, 30));
}

void TestTitleBar::doubleClickChangesNothing()
{
    QTest::mouseDClick(bar, Qt::LeftButton, Qt::NoModifier, QPoint(100, 20));
    QVERIFY(!window->isMaximized());
    // Held after its second press, a double click does not drag either.
    QMouseEvent secondPress(QEvent::MouseButtonDblClick, QPointF(100, 20), Qt::LeftButton,
                            Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(bar, &secondPress);
    QMouseEvent moved(QEvent::MouseMove, QPointF(150, 30), QPointF(150, 30), QPointF(350, 180),
                      Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(bar, &moved);
    QCOMPARE(window->pos(), windowStart);
}

void TestTitleBar::grabPointCountsFromTheWindowsCorner()
{
    // The dialog's bar begins one pixel inside its window.
    bar->setGeometry(1, 1, 418, 39);
    press(QPoint(410, 20));
    moveTo(QPoint(420, 20));
    QCOMPARE(window->pos(), windowStart + QPoint(10, 0));
    release(QPoint(410, 20));
}

void TestTitleBar::fractionsOfPixelsAreRounded()
{
    QMouseEvent pressed(QEvent::MouseButtonPress, QPointF(99.5, 20.4), QPointF(99.5, 20.4),
                        QPointF(299.5, 170.4), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(bar, &pressed);
    QMouseEvent moved(QEvent::MouseMove, QPointF(110, 30), QPointF(110, 30), QPointF(309.6, 180.5),
                      Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(bar, &moved);
    QCOMPARE(window->pos(), QPoint(310 - 100, 181 - 20));
}

TEST_SUITE(titlebar, TestTitleBar)
#include "titlebar.moc"
