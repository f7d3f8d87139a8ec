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
    void cleanup();

    void movesAlongItsAxesOnly_data();
    void movesAlongItsAxesOnly();
    void stepOutOfTheBoundsIsNotTakenOnTheOtherAxisEither();
    void boundsBelongToTheRangeAndReportZeroAndHundred();
    void percentagesAreTruncated_data();
    void percentagesAreTruncated();
    void rangeWithoutWidthCountsAsHundred();
    void withoutBoundsItMovesFreelyAndReportsHundred();
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
    QPoint lastReport() const;

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

void TestScrollButton::cleanup()
{
    reports.reset();
    window.reset();
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

/// The percentages reported last; a place no report can name when there is none.
QPoint TestScrollButton::lastReport() const
{
    if (reports->isEmpty())
        return {-1, -1};
    const QList<QVariant> arguments = reports->last();
    return {arguments.at(0).toInt(), arguments.at(1).toInt()};
}

void TestScrollButton::movesAlongItsAxesOnly_data()
{
    QTest::addColumn<int>("axes");
    QTest::addColumn<QPoint>("step");
    QTest::addColumn<QPoint>("percentages");
    QTest::newRow("vertical") << 1 << QPoint(0, 30) << QPoint(20, 30);
    QTest::newRow("horizontal") << 2 << QPoint(50, 0) << QPoint(30, 20);
    QTest::newRow("both") << 3 << QPoint(50, 30) << QPoint(30, 30);
    QTest::newRow("bits without meaning") << 4 << QPoint(0, 0) << QPoint(20, 20);
}

void TestScrollButton::movesAlongItsAxesOnly()
{
    QFETCH(int, axes);
    button->setBounds(0, 0, 500, 300);
    button->setDragAxes(axes);
    press();
    dragBy(QPoint(50, 30));
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

void TestScrollButton::percentagesAreTruncated_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("percentage");
    QTest::newRow("a third") << 101 << 33;
    QTest::newRow("two thirds") << 102 << 66;
    QTest::newRow("whole") << 103 << 100;
}

void TestScrollButton::percentagesAreTruncated()
{
    QFETCH(int, x);
    button->setBounds(start.x(), start.y(), 3, 3);
    button->setDragAxes(ZZScrollButton::Horizontal);
    press();
    dragBy(QPoint(x - start.x(), 0));
    release();
    QTEST(lastReport().x(), "percentage");
}

void TestScrollButton::rangeWithoutWidthCountsAsHundred()
{
    button->setBounds(start.x(), 0, 0, 300);
    button->setDragAxes(ZZScrollButton::Vertical);
    press();
    dragBy(QPoint(0, 90));
    release();
    QCOMPARE(lastReport(), QPoint(100, 50));
}

void TestScrollButton::withoutBoundsItMovesFreelyAndReportsHundred()
{
    button->setDragAxes(bothAxes);
    press();
    dragBy(QPoint(-140, 90));
    release();
    QCOMPARE(button->pos(), start + QPoint(-140, 90));
    QCOMPARE(lastReport(), QPoint(100, 100));
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
