// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The rows of a history table: which have frames, what these show, and that
// nobody who scrolls sees a row without one.

#include "ui/historyrows.h"

#include "suites.h"
#include "ui/historyrowframe.h"
#include "ui/rowtable.h"

#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QtTest>

#include <memory>

namespace
{

constexpr int manyRows = 5000;
/// The view holds 13 rows; a few more on either side are there for the wheel.
constexpr int mostFrames = 40;

QString textOf(const QWidget *frame, const char *label)
{
    return frame->findChild<QLabel *>(QString::fromLatin1(label))->text();
}

} // namespace

class TestHistoryRows : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newestRowIsOnTop();
    void rowIsInTheTableAtOnce();
    void onlyRowsNearTheViewHaveFrames();
    void scrollingShowsTheRightTexts_data();
    void scrollingShowsTheRightTexts();
    void jumpToTheEndAndBack();
    void rowsArrivingWhileScrolledKeepTheViewRight();
    void removedRowsCloseTheGap();
    void removingARowThatIsNotThereDoesNothing();
    void clearingTakesEveryRowAway();
    void rowsAfterAClearStartAnew();

private:
    void prepend(int number);
    void fill(int count);
    QStringList namesInView() const;
    QStringList expectedInView(int newest) const;
    QList<HistoryRowFrame *> frames() const;

    std::unique_ptr<QWidget> window;
    RowTable *table = nullptr;
    HistoryRows *rows = nullptr;
};

/// A table as the history window has it.
void TestHistoryRows::init()
{
    window = std::make_unique<QWidget>();
    window->resize(698, 415);
    table = new RowTable(1, window.get());
    table->setGeometry(0, 0, 698, 415);
    table->setColumnWidth(0, 698);
    table->horizontalHeader()->setFixedHeight(25);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->hide();
    table->setShowGrid(false);
    table->setStyleSheet(QStringLiteral("border:none;background:none;"));
    rows = new HistoryRows(table, window.get());
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
}

void TestHistoryRows::cleanup()
{
    delete rows; // as the main window does, before the table goes
    window.reset();
}

void TestHistoryRows::prepend(int number)
{
    rows->prepend(QStringLiteral("time %1").arg(number), QStringLiteral("name %1").arg(number),
                  QStringLiteral("/folder/%1").arg(number));
}

void TestHistoryRows::fill(int count)
{
    for (int number = 0; number < count; ++number)
        prepend(number);
    QTRY_COMPARE(namesInView(), expectedInView(count - 1));
    QCOMPARE(table->rowCount(), count);
}

/// What stands in each row that can be seen at least in part, from top to bottom.
QStringList TestHistoryRows::namesInView() const
{
    QStringList names;
    const int height = table->viewport()->height();
    for (int y = 0; y < height; y += 30) {
        const int row = table->rowAt(y);
        if (row < 0)
            break;
        const QWidget *frame = table->cellWidget(row, 0);
        names.append(frame != nullptr && frame->isVisible()
                             && frame->y() == table->rowViewportPosition(row)
                         ? textOf(frame, "nameLabel")
                         : QStringLiteral("no frame"));
    }
    return names;
}

/// What should: row 0 is the @p newest of all numbers.
QStringList TestHistoryRows::expectedInView(int newest) const
{
    QStringList names;
    const int height = table->viewport()->height();
    for (int y = 0; y < height && table->rowAt(y) >= 0; y += 30)
        names.append(QStringLiteral("name %1").arg(newest - table->rowAt(y)));
    return names;
}

QList<HistoryRowFrame *> TestHistoryRows::frames() const
{
    return window->findChildren<HistoryRowFrame *>();
}

void TestHistoryRows::newestRowIsOnTop()
{
    fill(3);
    QCOMPARE(namesInView(), (QStringList{QStringLiteral("name 2"), QStringLiteral("name 1"),
                                         QStringLiteral("name 0")}));
    const QWidget *top = table->cellWidget(0, 0);
    QCOMPARE(textOf(top, "timeLabel"), QStringLiteral("time 2"));
    QCOMPARE(textOf(top, "pathLabel"), QStringLiteral("/folder/2"));
}

void TestHistoryRows::rowIsInTheTableAtOnce()
{
    for (int number = 0; number < manyRows; ++number) {
        prepend(number);
        QCOMPARE(table->rowCount(), number + 1);
        QCOMPARE(table->rowHeight(0), 30);
    }
    QTRY_COMPARE(namesInView(), expectedInView(manyRows - 1));
}

void TestHistoryRows::onlyRowsNearTheViewHaveFrames()
{
    fill(manyRows);
    QCOMPARE(namesInView(), expectedInView(manyRows - 1));
    QCOMPARE(namesInView().size(), 13);
    QTRY_VERIFY(frames().size() <= mostFrames);
    QVERIFY(table->cellWidget(manyRows / 2, 0) == nullptr);
}

void TestHistoryRows::scrollingShowsTheRightTexts_data()
{
    QTest::addColumn<int>("first");
    QTest::newRow("one row") << 1;
    QTest::newRow("one screen") << 13;
    QTest::newRow("middle") << manyRows / 2;
    QTest::newRow("end") << manyRows;
}

void TestHistoryRows::scrollingShowsTheRightTexts()
{
    QFETCH(int, first);
    fill(manyRows);
    table->verticalScrollBar()->setValue(first);
    QCOMPARE(namesInView(), expectedInView(manyRows - 1));
    QVERIFY(table->rowAt(0) > 0);
    QCOMPARE(table->cellWidget(0, 0) != nullptr, first == 1);
    QTRY_VERIFY(frames().size() <= mostFrames);
}

void TestHistoryRows::jumpToTheEndAndBack()
{
    fill(manyRows);
    QScrollBar *bar = table->verticalScrollBar();
    for (int turn = 0; turn < 3; ++turn) {
        bar->setValue(bar->maximum());
        QCOMPARE(namesInView().constLast(), QStringLiteral("name 0"));
        QCOMPARE(namesInView(), expectedInView(manyRows - 1));
        bar->setValue(0);
        QCOMPARE(namesInView().constFirst(), QStringLiteral("name %1").arg(manyRows - 1));
        QCOMPARE(namesInView(), expectedInView(manyRows - 1));
    }
    QTRY_VERIFY(frames().size() <= mostFrames);
}

void TestHistoryRows::rowsArrivingWhileScrolledKeepTheViewRight()
{
    fill(100);
    table->verticalScrollBar()->setValue(40);
    for (int number = 100; number < 200; ++number)
        prepend(number);
    QTRY_COMPARE(namesInView(), expectedInView(199));
    QCOMPARE(table->rowCount(), 200);
    QCOMPARE(table->verticalScrollBar()->value(), 40);
}

void TestHistoryRows::removedRowsCloseTheGap()
{
    fill(50);
    rows->remove(2);
    QCOMPARE(table->rowCount(), 49);
    const QStringList top = namesInView().mid(0, 4);
    QCOMPARE(top, (QStringList{QStringLiteral("name 49"), QStringLiteral("name 48"),
                               QStringLiteral("name 46"), QStringLiteral("name 45")}));
    rows->remove(48);
    table->verticalScrollBar()->setValue(table->verticalScrollBar()->maximum());
    QCOMPARE(namesInView().constLast(), QStringLiteral("name 1"));
}

void TestHistoryRows::removingARowThatIsNotThereDoesNothing()
{
    fill(2);
    rows->remove(2);
    rows->remove(-1);
    QCOMPARE(table->rowCount(), 2);
    QCOMPARE(namesInView(), expectedInView(1));
}

void TestHistoryRows::clearingTakesEveryRowAway()
{
    for (int number = 0; number < manyRows; ++number)
        prepend(number);
    rows->clear();
    QCOMPARE(table->rowCount(), 0);
    QVERIFY(table->updatesEnabled());
    QTRY_VERIFY(frames().isEmpty());
    QCOMPARE(table->rowCount(), 0);
}

void TestHistoryRows::rowsAfterAClearStartAnew()
{
    fill(manyRows);
    table->verticalScrollBar()->setValue(manyRows / 2);
    rows->clear();
    fill(20);
    QCOMPARE(namesInView(), expectedInView(19));
    QTRY_VERIFY(frames().size() <= table->rowCount());
}

TEST_SUITE(historyrows, TestHistoryRows)
#include "historyrows.moc"
