// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Stopping a run: before, between and inside files and folders; and what may still come
// after. A stop that spares what was handed over ends the run with its report, once.

#include "engine/filecrusher.h"
#include "promptly.h"
#include "suites.h"
#include "walletest.h"

#include <atomic>

using testsupport::entryExists;
using testsupport::SignalRecords;
using testsupport::WalleTest;

class TestStop : public WalleTest
{
    Q_OBJECT

private slots:
    void stopSaysStoppingAtOnceAndIdleWhenTheWorkerStopped();
    void stopWithoutRowsDisablesTheControls();
    void stopInsideAFileLetsItFinishAndSparesTheNext();
    void stopInsideAFolderLeavesTheRestOfItAndGivesNoReport();

    void stopBetweenFilesSparesTheOneHandedOverAndReports();
    void stopBeforeTheFirstFileReportsNothingDone();
    void reportCountsWhatFailed();
    void nextStopWithoutARunGivesNoReport();
    void verdictBetweenStopAndAnswerEndsTheRunOnce();
    void pathOfSomebodyElseIsNoRun();

    void successAfterAStopEndsTheRunWithItsResult();
    void failureAfterAStopEndsTheRunWithItsResult();
    void shutDownSparesWhatWasHandedOver();
    void verdictAfterTheShutDownHandsNothingOver();

private:
    /// Starts a run over two rows that stands still at the first.
    void startRunThatStandsStill();
    /// The same, stopped and answered.
    void stopRunThatStandsStill();
    /// Stops at the first progress report: the stop is performed before the worker goes on.
    void stopAtFirstProgress();
    /// Stops the run, lets the held worker answer and waits until the controller is idle.
    SignalRecords stopAndRelease();
    /// Between its answers to two stops the worker shreds what is in its queue.
    void letWorkerEmptyItsQueue() const;
};

void TestStop::startRunThatStandsStill()
{
    addRows(2);
    becomeFifo(harness->paths().first());
    QCOMPARE(answerTo({CommandStartCrush}), SignalRecords{running()});
}

void TestStop::stopRunThatStandsStill()
{
    startRunThatStandsStill();
    harness->post(CommandStopCrush);
    PROMPTLY_COMPARE(harness->count("setSelectAllCheckBoxState"), 1);
    harness->takeLog();
}

void TestStop::stopAtFirstProgress()
{
    onNext("setTableRowHeight", [this] {
        harness->post(CommandStopCrush);
        harness->performed();
    });
}

SignalRecords TestStop::stopAndRelease()
{
    return harness->answerTo([this] {
        harness->post(CommandStopCrush);
        harness->performed();
        held.reset();
        testsupport::promptly([this] { return harness->log().contains(idle()); });
    });
}

void TestStop::letWorkerEmptyItsQueue() const
{
    auto *worker = harness->walle().findChild<FileCrusher *>();
    std::atomic<int> stops{0};
    const QObject context;
    connect(
        worker, &FileCrusher::stopped, &context, [&stops] { ++stops; }, Qt::DirectConnection);
    for (const int answer : {1, 2}) {
        worker->requestStop(true);
        QTRY_VERIFY(stops >= answer);
    }
}

void TestStop::stopSaysStoppingAtOnceAndIdleWhenTheWorkerStopped()
{
    startRunThatStandsStill();
    const QStringList rows = harness->paths();
    harness->post(CommandStopCrush);
    PROMPTLY_COMPARE(harness->count("setSelectAllCheckBoxState"), 1);
    // Nothing was spared, so there is no report.
    QCOMPARE(harness->log(),
             (SignalRecords{crushEnabled(false), stopping(), idle(), selectAllEnabled(true),
                            crushEnabled(true), removeEnabled(true), selectAllTicked(true)}));
    QCOMPARE(harness->checkedPaths(), rows);
    QVERIFY(entryExists(rows.first()) && entryExists(rows.last()));
    QCOMPARE(harness->differenceFromJobList(), QString());
}

void TestStop::stopWithoutRowsDisablesTheControls()
{
    harness->post(CommandStopCrush);
    PROMPTLY_COMPARE(harness->count("setRemoveButtonEnabled"), 1);
    QCOMPARE(harness->log(),
             (SignalRecords{crushEnabled(false), stopping(), idle(), selectAllEnabled(false),
                            crushEnabled(false), removeEnabled(false)}));
}

/// The verdict comes before the worker sees the stop, so the run ends with its result first.
void TestStop::stopInsideAFileLetsItFinishAndSparesTheNext()
{
    addRows(2);
    const QStringList rows = harness->paths();
    stopAtFirstProgress();
    harness->post(CommandStartCrush);
    PROMPTLY_COMPARE(harness->count("setSelectAllCheckBoxState"), 1);
    QCOMPARE(harness->log(),
             (SignalRecords{running(), progress(0, 99), crushEnabled(false), stopping(), removed(0),
                            idle(), all(1), result(1, 0), idle(), selectAllEnabled(true),
                            crushEnabled(true), removeEnabled(true), selectAllTicked(true)}));
    QVERIFY(!entryExists(rows.first()));
    QVERIFY(entryExists(rows.last()));
}

void TestStop::stopInsideAFolderLeavesTheRestOfItAndGivesNoReport()
{
    for (const char *name : {"folder/a", "folder/b", "folder/c"})
        make(name, 1000);
    const QString folder = tree->path(QStringLiteral("folder"));
    QVERIFY(harness->admitted({folder}));
    stopAtFirstProgress();
    harness->post(CommandStartCrush);
    PROMPTLY_COMPARE(harness->count("setSelectAllCheckBoxState"), 1);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(),
             (SignalRecords{running(), progress(0, 33), crushEnabled(false), stopping(),
                            progress(0, 0), idle(), selectAllEnabled(true), crushEnabled(true),
                            removeEnabled(true), selectAllTicked(true)}));
    QCOMPARE(QDir(folder).entryList(QDir::Files).size(), 2);
}

void TestStop::stopBetweenFilesSparesTheOneHandedOverAndReports()
{
    addRows(2);
    const QString spared = harness->paths().last();
    startAndHoldAt(1);
    QCOMPARE(stopAndRelease(),
             (SignalRecords{crushEnabled(false), stopping(), idle(), selectAllEnabled(true),
                            crushEnabled(true), removeEnabled(true), selectAllTicked(true), idle(),
                            all(1), result(1, 0)}));
    QCOMPARE(harness->checkedPaths(), QStringList{spared});
    // A later run counts anew, and the worker has not kept what was spared.
    QVERIFY(harness->finished());
    answerToClick(0);
    QVERIFY(harness->admitted({make("last")}));
    const SignalRecords answer = answerToRun();
    QVERIFY(answer.contains(all(1)));
    QCOMPARE(answer.last(), result(1, 0));
    QVERIFY(entryExists(spared));
    QCOMPARE(harness->differenceFromJobList(), QString());
}

void TestStop::stopBeforeTheFirstFileReportsNothingDone()
{
    addRows(1);
    holdIdleWorker();
    QCOMPARE(answerTo({CommandStartCrush}), SignalRecords{running()});
    QCOMPARE(stopAndRelease().mid(7), (SignalRecords{idle(), all(0), result(0, 0)}));
    QVERIFY(entryExists(harness->paths().first()));
}

void TestStop::reportCountsWhatFailed()
{
    QVERIFY(harness->admitted({makeStubborn("stubborn"), make("first"), make("spared")}));
    startAndHoldAt(2);
    QCOMPARE(stopAndRelease().mid(7), (SignalRecords{idle(), all(1), result(1, 1)}));
    QVERIFY(entryExists(tree->path(QStringLiteral("spared"))));
}

void TestStop::nextStopWithoutARunGivesNoReport()
{
    addRows(2);
    startAndHoldAt(1);
    stopAndRelease();
    QCOMPARE(stopAndRelease(),
             (SignalRecords{crushEnabled(false), stopping(), idle(), selectAllEnabled(true),
                            crushEnabled(true), removeEnabled(true), selectAllTicked(true)}));
}

/// A verdict on what was taken back, which the worker never gives, but a caller may.
void TestStop::verdictBetweenStopAndAnswerEndsTheRunOnce()
{
    addRows(2);
    const QString spared = harness->paths().last();
    startAndHoldAt(1);
    answerTo({CommandStopCrush});
    harness->walle().failedOneWalle(spared);
    harness->takeLog();
    held.reset();
    PROMPTLY_COMPARE(harness->count("setSelectAllCheckBoxState"), 1);
    QVERIFY(harness->performed());
    QCOMPARE(runLog(), SignalRecords{idle()});
}

void TestStop::pathOfSomebodyElseIsNoRun()
{
    holdIdleWorker();
    harness->walle().findChild<FileCrusher *>()->addPath(make("file"));
    QCOMPARE(stopAndRelease(),
             (SignalRecords{crushEnabled(false), stopping(), idle(), selectAllEnabled(false),
                            crushEnabled(false), removeEnabled(false)}));
}

void TestStop::successAfterAStopEndsTheRunWithItsResult()
{
    stopRunThatStandsStill();
    harness->walle().finishOneWalle(harness->paths().first());
    QCOMPARE(harness->log(), (SignalRecords{removed(0), idle(), all(1), result(1, 0)}));
    // The other row is still ticked, in the list as well.
    QVERIFY(harness->finished());
    QCOMPARE(answerToRun().last(), result(1, 0));
    QVERIFY(harness->rows().isEmpty());
}

void TestStop::failureAfterAStopEndsTheRunWithItsResult()
{
    stopRunThatStandsStill();
    harness->walle().failedOneWalle(harness->paths().first());
    QCOMPARE(harness->log(), (SignalRecords{progress(0, 0), idle(), all(0), result(0, 1)}));
    harness->post(CommandCheckAll); // the failed row is drawn ticked still
    QCOMPARE(harness->differenceFromJobList(), QString());
}

void TestStop::shutDownSparesWhatWasHandedOver()
{
    addRows(2);
    const QString spared = harness->paths().last();
    startAndHoldAt(1);
    harness->walle().shutDown();
    held.reset();
    letWorkerEmptyItsQueue();
    QVERIFY(entryExists(spared));
}

void TestStop::verdictAfterTheShutDownHandsNothingOver()
{
    startRunThatStandsStill();
    const QStringList rows = harness->paths();
    harness->walle().shutDown();
    harness->walle().finishOneWalle(rows.first());
    letWorkerEmptyItsQueue();
    QVERIFY(entryExists(rows.last()));
}

TEST_SUITE(stop, TestStop)
#include "stop.moc"
