// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Stop requests to the worker's loop, which looks for one at the end of each
// pass. A path that does not exist serves as a marker; once its verdict is
// there, everything before it has been said.

#include "engine/filecrusher.h"

#include "eventually.h"
#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QtTest>

#include <memory>

using testsupport::entryExists;
using testsupport::SignalLog;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;

class TestFileCrusherWorkerStop : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void stopOfAnIdleWorkerIsToldOnce();
    void manyRequestsAreOneStop();
    void stopTakenBackIsNotTold();
    void stopHoldsBetweenPathsAndKeepsTheQueue();
    void pathsTakenBackAreNeverBegun();
    void stopInsideAFolderHasNoVerdict();
    void emptyPathsTakeNoPassOfTheirOwn();

private:
    void runToMarker();
    SignalRecords withMarker(SignalRecords records) const;

    std::unique_ptr<TemporaryTree> tree;
    /// Deleted only when not started: a started worker lives until the process ends.
    FileCrusher *crusher = nullptr;
    std::unique_ptr<SignalLog> log;
    QString marker;
};

void TestFileCrusherWorkerStop::init()
{
    tree = std::make_unique<TemporaryTree>();
    crusher = new FileCrusher;
    log = std::make_unique<SignalLog>(crusher, Qt::BlockingQueuedConnection);
    marker = tree->path(QStringLiteral("marker"));
}

void TestFileCrusherWorkerStop::cleanup()
{
    log.reset();
    if (!crusher->isRunning())
        delete crusher;
    tree.reset();
}

/// Lets the worker handle what is queued, until it has finished the marker behind it.
void TestFileCrusherWorkerStop::runToMarker()
{
    crusher->addPath(marker);
    if (!crusher->isRunning())
        crusher->start(QThread::InheritPriority);
    QVERIFY(testsupport::eventually(
        [this] { return log->firstArguments("finishOne").contains(marker); }));
}

SignalRecords TestFileCrusherWorkerStop::withMarker(SignalRecords records) const
{
    records.append({"finishOne", {marker}});
    return records;
}

void TestFileCrusherWorkerStop::stopOfAnIdleWorkerIsToldOnce()
{
    crusher->start(QThread::InheritPriority);
    crusher->requestStop(true);
    QTRY_COMPARE_WITH_TIMEOUT(log->count("stopped"), 1, testsupport::patience);
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"stopped", {}}}));
}

void TestFileCrusherWorkerStop::manyRequestsAreOneStop()
{
    for (int count = 0; count < 5; ++count)
        crusher->requestStop(true);
    crusher->start(QThread::InheritPriority);
    QTRY_COMPARE_WITH_TIMEOUT(log->count("stopped"), 1, testsupport::patience);
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"stopped", {}}}));
}

void TestFileCrusherWorkerStop::stopTakenBackIsNotTold()
{
    const QString path = tree->path(QStringLiteral("vanished"));
    crusher->requestStop(true);
    crusher->requestStop(false);
    crusher->addPath(path);
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"finishOne", {path}}}));
}

void TestFileCrusherWorkerStop::stopHoldsBetweenPathsAndKeepsTheQueue()
{
    const QString first = tree->makeFile(QStringLiteral("first"), 0);
    const QString second = tree->makeFile(QStringLiteral("second"), 0);
    log->onRecord = [this, first](const SignalRecord &record) {
        if (record == SignalRecord("addToHistory", {first}))
            crusher->requestStop(true);
    };
    crusher->addPath(first);
    crusher->addPath(second);
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"addToHistory", {first}},
                                         {"finishOne", {first}},
                                         {"stopped", {}},
                                         {"addToHistory", {second}},
                                         {"finishOne", {second}}}));
}

void TestFileCrusherWorkerStop::pathsTakenBackAreNeverBegun()
{
    const QString spared = tree->makeFile(QStringLiteral("spared"), 10);
    crusher->addPath(spared);
    crusher->addPath(tree->makeFile(QStringLiteral("spared too"), 10));
    QVERIFY(crusher->takeBackPaths());
    QVERIFY(!crusher->takeBackPaths());
    runToMarker();
    QCOMPARE(log->records(), withMarker({}));
    QVERIFY(entryExists(spared));
}

void TestFileCrusherWorkerStop::stopInsideAFolderHasNoVerdict()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString first = tree->makeFile(QStringLiteral("top/first"), 10);
    const QString second = tree->makeFile(QStringLiteral("top/folder/second"), 10);
    log->onRecord = [this, first](const SignalRecord &record) {
        if (record == SignalRecord("addToHistory", {first}))
            crusher->requestStop(true);
    };
    crusher->addPath(top);
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"finishPercent", {top, 50}},
                                         {"addToHistory", {first}},
                                         {"finishPercent", {top, 0}},
                                         {"stopped", {}}}));
    QCOMPARE(TemporaryTree::contentsOf(second), QByteArray(10, 'x'));

    // The request is cleared with stopped(), so the folder can be queued again.
    log->clear();
    log->onRecord = nullptr;
    crusher->addPath(top);
    runToMarker();
    QVERIFY(!entryExists(top));
    QCOMPARE(log->firstArguments("finishOne"), (QStringList{top, marker}));
}

void TestFileCrusherWorkerStop::emptyPathsTakeNoPassOfTheirOwn()
{
    // Each pass ends with the stop check, so the path behind the empty ones is handled first.
    const QString path = tree->path(QStringLiteral("vanished"));
    for (int count = 0; count < 5; ++count)
        crusher->addPath(QString());
    crusher->addPath(path);
    crusher->requestStop(true);
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"finishOne", {path}}, {"stopped", {}}}));
}

TEST_SUITE(workerstop, TestFileCrusherWorkerStop)
#include "workerstop.moc"
