// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "widgets/zzscrollbutton.h"
#include "suites.h"

#include <QMouseEvent>
#include <QSignalSpy>
#include <QWindow>
#include <QtTest>

#include <memory>

namespace
{
constexpr QPoint start(100, 60);
constexpr QPoint held(5, 5);
} // namespace

class TestZZScrollButton : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void isNotDraggableAtFirst();
    void movesAlongItsAxesOnly_data();
    void movesAlongItsAxesOnly();
    void stepOutOfTheBoundsIsNotTakenOnTheOtherAxisEither();
    void boundsBelongToTheRange();
    void reportsZeroAtTheFirstBoundAndHundredAtTheLast();
    void percentagesAreTruncated_data();
    void percentagesAreTruncated();
    void rangeWithoutWidthCountsAsHundred();
    void withoutBoundsItMovesFreelyAndReportsHundred();
    void rightDragUsesTheGrabPointOfTheLastLeftPress();
    void releaseOfAnyButtonEndsTheDrag();
    void pointerMovingOverItWithoutAPressChangesNothing();
    void isNeverClicked();
    void fractionsOfPixelsAreRounded();

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

void TestZZScrollButton::init()
{
    window = std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint);
    window->resize(600, 400);
    button = new ZZScrollButton(window.get());
    button->setGeometry(QRect(start, QSize(20, 20)));
    reports = std::make_unique<QSignalSpy>(button, &ZZScrollButton::mouseDrag);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
}

void TestZZScrollButton::cleanup()
{
    reports.reset();
    window.reset();
}

void TestZZScrollButton::press(Qt::MouseButton mouseButton, QPoint inside)
{
    pointer = button->pos() + inside;
    QTest::mousePress(window->windowHandle(), mouseButton, Qt::NoModifier, pointer);
}

void TestZZScrollButton::release(Qt::MouseButton mouseButton)
{
    QTest::mouseRelease(window->windowHandle(), mouseButton, Qt::NoModifier, pointer);
}

/// One movement of the pointer, @p step away from the point where the button is held.
void TestZZScrollButton::dragBy(QPoint step)
{
    pointer = button->pos() + held + step;
    QTest::mouseMove(window->windowHandle(), pointer);
}

/// The percentages reported last; a place no report can name when there is none.
QPoint TestZZScrollButton::lastReport() const
{
    if (reports->isEmpty())
        return {-1, -1};
    const QList<QVariant> arguments = reports->last();
    return {arguments.at(0).toInt(), arguments.at(1).toInt()};
}

void TestZZScrollButton::isNotDraggableAtFirst()
{
    button->setBounds(0, 0, 500, 300);
    press();
    dragBy(QPoint(10, 10));
    release();
    QCOMPARE(button->pos(), start);
    QCOMPARE(reports->count(), 0);
}

void TestZZScrollButton::movesAlongItsAxesOnly_data()
{
    QTest::addColumn<int>("axes");
    QTest::addColumn<QPoint>("step");
    QTest::addColumn<QPoint>("percentages");
    QTest::newRow("vertical") << 1 << QPoint(0, 30) << QPoint(20, 30);
    QTest::newRow("horizontal") << 2 << QPoint(50, 0) << QPoint(30, 20);
    QTest::newRow("both") << 3 << QPoint(50, 30) << QPoint(30, 30);
    QTest::newRow("bits without meaning") << 4 << QPoint(0, 0) << QPoint(20, 20);
}

void TestZZScrollButton::movesAlongItsAxesOnly()
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

void TestZZScrollButton::stepOutOfTheBoundsIsNotTakenOnTheOtherAxisEither()
{
    button->setBounds(50, 50, 100, 100);
    button->setDragAxes(ZZScrollButton::Vertical | ZZScrollButton::Horizontal);
    press();
    dragBy(QPoint(51, 10));
    QCOMPARE(button->pos(), start);
    dragBy(QPoint(10, -11));
    QCOMPARE(button->pos(), start);
    QCOMPARE(reports->count(), 0);
    release();
}

void TestZZScrollButton::boundsBelongToTheRange()
{
    button->setBounds(50, 50, 100, 100);
    button->setDragAxes(ZZScrollButton::Vertical | ZZScrollButton::Horizontal);
    press();
    dragBy(QPoint(50, 90));
    QCOMPARE(button->pos(), QPoint(150, 150));
    dragBy(QPoint(-100, -100));
    QCOMPARE(button->pos(), QPoint(50, 50));
    release();
}

void TestZZScrollButton::reportsZeroAtTheFirstBoundAndHundredAtTheLast()
{
    button->setBounds(50, 50, 100, 77);
    button->setDragAxes(ZZScrollButton::Vertical | ZZScrollButton::Horizontal);
    press();
    dragBy(QPoint(50, 67));
    QCOMPARE(lastReport(), QPoint(100, 100));
    dragBy(QPoint(-100, -77));
    QCOMPARE(lastReport(), QPoint(0, 0));
    release();
}

void TestZZScrollButton::percentagesAreTruncated_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("percentage");
    QTest::newRow("a third") << 101 << 33;
    QTest::newRow("two thirds") << 102 << 66;
    QTest::newRow("whole") << 103 << 100;
}

void TestZZScrollButton::percentagesAreTruncated()
{
    QFETCH(int, x);
    button->setBounds(start.x(), start.y(), 3, 3);
    button->setDragAxes(ZZScrollButton::Horizontal);
    press();
    dragBy(QPoint(x - start.x(), 0));
    release();
    QTEST(lastReport().x(), "percentage");
}

void TestZZScrollButton::rangeWithoutWidthCountsAsHundred()
{
    button->setBounds(start.x(), 0, 0, 300);
    button->setDragAxes(ZZScrollButton::Vertical);
    press();
    dragBy(QPoint(0, 90));
    release();
    QCOMPARE(lastReport(), QPoint(100, 50));
}

void TestZZScrollButton::withoutBoundsItMovesFreelyAndReportsHundred()
{
    button->setDragAxes(ZZScrollButton::Vertical | ZZScrollButton::Horizontal);
    press();
    dragBy(QPoint(-140, 90));
    release();
    QCOMPARE(button->pos(), start + QPoint(-140, 90));
    QCOMPARE(lastReport(), QPoint(100, 100));
}

void TestZZScrollButton::rightDragUsesTheGrabPointOfTheLastLeftPress()
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

void TestZZScrollButton::releaseOfAnyButtonEndsTheDrag()
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

void TestZZScrollButton::pointerMovingOverItWithoutAPressChangesNothing()
{
    // With mouse tracking it hears of every movement.
    QVERIFY(button->hasMouseTracking());
    button->setBounds(0, 0, 500, 300);
    button->setDragAxes(ZZScrollButton::Horizontal);
    dragBy(QPoint(3, 3));
    dragBy(QPoint(6, 6));
    QCOMPARE(button->pos(), start);
    QCOMPARE(reports->count(), 0);
}

void TestZZScrollButton::isNeverClicked()
{
    const QSignalSpy clicks(button, &QPushButton::clicked);
    QTest::mouseClick(button, Qt::LeftButton);
    button->setDragAxes(ZZScrollButton::Horizontal);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(clicks.count(), 0);
}

void TestZZScrollButton::fractionsOfPixelsAreRounded()
{
    button->setDragAxes(ZZScrollButton::Vertical | ZZScrollButton::Horizontal);
    QMouseEvent pressed(QEvent::MouseButtonPress, QPointF(4.5, 4.4), Qt::LeftButton, Qt::LeftButton,
                        Qt::NoModifier);
    QApplication::sendEvent(button, &pressed);
    QMouseEvent moved(QEvent::MouseMove, QPointF(9.5, 9.4), Qt::NoButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(button, &moved);
    QCOMPARE(button->pos(), start + QPoint(10 - 5, 9 - 4));
}

TEST_SUITE(zzscrollbutton, TestZZScrollButton)
#include "zzscrollbutton.moc"
