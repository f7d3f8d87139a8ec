// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Stopping a run: between files, inside a file, inside a folder, and what may
// still come after.

#include "engine/filecrusher.h"
#include "sandboxhome.h"
#include "suites.h"
#include "temporarytree.h"
#include "walleharness.h"

#include <QtTest>

#include <atomic>
#include <memory>

using testsupport::entryExists;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;
using testsupport::WalleHarness;

class TestWalleStop : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void init();
    void cleanup();
    void stopSaysStoppingAtOnceAndIdleWhenTheWorkerStopped();
    void stoppedRunThatHadNothingToSpareGivesNoResult();
    void stoppedRunLeavesTheRowsAndTheirTicks();
    void stopWithoutRowsDisablesTheControls();
    void stopInsideAFileLetsItFinishAndSparesTheNext();
    void stopBetweenFilesSparesTheOneHandedOver();
    void stopInsideAFolderLeavesTheRestOfIt();
    void successAfterAStopEndsTheRunWithItsResult();
    void failureAfterAStopEndsTheRunWithItsResult();
    void resultLeavesTheTicksInTheList();
    void newStartForgetsTheStop();
    void verdictAfterTheShutDownHandsNothingOver();

private:
    /// Starts a run over two rows that stands still at the first.
    void startHeldRun();
    void stopHeldRun();
    /// Stops at the first progress report: the stop is performed before the worker goes on.
    void stopAtFirstProgress();
    void showsRunState(int state);

    testsupport::SandboxHome home;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<WalleHarness> harness;
    QString held;
    QString second;
};

void TestWalleStop::init()
{
    tree = std::make_unique<TemporaryTree>();
    harness = std::make_unique<WalleHarness>();
}

void TestWalleStop::cleanup()
{
    QCOMPARE(harness->faults(), QStringList());
    harness.reset();
    tree.reset();
}

/// What was admitted as a file becomes a fifo, which the controller does not hand over.
void TestWalleStop::startHeldRun()
{
    held = tree->makeFile(QStringLiteral("held"), 10);
    second = tree->makeFile(QStringLiteral("second"), 10);
    QVERIFY(harness->admitted({held, second}));
    QVERIFY(QFile::remove(held));
    tree->makeFifo(QStringLiteral("held"));
    harness->post(CommandStartCrush);
    QVERIFY(harness->performed());
}

void TestWalleStop::stopHeldRun()
{
    startHeldRun();
    harness->post(CommandStopCrush);
    QVERIFY(harness->performed());
    showsRunState(RunState::Idle);
}

void TestWalleStop::stopAtFirstProgress()
{
    harness->onSignal = [this](const SignalRecord &signal) {
        if (signal.name != "setTableRowHeight")
            return;
        harness->onSignal = nullptr;
        harness->post(CommandStopCrush);
        harness->performed();
    };
}

void TestWalleStop::showsRunState(int state)
{
    QVERIFY(WalleHarness::waitFor([&] { return harness->controls().runState == state; }));
}

void TestWalleStop::stopSaysStoppingAtOnceAndIdleWhenTheWorkerStopped()
{
    startHeldRun();
    harness->post(CommandStopCrush);
    QVERIFY(WalleHarness::waitFor([this] { return harness->count("setSelectAllCheckBoxState"); }));
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setCrushStarted", {RunState::Running}},
                                 {"setCrushButtonEnabled", {false}},
                                 {"setCrushStarted", {RunState::Stopping}},
                                 {"setCrushStarted", {RunState::Idle}},
                                 {"setSelectAllCheckBoxEnabled", {true}},
                                 {"setCrushButtonEnabled", {true}},
                                 {"setRemoveButtonEnabled", {true}},
                                 {"setSelectAllCheckBoxState", {true}},
                             }));
}

void TestWalleStop::stoppedRunThatHadNothingToSpareGivesNoResult()
{
    stopHeldRun();
    QCOMPARE(harness->count("finishAll"), 0);
    QCOMPARE(harness->count("showResultDialog"), 0);
}

void TestWalleStop::stoppedRunLeavesTheRowsAndTheirTicks()
{
    stopHeldRun();
    QCOMPARE(harness->checkedPaths(), (QStringList{held, second}));
    QVERIFY(entryExists(held) && entryExists(second));
    QCOMPARE(harness->differenceFromJobList(), QString());
}

void TestWalleStop::stopWithoutRowsDisablesTheControls()
{
    harness->post(CommandStopCrush);
    QVERIFY(WalleHarness::waitFor([this] { return harness->count("setRemoveButtonEnabled"); }));
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setCrushButtonEnabled", {false}},
                                 {"setCrushStarted", {RunState::Stopping}},
                                 {"setCrushStarted", {RunState::Idle}},
                                 {"setSelectAllCheckBoxEnabled", {false}},
                                 {"setCrushButtonEnabled", {false}},
                                 {"setRemoveButtonEnabled", {false}},
                             }));
}

/// The verdict comes before the worker sees the stop, so the run ends with its result first.
void TestWalleStop::stopInsideAFileLetsItFinishAndSparesTheNext()
{
    const QString first = tree->makeFile(QStringLiteral("first"), 10);
    const QString spared = tree->makeFile(QStringLiteral("spared"), 10);
    QVERIFY(harness->admitted({first, spared}));
    stopAtFirstProgress();
    harness->post(CommandStartCrush);
    QVERIFY(WalleHarness::waitFor([this] { return harness->count("setCrushStarted") == 4; }));
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setCrushStarted", {RunState::Running}},
                                 {"setTableRowHeight", {0, 99}},
                                 {"setCrushButtonEnabled", {false}},
                                 {"setCrushStarted", {RunState::Stopping}},
                                 {"removeRowFromMainTable", {0}},
                                 {"setCrushStarted", {RunState::Idle}},
                                 {"finishAll", {1}},
                                 {"showResultDialog", {1, 1, 0}},
                                 {"setCrushStarted", {RunState::Idle}},
                                 {"setSelectAllCheckBoxEnabled", {true}},
                                 {"setCrushButtonEnabled", {true}},
                                 {"setRemoveButtonEnabled", {true}},
                                 {"setSelectAllCheckBoxState", {true}},
                             }));
    QVERIFY(!entryExists(first));
    QVERIFY(entryExists(spared));
}

/// The worker pauses after each verdict, and the next path waits in its queue meanwhile.
void TestWalleStop::stopBetweenFilesSparesTheOneHandedOver()
{
    const QString first = tree->makeFile(QStringLiteral("first"), 10);
    const QString spared = tree->makeFile(QStringLiteral("spared"), 10);
    QVERIFY(harness->admitted({first, spared}));
    harness->onSignal = [this](const SignalRecord &signal) {
        if (signal.name == "removeRowFromMainTable")
            harness->post(CommandStopCrush);
    };
    harness->post(CommandStartCrush);
    QVERIFY(WalleHarness::waitFor([this] { return harness->count("setSelectAllCheckBoxState"); }));
    QVERIFY(!entryExists(first));
    QVERIFY(entryExists(spared));
    harness->onSignal = nullptr;
    // The stop is seen by the verdict's slot or, as mostly, after the hand-over.
    QVERIFY(harness->finished());
    QCOMPARE(harness->log({"showResultDialog"}), (SignalRecords{{"showResultDialog", {1, 1, 0}}}));
    // A later run shows that the worker has not kept it either.
    harness->click(0);
    const QString last = tree->makeFile(QStringLiteral("last"), 10);
    QVERIFY(harness->admitted({last}));
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    QVERIFY(!entryExists(last));
    QVERIFY(entryExists(spared));
    QCOMPARE(harness->paths(), QStringList{spared});
}

void TestWalleStop::stopInsideAFolderLeavesTheRestOfIt()
{
    for (const char *name : {"folder/a", "folder/b", "folder/c"})
        tree->makeFile(QLatin1String(name), 1000);
    const QString folder = tree->path(QStringLiteral("folder"));
    QVERIFY(harness->admitted({folder}));
    stopAtFirstProgress();
    harness->post(CommandStartCrush);
    QVERIFY(WalleHarness::waitFor([this] { return harness->count("setCrushStarted") == 3; }));
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setCrushStarted", {RunState::Running}},
                                 {"setTableRowHeight", {0, 33}},
                                 {"setCrushButtonEnabled", {false}},
                                 {"setCrushStarted", {RunState::Stopping}},
                                 {"setTableRowHeight", {0, 0}},
                                 {"setCrushStarted", {RunState::Idle}},
                                 {"setSelectAllCheckBoxEnabled", {true}},
                                 {"setCrushButtonEnabled", {true}},
                                 {"setRemoveButtonEnabled", {true}},
                                 {"setSelectAllCheckBoxState", {true}},
                             }));
    QCOMPARE(QDir(folder).entryList(QDir::Files).size(), 2);
}

void TestWalleStop::successAfterAStopEndsTheRunWithItsResult()
{
    stopHeldRun();
    harness->takeLog();
    harness->walle().finishOneWalle(held);
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"removeRowFromMainTable", {0}},
                                 {"setCrushStarted", {RunState::Idle}},
                                 {"finishAll", {1}},
                                 {"showResultDialog", {1, 1, 0}},
                             }));
    QCOMPARE(harness->differenceFromJobList(), QString());
}

void TestWalleStop::failureAfterAStopEndsTheRunWithItsResult()
{
    stopHeldRun();
    harness->takeLog();
    harness->walle().failedOneWalle(held);
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setTableRowHeight", {0, 0}},
                                 {"setCrushStarted", {RunState::Idle}},
                                 {"finishAll", {0}},
                                 {"showResultDialog", {1, 0, 1}},
                             }));
    harness->post(CommandCheckAll); // the failed row is drawn ticked still
    QCOMPARE(harness->differenceFromJobList(), QString());
}

void TestWalleStop::resultLeavesTheTicksInTheList()
{
    stopHeldRun();
    harness->walle().finishOneWalle(held);
    QVERIFY(harness->finished());
    harness->takeLog();
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    QCOMPARE(harness->log({"showResultDialog"}), (SignalRecords{{"showResultDialog", {1, 1, 0}}}));
    QVERIFY(!entryExists(second));
}

void TestWalleStop::newStartForgetsTheStop()
{
    stopHeldRun();
    QVERIFY(QFile::remove(held));
    tree->makeFile(QStringLiteral("held"), 10);
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    QVERIFY(harness->rows().isEmpty());
    QCOMPARE(harness->log({"showResultDialog"}), (SignalRecords{{"showResultDialog", {1, 2, 0}}}));
}

void TestWalleStop::verdictAfterTheShutDownHandsNothingOver()
{
    startHeldRun();
    harness->walle().shutDown();
    harness->walle().finishOneWalle(held);

    auto *worker = harness->walle().findChild<FileCrusher *>();
    std::atomic<int> stops{0};
    const QObject context;
    connect(
        worker, &FileCrusher::stopped, &context, [&stops] { ++stops; }, Qt::DirectConnection);
    // Between two stops the worker shreds what is in its queue.
    worker->requestStop(true);
    QTRY_VERIFY(stops >= 1);
    worker->requestStop(true);
    QTRY_VERIFY(stops >= 2);
    QVERIFY(entryExists(second));
}

TEST_SUITE(stop, TestWalleStop)
#include "stop.moc"
