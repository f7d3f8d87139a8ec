// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the user does while a run goes on, many times over and at a fast pace:
// window, controller and worker must neither wait for each other for ever nor
// lose the agreement between table and job list.

#include "engine/filecrusher.h"
#include "sandboxhome.h"
#include "suites.h"
#include "temporarytree.h"
#include "walleharness.h"

#include <QSemaphore>
#include <QtTest>

#include <atomic>
#include <memory>
#include <random>
#include <thread>

#include <unistd.h>

using testsupport::entryExists;
using testsupport::SignalRecord;
using testsupport::TemporaryTree;
using testsupport::WalleHarness;

namespace
{

constexpr unsigned long controllersPoll = 10;
constexpr useconds_t briskly = 200;
constexpr useconds_t leisurely = 1500;

/// The pauses between two polls; 0 gives the processor away and no more.
std::atomic<useconds_t> controllerPause{briskly};
std::atomic<useconds_t> workerPause{briskly};

/// Ends the program when a round takes too long: a deadlock of the GUI thread would stop the
/// test's own timeouts as well.
class Watchdog
{
public:
    Watchdog()
        : thread([this] { watch(); })
    {
    }
    ~Watchdog()
    {
        done.release();
        thread.join();
    }
    Watchdog(const Watchdog &) = delete;
    Watchdog &operator=(const Watchdog &) = delete;

private:
    void watch()
    {
        constexpr int patienceMilliseconds = 120000;
        if (!done.tryAcquire(1, patienceMilliseconds))
            qFatal("window, controller and worker wait for each other");
    }

    QSemaphore done;
    std::thread thread;
};

} // namespace

/// Takes the place of Qt's in this program. Controller and worker sleep nowhere else, and at
/// their own pace of 10 and 40 ms they would hardly ever meet.
void QThread::msleep(unsigned long milliseconds)
{
    if (const useconds_t pause = milliseconds == controllersPoll ? controllerPause : workerPause)
        ::usleep(pause);
    else
        yieldCurrentThread();
}

class TestWalleRaces : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void init();
    void cleanup();
    void filesDroppedOntoARunNeverFreezeIt();
    void clickDuringARunHitsWhatWasClicked();
    void removalDuringARunSparesWhatWasNotInHand();
    void answerToAStopNeverOvertakesIt();
    void everythingAtOnceLeavesTableAndListInAgreement();

private:
    QStringList makeFiles(const QString &prefix, int count) const;
    void startRun();
    /// Stops the run and waits until neither controller nor worker has anything left to do.
    void settle();
    int idleReports() const;
    static QStringList survivorsOf(const QStringList &paths);

    testsupport::SandboxHome home;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<WalleHarness> harness;
};

void TestWalleRaces::init()
{
    tree = std::make_unique<TemporaryTree>();
    harness = std::make_unique<WalleHarness>();
    controllerPause = briskly;
    workerPause = briskly;
}

void TestWalleRaces::cleanup()
{
    harness->onSignal = nullptr;
    QCOMPARE(harness->faults(), QStringList());
    harness.reset();
    tree.reset();
}

QStringList TestWalleRaces::makeFiles(const QString &prefix, int count) const
{
    QStringList paths;
    for (int number = 0; number < count; ++number)
        paths.append(tree->makeFile(prefix + QString::number(number), 3));
    return paths;
}

void TestWalleRaces::startRun()
{
    harness->takeLog();
    harness->post(CommandStartCrush);
}

int TestWalleRaces::idleReports() const
{
    return harness->log({"setCrushStarted"}).count({"setCrushStarted", {RunState::Idle}});
}

void TestWalleRaces::settle()
{
    harness->post(CommandUncheckAll);
    QVERIFY(harness->performed());
    // The worker gets to this one behind whatever it still holds; nobody has a row for it.
    const QString last = tree->makeFile(QStringLiteral("last"), 3);
    harness->walle().findChild<FileCrusher *>()->addPath(last);
    QVERIFY(WalleHarness::waitFor([&] { return !entryExists(last); }));
    const int before = idleReports();
    harness->post(CommandStopCrush);
    QVERIFY(WalleHarness::waitFor([&] { return idleReports() > before; }));
    QVERIFY(harness->performed());
}

QStringList TestWalleRaces::survivorsOf(const QStringList &paths)
{
    QStringList survivors;
    for (const QString &path : paths) {
        if (entryExists(path))
            survivors.append(path);
    }
    return survivors;
}

void TestWalleRaces::filesDroppedOntoARunNeverFreezeIt()
{
    constexpr int rounds = 40;
    constexpr int filesADrop = 10;
    for (int round = 0; round < rounds; ++round) {
        const Watchdog watchdog;
        const QStringList first = makeFiles(QStringLiteral("first"), 100);
        const QStringList dropped = makeFiles(QStringLiteral("dropped"), 100);
        QVERIFY(harness->admitted(first));
        for (int row = 0; row < first.size(); row += 10)
            harness->click(row);
        QVERIFY(harness->performed());
        startRun();
        for (int from = 0; from < dropped.size(); from += filesADrop)
            harness->dropFiles(dropped.mid(from, filesADrop));
        QVERIFY(harness->finished());
        QVERIFY(harness->performed());

        QCOMPARE(harness->paths(), survivorsOf(first) + survivorsOf(dropped));
        QCOMPARE(survivorsOf(first).size(), 10);
        const int destroyed = first.size() + dropped.size() - harness->rows().size();
        QCOMPARE(harness->log({"showResultDialog"}),
                 (testsupport::SignalRecords{{"showResultDialog", {1, destroyed, 0}}}));
        QCOMPARE(harness->controls().crushEnabled, !harness->checkedPaths().isEmpty());
        QCOMPARE(harness->differenceFromJobList(), QString());
    }
}

/// Every few rows that go, one further down is clicked where the window shows it. A click that
/// comes too late, when the worker has the row in hand, spares nothing; any other does.
void TestWalleRaces::clickDuringARunHitsWhatWasClicked()
{
    constexpr int rounds = 20;
    constexpr int everyFewRows = 8;
    constexpr int distance = 20;
    int spared = 0;
    // The worker is some rows further when the controller gets to the click.
    controllerPause = leisurely;
    for (int round = 0; round < rounds; ++round) {
        const Watchdog watchdog;
        const QStringList files = makeFiles(QStringLiteral("file"), 100);
        QSet<QString> clicked;
        QSet<QString> unticked;
        QSet<QString> tooLate;
        QVERIFY(harness->admitted(files));
        harness->onSignal = [&](const SignalRecord &signal) {
            const QVector<WalleHarness::Row> &rows = harness->rows();
            if (signal.name == "removeRowFromMainTable") {
                const int row = signal.arguments.first().toInt() + distance;
                if (rows.size() % everyFewRows == 0 && row < rows.size()
                    && !clicked.contains(rows.at(row).path)) {
                    clicked.insert(rows.at(row).path);
                    harness->click(row);
                }
            } else if (signal.name == "setTableItemCheckBoxState") {
                const int row = signal.arguments.first().toInt();
                const QString path = rows.at(row).path;
                const QStringList checkedAbove = harness->checkedPaths();
                const bool wasInHand =
                    checkedAbove.isEmpty() || harness->rowOf(checkedAbove.first()) > row;
                (wasInHand ? tooLate : unticked).insert(path);
            }
        };
        startRun();
        QVERIFY(WalleHarness::waitFor([&] { return harness->checkedPaths().isEmpty(); }));
        harness->onSignal = nullptr;
        settle();

        QVERIFY(clicked.contains(unticked) && clicked.contains(tooLate));
        const QStringList survivors = survivorsOf(files);
        for (const QString &path : survivors)
            QVERIFY2(clicked.contains(path), "a file survived that was not clicked");
        for (const QString &path : qAsConst(unticked))
            QVERIFY2(survivors.contains(path), "a file was destroyed that was unticked");
        spared += unticked.size();
        QCOMPARE(harness->differenceFromJobList(), QString());
        for (const QString &path : survivors)
            QFile::remove(path);
    }
    QVERIFY2(spared > rounds, "hardly any click came in time, nothing was tested");
}

void TestWalleRaces::removalDuringARunSparesWhatWasNotInHand()
{
    constexpr int rounds = 20;
    for (int round = 0; round < rounds; ++round) {
        const Watchdog watchdog;
        const QStringList files = makeFiles(QStringLiteral("file"), 50);
        QVERIFY(harness->admitted(files));
        harness->onSignal = [this](const SignalRecord &signal) {
            if (signal.name == "removeRowFromMainTable" && harness->rows().size() == 40)
                harness->post(CommandRemoveChecked);
        };
        startRun();
        QVERIFY(WalleHarness::waitFor([this] { return harness->rows().isEmpty(); }));
        harness->onSignal = nullptr;
        settle();

        const int finished = files.size() - survivorsOf(files).size();
        const int removals = harness->count("removeRowFromMainTable");
        QCOMPARE(removals, files.size());
        QVERIFY(finished >= 10);
        QCOMPARE(survivorsOf(files), files.mid(finished));
        QCOMPARE(harness->differenceFromJobList(), QString());
    }
}

/// "Stopping" is queued while "idle" is said directly, and may follow it by no time at all.
void TestWalleRaces::answerToAStopNeverOvertakesIt()
{
    constexpr int rounds = 5000;
    const Watchdog watchdog;
    controllerPause = 0;
    workerPause = 0;
    for (int round = 0; round < rounds; ++round) {
        harness->takeLog();
        harness->post(CommandStopCrush);
        QVERIFY(WalleHarness::waitFor([this] { return harness->count("setCrushStarted") == 2; }));
        if (harness->controls().runState != RunState::Idle)
            break;
    }
    QCOMPARE(harness->controls().runState, RunState::Idle);
}

/// The same sequence of requests every time; only the threads' timing differs.
void TestWalleRaces::everythingAtOnceLeavesTableAndListInAgreement()
{
    constexpr int rounds = 60;
    constexpr int requests = 60;
    std::mt19937 random(2026); // NOLINT(cert-msc32-c, cert-msc51-cpp): the same on purpose
    const auto upTo = [&random](int limit) {
        return std::uniform_int_distribution<int>(0, limit - 1)(random);
    };
    const auto request = [&](const QStringList &files) {
        const QStringList paths{files.at(upTo(files.size())), files.at(upTo(files.size()))};
        const int rows = harness->rows().size();
        switch (upTo(12)) {
        case 0:
            return harness->choose(paths);
        case 1:
        case 2:
            return harness->dropFiles(paths);
        case 3:
            return harness->post(CommandStartCrush);
        case 4:
            return harness->post(CommandStopCrush);
        case 5:
            return harness->post(CommandCheckAll);
        case 6:
            return harness->post(upTo(4) == 0 ? CommandRemoveChecked : CommandUncheckAll);
        case 7:
            return harness->post(CommandLoadHistory);
        default:
            return rows > 0 ? harness->click(upTo(rows)) : void();
        }
    };
    for (int round = 0; round < rounds; ++round) {
        const Watchdog watchdog;
        const QStringList files = makeFiles(QStringLiteral("file"), 60);
        harness->choose(files.mid(0, 40));
        startRun();
        for (int number = 0; number < requests; ++number) {
            request(files);
            QCoreApplication::processEvents();
        }
        settle();
        QCOMPARE(harness->differenceFromJobList(), QString());
        home.forgetHistory();
    }
}

TEST_SUITE(races, TestWalleRaces)
#include "races.moc"
