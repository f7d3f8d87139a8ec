// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The commands on the whole job list, and the progress of its rows.

#include "sandboxhome.h"
#include "suites.h"
#include "temporarytree.h"
#include "walleharness.h"

#include <QtTest>

#include <memory>

using testsupport::SignalRecords;
using testsupport::TemporaryTree;
using testsupport::WalleHarness;

class TestWalleJobList : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void init();
    void cleanup();
    void checkAllTellsOnlyTheUncheckedRows();
    void checkAllOnACheckedListStillTellsTheControls();
    void checkAllOnAnEmptyListTellsTheControls();
    void uncheckAllTellsOnlyTheCheckedRows();
    void uncheckAllOnAnEmptyListTellsTheControls();
    void removalNumbersAreThoseOfTheMoment();
    void removingEveryRowClearsAndDisablesTheControls();
    void removingWithNothingCheckedRemovesNothing();
    void progressReachesItsRow_data();
    void progressReachesItsRow();
    void progressOutsideTheScaleIsDropped_data();
    void progressOutsideTheScaleIsDropped();
    void progressOfAnUnknownPathIsDropped();

private:
    void addRows(int count);

    testsupport::SandboxHome home;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<WalleHarness> harness;
};

void TestWalleJobList::init()
{
    tree = std::make_unique<TemporaryTree>();
    harness = std::make_unique<WalleHarness>();
}

void TestWalleJobList::cleanup()
{
    QCOMPARE(harness->faults(), QStringList());
    harness.reset();
    tree.reset();
}

void TestWalleJobList::addRows(int count)
{
    QStringList paths;
    for (int number = 0; number < count; ++number)
        paths.append(tree->makeFile(QString::number(number), 1));
    QVERIFY(harness->admitted(paths));
    QCOMPARE(harness->rows().size(), count);
}

void TestWalleJobList::checkAllTellsOnlyTheUncheckedRows()
{
    addRows(4);
    harness->click(0);
    harness->click(2);
    QVERIFY(harness->performed());
    harness->takeLog();
    harness->post(CommandCheckAll);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setTableItemCheckBoxState", {0, true}},
                                 {"setTableItemCheckBoxState", {2, true}},
                                 {"setSelectAllCheckBoxState", {true}},
                                 {"setCrushButtonEnabled", {true}},
                                 {"setRemoveButtonEnabled", {true}},
                             }));
}

void TestWalleJobList::checkAllOnACheckedListStillTellsTheControls()
{
    addRows(2);
    harness->post(CommandCheckAll);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setSelectAllCheckBoxState", {true}},
                                 {"setCrushButtonEnabled", {true}},
                                 {"setRemoveButtonEnabled", {true}},
                             }));
}

void TestWalleJobList::checkAllOnAnEmptyListTellsTheControls()
{
    harness->post(CommandCheckAll);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setSelectAllCheckBoxState", {true}},
                                 {"setCrushButtonEnabled", {true}},
                                 {"setRemoveButtonEnabled", {true}},
                             }));
}

void TestWalleJobList::uncheckAllTellsOnlyTheCheckedRows()
{
    addRows(3);
    harness->click(1);
    QVERIFY(harness->performed());
    harness->takeLog();
    harness->post(CommandUncheckAll);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setTableItemCheckBoxState", {0, false}},
                                 {"setTableItemCheckBoxState", {2, false}},
                                 {"setSelectAllCheckBoxState", {false}},
                                 {"setCrushButtonEnabled", {false}},
                                 {"setRemoveButtonEnabled", {false}},
                             }));
}

void TestWalleJobList::uncheckAllOnAnEmptyListTellsTheControls()
{
    harness->post(CommandUncheckAll);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setSelectAllCheckBoxState", {false}},
                                 {"setCrushButtonEnabled", {false}},
                                 {"setRemoveButtonEnabled", {false}},
                             }));
}

void TestWalleJobList::removalNumbersAreThoseOfTheMoment()
{
    addRows(4);
    const QStringList paths = harness->paths();
    harness->click(0);
    harness->click(3);
    QVERIFY(harness->performed());
    harness->takeLog();
    harness->post(CommandRemoveChecked);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"removeRowFromMainTable", {1}},
                                 {"removeRowFromMainTable", {1}},
                                 {"setCrushButtonEnabled", {false}},
                                 {"setRemoveButtonEnabled", {false}},
                             }));
    QCOMPARE(harness->paths(), (QStringList{paths.first(), paths.last()}));
    QCOMPARE(harness->checkedPaths(), QStringList());
    QCOMPARE(harness->differenceFromJobList(), QString());
}

void TestWalleJobList::removingEveryRowClearsAndDisablesTheControls()
{
    addRows(3);
    harness->post(CommandRemoveChecked);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"removeRowFromMainTable", {0}},
                                 {"removeRowFromMainTable", {0}},
                                 {"removeRowFromMainTable", {0}},
                                 {"setCrushButtonEnabled", {false}},
                                 {"setRemoveButtonEnabled", {false}},
                                 {"setSelectAllCheckBoxState", {false}},
                                 {"setSelectAllCheckBoxEnabled", {false}},
                             }));
}

void TestWalleJobList::removingWithNothingCheckedRemovesNothing()
{
    addRows(2);
    harness->post(CommandUncheckAll);
    QVERIFY(harness->performed());
    harness->takeLog();
    harness->post(CommandRemoveChecked);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setCrushButtonEnabled", {false}},
                                 {"setRemoveButtonEnabled", {false}},
                             }));
}

void TestWalleJobList::progressReachesItsRow_data()
{
    QTest::addColumn<int>("percent");
    for (const int percent : {0, 1, 50, 99, 100})
        QTest::addRow("%d", percent) << percent;
}

void TestWalleJobList::progressReachesItsRow()
{
    QFETCH(int, percent);
    addRows(3);
    harness->walle().finishPercentWalle(harness->paths().at(1), percent);
    QCOMPARE(harness->log(), (SignalRecords{{"setTableRowHeight", {1, percent}}}));
}

void TestWalleJobList::progressOutsideTheScaleIsDropped_data()
{
    QTest::addColumn<int>("percent");
    QTest::newRow("just above") << 101;
    QTest::newRow("just below") << -1;
    QTest::newRow("smallest") << std::numeric_limits<int>::min();
    QTest::newRow("largest") << std::numeric_limits<int>::max();
}

void TestWalleJobList::progressOutsideTheScaleIsDropped()
{
    QFETCH(int, percent);
    addRows(1);
    harness->walle().finishPercentWalle(harness->paths().first(), percent);
    QCOMPARE(harness->log(), SignalRecords());
}

void TestWalleJobList::progressOfAnUnknownPathIsDropped()
{
    addRows(1);
    const QString path = harness->paths().first();
    harness->walle().finishPercentWalle(QString(), 50);
    harness->walle().finishPercentWalle(path + QLatin1Char('x'), 50);
    harness->post(CommandRemoveChecked);
    QVERIFY(harness->performed());
    harness->takeLog();
    harness->walle().finishPercentWalle(path, 50);
    QCOMPARE(harness->log(), SignalRecords());
}

TEST_SUITE(joblist, TestWalleJobList)
#include "joblist.moc"
