// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Clicks on rows: each hits the entry that was clicked, or nothing.

#include "sandboxhome.h"
#include "suites.h"
#include "temporarytree.h"
#include "walleharness.h"

#include <QtTest>

#include <memory>

using testsupport::SignalRecords;
using testsupport::TemporaryTree;
using testsupport::WalleHarness;

class TestWalleToggles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void init();
    void cleanup();
    void uncheckingOneOfSeveralUnticksSelectAll();
    void uncheckingTheLastCheckedRowDisablesTheButtons();
    void checkingOneOfSeveralEnablesTheButtons();
    void checkingTheLastUncheckedRowTicksSelectAll();
    void stateDrawnByTheWindowIsNotRead();
    void toggleCommandWithoutAToggleDoesNothing();
    void rowNumbersThatDoNotExistAreIgnored_data();
    void rowNumbersThatDoNotExistAreIgnored();
    void togglesArePerformedOldestFirst();
    void clickFollowsItsEntryToAnotherRow();
    void clickOnAnEntryThatHasGoneIsDropped();
    void clickWithoutAPathMeansTheRowAtThatTime();

private:
    void addRows(int count);
    void toggle(int row, bool state = false) const;

    testsupport::SandboxHome home;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<WalleHarness> harness;
};

void TestWalleToggles::init()
{
    tree = std::make_unique<TemporaryTree>();
    harness = std::make_unique<WalleHarness>();
}

void TestWalleToggles::cleanup()
{
    QCOMPARE(harness->faults(), QStringList());
    harness.reset();
    tree.reset();
}

void TestWalleToggles::addRows(int count)
{
    QStringList paths;
    for (int number = 0; number < count; ++number)
        paths.append(tree->makeFile(QString::number(number), 1));
    QVERIFY(harness->admitted(paths));
    QCOMPARE(harness->rows().size(), count);
}

void TestWalleToggles::toggle(int row, bool state) const
{
    harness->walle().postCellToggle(CellToggle{row, state, QString()});
    harness->post(CommandToggleRow);
}

void TestWalleToggles::uncheckingOneOfSeveralUnticksSelectAll()
{
    addRows(2);
    harness->click(1);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setTableItemCheckBoxState", {1, false}},
                                 {"setSelectAllCheckBoxState", {false}},
                             }));
}

void TestWalleToggles::uncheckingTheLastCheckedRowDisablesTheButtons()
{
    addRows(2);
    harness->click(0);
    QVERIFY(harness->performed());
    harness->takeLog();
    harness->click(1);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setTableItemCheckBoxState", {1, false}},
                                 {"setSelectAllCheckBoxState", {false}},
                                 {"setCrushButtonEnabled", {false}},
                                 {"setRemoveButtonEnabled", {false}},
                             }));
}

void TestWalleToggles::checkingOneOfSeveralEnablesTheButtons()
{
    addRows(2);
    harness->post(CommandUncheckAll);
    QVERIFY(harness->performed());
    harness->takeLog();
    harness->click(0);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setTableItemCheckBoxState", {0, true}},
                                 {"setCrushButtonEnabled", {true}},
                                 {"setRemoveButtonEnabled", {true}},
                             }));
}

void TestWalleToggles::checkingTheLastUncheckedRowTicksSelectAll()
{
    addRows(2);
    harness->click(0);
    QVERIFY(harness->performed());
    harness->takeLog();
    harness->click(0);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setTableItemCheckBoxState", {0, true}},
                                 {"setSelectAllCheckBoxState", {true}},
                                 {"setCrushButtonEnabled", {true}},
                                 {"setRemoveButtonEnabled", {true}},
                             }));
}

void TestWalleToggles::stateDrawnByTheWindowIsNotRead()
{
    addRows(2);
    toggle(0, true);
    toggle(1, false);
    QVERIFY(harness->performed());
    QCOMPARE(harness->checkedPaths(), QStringList());
}

void TestWalleToggles::toggleCommandWithoutAToggleDoesNothing()
{
    addRows(1);
    harness->post(CommandToggleRow);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), SignalRecords());
}

void TestWalleToggles::rowNumbersThatDoNotExistAreIgnored_data()
{
    QTest::addColumn<int>("row");
    QTest::newRow("below the first") << -1;
    QTest::newRow("behind the last") << 2;
    QTest::newRow("smallest") << std::numeric_limits<int>::min();
    QTest::newRow("largest") << std::numeric_limits<int>::max();
}

void TestWalleToggles::rowNumbersThatDoNotExistAreIgnored()
{
    QFETCH(int, row);
    addRows(2);
    toggle(row);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), SignalRecords());
}

void TestWalleToggles::togglesArePerformedOldestFirst()
{
    addRows(3);
    for (const int row : {2, 0, 1})
        harness->click(row);
    QVERIFY(harness->performed());
    const SignalRecords ticks = harness->log({"setTableItemCheckBoxState"});
    QCOMPARE(ticks, (SignalRecords{
                        {"setTableItemCheckBoxState", {2, false}},
                        {"setTableItemCheckBoxState", {0, false}},
                        {"setTableItemCheckBoxState", {1, false}},
                    }));
}

/// Row 0 goes while the click on row 2 is still waiting.
void TestWalleToggles::clickFollowsItsEntryToAnotherRow()
{
    addRows(4);
    const QStringList paths = harness->paths();
    for (const int row : {1, 2, 3})
        harness->click(row);
    QVERIFY(harness->performed());
    harness->takeLog();
    harness->post(CommandRemoveChecked);
    harness->click(2);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log({"setTableItemCheckBoxState"}),
             (SignalRecords{{"setTableItemCheckBoxState", {1, true}}}));
    QCOMPARE(harness->checkedPaths(), QStringList{paths.at(2)});
}

void TestWalleToggles::clickOnAnEntryThatHasGoneIsDropped()
{
    addRows(2);
    harness->click(1);
    QVERIFY(harness->performed());
    harness->post(CommandRemoveChecked);
    harness->click(0);
    QVERIFY(harness->performed());
    QCOMPARE(harness->rows().size(), 1);
    QVERIFY(!harness->rows().first().checked);
}

void TestWalleToggles::clickWithoutAPathMeansTheRowAtThatTime()
{
    addRows(3);
    const QStringList paths = harness->paths();
    harness->click(1);
    harness->click(2);
    QVERIFY(harness->performed());
    harness->post(CommandRemoveChecked);
    toggle(1);
    QVERIFY(harness->performed());
    QCOMPARE(harness->checkedPaths(), QStringList{paths.at(2)});
}

TEST_SUITE(toggles, TestWalleToggles)
#include "toggles.moc"
