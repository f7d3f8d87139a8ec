// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The two tables as screen readers meet them: lists of their rows. What is announced is
// tested where it is heard, in endtoend.accessibility.

#include "suites.h"
#include "ui/accessiblerows.h"
#include "windowtest.h"

#include <QtTest>

using namespace testsupport;

class TestAccessibility : public WindowTest
{
    Q_OBJECT

private slots:
    void initTestCase() { installAccessibility(); }

    void tableListsItsCellsAndFindsThemUnderThePointer();
    void historyTellsEveryEntryNewestFirst();
    void historyRowKeepsItsEntryWhileOthersComeAndGo();
    void entryBeyondTheViewIsOffscreen();
    void clearedEntriesAreForgotten();

private:
    QAccessibleInterface *list(const char *table) const
    {
        return QAccessible::queryAccessibleInterface(find(table));
    }
    QAccessibleInterface *openHistory()
    {
        press("historyLink");
        return list("historyTable");
    }
    static QStringList namesIn(const QAccessibleInterface *list);
};

QStringList TestAccessibility::namesIn(const QAccessibleInterface *list)
{
    QStringList names;
    for (int row = 0; row < list->childCount(); ++row)
        names.append(list->child(row)->text(QAccessible::Name));
    return names;
}

void TestAccessibility::tableListsItsCellsAndFindsThemUnderThePointer()
{
    dropFiles(2);
    const QAccessibleInterface *rows = list("mainTable");
    QCOMPARE(rows->role(), QAccessible::List);
    QCOMPARE(namesIn(rows), (QStringList{QStringLiteral("0"), QStringLiteral("1")}));
    QCOMPARE(rows->indexOfChild(rows->child(1)), 1);
    QCOMPARE(rows->child(1)->parent(), rows);
    QCOMPARE(rows->child(2), nullptr);
    const QPoint second = rows->child(1)->rect().center();
    QCOMPARE(rows->childAt(second.x(), second.y()), rows->child(1));
    QCOMPARE(rows->childAt(second.x(), second.y() + 300), nullptr);
    window->removeRowFromMainTableEva(0);
    QCOMPARE(namesIn(rows), QStringList(QStringLiteral("1")));
}

void TestAccessibility::historyTellsEveryEntryNewestFirst()
{
    const QAccessibleInterface *rows = openHistory();
    constexpr int many = 300;
    for (int number = 0; number < many; ++number)
        addToHistory(QString::number(number));
    QCOMPARE(rows->role(), QAccessible::List);
    QCOMPARE(rows->childCount(), many);
    QAccessibleInterface *last = rows->child(many - 1);
    QCOMPARE(last->role(), QAccessible::ListItem);
    QCOMPARE(namesIn(rows).constFirst(), QStringLiteral("299"));
    QCOMPARE(namesIn(rows).constLast(), QStringLiteral("0"));
    QCOMPARE(last->text(QAccessible::Description),
             QStringLiteral("日期：2026-01-02，路径：/folder"));
    QCOMPARE(rows->indexOfChild(last), many - 1);
    QCOMPARE(last->parent(), rows);
    QCOMPARE(rows->child(many), nullptr);
}

void TestAccessibility::historyRowKeepsItsEntryWhileOthersComeAndGo()
{
    const QAccessibleInterface *rows = openHistory();
    addToHistory(QStringLiteral("third"));
    addToHistory(QStringLiteral("second"));
    const QAccessibleInterface *second = rows->child(0);
    addToHistory(QStringLiteral("first"));
    QCOMPARE(second->text(QAccessible::Name), QStringLiteral("second"));
    QCOMPARE(rows->indexOfChild(second), 1);
    window->removeRowFromHistoryTableEva(1);
    QCOMPARE(namesIn(rows), (QStringList{QStringLiteral("first"), QStringLiteral("third")}));
}

void TestAccessibility::entryBeyondTheViewIsOffscreen()
{
    const QAccessibleInterface *rows = openHistory();
    constexpr int fewEnoughToBeShownAtOnce = 30;
    for (int number = 0; number < fewEnoughToBeShownAtOnce; ++number)
        addToHistory(QStringLiteral("file"));
    QVERIFY(!rows->child(0)->state().offscreen);
    QVERIFY(rows->child(fewEnoughToBeShownAtOnce - 1)->state().offscreen);
    QVERIFY(rows->child(0)->state().readOnly);
}

void TestAccessibility::clearedEntriesAreForgotten()
{
    const QAccessibleInterface *rows = openHistory();
    addToHistory(QStringLiteral("gone"));
    const QAccessible::Id id = QAccessible::uniqueId(rows->child(0));
    window->removeAllFromHistoryEva();
    QCOMPARE(rows->childCount(), 0);
    QCOMPARE(QAccessible::accessibleInterface(id), nullptr);
    click("historyCloseButton");
    openHistory();
    addToHistory(QStringLiteral("new"));
    QCOMPARE(namesIn(rows), QStringList(QStringLiteral("new")));
}

TEST_SUITE(accessibility, TestAccessibility)
#include "accessibility.moc"
