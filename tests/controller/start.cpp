// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Which starts begin a run: none while a run goes on, and none that the worker's
// answer to an earlier stop would end.

#include "promptly.h"
#include "suites.h"
#include "walleharness.h"

using testsupport::entryExists;
using testsupport::eventually;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::WalleTest;

constexpr int fewMilliseconds = 100; // many polls of the controller, on a machine that is not busy

class TestStart : public WalleTest
{
    Q_OBJECT

private slots:
    void startWhileStoppingIsDropped();
    void startBetweenVerdictAndNextPathIsDropped();
    void runLeftOpenByAFifoTakesNoStart();
    void startWhileTheEndIsToldWaitsForIt();
    void startInAnswerToTheReportIsAccepted();
    void startBehindAVerdictAfterAStopWaitsForTheAnswer();
    void startBehindAStopWithoutARunWaitsForTheAnswer();
    void stopWhileTheAnswerIsOnItsWayIsAnsweredByIt();
};

void TestStart::startWhileStoppingIsDropped()
{
    addRows(1);
    holdIdleWorker();
    answerTo({CommandStartCrush, CommandStopCrush, CommandStartCrush});
    held.reset();
    QVERIFY(harness->finished());
    QVERIFY(harness->performed());
    QCOMPARE(runLog(), (SignalRecords{idle(), idle(), all(0), result(0, 0)}));
    QVERIFY(entryExists(harness->paths().first()));
}

/// The second file waits in the worker's queue; handed over again it would be reported twice.
void TestStart::startBetweenVerdictAndNextPathIsDropped()
{
    addRows(2);
    startAndHoldAt(1);
    QCOMPARE(answerTo({CommandStartCrush}), SignalRecords());
    held.reset();
    QVERIFY(harness->finished());
    QVERIFY(harness->performed());
    QCOMPARE(runLog(), (SignalRecords{idle(), all(2), result(2, 0)}));
}

void TestStart::runLeftOpenByAFifoTakesNoStart()
{
    addRows(1);
    const QString path = harness->paths().first();
    becomeFifo(path);
    answerTo({CommandStartCrush});
    becomeFile(path);
    QCOMPARE(answerTo({CommandStartCrush}), SignalRecords());

    harness->post(CommandStopCrush);
    PROMPTLY_VERIFY(harness->count("setSelectAllCheckBoxState") > 0);
    QCOMPARE(answerToRun().last(), result(1, 0));
    QVERIFY(!entryExists(path));
}

/// Its own reports would come in the middle of those of the run before.
void TestStart::startWhileTheEndIsToldWaitsForIt()
{
    addRows(1);
    bool waits = false;
    harness->onSignal = [&](const SignalRecord &signal) {
        if (signal != idle())
            return;
        harness->onSignal = nullptr;
        waits = !harness->emittedUnheard(
            "setCrushStarted", [this] { harness->post(CommandStartCrush); }, fewMilliseconds);
    };
    harness->post(CommandStartCrush);
    PROMPTLY_COMPARE(harness->count("showResultDialog"), 2);
    QVERIFY(waits);
    QCOMPARE(runLog(), (SignalRecords{running(), idle(), all(1), result(1, 0), running(), idle(),
                                      all(0), result(0, 0)}));
}

/// As long as the report is open, as the window shows it within its slot.
void TestStart::startInAnswerToTheReportIsAccepted()
{
    addRows(1);
    bool accepted = false;
    onNext("showResultDialog", [&] {
        accepted = harness->emittedUnheard("setCrushStarted",
                                           [this] { harness->post(CommandStartCrush); });
    });
    harness->post(CommandStartCrush);
    PROMPTLY_COMPARE(harness->count("showResultDialog"), 2);
    QVERIFY(accepted);
}

void TestStart::startBehindAVerdictAfterAStopWaitsForTheAnswer()
{
    addRows(2);
    onNext("setTableRowHeight", [this] {
        harness->post(CommandStopCrush);
        harness->performed();
    });
    startAndHoldAt(1);
    QVERIFY(harness->finished());
    harness->post(CommandStartCrush);
    QVERIFY(!eventually([this] { return !harness->log().isEmpty(); }, fewMilliseconds));
    held.reset();
    QVERIFY(harness->finished());
    QCOMPARE(runLog(), (SignalRecords{idle(), running(), idle(), all(1), result(1, 0)}));
}

void TestStart::startBehindAStopWithoutARunWaitsForTheAnswer()
{
    addRows(1);
    holdIdleWorker();
    harness->post(CommandStopCrush);
    harness->post(CommandStartCrush);
    QVERIFY(!eventually([this] { return harness->count("setCrushStarted") > 1; }, fewMilliseconds));
    held.reset();
    QVERIFY(harness->finished());
    QCOMPARE(runLog(),
             (SignalRecords{stopping(), idle(), running(), idle(), all(1), result(1, 0)}));
}

/// The worker has seen the first stop, and the window has yet to get its answer. An answer of its
/// own to the second would come in the next run.
void TestStart::stopWhileTheAnswerIsOnItsWayIsAnsweredByIt()
{
    /// Stops again when the answer reaches the controller.
    class SecondStop : public QObject
    {
    public:
        explicit SecondStop(testsupport::WalleHarness &user)
            : harness(user)
        {
            harness.walle().installEventFilter(this);
        }
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::MetaCall && !done)
                done = harness.emittedUnheard("setCrushButtonEnabled",
                                              [this] { harness.post(CommandStopCrush); });
            return false;
        }
        testsupport::WalleHarness &harness;
        bool done = false;
    };

    addRows(1);
    {
        const SecondStop secondStop(*harness);
        harness->post(CommandStopCrush);
        PROMPTLY_VERIFY(harness->log().contains(idle()));
        QVERIFY(secondStop.done);
    }
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    QCOMPARE(runLog(), (SignalRecords{stopping(), stopping(), idle(), running(), idle(), all(1),
                                      result(1, 0)}));
}

TEST_SUITE(start, TestStart)
#include "start.moc"
