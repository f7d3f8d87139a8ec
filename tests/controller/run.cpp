// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Runs from start to result.

#include "sandboxhome.h"
#include "suites.h"
#include "temporarytree.h"
#include "walleharness.h"

#include <QtTest>

#include <memory>

using testsupport::entryExists;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;
using testsupport::WalleHarness;

class TestWalleRun : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void init();
    void cleanup();
    void runWithNothingCheckedEndsAtOnce();
    void runWithoutRowsEndsAtOnce();
    void runOfOneFileTellsEachStepInOrder();
    void failureOfTheSecondOfThreeLeavesItsRowUnchecked();
    void failedRowIsTriedAgainOnlyWhenCheckedAgain();
    void uncheckedRowsAreSpared();
    void linkGoesAndItsTargetStays();
    void countsStartAnewWithEachRun();

private:
    QString make(const QString &name) const { return tree->makeFile(name, 10); }
    /// A folder that cannot be removed, as a fifo stays in it.
    QString makeStubborn(const QString &name) const;

    testsupport::SandboxHome home;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<WalleHarness> harness;
};

void TestWalleRun::init()
{
    tree = std::make_unique<TemporaryTree>();
    harness = std::make_unique<WalleHarness>();
}

void TestWalleRun::cleanup()
{
    QCOMPARE(harness->faults(), QStringList());
    harness.reset();
    tree.reset();
}

QString TestWalleRun::makeStubborn(const QString &name) const
{
    const QString folder = tree->makeFolder(name);
    tree->makeFifo(name + QStringLiteral("/fifo"));
    return folder;
}

void TestWalleRun::runWithNothingCheckedEndsAtOnce()
{
    const QString file = make(QStringLiteral("file"));
    QVERIFY(harness->admitted({file}));
    harness->click(0);
    QVERIFY(harness->performed());
    harness->takeLog();
    harness->post(CommandStartCrush);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setCrushStarted", {RunState::Running}},
                                 {"setCrushStarted", {RunState::Idle}},
                                 {"finishAll", {0}},
                                 {"setCrushButtonEnabled", {false}},
                                 {"setRemoveButtonEnabled", {false}},
                                 {"showResultDialog", {1, 0, 0}},
                             }));
    QVERIFY(entryExists(file));
}

void TestWalleRun::runWithoutRowsEndsAtOnce()
{
    harness->post(CommandStartCrush);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setCrushStarted", {RunState::Running}},
                                 {"setCrushStarted", {RunState::Idle}},
                                 {"finishAll", {0}},
                                 {"setCrushButtonEnabled", {false}},
                                 {"setRemoveButtonEnabled", {false}},
                                 {"setSelectAllCheckBoxState", {false}},
                                 {"setSelectAllCheckBoxEnabled", {false}},
                                 {"showResultDialog", {1, 0, 0}},
                             }));
}

void TestWalleRun::runOfOneFileTellsEachStepInOrder()
{
    const QString file = make(QStringLiteral("file"));
    QVERIFY(harness->admitted({file}));
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setCrushStarted", {RunState::Running}},
                                 {"setTableRowHeight", {0, 99}},
                                 {"removeRowFromMainTable", {0}},
                                 {"setCrushStarted", {RunState::Idle}},
                                 {"finishAll", {1}},
                                 {"setCrushButtonEnabled", {false}},
                                 {"setRemoveButtonEnabled", {false}},
                                 {"setSelectAllCheckBoxState", {false}},
                                 {"setSelectAllCheckBoxEnabled", {false}},
                                 {"showResultDialog", {1, 1, 0}},
                             }));
    QVERIFY(!entryExists(file));
}

void TestWalleRun::failureOfTheSecondOfThreeLeavesItsRowUnchecked()
{
    const QString first = make(QStringLiteral("first"));
    const QString second = makeStubborn(QStringLiteral("second"));
    const QString third = make(QStringLiteral("third"));
    QVERIFY(harness->admitted({first, second, third}));
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    QCOMPARE(harness->takeLog(), (SignalRecords{
                                     {"setCrushStarted", {RunState::Running}},
                                     {"setTableRowHeight", {0, 99}},
                                     {"removeRowFromMainTable", {0}},
                                     {"setTableRowHeight", {0, 0}},
                                     {"setTableRowHeight", {1, 99}},
                                     {"removeRowFromMainTable", {1}},
                                     {"setCrushStarted", {RunState::Idle}},
                                     {"finishAll", {2}},
                                     {"setCrushButtonEnabled", {false}},
                                     {"setRemoveButtonEnabled", {false}},
                                     {"showResultDialog", {1, 2, 1}},
                                 }));
    QCOMPARE(harness->paths(), QStringList{second});
    harness->post(CommandCheckAll);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log({"setTableItemCheckBoxState"}),
             (SignalRecords{{"setTableItemCheckBoxState", {0, true}}}));
    QCOMPARE(harness->differenceFromJobList(), QString());
}

void TestWalleRun::failedRowIsTriedAgainOnlyWhenCheckedAgain()
{
    QVERIFY(harness->admitted({makeStubborn(QStringLiteral("folder"))}));
    const auto resultOfARun = [this] {
        harness->takeLog();
        harness->post(CommandStartCrush);
        return harness->finished() ? harness->log({"showResultDialog"}) : SignalRecords();
    };
    QCOMPARE(resultOfARun(), (SignalRecords{{"showResultDialog", {1, 0, 1}}}));
    QCOMPARE(resultOfARun(), (SignalRecords{{"showResultDialog", {1, 0, 0}}}));
    harness->click(0);
    QCOMPARE(resultOfARun(), (SignalRecords{{"showResultDialog", {1, 0, 1}}}));
}

void TestWalleRun::uncheckedRowsAreSpared()
{
    const QString chosen = make(QStringLiteral("chosen"));
    const QString spared = tree->makeFile(QStringLiteral("spared"), QByteArray("as it was"));
    QVERIFY(harness->admitted({spared, chosen}));
    harness->click(0);
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    QVERIFY(!entryExists(chosen));
    QCOMPARE(TemporaryTree::contentsOf(spared), QByteArray("as it was"));
    QCOMPARE(harness->paths(), QStringList{spared});
}

void TestWalleRun::linkGoesAndItsTargetStays()
{
    const QString target = tree->makeFile(QStringLiteral("target"), QByteArray("as it was"));
    const QString link = tree->makeLink(QStringLiteral("link"), target);
    QVERIFY(harness->admitted({link}));
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    QVERIFY(!entryExists(link));
    QCOMPARE(TemporaryTree::contentsOf(target), QByteArray("as it was"));
}

void TestWalleRun::countsStartAnewWithEachRun()
{
    QVERIFY(harness->admitted({make(QStringLiteral("a")), makeStubborn(QStringLiteral("b"))}));
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    QVERIFY(harness->admitted({make(QStringLiteral("c"))}));
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    QCOMPARE(harness->log({"finishAll", "showResultDialog"}), (SignalRecords{
                                                                  {"finishAll", {1}},
                                                                  {"showResultDialog", {1, 1, 0}},
                                                              }));
}

TEST_SUITE(run, TestWalleRun)
#include "run.moc"
