// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Keys, double clicks and wheels on the two tables, which are long enough to have a
// scroll bar: rows can be looked at, not edited, and stay under their headings.

#include "suites.h"
#include "windowtest.h"

#include <QApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QWheelEvent>
#include <QtTest>

using namespace testsupport;

namespace
{

constexpr int manyRows = 40;

void turnWheel(QWidget *widget, QPoint steps, Qt::KeyboardModifiers modifiers)
{
    constexpr int wheelStep = 120; // as QWheelEvent counts
    const QPointF place = widget->rect().center();
    QWheelEvent turn(place, widget->mapToGlobal(place.toPoint()), QPoint(), steps * wheelStep,
                     Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &turn);
}

void type(const QWidget *widget, Qt::Key key)
{
    QTest::keyClick(widget->window()->windowHandle(), key);
}

} // namespace

class TestKeys : public WindowTest
{
    Q_OBJECT

private slots:
    void neitherClickNorKeyOpensATextField_data() { bothTables(); }
    void neitherClickNorKeyOpensATextField();
    void nothingMovesARowSideways_data() { bothTables(); }
    void nothingMovesARowSideways();
    void tabLeavesTheMainTable();
    void tabChoosesNoRowOfTheHistory();

private:
    static void bothTables();
    /// The table @p name, filled and with the focus.
    QTableWidget *focusedTable(const char *name = QTest::currentDataTag());
};

void TestKeys::bothTables()
{
    QTest::addColumn<int>("nothing");
    QTest::newRow("mainTable") << 0;
    QTest::newRow("historyTable") << 0;
}

QTableWidget *TestKeys::focusedTable(const char *name)
{
    auto *found = find<QTableWidget>(name);
    if (found == table()) {
        dropFiles(manyRows);
    } else {
        testHome().writeHistory(
            QByteArray("2026-01-02 03:04:05\nname\n/folder\n").repeated(manyRows));
        click("historyLink");
    }
    found->window()->activateWindow();
    if (!QTest::qWaitForWindowActive(found->window()))
        qFatal("no table to type into");
    settle();
    found->setFocus();
    return found;
}

void TestKeys::neitherClickNorKeyOpensATextField()
{
    QTableWidget *table = focusedTable();
    const QWidget *view = table->viewport();
    const QPoint end = view->mapTo(table->window(), QPoint(view->width() - 1, 10));
    QTest::mouseDClick(table->window()->windowHandle(), Qt::LeftButton, Qt::NoModifier, end);
    QVERIFY(table->findChild<QLineEdit *>() == nullptr);
    // The last column has no row's widget in the main table, nor has a row of the history that
    // was scrolled away.
    table->setCurrentCell(0, table->columnCount() - 1);
    table->verticalScrollBar()->setValue(manyRows / 2);
    for (const Qt::Key key : {Qt::Key_F2, Qt::Key_A, Qt::Key_Return}) {
        type(table, key);
        QVERIFY(table->findChild<QLineEdit *>() == nullptr);
    }
}

void TestKeys::nothingMovesARowSideways()
{
    QTableWidget *table = focusedTable();
    const int left = table->columnViewportPosition(0);
    turnWheel(table->viewport(), QPoint(-1, 0), Qt::NoModifier);
    turnWheel(table->viewport(), QPoint(-5, -1), Qt::NoModifier);
    turnWheel(table->viewport(), QPoint(-1, 0), Qt::AltModifier);
    turnWheel(table->viewport(), QPoint(0, -1), Qt::AltModifier);
    QCOMPARE(table->columnViewportPosition(0), left);
    QCOMPARE(table->cellWidget(table->rowAt(0), 0)->x(), 0);
    const int top = table->verticalScrollBar()->value();
    turnWheel(table->viewport(), QPoint(0, -1), Qt::NoModifier);
    QVERIFY(table->verticalScrollBar()->value() > top);
    table->setCurrentCell(0, 0);
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_End, Qt::Key_Left}) {
        type(table, key);
        QCOMPARE(table->columnViewportPosition(0), left);
    }
}

void TestKeys::tabLeavesTheMainTable()
{
    const QTableWidget *table = focusedTable("mainTable");
    // On its way Tab visits the tick boxes of the rows.
    const QWidget *beyond = find("selectAllCheckBox");
    for (int key = 0; key <= manyRows && !beyond->hasFocus(); ++key)
        type(table, Qt::Key_Tab);
    QVERIFY(beyond->hasFocus());
}

void TestKeys::tabChoosesNoRowOfTheHistory()
{
    QTableWidget *table = focusedTable("historyTable");
    table->setCurrentCell(0, 0);
    type(table, Qt::Key_Tab);
    QCOMPARE(table->currentRow(), 0);
}

TEST_SUITE(keys, TestKeys)
#include "keys.moc"
