// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Runs from start to result, and verdicts on a row that is not as it was admitted, or on
// another row than the one in hand.

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
};

void TestRun::runWithNothingCheckedEndsAtOnce()
{
    addRows(1);
    answerToClick(0);
    QCOMPARE(answerTo({CommandStartCrush}),
             (SignalRecords{running(), idle(), all(0), crushEnabled(false), removeEnabled(false),
                            result(0, 0)}));
    QVERIFY(entryExists(paths().first()));
}

void TestRun::verdictWithNothingCheckedChangesNothing()
{
    addRows(1);
    answerToClick(0);
    walle->finishOneWalle(paths().first());
    walle->failedOneWalle(paths().first());
    QVERIFY(performed());
    QCOMPARE(log(), SignalRecords());
    QVERIFY(entryExists(paths().first()));
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
    QCOMPARE(answerTo({CommandCheckAll}).first(), ticked(0, true));
    compareTableWithJobList();
}

void TestRun::linkToAFifoGoesAsAnyLink()
{
    const QString fifo = tree->makeFifo("fifo");
    QVERIFY(admitted({tree->makeLink("link", fifo)}));
    QCOMPARE(answerToRun().last(), result(1, 0));
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

TEST_SUITE(run, TestRun)
#include "run.moc"
