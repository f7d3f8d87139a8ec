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

constexpr int moreRowsThanFit = 40;

void turnWheel(QWidget *widget, QPoint steps, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    constexpr int wheelStep = 120; // as QWheelEvent counts
    const QPointF place = widget->rect().center();
    QWheelEvent turn(place, widget->mapToGlobal(place.toPoint()), QPoint(), steps * wheelStep,
                     Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &turn);
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
    void fillAndFocus(const char *name = QTest::currentDataTag());
    void type(Qt::Key key) const { QTest::keyClick(list->window()->windowHandle(), key); }

    QTableWidget *list = nullptr; ///< the table that is typed into
};

void TestKeys::bothTables()
{
    QTest::addColumn<int>("nothing");
    QTest::newRow("mainTable") << 0;
    QTest::newRow("historyTable") << 0;
}

void TestKeys::fillAndFocus(const char *name)
{
    list = find<QTableWidget>(name);
    if (list == table()) {
        dropFiles(moreRowsThanFit);
    } else {
        testHome().writeHistory(
            QByteArray("2026-01-02 03:04:05\nname\n/folder\n").repeated(moreRowsThanFit));
        press("historyLink");
    }
    list->window()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(list->window()));
    list->setFocus();
}

void TestKeys::neitherClickNorKeyOpensATextField()
{
    fillAndFocus();
    const QWidget *view = list->viewport();
    const QPoint end = view->mapTo(list->window(), QPoint(view->width() - 1, 10));
    QTest::mouseDClick(list->window()->windowHandle(), Qt::LeftButton, Qt::NoModifier, end);
    QVERIFY(list->findChild<QLineEdit *>() == nullptr);
    // The last column has no row's widget in the main table, nor has a row of the history that
    // was scrolled away.
    list->setCurrentCell(0, list->columnCount() - 1);
    list->verticalScrollBar()->setValue(moreRowsThanFit / 2);
    for (const Qt::Key key : {Qt::Key_F2, Qt::Key_A, Qt::Key_Return}) {
        type(key);
        QVERIFY(list->findChild<QLineEdit *>() == nullptr);
    }
}

void TestKeys::nothingMovesARowSideways()
{
    fillAndFocus();
    const int left = list->columnViewportPosition(0);
    const int top = list->verticalScrollBar()->value();
    turnWheel(list->viewport(), QPoint(-1, 0));
    turnWheel(list->viewport(), QPoint(-5, -1));
    turnWheel(list->viewport(), QPoint(-1, 0), Qt::AltModifier);
    turnWheel(list->viewport(), QPoint(0, -1), Qt::AltModifier);
    QCOMPARE(list->columnViewportPosition(0), left);
    QCOMPARE(list->cellWidget(list->rowAt(0), 0)->x(), 0);
    turnWheel(list->viewport(), QPoint(0, -1));
    QVERIFY(list->verticalScrollBar()->value() > top);
    list->setCurrentCell(0, 0);
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_End, Qt::Key_Left}) {
        type(key);
        QCOMPARE(list->columnViewportPosition(0), left);
    }
}

void TestKeys::tabLeavesTheMainTable()
{
    fillAndFocus("mainTable");
    // On its way Tab visits the tick boxes of the rows.
    const QWidget *beyond = find("selectAllCheckBox");
    for (int key = 0; key <= moreRowsThanFit && !beyond->hasFocus(); ++key)
        type(Qt::Key_Tab);
    QVERIFY(beyond->hasFocus());
}

void TestKeys::tabChoosesNoRowOfTheHistory()
{
    fillAndFocus("historyTable");
    list->setCurrentCell(0, 0);
    type(Qt::Key_Tab);
    QCOMPARE(list->currentRow(), 0);
}

TEST_SUITE(keys, TestKeys)
#include "keys.moc"
