// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Runs from start to result, and verdicts on a row that is not as it was admitted, or on
// another row than the one in hand.

#include "engine/filecrusher.h"
#include "promptly.h"
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
    void failureOfTheSecondOfThreeLeavesItsRowUnchecked();
    void linkToAFifoGoesAsAnyLink();
    void workerWaitsUntilTheReportIsClosed();

    void fileOf255BytesHoldsTheRunOpen();
    void successOfAnotherPathRemovesNothingButGoesOn();
};

void TestRun::runWithNothingCheckedEndsAtOnce()
{
    addRows(1);
    answerToClick(0);
    QCOMPARE(answerTo({CommandStartCrush}),
             (SignalRecords{running(), idle(), all(0), crushEnabled(false), removeEnabled(false),
                            result(0, 0)}));
    QVERIFY(entryExists(harness->paths().first()));
}

void TestRun::failureOfTheSecondOfThreeLeavesItsRowUnchecked()
{
    const QString stubborn = makeStubborn("second");
    QVERIFY(harness->admitted({make("first"), stubborn, make("third")}));
    QCOMPARE(answerToRun(),
             (SignalRecords{running(), progress(0, 99), removed(0), progress(0, 0), progress(1, 99),
                            removed(1), idle(), all(2), crushEnabled(false), removeEnabled(false),
                            result(2, 1)}));
    QCOMPARE(harness->paths(), QStringList{stubborn});
    QCOMPARE(answerTo({CommandCheckAll}).first(), ticked(0, true));
    QCOMPARE(harness->differenceFromJobList(), QString());
}

void TestRun::linkToAFifoGoesAsAnyLink()
{
    const QString fifo = tree->makeFifo("fifo");
    QVERIFY(harness->admitted({tree->makeLink("link", fifo)}));
    QCOMPARE(answerToRun().last(), result(1, 0));
    QVERIFY(entryExists(fifo));
}

/// The report of a run is shown within the slot for the last verdict.
void TestRun::workerWaitsUntilTheReportIsClosed()
{
    constexpr int fewMilliseconds = 200; // many passes of a worker that does not wait
    auto *worker = harness->walle().findChild<FileCrusher *>();
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
    const QString file = make("file", 255);
    const QString behind = make("behind");
    QVERIFY(harness->admitted({file, behind}));
    harness->post(CommandStartCrush);
    PROMPTLY_VERIFY(!home.history().isEmpty());
    harness->post(CommandStopCrush);
    PROMPTLY_VERIFY(harness->log().contains(idle()));
    QVERIFY(!entryExists(file));
    QVERIFY(entryExists(behind));
    QCOMPARE(harness->paths(), (QStringList{file, behind}));
    QCOMPARE(harness->count("showResultDialog"), 0);
}

void TestRun::successOfAnotherPathRemovesNothingButGoesOn()
{
    const QString first = make("first");
    const QString second = make("second");
    QVERIFY(harness->admitted({first, second}));
    becomeFifo(first); // so the run stands still there
    answerTo({CommandStartCrush});
    becomeFile(first);
    harness->takeLog();
    harness->walle().finishOneWalle(second);
    QCOMPARE(harness->log(), SignalRecords());
    QVERIFY(harness->finished());
    QVERIFY(!entryExists(first) && !entryExists(second));
    QCOMPARE(harness->log({"removeRowFromMainTable", "finishAll"}),
             (SignalRecords{removed(0), removed(0), all(2)}));
}

TEST_SUITE(run, TestRun)
#include "run.moc"
