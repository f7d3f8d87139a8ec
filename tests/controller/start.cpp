// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Which starts begin a run: none while a run goes on, and none that the worker's answer to an
// earlier stop would end. Starts while the worker is at work are in model.

#include "suites.h"
#include "walleharness.h"

using testsupport::entryExists;
using testsupport::eventually;
using testsupport::SignalRecords;
using testsupport::WalleTest;

constexpr int fewMilliseconds = 100; // many polls of the controller, on a machine that is not busy

class TestStart : public WalleTest
{
    Q_OBJECT

private slots:
    void startWhileStoppingIsDropped();
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
    QVERIFY(holdWorkerAfter(CommandStopCrush));
    answerTo({CommandStartCrush, CommandStopCrush, CommandStartCrush});
    releaseWorker();
    QVERIFY(finished());
    QVERIFY(performed());
    QCOMPARE(runLog(), (SignalRecords{idle(), idle(), all(0), result(0, 0)}));
    QVERIFY(entryExists(paths().constFirst()));
}

void TestStart::runLeftOpenByAFifoTakesNoStart()
{
    startRunThatStandsStill(1);
    const QString path = paths().constFirst();
    becomeFile(path);
    QCOMPARE(answerTo({CommandStartCrush}), SignalRecords());
    answerToStop();
    QCOMPARE(answerToRun().constLast(), result(1, 0));
    QVERIFY(!entryExists(path));
}

/// Its own reports would come in the middle of those of the run before.
void TestStart::startWhileTheEndIsToldWaitsForIt()
{
    addRows(1);
    bool waits = false;
    onNext("finishAll", [&] {
        waits = !emittedUnheard(
            "setCrushStarted", [this] { post(CommandStartCrush); }, fewMilliseconds);
    });
    post(CommandStartCrush);
    PROMPTLY_COMPARE(count("showResultDialog"), 2);
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
        accepted = emittedUnheard("setCrushStarted", [this] { post(CommandStartCrush); });
    });
    post(CommandStartCrush);
    PROMPTLY_COMPARE(count("showResultDialog"), 2);
    QVERIFY(accepted);
}

void TestStart::startBehindAVerdictAfterAStopWaitsForTheAnswer()
{
    addRows(2);
    onNext("setTableRowHeight", [this] {
        post(CommandStopCrush);
        performed();
    });
    QVERIFY(holdWorkerAfter(CommandStartCrush));
    QVERIFY(finished());
    takeLog();
    post(CommandStartCrush);
    QVERIFY(!eventually([this] { return !log().isEmpty(); }, fewMilliseconds));
    releaseWorker();
    QVERIFY(finished());
    QCOMPARE(runLog(), (SignalRecords{idle(), running(), idle(), all(1), result(1, 0)}));
}

void TestStart::startBehindAStopWithoutARunWaitsForTheAnswer()
{
    addRows(1);
    QVERIFY(holdWorkerAfter(CommandStopCrush));
    answerTo({CommandStopCrush});
    post(CommandStartCrush);
    QVERIFY(!eventually([this] { return !log().isEmpty(); }, fewMilliseconds));
    releaseWorker();
    QVERIFY(finished());
    QCOMPARE(runLog(), (SignalRecords{idle(), running(), idle(), all(1), result(1, 0)}));
}

/// The worker has seen the first stop, and the window has yet to get its answer. An answer of its
/// own to the second would come in the next run.
void TestStart::stopWhileTheAnswerIsOnItsWayIsAnsweredByIt()
{
    /// Stops again when the answer reaches the controller.
    class SecondStop : public QObject
    {
    public:
        explicit SecondStop(TestStart &user)
            : test(user)
        {
        }
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::MetaCall && !done)
                done = test.emittedUnheard("setCrushButtonEnabled",
                                           [this] { test.post(CommandStopCrush); });
            return false;
        }
        TestStart &test;
        bool done = false;
    };

    addRows(1);
    SecondStop secondStop(*this);
    walle->installEventFilter(&secondStop);
    post(CommandStopCrush);
    PROMPTLY_VERIFY(log().contains(idle()));
    QVERIFY(secondStop.done);
    post(CommandStartCrush);
    QVERIFY(finished());
    QCOMPARE(runLog(), (SignalRecords{stopping(), stopping(), idle(), running(), idle(), all(1),
                                      result(1, 0)}));
}

TEST_SUITE(start, TestStart)
#include "start.moc"
