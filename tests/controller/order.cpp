// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the controller thread says travels through the event queue, what a slot
// says does not. Here a slot is called at the very moment when the controller
// thread has spoken and the window has not yet heard it: it must wait its turn.

#include "sandboxhome.h"
#include "suites.h"
#include "temporarytree.h"
#include "walleharness.h"

#include <QtTest>

#include <memory>

using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;
using testsupport::WalleHarness;

class TestWalleOrder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void init();
    void cleanup();
    void progressFollowsARemovalUnderWay();
    void progressFollowsAToggleUnderWay();
    void progressFollowsCheckAllUnderWay();
    void progressFollowsTheInsertionOfItsRow();
    void verdictFollowsTheStartUnderWay();
    void answerFollowsTheStopUnderWay();
    void resultFollowsTheInsertionUnderWay();
    void rowAddedWhileAFailureEndsTheRunKeepsItsTick();

private:
    /// Starts a run that stands still at its only row, which became a fifo.
    void startHeldRun();

    testsupport::SandboxHome home;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<WalleHarness> harness;
    QString a;
    QString b;
};

void TestWalleOrder::init()
{
    tree = std::make_unique<TemporaryTree>();
    harness = std::make_unique<WalleHarness>();
    a = tree->makeFile(QStringLiteral("a"), 1);
    b = tree->makeFile(QStringLiteral("b"), 1);
}

void TestWalleOrder::cleanup()
{
    harness->onSignal = nullptr;
    QVERIFY(harness->performed());
    QCOMPARE(harness->faults(), QStringList());
    QCOMPARE(harness->differenceFromJobList(), QString());
    harness.reset();
    tree.reset();
}

void TestWalleOrder::startHeldRun()
{
    QVERIFY(harness->admitted({a}));
    QVERIFY(QFile::remove(a));
    tree->makeFifo(QStringLiteral("a"));
    harness->post(CommandStartCrush);
    QVERIFY(harness->performed());
    harness->takeLog();
}

/// The row has another number in the list than in the table.
void TestWalleOrder::progressFollowsARemovalUnderWay()
{
    QVERIFY(harness->admitted({a, b}));
    harness->click(1);
    QVERIFY(harness->performed());
    harness->takeLog();
    QVERIFY(harness->emittedUnheard("removeRowFromMainTable",
                                    [this] { harness->post(CommandRemoveChecked); }));
    harness->walle().finishPercentWalle(b, 50);
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"removeRowFromMainTable", {0}},
                                 {"setCrushButtonEnabled", {false}},
                                 {"setRemoveButtonEnabled", {false}},
                                 {"setTableRowHeight", {0, 50}},
                             }));
    QCOMPARE(harness->rows().first().percent, 50);
}

void TestWalleOrder::progressFollowsAToggleUnderWay()
{
    QVERIFY(harness->admitted({a, b}));
    QVERIFY(harness->emittedUnheard("setTableItemCheckBoxState", [this] { harness->click(1); }));
    harness->walle().finishPercentWalle(a, 50);
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setTableItemCheckBoxState", {1, false}},
                                 {"setSelectAllCheckBoxState", {false}},
                                 {"setTableRowHeight", {0, 50}},
                             }));
}

void TestWalleOrder::progressFollowsCheckAllUnderWay()
{
    QVERIFY(harness->admitted({a, b}));
    QVERIFY(harness->emittedUnheard("setTableItemCheckBoxState",
                                    [this] { harness->post(CommandUncheckAll); }));
    harness->walle().finishPercentWalle(a, 50);
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setTableItemCheckBoxState", {0, false}},
                                 {"setTableItemCheckBoxState", {1, false}},
                                 {"setSelectAllCheckBoxState", {false}},
                                 {"setCrushButtonEnabled", {false}},
                                 {"setRemoveButtonEnabled", {false}},
                                 {"setTableRowHeight", {0, 50}},
                             }));
}

void TestWalleOrder::progressFollowsTheInsertionOfItsRow()
{
    QVERIFY(harness->emittedUnheard("addRowToMainTable", [this] { harness->choose({a}); }));
    harness->walle().finishPercentWalle(a, 50);
    QCOMPARE(harness->log({"addRowToMainTable", "setTableRowHeight"}),
             (SignalRecords{
                 {"addRowToMainTable", {a}},
                 {"setTableRowHeight", {0, 50}},
             }));
}

void TestWalleOrder::verdictFollowsTheStartUnderWay()
{
    QVERIFY(harness->admitted({a}));
    QVERIFY(QFile::remove(a));
    tree->makeFifo(QStringLiteral("a"));
    QVERIFY(
        harness->emittedUnheard("setCrushStarted", [this] { harness->post(CommandStartCrush); }));
    harness->walle().failedOneWalle(a);
    QCOMPARE(harness->log({"setCrushStarted", "setTableRowHeight"}),
             (SignalRecords{
                 {"setCrushStarted", {RunState::Running}},
                 {"setTableRowHeight", {0, 0}},
                 {"setCrushStarted", {RunState::Idle}},
             }));
    harness->post(CommandCheckAll); // the row is drawn ticked still
}

/// The button is disabled between the request to the worker and "stopping".
void TestWalleOrder::answerFollowsTheStopUnderWay()
{
    startHeldRun();
    QVERIFY(harness->emittedUnheard("setCrushButtonEnabled",
                                    [this] { harness->post(CommandStopCrush); }));
    harness->walle().stoppedWalle();
    QCOMPARE(harness->log().mid(0, 3), (SignalRecords{
                                           {"setCrushButtonEnabled", {false}},
                                           {"setCrushStarted", {RunState::Stopping}},
                                           {"setCrushStarted", {RunState::Idle}},
                                       }));
}

/// Else the window, which unticks its rows then, would miss the new one.
void TestWalleOrder::resultFollowsTheInsertionUnderWay()
{
    startHeldRun();
    harness->post(CommandStopCrush);
    QVERIFY(harness->performed());
    QVERIFY(harness->emittedUnheard("addRowToMainTable", [this] { harness->choose({b}); }));
    harness->walle().finishOneWalle(a);
    QCOMPARE(harness->log({"addRowToMainTable", "removeRowFromMainTable", "showResultDialog"}),
             (SignalRecords{
                 {"addRowToMainTable", {b}},
                 {"removeRowFromMainTable", {0}},
                 {"showResultDialog", {1, 1, 0}},
             }));
    QCOMPARE(harness->checkedPaths(), QStringList{b});
}

/// A failure does not hold up the controller thread, which admits a row between the last look at
/// the list and the result.
void TestWalleOrder::rowAddedWhileAFailureEndsTheRunKeepsItsTick()
{
    startHeldRun();
    harness->onSignal = [this](const SignalRecord &signal) {
        if (signal.name == "finishAll")
            QVERIFY(harness->emittedUnheard("addRowToMainTable", [this] { harness->choose({b}); }));
    };
    harness->walle().failedOneWalle(a);
    QVERIFY(harness->performed());
    QCOMPARE(harness->paths(), (QStringList{a, b}));
    QCOMPARE(harness->count("showResultDialog"), 1);
    harness->takeLog();
    harness->post(CommandCheckAll);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log({"setTableItemCheckBoxState"}),
             (SignalRecords{{"setTableItemCheckBoxState", {0, true}}}));
}

TEST_SUITE(order, TestWalleOrder)
#include "order.moc"
