// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The title bar, whose drag moves its window, and the scroll button, which moves itself.

#include "suites.h"
#include "widgets/customtitlebar.h"
#include "widgets/zzscrollarea.h"
#include "widgets/zzscrollbutton.h"
#include "widgets/zzwidget.h"

#include <QMouseEvent>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

namespace
{

constexpr QPoint windowStart(200, 150);
constexpr QPoint buttonStart(100, 60);
constexpr int bothAxes = ZZScrollButton::Vertical | ZZScrollButton::Horizontal;

} // namespace

class TestDragging : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void rightDragUsesTheGrabPointOfTheLastLeftPress_data() { bothWidgets(); }
    void rightDragUsesTheGrabPointOfTheLastLeftPress();
    void releaseOfAnyButtonEndsTheDrag_data() { bothWidgets(); }
    void releaseOfAnyButtonEndsTheDrag();
    void fractionsOfPixelsAreRounded_data() { bothWidgets(); }
    void fractionsOfPixelsAreRounded();

    void titleBarMovesItsWindowWithThePointer();
    void pressInTheButtonZoneIsLeftToTheWindow_data();
    void pressInTheButtonZoneIsLeftToTheWindow();
    void doubleClickChangesNothing();
    void grabPointCountsFromTheWindowsCorner();

    void scrollButtonMovesAlongItsAxesWithinItsBounds_data();
    void scrollButtonMovesAlongItsAxesWithinItsBounds();
    void scrollButtonIsDraggedOnlyWithAnAxisAndAPress();
    void scrollButtonIsNeverClicked();
    void containersAreNamedChildrenWithoutStyling();

private:
    static void bothWidgets();
    void holdWidgetOfTheRow();
    void hold(QWidget *widget, QWidget *moving);
    bool send(QEvent::Type type, const QPointF &place, Qt::MouseButton mouseButton) const;

    // Places are inside the held widget.
    bool press(QPoint place, Qt::MouseButton mouseButton = Qt::LeftButton) const
    {
        return send(QEvent::MouseButtonPress, place, mouseButton);
    }
    void moveTo(QPoint place) const { send(QEvent::MouseMove, place, Qt::NoButton); }
    void release(Qt::MouseButton mouseButton = Qt::LeftButton) const
    {
        send(QEvent::MouseButtonRelease, {}, mouseButton);
    }
    QPoint step() const { return moved->pos() - start; }

    std::unique_ptr<QWidget> window;
    CustomTitleBar *bar = nullptr;
    ZZScrollButton *button = nullptr;
    std::unique_ptr<QSignalSpy> reports; ///< of the button
    QWidget *held = nullptr;
    QWidget *moved = nullptr;
    QPoint start; ///< of what is moved
};

void TestDragging::init()
{
    window = std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint);
    window->setGeometry(QRect(windowStart, QSize(900, 400)));
    bar = new CustomTitleBar(window.get());
    bar->setGeometry(0, 0, 900, 40);
    button = new ZZScrollButton(window.get());
    button->setGeometry(QRect(buttonStart, QSize(20, 20)));
    reports = std::make_unique<QSignalSpy>(button, &ZZScrollButton::mouseDrag);
    hold(bar, window.get());
}

void TestDragging::bothWidgets()
{
    QTest::addColumn<bool>("isBar");
    QTest::newRow("title bar") << true;
    QTest::newRow("scroll button") << false;
}

void TestDragging::holdWidgetOfTheRow()
{
    QFETCH(bool, isBar);
    button->setDragAxes(bothAxes);
    if (!isBar)
        hold(button, button);
}

void TestDragging::hold(QWidget *widget, QWidget *moving)
{
    held = widget;
    moved = moving;
    start = moved->pos();
}

/// Whether somebody accepted the event.
bool TestDragging::send(QEvent::Type type, const QPointF &place, Qt::MouseButton mouseButton) const
{
    QMouseEvent event(type, place, held->pos() + place, held->mapToGlobal({}) + place, mouseButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(held, &event);
    return event.isAccepted();
}

void TestDragging::rightDragUsesTheGrabPointOfTheLastLeftPress()
{
    holdWidgetOfTheRow();
    press({12, 13}, Qt::RightButton);
    moveTo({20, 5});
    QCOMPARE(step(), QPoint(20, 5)); // without one, the corner
    release(Qt::RightButton);
    moved->move(start);
    press({5, 5});
    release();
    press({15, 15}, Qt::RightButton);
    moveTo({25, 5});
    QCOMPARE(step(), QPoint(20, 0));
}

void TestDragging::releaseOfAnyButtonEndsTheDrag()
{
    holdWidgetOfTheRow();
    press({5, 5});
    press({5, 5}, Qt::RightButton);
    release(Qt::RightButton);
    moveTo({15, 15});
    QCOMPARE(step(), QPoint());
}

void TestDragging::fractionsOfPixelsAreRounded()
{
    holdWidgetOfTheRow();
    send(QEvent::MouseButtonPress, {4.5, 4.4}, Qt::LeftButton);
    send(QEvent::MouseMove, {9.6, 9.5}, Qt::NoButton);
    QCOMPARE(step(), QPoint(10 - 5, 10 - 4));
}

void TestDragging::titleBarMovesItsWindowWithThePointer()
{
    moveTo({150, 30});
    QCOMPARE(step(), QPoint());
    press({100, 20});
    moveTo({130, 25});
    QCOMPARE(step(), QPoint(30, 5));
    moveTo({90, 20});
    QCOMPARE(step(), QPoint(20, 5));
    moveTo({-2000, -1000}); // it may leave the screen
    QCOMPARE(step(), QPoint(20 - 2100, 5 - 1020));
    release();
    QCOMPARE(step(), QPoint(20 - 2100, 5 - 1020));
    QCOMPARE(bar->geometry(), QRect(0, 0, 900, 40));
}

void TestDragging::pressInTheButtonZoneIsLeftToTheWindow_data()
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

void TestDragging::pressInTheButtonZoneIsLeftToTheWindow()
{
    QFETCH(int, minimizeSlot);
    QFETCH(int, maximizeSlot);
    QFETCH(int, barWidth);
    QFETCH(int, lastDraggingX);
    bar->setMinimizeSlot(minimizeSlot);
    bar->setMaximizeSlot(maximizeSlot);
    bar->setBarWidth(barWidth);
    for (const int beyond : {0, 1, 60}) {
        window->move(windowStart);
        QCOMPARE(press({lastDraggingX + beyond, 20}), beyond == 0);
        moveTo({lastDraggingX + beyond - 11, 27});
        QCOMPARE(step(), beyond == 0 ? QPoint(-11, 7) : QPoint());
        release();
    }
}

void TestDragging::doubleClickChangesNothing()
{
    // Held after its second press, it does not drag either.
    send(QEvent::MouseButtonDblClick, {100, 20}, Qt::LeftButton);
    QVERIFY(!window->isMaximized());
    moveTo({150, 30});
    QCOMPARE(step(), QPoint());
}

void TestDragging::grabPointCountsFromTheWindowsCorner()
{
    bar->setGeometry(1, 1, 418, 39); // as in the dialog
    press({409, 19});
    moveTo({419, 19});
    QCOMPARE(step(), QPoint(10, 0));
}

void TestDragging::scrollButtonMovesAlongItsAxesWithinItsBounds_data()
{
    QTest::addColumn<int>("axes");
    QTest::addColumn<QRect>("bounds");
    QTest::addColumn<QPoint>("pulled");
    QTest::addColumn<QPoint>("steps");
    QTest::addColumn<QVariantList>("percentages");
    const QRect wide(0, 0, 500, 300);
    const QRect close(50, 50, 100, 77);
    const QRect narrow(buttonStart, QSize(3, 3));
    const QRect line(buttonStart.x(), 0, 0, 300);
    const auto add = [](const char *name, int axes, const QRect &bounds, QPoint pulled,
                        QPoint steps, const QVariantList &percentages) {
        QTest::newRow(name) << axes << bounds << pulled << steps << percentages;
    };
    add("vertical", 1, wide, {50, 30}, {0, 30}, {20, 30});
    add("horizontal", 2, wide, {50, 30}, {50, 0}, {30, 20});
    add("both", 3, wide, {50, 30}, {50, 30}, {30, 30});
    add("bits without meaning", 4, wide, {50, 30}, {0, 0}, {20, 20});
    add("right and lower bound are exactly 100", 3, close, {50, 67}, {50, 67}, {100, 100});
    add("left and upper bound are 0", 3, close, {-50, -10}, {-50, -10}, {0, 0});
    add("out on the right, not taken downwards either", 3, close, {51, 10}, {0, 0}, {});
    add("out at the top, not taken to the right either", 3, close, {10, -11}, {0, 0}, {});
    add("a third is truncated", 2, narrow, {1, 0}, {1, 0}, {33, 0});
    add("two thirds are truncated", 2, narrow, {2, 0}, {2, 0}, {66, 0});
    add("range without width counts as 100", 1, line, {0, 90}, {0, 90}, {100, 50});
    add("without bounds", 3, QRect(), {-140, 90}, {-140, 90}, {100, 100});
}

void TestDragging::scrollButtonMovesAlongItsAxesWithinItsBounds()
{
    QFETCH(int, axes);
    QFETCH(QRect, bounds);
    QFETCH(QPoint, pulled);
    QFETCH(QVariantList, percentages);
    if (!bounds.isNull())
        button->setBounds(bounds.x(), bounds.y(), bounds.width(), bounds.height());
    button->setDragAxes(axes);
    hold(button, button);
    press({5, 5});
    moveTo(QPoint(5, 5) + pulled);
    release();
    QTEST(step(), "steps");
    QCOMPARE(reports->count(), percentages.isEmpty() ? 0 : 1);
    QCOMPARE(reports->value(0), percentages);
}

void TestDragging::scrollButtonIsDraggedOnlyWithAnAxisAndAPress()
{
    hold(button, button);
    button->setBounds(0, 0, 500, 300);
    press({5, 5});
    moveTo({15, 15});
    release();
    // With mouse tracking it is told every movement of the pointer.
    QVERIFY(button->hasMouseTracking());
    button->setDragAxes(bothAxes);
    moveTo({8, 8});
    QCOMPARE(step(), QPoint());
    QCOMPARE(reports->count(), 0);
}

void TestDragging::scrollButtonIsNeverClicked()
{
    const QSignalSpy clicks(button, &QPushButton::clicked);
    QTest::mouseClick(button, Qt::LeftButton);
    button->setDragAxes(ZZScrollButton::Horizontal);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(clicks.count(), 0);
}

void TestDragging::containersAreNamedChildrenWithoutStyling()
{
    const ZZWidget widget(window.get());
    const ZZScrollArea area(window.get());
    QCOMPARE(widget.metaObject()->className(), "ZZWidget");
    QCOMPARE(area.metaObject()->className(), "ZZScrollArea");
    const QList<const QWidget *> containers{&widget, &area};
    for (const QWidget *container : containers) {
        QCOMPARE(container->parentWidget(), window.get());
        QVERIFY(container->styleSheet().isEmpty());
    }
}

TEST_SUITE(dragging, TestDragging)
#include "dragging.moc"
