// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A stop that spares what was handed over ends the run with its report, once. The
// worker is held in its pause, where it has a path in its queue and none in hand.

#include "engine/filecrusher.h"

#include "briskthreads.h"
#include "promptly.h"
#include "sandboxhome.h"
#include "suites.h"
#include "temporarytree.h"
#include "walleharness.h"

#include <QtTest>

#include <memory>
#include <random>

#include <unistd.h>

using testsupport::entryExists;
using testsupport::HeldThread;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;
using testsupport::WalleHarness;

class TestWalleStopReport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void init();
    void cleanup();
    void stopBetweenFilesEndsInAReport();
    void stopBeforeTheFirstFileReportsNothingDone();
    void reportCountsWhatFailed();
    void nextStopWithoutARunGivesNoReport();
    void nextRunCountsAnew();
    void stopThatFindsTheFolderBegunGivesNoReport();
    void verdictBetweenStopAndAnswerEndsTheRunOnce();
    void pathOfSomebodyElseIsNoRun();
    void everyStopOfARunOfFilesEndsInOneReport();

private:
    QString make(const char *name) const { return tree->makeFile(QLatin1String(name), 10); }
    /// Starts a run and holds the worker when the row @p path has gone and the next is handed over.
    void startAndHoldBehind(const QString &path);
    /// Stops the held run and lets the worker answer; the log is that of the stop.
    void stopAndRelease();
    void showsIdle();

    testsupport::SandboxHome home;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<WalleHarness> harness;
    std::unique_ptr<HeldThread> held;
    FileCrusher *worker = nullptr;
};

void TestWalleStopReport::init()
{
    tree = std::make_unique<TemporaryTree>();
    harness = std::make_unique<WalleHarness>();
    worker = harness->walle().findChild<FileCrusher *>();
}

void TestWalleStopReport::cleanup()
{
    held.reset();
    QCOMPARE(harness->faults(), QStringList());
    harness.reset();
    tree.reset();
}

void TestWalleStopReport::startAndHoldBehind(const QString &path)
{
    harness->onSignal = [this, path](const SignalRecord &) {
        if (!harness->paths().contains(path) && !held)
            held = std::make_unique<HeldThread>(worker);
    };
    harness->post(CommandStartCrush);
    PROMPTLY_VERIFY(held && held->stands());
    harness->onSignal = nullptr;
    harness->takeLog();
}

void TestWalleStopReport::stopAndRelease()
{
    harness->post(CommandStopCrush);
    QVERIFY(harness->performed());
    QCOMPARE(harness->controls().runState, RunState::Stopping);
    held.reset();
    showsIdle();
    QVERIFY(harness->performed());
}

/// Then the report is here as well: they come from one slot.
void TestWalleStopReport::showsIdle()
{
    QVERIFY(
        WalleHarness::waitFor([this] { return harness->controls().runState == RunState::Idle; }));
}

void TestWalleStopReport::stopBetweenFilesEndsInAReport()
{
    const QString first = make("first");
    const QString spared = make("spared");
    QVERIFY(harness->admitted({first, spared}));
    startAndHoldBehind(first);
    stopAndRelease();
    QCOMPARE(harness->log(), (SignalRecords{
                                 {"setCrushButtonEnabled", {false}},
                                 {"setCrushStarted", {RunState::Stopping}},
                                 {"setCrushStarted", {RunState::Idle}},
                                 {"setSelectAllCheckBoxEnabled", {true}},
                                 {"setCrushButtonEnabled", {true}},
                                 {"setRemoveButtonEnabled", {true}},
                                 {"setSelectAllCheckBoxState", {true}},
                                 {"setCrushStarted", {RunState::Idle}},
                                 {"finishAll", {1}},
                                 {"showResultDialog", {1, 1, 0}},
                             }));
    QVERIFY(!entryExists(first));
    QVERIFY(entryExists(spared));
    QCOMPARE(harness->checkedPaths(), QStringList{spared});
    QCOMPARE(harness->differenceFromJobList(), QString());
}

void TestWalleStopReport::stopBeforeTheFirstFileReportsNothingDone()
{
    const QString spared = make("spared");
    QVERIFY(harness->admitted({spared}));
    held = std::make_unique<HeldThread>(worker);
    PROMPTLY_VERIFY(held->stands());
    harness->post(CommandStartCrush);
    stopAndRelease();
    QCOMPARE(harness->log({"setCrushStarted", "finishAll", "showResultDialog"}),
             (SignalRecords{
                 {"setCrushStarted", {RunState::Running}},
                 {"setCrushStarted", {RunState::Stopping}},
                 {"setCrushStarted", {RunState::Idle}},
                 {"setCrushStarted", {RunState::Idle}},
                 {"finishAll", {0}},
                 {"showResultDialog", {1, 0, 0}},
             }));
    QVERIFY(entryExists(spared));
}

void TestWalleStopReport::reportCountsWhatFailed()
{
    const QString stubborn = tree->makeFolder(QStringLiteral("stubborn"));
    tree->makeFifo(QStringLiteral("stubborn/fifo"));
    const QString first = make("first");
    const QString spared = make("spared");
    QVERIFY(harness->admitted({stubborn, first, spared}));
    startAndHoldBehind(first);
    stopAndRelease();
    QCOMPARE(harness->log({"finishAll", "showResultDialog"}), (SignalRecords{
                                                                  {"finishAll", {1}},
                                                                  {"showResultDialog", {1, 1, 1}},
                                                              }));
    QVERIFY(entryExists(spared));
}

void TestWalleStopReport::nextStopWithoutARunGivesNoReport()
{
    const QString first = make("first");
    QVERIFY(harness->admitted({first, make("spared")}));
    startAndHoldBehind(first);
    stopAndRelease();
    harness->takeLog();
    harness->post(CommandStopCrush);
    QVERIFY(harness->performed());
    showsIdle();
    QVERIFY(harness->performed());
    QCOMPARE(harness->log({"setCrushStarted", "finishAll", "showResultDialog"}),
             (SignalRecords{
                 {"setCrushStarted", {RunState::Stopping}},
                 {"setCrushStarted", {RunState::Idle}},
             }));
}

void TestWalleStopReport::nextRunCountsAnew()
{
    const QString first = make("first");
    QVERIFY(harness->admitted({first, make("second"), make("third")}));
    startAndHoldBehind(first);
    stopAndRelease();
    harness->takeLog();
    harness->post(CommandStartCrush);
    PROMPTLY_COMPARE(harness->count("showResultDialog"), 1);
    QCOMPARE(harness->log({"finishAll", "showResultDialog"}), (SignalRecords{
                                                                  {"finishAll", {2}},
                                                                  {"showResultDialog", {1, 2, 0}},
                                                              }));
    QCOMPARE(harness->paths(), QStringList());
}

void TestWalleStopReport::stopThatFindsTheFolderBegunGivesNoReport()
{
    for (const char *name : {"folder/a", "folder/b", "folder/c"})
        tree->makeFile(QLatin1String(name), 1000);
    QVERIFY(harness->admitted({tree->path(QStringLiteral("folder"))}));
    harness->onSignal = [this](const SignalRecord &signal) {
        if (signal.name != "setTableRowHeight")
            return;
        harness->onSignal = nullptr;
        harness->post(CommandStopCrush);
        harness->performed();
    };
    harness->post(CommandStartCrush);
    PROMPTLY_COMPARE(harness->count("setCrushStarted"), 3);
    QVERIFY(harness->performed());
    QCOMPARE(harness->count("finishAll"), 0);
    QCOMPARE(harness->count("showResultDialog"), 0);
}

/// A verdict on what was taken back, which the worker never gives, but a caller may.
void TestWalleStopReport::verdictBetweenStopAndAnswerEndsTheRunOnce()
{
    const QString first = make("first");
    const QString spared = make("spared");
    QVERIFY(harness->admitted({first, spared}));
    startAndHoldBehind(first);
    harness->post(CommandStopCrush);
    QVERIFY(harness->performed());
    harness->walle().failedOneWalle(spared);
    harness->takeLog();
    held.reset();
    PROMPTLY_COMPARE(harness->count("setSelectAllCheckBoxState"), 1);
    QVERIFY(harness->performed());
    QCOMPARE(harness->count("showResultDialog"), 0);
    QCOMPARE(harness->log({"setCrushStarted"}),
             (SignalRecords{{"setCrushStarted", {RunState::Idle}}}));
}

void TestWalleStopReport::pathOfSomebodyElseIsNoRun()
{
    held = std::make_unique<HeldThread>(worker);
    PROMPTLY_VERIFY(held->stands());
    worker->addPath(make("file"));
    stopAndRelease();
    QCOMPARE(harness->log({"setCrushStarted", "finishAll", "showResultDialog"}),
             (SignalRecords{
                 {"setCrushStarted", {RunState::Stopping}},
                 {"setCrushStarted", {RunState::Idle}},
             }));
}

/// Whenever it comes: before the worker has taken the path, while it has it in hand, or while the
/// verdict is on its way. What the report counts is what is gone.
void TestWalleStopReport::everyStopOfARunOfFilesEndsInOneReport()
{
    constexpr int rounds = 200;
    constexpr int files = 20;
    constexpr int longestPause = 3000;
    std::mt19937 random(2026); // NOLINT(cert-msc32-c, cert-msc51-cpp): the same on purpose
    std::uniform_int_distribution<useconds_t> pause(0, longestPause);
    int spared = 0;
    for (int round = 0; round < rounds; ++round) {
        QStringList paths;
        for (int number = 0; number < files; ++number)
            paths.append(tree->makeFile(QString::number(number), 3));
        QVERIFY(harness->admitted(paths));
        harness->post(CommandStartCrush);
        const QDeadlineTimer end(std::chrono::microseconds(pause(random)));
        while (!end.hasExpired())
            QCoreApplication::processEvents();
        harness->post(CommandStopCrush);
        QVERIFY(harness->performed());
        showsIdle();
        QVERIFY(harness->performed());

        const int left = harness->rows().size();
        const int gone = files - left;
        QCOMPARE(harness->log({"showResultDialog"}),
                 (SignalRecords{{"showResultDialog", {1, gone, 0}}}));
        QCOMPARE(harness->log({"finishAll"}), (SignalRecords{{"finishAll", {gone}}}));
        spared += left > 0 ? 1 : 0;
        harness->post(CommandRemoveChecked);
        QVERIFY(harness->performed());
        QCOMPARE(harness->rows().size(), 0);
        harness->takeLog();
    }
    QVERIFY2(spared > 0, "no stop came in time, nothing was tested");
}

TEST_SUITE(stopreport, TestWalleStopReport)
#include "stopreport.moc"
