// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The worker's loop, met as its owner meets it: signals arrive in the main
// thread while the worker waits. A path that does not exist serves as a marker;
// once its verdict is there, everything before it has been said.

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

class TestFileCrusherWorker : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void signalsAreDeclaredInTheirOrder();
    void emptyPathIsSkippedWithoutASignal();
    void vanishedPathIsFinished();
    void specialFileIsFinishedAndStays();
    void fileIsFinishedAfterItsHistory();
    void emptyFileIsFinished();
    void linkIsFinishedWhateverItsTarget_data();
    void linkIsFinishedWhateverItsTarget();
    void folderIsFinishedAfterItsHistory();
    void folderThatStaysIsFailed();
    void linkBehindASlashIsFailed();
    void fileOf255BytesHasNoVerdict();
    void pathsGoInTheOrderOfTheirArrival();
    void pathAddedDuringAReportFollows();
    void reportsComeAtTheirStepOfTheWork();

private:
    void runToMarker();
    SignalRecords withMarker(SignalRecords records) const;

    std::unique_ptr<TemporaryTree> tree;
    /// Deleted only when not started: a started worker lives until the process ends.
    FileCrusher *crusher = nullptr;
    std::unique_ptr<SignalLog> log;
    QString marker;
};

void TestFileCrusherWorker::init()
{
    tree = std::make_unique<TemporaryTree>();
    crusher = new FileCrusher;
    log = std::make_unique<SignalLog>(crusher, Qt::BlockingQueuedConnection);
    marker = tree->path(QStringLiteral("marker"));
}

void TestFileCrusherWorker::cleanup()
{
    log.reset();
    if (!crusher->isRunning())
        delete crusher;
    tree.reset();
}

/// Lets the worker handle what is queued, until it has finished the marker behind it.
void TestFileCrusherWorker::runToMarker()
{
    crusher->addPath(marker);
    if (!crusher->isRunning())
        crusher->start(QThread::InheritPriority);
    QVERIFY(testsupport::eventually(
        [this] { return log->firstArguments("finishOne").contains(marker); }));
}

SignalRecords TestFileCrusherWorker::withMarker(SignalRecords records) const
{
    records.append({"finishOne", {marker}});
    return records;
}

void TestFileCrusherWorker::signalsAreDeclaredInTheirOrder()
{
    const QMetaObject &meta = FileCrusher::staticMetaObject;
    QList<QByteArray> methods;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        QCOMPARE(meta.method(index).methodType(), QMetaMethod::Signal);
        methods.append(meta.method(index).methodSignature());
    }
    QCOMPARE(methods, (QList<QByteArray>{"finishOne(QString)", "failedOne(QString)",
                                         "finishPercent(QString,int)", "addToHistory(QString)",
                                         "stopped()"}));
}

void TestFileCrusherWorker::emptyPathIsSkippedWithoutASignal()
{
    crusher->addPath(QString());
    crusher->addPath(QLatin1String(""));
    runToMarker();
    crusher->addPath(QString());
    marker += QLatin1Char('2');
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"finishOne", {marker.chopped(1)}}}));
}

void TestFileCrusherWorker::vanishedPathIsFinished()
{
    const QString kept = tree->makeFile(QStringLiteral("kept"), 10);
    const QString vanished = tree->path(QStringLiteral("folder/vanished"));
    crusher->addPath(vanished);
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"finishOne", {vanished}}}));
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray(10, 'x'));
    QCOMPARE(QDir(tree->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("kept")});
}

void TestFileCrusherWorker::specialFileIsFinishedAndStays()
{
    const QString fifo = tree->makeFifo(QStringLiteral("fifo"));
    crusher->addPath(fifo);
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"finishOne", {fifo}}}));
    QVERIFY(entryExists(fifo));
}

void TestFileCrusherWorker::fileIsFinishedAfterItsHistory()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 8192);
    crusher->addPath(file);
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"finishPercent", {file, 50}},
                                         {"finishPercent", {file, 100}},
                                         {"finishPercent", {file, 99}},
                                         {"addToHistory", {file}},
                                         {"finishOne", {file}}}));
}

void TestFileCrusherWorker::emptyFileIsFinished()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 0);
    crusher->addPath(file);
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"addToHistory", {file}}, {"finishOne", {file}}}));
}

void TestFileCrusherWorker::linkIsFinishedWhateverItsTarget_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("file") << QStringLiteral("file");
    QTest::newRow("folder") << QStringLiteral("folder");
    QTest::newRow("nothing") << QStringLiteral("nowhere");
    QTest::newRow("file of 255 bytes") << QStringLiteral("folder/255");
}

void TestFileCrusherWorker::linkIsFinishedWhateverItsTarget()
{
    QFETCH(QString, target);
    const QString file = tree->makeFile(QStringLiteral("file"), 10);
    const QString stopCode = tree->makeFile(QStringLiteral("folder/255"), 255);
    const QString link = tree->makeLink(QStringLiteral("link"), target);
    crusher->addPath(link);
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"addToHistory", {link}}, {"finishOne", {link}}}));
    QVERIFY(!entryExists(link));
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray(10, 'x'));
    QCOMPARE(TemporaryTree::contentsOf(stopCode), QByteArray(255, 'x'));
}

void TestFileCrusherWorker::folderIsFinishedAfterItsHistory()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString file = tree->makeFile(QStringLiteral("top/file"), 10);
    crusher->addPath(top);
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"finishPercent", {top, 100}},
                                         {"addToHistory", {file}},
                                         {"finishPercent", {top, 100}},
                                         {"addToHistory", {top}},
                                         {"finishOne", {top}}}));
}

void TestFileCrusherWorker::folderThatStaysIsFailed()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString fifo = tree->makeFifo(QStringLiteral("top/fifo"));
    crusher->addPath(top);
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"failedOne", {top}}}));
    QVERIFY(entryExists(fifo));
}

void TestFileCrusherWorker::linkBehindASlashIsFailed()
{
    const QString kept = tree->makeFile(QStringLiteral("folder/kept"), 10);
    const QString path =
        tree->makeLink(QStringLiteral("link"), QStringLiteral("folder")) + QLatin1Char('/');
    crusher->addPath(path);
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"failedOne", {path}}}));
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray(10, 'x'));
}

void TestFileCrusherWorker::fileOf255BytesHasNoVerdict()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 255);
    crusher->addPath(file);
    runToMarker();
    QCOMPARE(log->records(), withMarker({{"finishPercent", {file, 99}}, {"addToHistory", {file}}}));
    QVERIFY(!entryExists(file));
}

void TestFileCrusherWorker::pathsGoInTheOrderOfTheirArrival()
{
    SignalRecords expected;
    for (const char *name : {"z", "a", "missing", "m", "a"}) { // the second "a" is gone by then
        const QString path = tree->path(QLatin1String(name));
        if (path != tree->path(QStringLiteral("missing")) && !entryExists(path)) {
            tree->makeFile(QLatin1String(name), 0);
            expected.append({"addToHistory", {path}});
        }
        expected.append({"finishOne", {path}});
        crusher->addPath(path);
    }
    runToMarker();
    QCOMPARE(log->records(), withMarker(expected));
}

void TestFileCrusherWorker::pathAddedDuringAReportFollows()
{
    const QString first = tree->makeFile(QStringLiteral("first"), 0);
    const QString second = tree->makeFile(QStringLiteral("second"), 0);
    log->onRecord = [this, first, second](const SignalRecord &record) {
        if (record == SignalRecord("finishOne", {first})) {
            crusher->addPath(second);
            crusher->addPath(marker);
        }
    };
    crusher->addPath(first);
    crusher->start(QThread::InheritPriority);
    const SignalRecords expected = withMarker({{"addToHistory", {first}},
                                               {"finishOne", {first}},
                                               {"addToHistory", {second}},
                                               {"finishOne", {second}}});
    QTRY_COMPARE_WITH_TIMEOUT(log->records(), expected, testsupport::patience);
}

void TestFileCrusherWorker::reportsComeAtTheirStepOfTheWork()
{
    const QString first = tree->makeFile(QStringLiteral("first"), 10);
    const QString second = tree->makeFile(QStringLiteral("second"), 10);
    QStringList seen;
    log->onRecord = [&](const SignalRecord &record) {
        QCOMPARE(QThread::currentThread(), thread());
        seen.append(QStringLiteral("%1 %2 %3")
                        .arg(QString::fromUtf8(record.name))
                        .arg(entryExists(first))
                        .arg(entryExists(second)));
    };
    crusher->addPath(first);
    crusher->addPath(second);
    runToMarker();
    QCOMPARE(seen,
             (QStringList{QStringLiteral("finishPercent 1 1"), QStringLiteral("addToHistory 0 1"),
                          QStringLiteral("finishOne 0 1"), QStringLiteral("finishPercent 0 1"),
                          QStringLiteral("addToHistory 0 0"), QStringLiteral("finishOne 0 0"),
                          QStringLiteral("finishOne 0 0")}));
}

TEST_SUITE(worker, TestFileCrusherWorker)
#include "worker.moc"
