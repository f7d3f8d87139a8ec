// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The two tables as screen readers meet them: lists of their rows. What is announced
// is tested where it is heard, in tst_endtoend_accessibility.

#include "ui/accessiblerows.h"

#include "suites.h"
#include "ui/historyrows.h"
#include "ui/rowtable.h"
#include "widgets/zztablecell.h"

#include <QIcon>
#include <QImage>
#include <QtTest>

#include <memory>

class TestAccessibleRows : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void tableIsAListOfItsCells();
    void rowIsFoundUnderThePointer();
    void historyTellsEveryEntryNewestFirst();
    void historyRowKeepsItsEntryWhileOthersArrive();
    void entryBeyondTheViewIsOffscreen();
    void clearedEntriesAreForgotten();
    void removedEntryLeavesTheRestInOrder();

private:
    void addCell(const QString &path);
    QAccessibleInterface *list() const { return QAccessible::queryAccessibleInterface(table); }
    static QString nameOf(QAccessibleInterface *row) { return row->text(QAccessible::Name); }

    std::unique_ptr<QWidget> window;
    RowTable *table = nullptr;
};

void TestAccessibleRows::initTestCase()
{
    installAccessibility();
}

void TestAccessibleRows::init()
{
    window = std::make_unique<QWidget>();
    window->resize(800, 430);
    table = new RowTable(1, window.get());
    table->setGeometry(0, 0, 800, 430);
    table->setColumnWidth(0, 778);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
}

void TestAccessibleRows::cleanup()
{
    window.reset();
}

void TestAccessibleRows::addCell(const QString &path)
{
    const int row = table->rowCount();
    table->setRowCount(row + 1);
    auto *cell = new ZZTableCell(table);
    cell->build(path, QIcon(), QImage(), row, 0);
    table->setCellWidget(row, 0, cell);
}

void TestAccessibleRows::tableIsAListOfItsCells()
{
    addCell(QStringLiteral("/folder/one"));
    addCell(QStringLiteral("/folder/two"));
    QCOMPARE(list()->role(), QAccessible::List);
    QCOMPARE(list()->childCount(), 2);
    QCOMPARE(nameOf(list()->child(0)), QStringLiteral("one"));
    QCOMPARE(nameOf(list()->child(1)), QStringLiteral("two"));
    QCOMPARE(list()->indexOfChild(list()->child(1)), 1);
    QCOMPARE(list()->child(1)->parent(), list());
    QCOMPARE(list()->child(2), nullptr);
    table->removeRow(0);
    QCOMPARE(list()->childCount(), 1);
    QCOMPARE(nameOf(list()->child(0)), QStringLiteral("two"));
}

void TestAccessibleRows::rowIsFoundUnderThePointer()
{
    addCell(QStringLiteral("/folder/one"));
    addCell(QStringLiteral("/folder/two"));
    const QPoint second = list()->child(1)->rect().center();
    QCOMPARE(list()->childAt(second.x(), second.y()), list()->child(1));
    QCOMPARE(list()->childAt(second.x(), second.y() + 300), nullptr);
}

void TestAccessibleRows::historyTellsEveryEntryNewestFirst()
{
    constexpr int many = 300;
    HistoryRows rows(table, window.get());
    for (int i = 0; i < many; ++i) {
        rows.prepend(QStringLiteral("2026-01-02"), QStringLiteral("file %1").arg(i),
                     QStringLiteral("/folder"));
    }
    QCOMPARE(list()->role(), QAccessible::List);
    QCOMPARE(list()->childCount(), many);
    QAccessibleInterface *last = list()->child(many - 1);
    QCOMPARE(last->role(), QAccessible::ListItem);
    QCOMPARE(nameOf(list()->child(0)), QStringLiteral("file 299"));
    QCOMPARE(nameOf(last), QStringLiteral("file 0"));
    QCOMPARE(last->text(QAccessible::Description),
             QStringLiteral("日期：2026-01-02，路径：/folder"));
    QCOMPARE(list()->indexOfChild(last), many - 1);
    QCOMPARE(last->parent(), list());
    QCOMPARE(list()->child(many), nullptr);
}

void TestAccessibleRows::historyRowKeepsItsEntryWhileOthersArrive()
{
    HistoryRows rows(table, window.get());
    rows.prepend(QString(), QStringLiteral("older"), QString());
    QAccessibleInterface *older = list()->child(0);
    rows.prepend(QString(), QStringLiteral("newer"), QString());
    QCOMPARE(nameOf(older), QStringLiteral("older"));
    QCOMPARE(list()->indexOfChild(older), 1);
    QCOMPARE(nameOf(list()->child(0)), QStringLiteral("newer"));
}

void TestAccessibleRows::entryBeyondTheViewIsOffscreen()
{
    HistoryRows rows(table, window.get());
    constexpr int fewEnoughToBeShownAtOnce = 30;
    for (int i = 0; i < fewEnoughToBeShownAtOnce; ++i)
        rows.prepend(QString(), QStringLiteral("file"), QString());
    QVERIFY(!list()->child(0)->state().offscreen);
    QVERIFY(list()->child(fewEnoughToBeShownAtOnce - 1)->state().offscreen);
    QVERIFY(list()->child(0)->state().readOnly);
}

void TestAccessibleRows::clearedEntriesAreForgotten()
{
    HistoryRows rows(table, window.get());
    rows.prepend(QString(), QStringLiteral("gone"), QString());
    const QAccessible::Id id = QAccessible::uniqueId(list()->child(0));
    rows.clear();
    QCOMPARE(list()->childCount(), 0);
    QCOMPARE(QAccessible::accessibleInterface(id), nullptr);
    rows.prepend(QString(), QStringLiteral("new"), QString());
    QCOMPARE(nameOf(list()->child(0)), QStringLiteral("new"));
}

void TestAccessibleRows::removedEntryLeavesTheRestInOrder()
{
    HistoryRows rows(table, window.get());
    for (const char *name : {"third", "second", "first"})
        rows.prepend(QString(), QString::fromLatin1(name), QString());
    QCOMPARE(nameOf(list()->child(1)), QStringLiteral("second"));
    rows.remove(1);
    QCOMPARE(list()->childCount(), 2);
    QCOMPARE(nameOf(list()->child(0)), QStringLiteral("first"));
    QCOMPARE(nameOf(list()->child(1)), QStringLiteral("third"));
}

TEST_SUITE(accessiblerows, TestAccessibleRows)
#include "accessiblerows.moc"
