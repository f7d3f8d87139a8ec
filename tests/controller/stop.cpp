// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Stopping a run, and what may still come after. A stop that spares what was handed over
// ends the run with its report, once. Stops at random moments are in model and races.

#include "engine/filecrusher.h"
#include "promptly.h"
#include "suites.h"
#include "walleharness.h"

#include <atomic>

using testsupport::entryExists;
using testsupport::SignalRecords;
using testsupport::WalleTest;

class TestStop : public WalleTest
{
    Q_OBJECT

private slots:
    void stopSaysStoppingAtOnceAndIdleWhenTheWorkerStopped();

    void stopBetweenFilesSparesTheOneHandedOverAndReports();
    void verdictBetweenStopAndAnswerEndsTheRunOnce();

    void successAfterAStopEndsTheRunWithItsResult();
    void shutDownSparesWhatWasHandedOver();
    void verdictAfterTheShutDownHandsNothingOver();

private:
    /// Starts a run over two rows that stands still at the first.
    void startRunThatStandsStill();
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

void TestStop::stopBetweenFilesSparesTheOneHandedOverAndReports()
{
    const QString spared = make("spared");
    QVERIFY(harness->admitted({makeStubborn("stubborn"), make("first"), spared}));
    startAndHoldAt(2);
    QCOMPARE(stopAndRelease(),
             (SignalRecords{crushEnabled(false), stopping(), idle(), selectAllEnabled(true),
                            crushEnabled(true), removeEnabled(true), selectAllTicked(false), idle(),
                            all(1), result(1, 1)}));
    QCOMPARE(harness->paths(), (QStringList{tree->path("stubborn"), spared}));
    // A later run counts anew, and the worker has not kept what was spared.
    QVERIFY(harness->finished());
    answerToClick(1);
    QVERIFY(harness->admitted({make("last")}));
    const SignalRecords answer = answerToRun();
    QVERIFY(answer.contains(all(1)));
    QCOMPARE(answer.last(), result(1, 0));
    QVERIFY(entryExists(spared));
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

void TestStop::successAfterAStopEndsTheRunWithItsResult()
{
    startRunThatStandsStill();
    harness->post(CommandStopCrush);
    PROMPTLY_COMPARE(harness->count("setSelectAllCheckBoxState"), 1);
    harness->takeLog();
    harness->walle().finishOneWalle(harness->paths().first());
    QCOMPARE(harness->log(), (SignalRecords{removed(0), idle(), all(1), result(1, 0)}));
    // The other row is still ticked, in the list as well.
    QVERIFY(harness->finished());
    QCOMPARE(answerToRun().last(), result(1, 0));
    QVERIFY(harness->rows().isEmpty());
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
