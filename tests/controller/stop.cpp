// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Stopping a run, and what may still come after. A stop that spares what was handed over
// ends the run with its report, once. Stops at random moments are in model and races.

#include "engine/filecrusher.h"
#include "suites.h"
#include "walleharness.h"

using testsupport::entryExists;
using testsupport::SignalRecords;
using testsupport::WalleTest;

class TestStop : public WalleTest
{
    Q_OBJECT

private slots:
    void stopSaysStoppingAtOnceAndIdleWhenTheWorkerStopped();
    void stopBetweenFilesSparesTheOneHandedOverAndReports();
    void stopWithoutARunTakesBackThePathOfSomebodyElse();

    void verdictBetweenStopAndAnswerEndsTheRunOnce();
    void verdictAfterAnAnsweredStopEndsTheRunWithItsResult_data();
    void verdictAfterAnAnsweredStopEndsTheRunWithItsResult();
    void shutDownSparesWhatWasHandedOver();
    void verdictAfterTheShutDownHandsNothingOver();
};

void TestStop::stopSaysStoppingAtOnceAndIdleWhenTheWorkerStopped()
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

void TestStop::stopBetweenFilesSparesTheOneHandedOverAndReports()
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

void TestStop::stopWithoutARunTakesBackThePathOfSomebodyElse()
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
void TestStop::verdictBetweenStopAndAnswerEndsTheRunOnce()
{
    addRows(2);
    QVERIFY(holdWorkerAfter(CommandStartCrush));
    answerTo({CommandStopCrush});
    walle->failedOneWalle(paths().last());
    takeLog();
    releaseWorker();
    PROMPTLY_VERIFY(!log().isEmpty());
    QVERIFY(performed());
    QCOMPARE(runLog(), SignalRecords{idle()});
}

void TestStop::verdictAfterAnAnsweredStopEndsTheRunWithItsResult_data()
{
    QTest::addColumn<bool>("isSuccess");
    QTest::newRow("success") << true;
    QTest::newRow("failure") << false;
}

void TestStop::verdictAfterAnAnsweredStopEndsTheRunWithItsResult()
{
    QFETCH(bool, isSuccess);
    startRunThatStandsStill(2);
    answerToStop();
    const QString first = paths().first();
    if (isSuccess)
        walle->finishOneWalle(first);
    else
        walle->failedOneWalle(first);
    QCOMPARE(takeLog(), isSuccess ? (SignalRecords{removed(0), idle(), all(1), result(1, 0)})
                                  : (SignalRecords{progress(0, 0), idle(), all(0), result(0, 1)}));
    // The other row is still ticked, in the list as well.
    QCOMPARE(answerToRun().last(), result(1, 0));
    QCOMPARE(paths(), isSuccess ? QStringList() : QStringList{first});
}

void TestStop::shutDownSparesWhatWasHandedOver()
{
    addRows(2);
    QVERIFY(holdWorkerAfter(CommandStartCrush));
    walle->shutDown();
    QVERIFY(!worker->takeBackPaths());
}

void TestStop::verdictAfterTheShutDownHandsNothingOver()
{
    startRunThatStandsStill(2);
    walle->shutDown();
    walle->finishOneWalle(paths().first());
    QVERIFY(!worker->takeBackPaths());
    QVERIFY(entryExists(paths().last()));
}

TEST_SUITE(stop, TestStop)
#include "stop.moc"
