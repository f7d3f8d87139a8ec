// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Keys, double clicks and wheels on the two tables, which are long enough to have a
// scroll bar: rows can be looked at, not edited, and stay under their headings.

#include "promptly.h"
#include "shownwindow.h"
#include "suites.h"
#include "temporarytree.h"
#include "windowtesthome.h"

#include <QApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableWidget>
#include <QWheelEvent>
#include <QtTest>

#include <memory>

using testsupport::ShownWindow;
using testsupport::TemporaryTree;
using testsupport::testHome;

namespace
{

constexpr int manyRows = 40;
constexpr int wheelStep = 120; ///< as QWheelEvent counts

void turnWheel(QWidget *widget, QPoint steps, Qt::KeyboardModifiers modifiers)
{
    const QPointF place = widget->rect().center();
    QWheelEvent turn(place, widget->mapToGlobal(place.toPoint()), QPoint(), steps * wheelStep,
                     Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &turn);
}

} // namespace

class TestMainWindowInput : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void doubleClickAtTheEndOfARowOpensNoTextField_data() { bothTables(); }
    void doubleClickAtTheEndOfARowOpensNoTextField();
    void keysOpenNoTextField_data() { bothTables(); }
    void keysOpenNoTextField();
    void sidewaysWheelMovesNoRow_data() { bothTables(); }
    void sidewaysWheelMovesNoRow();
    void arrowKeysMoveNoRowSideways_data() { bothTables(); }
    void arrowKeysMoveNoRowSideways();
    void wheelStillScrollsTheRows_data() { bothTables(); }
    void wheelStillScrollsTheRows();
    void tabLeavesTheMainTable();
    void tabChoosesNoRowOfTheHistory();

private:
    static void bothTables();
    /// The table of this test row, filled and with the focus.
    QTableWidget *focusedTable();
    void fillMainTable();
    void openHistory();
    static bool hasTextField(const QTableWidget *table);

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<ShownWindow> window;
};

void TestMainWindowInput::initTestCase()
{
    QByteArray history;
    for (int number = 0; number < manyRows; ++number)
        history += "2026-01-02 03:04:05\nname\n/folder/name\n";
    testHome().writeHistory(history);
}

void TestMainWindowInput::init()
{
    tree = std::make_unique<TemporaryTree>();
    window = std::make_unique<ShownWindow>();
    (*window)->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&**window));
}

void TestMainWindowInput::cleanup()
{
    window.reset();
    tree.reset();
}

void TestMainWindowInput::bothTables()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("main table") << QStringLiteral("mainTable");
    QTest::newRow("history table") << QStringLiteral("historyTable");
}

void TestMainWindowInput::fillMainTable()
{
    QStringList files;
    for (int number = 0; number < manyRows; ++number)
        files.append(tree->makeFile(QString::number(number), 1));
    window->drop(files);
    PROMPTLY_COMPARE(window->table()->rowCount(), manyRows);
    QVERIFY(window->settle());
}

void TestMainWindowInput::openHistory()
{
    window->click("historyLink");
    QVERIFY(QTest::qWaitForWindowActive(window->find("historyWindow")));
    QVERIFY(window->settle());
}

QTableWidget *TestMainWindowInput::focusedTable()
{
    QFETCH(QString, name);
    name == QLatin1String("mainTable") ? fillMainTable() : openHistory();
    auto *table = (*window)->findChild<QTableWidget *>(name);
    table->setFocus();
    return table;
}

bool TestMainWindowInput::hasTextField(const QTableWidget *table)
{
    return !table->findChildren<QLineEdit *>().isEmpty();
}

void TestMainWindowInput::doubleClickAtTheEndOfARowOpensNoTextField()
{
    QTableWidget *table = focusedTable();
    QWidget *view = table->viewport();
    const QPoint end = view->mapTo(table->window(), QPoint(view->width() - 1, 10));
    QTest::mouseDClick(table->window()->windowHandle(), Qt::LeftButton, Qt::NoModifier, end);
    QVERIFY(!hasTextField(table));
}

void TestMainWindowInput::keysOpenNoTextField()
{
    QTableWidget *table = focusedTable();
    // The last column has no row's widget in the main table, nor has a row of the history that
    // was scrolled away.
    table->setCurrentCell(0, table->columnCount() - 1);
    table->verticalScrollBar()->setValue(manyRows / 2);
    for (const Qt::Key key : {Qt::Key_F2, Qt::Key_A, Qt::Key_Return}) {
        QTest::keyClick(table->window()->windowHandle(), key);
        QVERIFY(!hasTextField(table));
    }
}

void TestMainWindowInput::sidewaysWheelMovesNoRow()
{
    QTableWidget *table = focusedTable();
    const int left = table->columnViewportPosition(0);
    turnWheel(table->viewport(), QPoint(-1, 0), Qt::NoModifier);
    turnWheel(table->viewport(), QPoint(-5, -1), Qt::NoModifier);
    turnWheel(table->viewport(), QPoint(-1, 0), Qt::AltModifier);
    turnWheel(table->viewport(), QPoint(0, -1), Qt::AltModifier);
    QCOMPARE(table->columnViewportPosition(0), left);
    QCOMPARE(table->cellWidget(table->rowAt(0), 0)->x(), 0);
}

void TestMainWindowInput::arrowKeysMoveNoRowSideways()
{
    QTableWidget *table = focusedTable();
    table->setCurrentCell(0, 0);
    const int left = table->columnViewportPosition(0);
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_End, Qt::Key_Left}) {
        QTest::keyClick(table->window()->windowHandle(), key);
        QCOMPARE(table->columnViewportPosition(0), left);
    }
}

void TestMainWindowInput::wheelStillScrollsTheRows()
{
    QTableWidget *table = focusedTable();
    turnWheel(table->viewport(), QPoint(0, -1), Qt::NoModifier);
    QVERIFY(table->verticalScrollBar()->value() > 0);
}

void TestMainWindowInput::tabLeavesTheMainTable()
{
    fillMainTable();
    window->table()->setFocus();
    // On its way Tab visits the tick boxes of the rows.
    const QWidget *beyond = window->find("selectAllCheckBox");
    for (int key = 0; key <= manyRows && !beyond->hasFocus(); ++key)
        QTest::keyClick((*window)->windowHandle(), Qt::Key_Tab);
    QVERIFY(beyond->hasFocus());
}

void TestMainWindowInput::tabChoosesNoRowOfTheHistory()
{
    openHistory();
    auto *table = window->find<QTableWidget>("historyTable");
    table->setFocus();
    table->setCurrentCell(0, 0);
    QTest::keyClick(window->find("historyWindow")->windowHandle(), Qt::Key_Tab);
    QCOMPARE(table->currentRow(), 0);
}

TEST_SUITE(input, TestMainWindowInput)
#include "input.moc"
