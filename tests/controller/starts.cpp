// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Which starts begin a run: none while a run goes on, and none that the worker's
// answer to an earlier stop would end.

#include "engine/filecrusher.h"

#include "briskthreads.h"
#include "promptly.h"
#include "sandboxhome.h"
#include "suites.h"
#include "temporarytree.h"
#include "walleharness.h"

#include <QtTest>

#include <memory>

using testsupport::entryExists;
using testsupport::HeldThread;
using testsupport::pausesOf;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;
using testsupport::WalleHarness;

class TestWalleStarts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void init();
    void cleanup();
    void secondStartAtOnceIsDropped();
    void startDuringARunNeitherHandsOverNorResetsTheCounts();
    void startWhileStoppingIsDropped();
    void startBetweenVerdictAndNextPathIsDropped();
    void runLeftOpenByAFifoTakesNoStart();
    void runLeftOpenBy255BytesTakesNoStart();
    void startAfterTheEndBeginsTheNextRun();
    void startWhileTheEndIsToldWaitsForIt();
    void startAfterAnAnsweredStopShredsTheRest();
    void startBehindAVerdictAfterAStopWaitsForTheAnswer();
    void startBehindAStopWithoutARunWaitsForTheAnswer();
    void severalStopsAreAnsweredBeforeTheNextStart();

private:
    QString make(const char *name) const { return tree->makeFile(QLatin1String(name), 10); }
    /// What was admitted as a file becomes a fifo, which is not handed over.
    void makeFifoOf(const QString &path) const;
    void postAll(const QList<int> &codes) const;
    int reports() const { return harness->count("showResultDialog"); }
    bool isIdle() const { return harness->controls().runState == RunState::Idle; }
    /// Waits until the controller has polled often enough to have performed what it would.
    void letControllerPoll() const;

    testsupport::SandboxHome home;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<WalleHarness> harness;
    FileCrusher *worker = nullptr;
};

void TestWalleStarts::init()
{
    tree = std::make_unique<TemporaryTree>();
    harness = std::make_unique<WalleHarness>();
    worker = harness->walle().findChild<FileCrusher *>();
}

void TestWalleStarts::cleanup()
{
    QCOMPARE(harness->faults(), QStringList());
    harness.reset();
    tree.reset();
}

void TestWalleStarts::makeFifoOf(const QString &path) const
{
    QVERIFY(QFile::remove(path));
    tree->makeFifo(QFileInfo(path).fileName());
}

void TestWalleStarts::postAll(const QList<int> &codes) const
{
    for (const int code : codes)
        harness->post(code);
}

void TestWalleStarts::letControllerPoll() const
{
    constexpr int severalPolls = 10;
    const int enough = pausesOf(&harness->walle()) + severalPolls;
    PROMPTLY_VERIFY(pausesOf(&harness->walle()) > enough);
}

void TestWalleStarts::secondStartAtOnceIsDropped()
{
    QVERIFY(harness->admitted({make("a"), make("b")}));
    {
        const HeldThread held(worker);
        PROMPTLY_VERIFY(held.stands());
        postAll({CommandStartCrush, CommandStartCrush});
        QVERIFY(harness->performed());
        QCOMPARE(harness->log(), (SignalRecords{{"setCrushStarted", {RunState::Running}}}));
    }
    QVERIFY(harness->finished());
    QVERIFY(harness->performed());
    QCOMPARE(harness->log({"finishAll", "showResultDialog"}), (SignalRecords{
                                                                  {"finishAll", {2}},
                                                                  {"showResultDialog", {1, 2, 0}},
                                                              }));
    QCOMPARE(harness->paths(), QStringList());
}

void TestWalleStarts::startDuringARunNeitherHandsOverNorResetsTheCounts()
{
    QVERIFY(harness->admitted({make("a"), make("b"), make("c")}));
    harness->onSignal = [this](const SignalRecord &signal) {
        if (signal.name != "setTableRowHeight")
            return;
        harness->post(CommandStartCrush);
        harness->performed();
    };
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    QVERIFY(harness->performed());
    QCOMPARE(harness->log({"setCrushStarted", "finishAll", "showResultDialog"}),
             (SignalRecords{
                 {"setCrushStarted", {RunState::Running}},
                 {"setCrushStarted", {RunState::Idle}},
                 {"finishAll", {3}},
                 {"showResultDialog", {1, 3, 0}},
             }));
}

void TestWalleStarts::startWhileStoppingIsDropped()
{
    const QString file = make("file");
    QVERIFY(harness->admitted({file}));
    {
        const HeldThread held(worker);
        PROMPTLY_VERIFY(held.stands());
        postAll({CommandStartCrush, CommandStopCrush, CommandStartCrush});
        QVERIFY(harness->performed());
    }
    QVERIFY(harness->finished());
    QVERIFY(harness->performed());
    QCOMPARE(harness->log({"setCrushStarted"}), (SignalRecords{
                                                    {"setCrushStarted", {RunState::Running}},
                                                    {"setCrushStarted", {RunState::Stopping}},
                                                    {"setCrushStarted", {RunState::Idle}},
                                                    {"setCrushStarted", {RunState::Idle}},
                                                }));
    QVERIFY(entryExists(file));
}

/// The second file waits in the worker's queue; handed over again it would be reported twice.
void TestWalleStarts::startBetweenVerdictAndNextPathIsDropped()
{
    QVERIFY(harness->admitted({make("a"), make("b")}));
    std::unique_ptr<HeldThread> held;
    harness->onSignal = [this, &held](const SignalRecord &signal) {
        if (signal.name == "removeRowFromMainTable" && !held)
            held = std::make_unique<HeldThread>(worker);
    };
    harness->post(CommandStartCrush);
    PROMPTLY_VERIFY(held && held->stands());
    harness->onSignal = nullptr;
    harness->post(CommandStartCrush);
    QVERIFY(harness->performed());
    held.reset();
    QVERIFY(harness->finished());
    QVERIFY(harness->performed());
    QCOMPARE(harness->log({"showResultDialog"}), (SignalRecords{{"showResultDialog", {1, 2, 0}}}));
}

void TestWalleStarts::runLeftOpenByAFifoTakesNoStart()
{
    const QString path = make("held");
    QVERIFY(harness->admitted({path}));
    makeFifoOf(path);
    harness->post(CommandStartCrush);
    QVERIFY(harness->performed());
    harness->takeLog();
    QVERIFY(QFile::remove(path));
    make("held");
    harness->post(CommandStartCrush);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), SignalRecords());

    harness->post(CommandStopCrush);
    PROMPTLY_VERIFY(isIdle() && harness->count("setSelectAllCheckBoxState") > 0);
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    QVERIFY(!entryExists(path));
}

void TestWalleStarts::runLeftOpenBy255BytesTakesNoStart()
{
    const QString path = tree->makeFile(QStringLiteral("file"), 255);
    QVERIFY(harness->admitted({path}));
    harness->post(CommandStartCrush);
    PROMPTLY_VERIFY(!entryExists(path));
    harness->post(CommandStartCrush);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log({"setCrushStarted"}),
             (SignalRecords{{"setCrushStarted", {RunState::Running}}}));
    QCOMPARE(reports(), 0);
}

void TestWalleStarts::startAfterTheEndBeginsTheNextRun()
{
    for (const char *name : {"a", "b"}) {
        QVERIFY(harness->admitted({make(name)}));
        harness->post(CommandStartCrush);
        QVERIFY(harness->finished());
        QCOMPARE(harness->log({"showResultDialog"}),
                 (SignalRecords{{"showResultDialog", {1, 1, 0}}}));
    }
}

/// The end of a run leaves the ticks in the list as they are.
/// Its own reports would come in the middle of those of the run before.
void TestWalleStarts::startWhileTheEndIsToldWaitsForIt()
{
    QVERIFY(harness->admitted({make("a")}));
    Walle &walle = harness->walle();
    bool posted = false;
    const auto postAndLetPoll = [&](int state) {
        if (state != RunState::Idle || posted)
            return;
        posted = true;
        walle.postCommand(CommandStartCrush);
        const int enough = pausesOf(&walle) + 10;
        while (pausesOf(&walle) < enough)
            QThread::yieldCurrentThread();
    };
    const auto connection = connect(&walle, &Walle::setCrushStarted, postAndLetPoll);
    walle.postCommand(CommandStartCrush);
    PROMPTLY_VERIFY(reports() == 2);
    disconnect(connection);
    QCOMPARE(harness->log({"setCrushStarted", "finishAll", "showResultDialog"}),
             (SignalRecords{{"setCrushStarted", {RunState::Running}},
                            {"setCrushStarted", {RunState::Idle}},
                            {"finishAll", {1}},
                            {"showResultDialog", {1, 1, 0}},
                            {"setCrushStarted", {RunState::Running}},
                            {"setCrushStarted", {RunState::Idle}},
                            {"finishAll", {0}},
                            {"showResultDialog", {1, 0, 0}}}));
}

void TestWalleStarts::startAfterAnAnsweredStopShredsTheRest()
{
    QVERIFY(harness->admitted({make("a"), make("b"), make("c")}));
    harness->onSignal = [this](const SignalRecord &signal) {
        if (signal.name != "setTableRowHeight")
            return;
        harness->onSignal = nullptr;
        harness->post(CommandStopCrush);
        harness->performed();
    };
    harness->post(CommandStartCrush);
    PROMPTLY_COMPARE(harness->count("setCrushStarted"), 4);
    QCOMPARE(harness->log({"showResultDialog"}), (SignalRecords{{"showResultDialog", {1, 1, 0}}}));
    QCOMPARE(harness->checkedPaths().size(), 2);
    harness->takeLog();
    harness->post(CommandStartCrush);
    PROMPTLY_COMPARE(reports(), 1);
    QCOMPARE(harness->log({"finishAll", "showResultDialog"}), (SignalRecords{
                                                                  {"finishAll", {2}},
                                                                  {"showResultDialog", {1, 2, 0}},
                                                              }));
    QCOMPARE(harness->paths(), QStringList());
}

void TestWalleStarts::startBehindAVerdictAfterAStopWaitsForTheAnswer()
{
    QVERIFY(harness->admitted({make("a"), make("b")}));
    std::unique_ptr<HeldThread> held;
    harness->onSignal = [this, &held](const SignalRecord &signal) {
        if (signal.name != "setTableRowHeight")
            return;
        harness->onSignal = nullptr;
        harness->post(CommandStopCrush);
        harness->performed();
        held = std::make_unique<HeldThread>(worker);
    };
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    harness->takeLog();
    harness->post(CommandStartCrush);
    letControllerPoll();
    QCOMPARE(harness->log(), SignalRecords());
    held.reset();
    QVERIFY(harness->finished());
    QCOMPARE(harness->log({"setCrushStarted", "showResultDialog"}),
             (SignalRecords{
                 {"setCrushStarted", {RunState::Idle}},
                 {"setCrushStarted", {RunState::Running}},
                 {"setCrushStarted", {RunState::Idle}},
                 {"showResultDialog", {1, 1, 0}},
             }));
}

void TestWalleStarts::startBehindAStopWithoutARunWaitsForTheAnswer()
{
    QVERIFY(harness->admitted({make("a")}));
    {
        const HeldThread held(worker);
        PROMPTLY_VERIFY(held.stands());
        postAll({CommandStopCrush, CommandStartCrush});
        PROMPTLY_COMPARE(harness->count("setCrushStarted"), 1);
        letControllerPoll();
    }
    QVERIFY(harness->finished());
    QCOMPARE(harness->log({"setCrushStarted", "showResultDialog"}),
             (SignalRecords{
                 {"setCrushStarted", {RunState::Stopping}},
                 {"setCrushStarted", {RunState::Idle}},
                 {"setCrushStarted", {RunState::Running}},
                 {"setCrushStarted", {RunState::Idle}},
                 {"showResultDialog", {1, 1, 0}},
             }));
}

void TestWalleStarts::severalStopsAreAnsweredBeforeTheNextStart()
{
    constexpr int rounds = 300;
    for (int round = 0; round < rounds; ++round) {
        QVERIFY(harness->admitted({make("a")}));
        postAll({CommandStopCrush, CommandStopCrush, CommandStopCrush, CommandStartCrush});
        QVERIFY(harness->finished());
        const SignalRecords states = harness->log({"setCrushStarted"});
        QCOMPARE(states.mid(states.size() - 3), (SignalRecords{
                                                    {"setCrushStarted", {RunState::Idle}},
                                                    {"setCrushStarted", {RunState::Running}},
                                                    {"setCrushStarted", {RunState::Idle}},
                                                }));
        QVERIFY(harness->performed());
    }
}

TEST_SUITE(starts, TestWalleStarts)
#include "starts.moc"
