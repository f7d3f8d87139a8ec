// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/workerreports.h"
#include "support/eventually.h"
#include "support/promptly.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>
#include <QtTest>

#include <atomic>
#include <functional>
#include <thread>

using testsupport::eventually;

namespace
{

/// A worker that does @p work, and ends before the test does.
class Worker
{
public:
    explicit Worker(const std::function<void()> &work)
        : thread([this, work] {
            work();
            done = true;
        })
    {
    }
    ~Worker()
    {
        eventually([this] { return done.load(); });
        thread.join();
    }
    Worker(const Worker &) = delete;
    Worker &operator=(const Worker &) = delete;

    std::atomic<bool> done{false};

private:
    std::thread thread; ///< last, as it uses the others
};

} // namespace

class TestWorkerReports : public QObject
{
    Q_OBJECT

private slots:
    void reportIsRunInTheGuiThreadWhileTheWorkerWaits();
    void everyReportIsRunOnceAndInOrder();
    void reportsThatComeSlowlyAreRunToo();
    void windowHasItsTurnHoweverManyReportsCome();
    void reportThatOpensAnEventLoopHoldsUpTheWorker();
    void reportThatHasArrivedCanBeRunWithoutAnEventLoop();
    void reportIsNotRunAgainFromWithinItself();
    void eventOfAReportThatWasRunFindsNothing();
};

void TestWorkerReports::reportIsRunInTheGuiThreadWhileTheWorkerWaits()
{
    WorkerReports reports;
    QThread *ranIn = nullptr;
    bool ranBeforeTheReturn = false;
    const Worker worker([&] {
        reports.deliver([&] { ranIn = QThread::currentThread(); });
        ranBeforeTheReturn = ranIn != nullptr;
    });
    PROMPTLY_VERIFY(worker.done);
    QVERIFY(ranBeforeTheReturn);
    QCOMPARE(ranIn, QThread::currentThread());
}

void TestWorkerReports::everyReportIsRunOnceAndInOrder()
{
    constexpr int many = 5000;
    WorkerReports reports;
    int run = 0;
    bool inOrder = true;
    const Worker worker([&] {
        for (int number = 0; number < many; ++number) {
            reports.deliver([&, number] {
                inOrder = inOrder && run == number;
                ++run;
            });
        }
    });
    PROMPTLY_VERIFY(worker.done);
    QVERIFY(inOrder);
    QCOMPARE(run, many);
}

/// By then both threads sleep.
void TestWorkerReports::reportsThatComeSlowlyAreRunToo()
{
    constexpr int some = 20;
    WorkerReports reports;
    int run = 0;
    const Worker worker([&] {
        for (int number = 0; number < some; ++number) {
            QThread::msleep(2);
            reports.deliver([&] {
                QThread::msleep(2);
                ++run;
            });
        }
    });
    PROMPTLY_VERIFY(worker.done);
    QCOMPARE(run, some);
}

void TestWorkerReports::windowHasItsTurnHoweverManyReportsCome()
{
    WorkerReports reports;
    std::atomic<bool> enough{false};
    int sinceTheTurn = 0;
    int mostAtOnce = 0;
    const Worker worker([&] {
        while (!enough) {
            reports.deliver([&] {
                QThread::msleep(1);
                mostAtOnce = qMax(mostAtOnce, ++sinceTheTurn);
            });
        }
    });
    int turns = 0;
    QTimer window;
    connect(&window, &QTimer::timeout, this, [&] {
        sinceTheTurn = 0;
        enough = ++turns >= 20;
    });
    window.start(1);
    PROMPTLY_VERIFY(worker.done);
    QVERIFY2(mostAtOnce <= 50, qPrintable(QString::number(mostAtOnce)));
}

void TestWorkerReports::reportThatOpensAnEventLoopHoldsUpTheWorker()
{
    WorkerReports reports;
    QEventLoop dialog;
    bool closed = false;
    bool closedBeforeTheReturn = false;
    const Worker worker([&] {
        reports.deliver([&] {
            dialog.exec();
            closed = true;
        });
        closedBeforeTheReturn = closed;
    });
    QTimer closing;
    connect(&closing, &QTimer::timeout, &dialog, [&] {
        if (dialog.isRunning() && !worker.done)
            dialog.quit();
    });
    closing.start(5);
    PROMPTLY_VERIFY(worker.done);
    QVERIFY(closedBeforeTheReturn);
}

void TestWorkerReports::reportThatHasArrivedCanBeRunWithoutAnEventLoop()
{
    WorkerReports reports;
    std::atomic<bool> run{false};
    const Worker worker([&] { reports.deliver([&] { run = true; }); });
    const QDeadlineTimer patience(testsupport::patience);
    while (!run && !patience.hasExpired())
        reports.runArrived();
    QVERIFY(run);
}

/// What it does may close the window, which runs what has arrived.
void TestWorkerReports::reportIsNotRunAgainFromWithinItself()
{
    WorkerReports reports;
    int run = 0;
    const Worker worker([&] {
        reports.deliver([&] {
            ++run;
            reports.runArrived();
            QCoreApplication::processEvents();
        });
    });
    PROMPTLY_VERIFY(worker.done);
    QCOMPARE(run, 1);
}

/// The first report's event comes within the second one's own event loop, the others' after
/// everything.
void TestWorkerReports::eventOfAReportThatWasRunFindsNothing()
{
    WorkerReports reports;
    int run = 0;
    int runWithin = 0;
    const Worker worker([&] {
        reports.deliver([&] { ++run; });
        reports.deliver([&] {
            ++run;
            const int before = run;
            QCoreApplication::processEvents();
            runWithin = run - before;
        });
        reports.deliver([&] { ++run; });
    });
    const QDeadlineTimer patience(testsupport::patience);
    while (run != 3 && !patience.hasExpired())
        reports.runArrived();
    QCoreApplication::processEvents();
    QCOMPARE(runWithin, 0);
    QCOMPARE(run, 3);
}

QTEST_GUILESS_MAIN(TestWorkerReports)
#include "tst_workerreports.moc"
