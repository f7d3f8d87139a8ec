// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The three widgets for scrolling by dragging.

#include "suites.h"
#include "widgets/zzscrollarea.h"
#include "widgets/zzscrollbutton.h"
#include "widgets/zzwidget.h"

#include <QMouseEvent>
#include <QSignalSpy>
#include <QWindow>
#include <QtTest>

#include <memory>

namespace
{
constexpr QPoint start(100, 60);
constexpr QPoint held(5, 5);
constexpr int bothAxes = ZZScrollButton::Vertical | ZZScrollButton::Horizontal;
} // namespace

class TestScrollButton : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { reports.reset(); }

    void movesAlongItsAxesOnlyAndReportsPercentages_data();
    void movesAlongItsAxesOnlyAndReportsPercentages();
    void stepOutOfTheBoundsIsNotTakenOnTheOtherAxisEither();
    void boundsBelongToTheRangeAndReportZeroAndHundred();
    void rightDragUsesTheGrabPointOfTheLastLeftPress();
    void releaseOfAnyButtonEndsTheDrag();
    void isDraggedOnlyWithAnAxisAndAPress();
    void isNeverClicked();
    void fractionsOfPixelsAreRounded();
    void containersAreNamedChildrenWithoutStyling();

private:
    void press(Qt::MouseButton button = Qt::LeftButton, QPoint inside = held);
    void release(Qt::MouseButton button = Qt::LeftButton);
    void dragBy(QPoint step);
    QPoint lastReport() const
    {
        const QList<QVariant> arguments = reports->value(reports->count() - 1);
        return {arguments.value(0).toInt(), arguments.value(1).toInt()};
    }

    std::unique_ptr<QWidget> window;
    ZZScrollButton *button = nullptr;
    std::unique_ptr<QSignalSpy> reports;
    QPoint pointer;
};

void TestScrollButton::init()
{
    window = std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint);
    window->resize(600, 400);
    button = new ZZScrollButton(window.get());
    button->setGeometry(QRect(start, QSize(20, 20)));
    reports = std::make_unique<QSignalSpy>(button, &ZZScrollButton::mouseDrag);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
}

void TestScrollButton::press(Qt::MouseButton mouseButton, QPoint inside)
{
    pointer = button->pos() + inside;
    QTest::mousePress(window->windowHandle(), mouseButton, Qt::NoModifier, pointer);
}

void TestScrollButton::release(Qt::MouseButton mouseButton)
{
    QTest::mouseRelease(window->windowHandle(), mouseButton, Qt::NoModifier, pointer);
}

/// One movement of the pointer, @p step away from the point where the button is held.
void TestScrollButton::dragBy(QPoint step)
{
    pointer = button->pos() + held + step;
    QTest::mouseMove(window->windowHandle(), pointer);
}

void TestScrollButton::movesAlongItsAxesOnlyAndReportsPercentages_data()
{
    QTest::addColumn<int>("axes");
    QTest::addColumn<QRect>("bounds");
    QTest::addColumn<QPoint>("pulled");
    QTest::addColumn<QPoint>("step");
    QTest::addColumn<QPoint>("percentages");
    const QRect wide(0, 0, 500, 300);
    const QRect narrow(start, QSize(3, 3));
    const QRect line(start.x(), 0, 0, 300);
    const auto add = [](const char *name, int axes, const QRect &bounds, QPoint pulled, QPoint step,
                        QPoint percentages) {
        QTest::newRow(name) << axes << bounds << pulled << step << percentages;
    };
    add("vertical", 1, wide, {50, 30}, {0, 30}, {20, 30});
    add("horizontal", 2, wide, {50, 30}, {50, 0}, {30, 20});
    add("both", 3, wide, {50, 30}, {50, 30}, {30, 30});
    add("bits without meaning", 4, wide, {50, 30}, {0, 0}, {20, 20});
    add("a third is truncated", 2, narrow, {1, 0}, {1, 0}, {33, 0});
    add("two thirds are truncated", 2, narrow, {2, 0}, {2, 0}, {66, 0});
    add("range without width counts as 100", 1, line, {0, 90}, {0, 90}, {100, 50});
    add("without bounds", 3, QRect(), {-140, 90}, {-140, 90}, {100, 100});
}

void TestScrollButton::movesAlongItsAxesOnlyAndReportsPercentages()
{
    QFETCH(int, axes);
    QFETCH(QRect, bounds);
    QFETCH(QPoint, pulled);
    if (!bounds.isNull())
        button->setBounds(bounds.x(), bounds.y(), bounds.width(), bounds.height());
    button->setDragAxes(axes);
    press();
    dragBy(pulled);
    release();
    QTEST(button->pos() - start, "step");
    QCOMPARE(reports->count(), 1);
    QTEST(lastReport(), "percentages");
}

void TestScrollButton::stepOutOfTheBoundsIsNotTakenOnTheOtherAxisEither()
{
    button->setBounds(50, 50, 100, 100);
    button->setDragAxes(bothAxes);
    press();
    dragBy(QPoint(51, 10));
    QCOMPARE(button->pos(), start);
    dragBy(QPoint(10, -11));
    QCOMPARE(button->pos(), start);
    QCOMPARE(reports->count(), 0);
    release();
}

void TestScrollButton::boundsBelongToTheRangeAndReportZeroAndHundred()
{
    button->setBounds(50, 50, 100, 77);
    button->setDragAxes(bothAxes);
    press();
    dragBy(QPoint(50, 67));
    QCOMPARE(button->pos(), QPoint(150, 127));
    QCOMPARE(lastReport(), QPoint(100, 100));
    dragBy(QPoint(-100, -77));
    QCOMPARE(button->pos(), QPoint(50, 50));
    QCOMPARE(lastReport(), QPoint(0, 0));
    release();
}

void TestScrollButton::rightDragUsesTheGrabPointOfTheLastLeftPress()
{
    button->setBounds(0, 0, 500, 300);
    button->setDragAxes(ZZScrollButton::Horizontal);
    press();
    release();
    press(Qt::RightButton, QPoint(15, 15));
    dragBy(QPoint(20, 0));
    release(Qt::RightButton);
    QCOMPARE(button->pos(), start + QPoint(20, 0));
}

void TestScrollButton::releaseOfAnyButtonEndsTheDrag()
{
    button->setBounds(0, 0, 500, 300);
    button->setDragAxes(ZZScrollButton::Horizontal);
    press();
    press(Qt::RightButton);
    release(Qt::RightButton);
    dragBy(QPoint(10, 0));
    release();
    QCOMPARE(button->pos(), start);
}

void TestScrollButton::isDraggedOnlyWithAnAxisAndAPress()
{
    button->setBounds(0, 0, 500, 300);
    press();
    dragBy(QPoint(10, 10));
    release();
    // With mouse tracking it is told every movement of the pointer.
    QVERIFY(button->hasMouseTracking());
    button->setDragAxes(bothAxes);
    dragBy(QPoint(3, 3));
    QCOMPARE(button->pos(), start);
    QCOMPARE(reports->count(), 0);
}

void TestScrollButton::isNeverClicked()
{
    const QSignalSpy clicks(button, &QPushButton::clicked);
    QTest::mouseClick(button, Qt::LeftButton);
    button->setDragAxes(ZZScrollButton::Horizontal);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(clicks.count(), 0);
}

void TestScrollButton::fractionsOfPixelsAreRounded()
{
    button->setDragAxes(bothAxes);
    QMouseEvent pressed(QEvent::MouseButtonPress, QPointF(4.5, 4.4), Qt::LeftButton, Qt::LeftButton,
                        Qt::NoModifier);
    QApplication::sendEvent(button, &pressed);
    QMouseEvent moved(QEvent::MouseMove, QPointF(9.5, 9.4), Qt::NoButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(button, &moved);
    QCOMPARE(button->pos(), start + QPoint(10 - 5, 9 - 4));
}

void TestScrollButton::containersAreNamedChildrenWithoutStyling()
{
    const ZZWidget *widget = new ZZWidget(window.get());
    const ZZScrollArea *area = new ZZScrollArea(window.get());
    QCOMPARE(widget->metaObject()->className(), "ZZWidget");
    QCOMPARE(area->metaObject()->className(), "ZZScrollArea");
    for (const QWidget *container : QList<const QWidget *>{widget, area}) {
        QCOMPARE(container->parentWidget(), window.get());
        QVERIFY(container->styleSheet().isEmpty());
    }
}

TEST_SUITE(scrollbutton, TestScrollButton)
#include "scrollbutton.moc"
