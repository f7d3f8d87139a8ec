// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Runs from start to result, stops, and verdicts that nobody awaits. A stop that spares what
// was handed over ends the run with its report, once. Stops at random moments are in model and
// races.

#include "engine/filecrusher.h"
#include "suites.h"
#include "walleharness.h"

using testsupport::entryExists;
using testsupport::SignalRecords;
using testsupport::WalleTest;

class TestRun : public WalleTest
{
    Q_OBJECT

private slots:
    void runWithNothingCheckedEndsAtOnce();
    void verdictWithNothingCheckedChangesNothing();
    void failureOfTheSecondOfThreeLeavesItsRowUnchecked();
    void linkToAFifoGoesAsAnyLink();
    void workerWaitsUntilTheReportIsClosed();
    void fileOf255BytesHoldsTheRunOpen();
    void successOfAnotherPathRemovesNothingButGoesOn();

    void stopSaysStoppingAtOnceAndIdleWhenTheWorkerStopped();
    void stopBetweenFilesSparesTheOneHandedOverAndReports();
    void stopWithoutARunTakesBackThePathOfSomebodyElse();

    void verdictBetweenStopAndAnswerEndsTheRunOnce();
    void verdictAfterAnAnsweredStopEndsTheRunWithItsResult_data();
    void verdictAfterAnAnsweredStopEndsTheRunWithItsResult();
    void shutDownSparesWhatWasHandedOver();
    void verdictAfterTheShutDownHandsNothingOver();
};

void TestRun::runWithNothingCheckedEndsAtOnce()
{
    addRows(1);
    answerToClick(0);
    QCOMPARE(answerTo({CommandStartCrush}),
             (SignalRecords{running(), idle(), all(0), crushEnabled(false), removeEnabled(false),
                            result(0, 0)}));
    QVERIFY(entryExists(paths().constFirst()));
}

void TestRun::verdictWithNothingCheckedChangesNothing()
{
    addRows(1);
    answerToClick(0);
    walle->finishOneWalle(paths().constFirst());
    walle->failedOneWalle(paths().constFirst());
    QVERIFY(performed());
    QCOMPARE(log(), SignalRecords());
    QVERIFY(entryExists(paths().constFirst()));
}

void TestRun::failureOfTheSecondOfThreeLeavesItsRowUnchecked()
{
    const QString stubborn = makeStubborn("second");
    QVERIFY(admitted({make("first"), stubborn, make("third")}));
    QCOMPARE(answerToRun(),
             (SignalRecords{running(), progress(0, 99), removed(0), progress(0, 0), progress(1, 99),
                            removed(1), idle(), all(2), crushEnabled(false), removeEnabled(false),
                            result(2, 1)}));
    QCOMPARE(paths(), QStringList{stubborn});
    QCOMPARE(answerTo({CommandCheckAll}).constFirst(), ticked(0, true));
    compareTableWithJobList();
}

void TestRun::linkToAFifoGoesAsAnyLink()
{
    const QString fifo = tree->makeFifo("fifo");
    QVERIFY(admitted({tree->makeLink("link", fifo)}));
    QCOMPARE(answerToRun().constLast(), result(1, 0));
    QVERIFY(entryExists(fifo));
}

/// The report of a run is shown within the slot for the last verdict.
void TestRun::workerWaitsUntilTheReportIsClosed()
{
    constexpr int fewMilliseconds = 200; // many passes of a worker that does not wait
    bool waits = false;
    addRows(1);
    onNext("showResultDialog", [&] {
        worker->addPath(QStringLiteral("/nonexistent"));
        QTest::qSleep(fewMilliseconds);
        waits = worker->takeBackPaths();
    });
    answerToRun();
    QVERIFY(waits);
}

void TestRun::fileOf255BytesHoldsTheRunOpen()
{
    const QStringList rows{make("file", 255), make("behind")};
    QVERIFY(admitted(rows));
    post(CommandStartCrush);
    PROMPTLY_VERIFY(!home.history().isEmpty());
    const SignalRecords answer = answerToStop();
    QVERIFY(!entryExists(rows.first()) && entryExists(rows.last()));
    QCOMPARE(paths(), rows);
    QCOMPARE(answer.mid(0, 3), (SignalRecords{crushEnabled(false), stopping(), idle()}));
    QVERIFY(!answer.contains(result(0, 0)));
}

void TestRun::successOfAnotherPathRemovesNothingButGoesOn()
{
    startRunThatStandsStill(2);
    const QStringList rows = paths();
    becomeFile(rows.first());
    walle->finishOneWalle(rows.last());
    QCOMPARE(log(), SignalRecords());
    QVERIFY(finished());
    QVERIFY(!entryExists(rows.first()) && !entryExists(rows.last()));
    QCOMPARE(log({"removeRowFromMainTable", "finishAll"}),
             (SignalRecords{removed(0), removed(0), all(2)}));
}

void TestRun::stopSaysStoppingAtOnceAndIdleWhenTheWorkerStopped()
{
    startRunThatStandsStill(2);
    const QStringList rows = paths();
    // Nothing was spared, so there is no report.
    QCOMPARE(answerToStop(),
             (SignalRecords{crushEnabled(false), stopping(), idle(), selectAllEnabled(true),
                            crushEnabled(true), removeEnabled(true), selectAllTicked(true)}));
    QCOMPARE(checkedPaths(), rows);
    QVERIFY(entryExists(rows.first()) && entryExists(rows.last()));
    compareTableWithJobList();
}

void TestRun::stopBetweenFilesSparesTheOneHandedOverAndReports()
{
    const QString spared = make("spared");
    QVERIFY(admitted({makeStubborn("stubborn"), make("first"), spared}));
    QVERIFY(holdWorkerAfter(CommandStartCrush, 2));
    QCOMPARE(answerToStop(),
             (SignalRecords{crushEnabled(false), stopping(), idle(), selectAllEnabled(true),
                            crushEnabled(true), removeEnabled(true), selectAllTicked(false), idle(),
                            all(1), result(1, 1)}));
    QCOMPARE(paths(), (QStringList{tree->path("stubborn"), spared}));
    // A later run counts anew, and the worker has not kept what was spared.
    answerToClick(1);
    QVERIFY(admitted({make("last")}));
    const SignalRecords answer = answerToRun();
    QVERIFY(answer.contains(all(1)));
    QCOMPARE(answer.last(), result(1, 0));
    QVERIFY(entryExists(spared));
}

void TestRun::stopWithoutARunTakesBackThePathOfSomebodyElse()
{
    const QString file = make("file");
    QVERIFY(holdWorkerAfter(CommandStopCrush));
    worker->addPath(file);
    // It belongs to no run, so there is no report.
    QCOMPARE(answerToStop(),
             (SignalRecords{crushEnabled(false), stopping(), idle(), selectAllEnabled(false),
                            crushEnabled(false), removeEnabled(false)}));
    QVERIFY(!worker->takeBackPaths());
    QVERIFY(entryExists(file));
}

/// A verdict on what was taken back, which the worker never gives, but a caller may.
void TestRun::verdictBetweenStopAndAnswerEndsTheRunOnce()
{
    addRows(2);
    QVERIFY(holdWorkerAfter(CommandStartCrush));
    answerTo({CommandStopCrush});
    walle->failedOneWalle(paths().constLast());
    takeLog();
    releaseWorker();
    PROMPTLY_VERIFY(!log().isEmpty());
    QVERIFY(performed());
    QCOMPARE(runLog(), SignalRecords{idle()});
}

void TestRun::verdictAfterAnAnsweredStopEndsTheRunWithItsResult_data()
{
    QTest::addColumn<bool>("isSuccess");
    QTest::newRow("success") << true;
    QTest::newRow("failure") << false;
}

void TestRun::verdictAfterAnAnsweredStopEndsTheRunWithItsResult()
{
    QFETCH(bool, isSuccess);
    startRunThatStandsStill(2);
    answerToStop();
    const QString first = paths().constFirst();
    if (isSuccess)
        walle->finishOneWalle(first);
    else
        walle->failedOneWalle(first);
    QCOMPARE(takeLog(), isSuccess ? (SignalRecords{removed(0), idle(), all(1), result(1, 0)})
                                  : (SignalRecords{progress(0, 0), idle(), all(0), result(0, 1)}));
    // The other row is still ticked, in the list as well.
    QCOMPARE(answerToRun().constLast(), result(1, 0));
    QCOMPARE(paths(), isSuccess ? QStringList() : QStringList{first});
}

void TestRun::shutDownSparesWhatWasHandedOver()
{
    addRows(2);
    QVERIFY(holdWorkerAfter(CommandStartCrush));
    walle->shutDown();
    QVERIFY(!worker->takeBackPaths());
}

void TestRun::verdictAfterTheShutDownHandsNothingOver()
{
    startRunThatStandsStill(2);
    walle->shutDown();
    walle->finishOneWalle(paths().constFirst());
    QVERIFY(!worker->takeBackPaths());
    QVERIFY(entryExists(paths().constLast()));
}

TEST_SUITE(run, TestRun)
#include "run.moc"
