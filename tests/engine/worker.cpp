// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The worker's loop, met as its owner meets it: the queue, and the verdict on each path.

#include "enginetest.h"

using namespace testsupport;

class TestWorker : public EngineTest
{
    Q_OBJECT

private slots:
    void signalsAreDeclaredInTheirOrder();
    void emptyPathIsSkippedWithoutASignal();
    void vanishedPathIsFinished();
    void fifoIsLeftAloneAndFinished();
    void fileOf255BytesHasNoVerdict();
    void pathsGoInTheOrderOfTheirArrival();
    void reportsComeAtTheirStepOfTheWork();
    void pathsTakenBackAreNeverBegun();
};

void TestWorker::signalsAreDeclaredInTheirOrder()
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

void TestWorker::emptyPathIsSkippedWithoutASignal()
{
    QCOMPARE(workOn({QString(), QLatin1String("")}), SignalRecords());
    QCOMPARE(workOn({QString()}), SignalRecords());
}

void TestWorker::vanishedPathIsFinished()
{
    const QString kept = tree->makeFile("kept", 10);
    const QString vanished = tree->path("folder/vanished");
    QCOMPARE(workOn({vanished}), SignalRecords{success(vanished)});
    QVERIFY(isAsMade(kept, 10));
    QVERIFY(!entryExists(tree->path("folder")));
}

void TestWorker::fifoIsLeftAloneAndFinished()
{
    const QString fifo = tree->makeFifo("fifo");
    QCOMPARE(workOn({fifo}), SignalRecords{success(fifo)});
    QVERIFY(entryExists(fifo));
}

void TestWorker::fileOf255BytesHasNoVerdict()
{
    const QString file = tree->makeFile("file", 255);
    QCOMPARE(workOn({file}), (SignalRecords{progress(file, 99), removal(file)}));
    QVERIFY(!entryExists(file));
}

void TestWorker::pathsGoInTheOrderOfTheirArrival()
{
    const QString z = tree->makeFile("z", 0);
    const QString a = tree->makeFile("a", 0);
    const QString added = tree->makeFile("added during a report", 0);
    log->onRecord = [&](const SignalRecord &record) {
        if (record == removal(z))
            crusher->addPath(added);
    };
    // The second time it is gone.
    QCOMPARE(workOn({z, a, a}).mid(0, 5),
             (SignalRecords{removal(z), success(z), removal(a), success(a), success(a)}));
    QTRY_COMPARE(log->records().mid(6), (SignalRecords{removal(added), success(added)}));
}

void TestWorker::reportsComeAtTheirStepOfTheWork()
{
    const QString first = tree->makeFile("first", 10);
    const QString second = tree->makeFile("second", 10);
    QStringList seen;
    log->onRecord = [&](const SignalRecord &record) {
        QCOMPARE(QThread::currentThread(), thread());
        seen.append(QStringLiteral("%1 %2 %3")
                        .arg(QString::fromUtf8(record.name))
                        .arg(entryExists(first))
                        .arg(entryExists(second)));
    };
    workOn({first, second});
    QCOMPARE(seen.join(QStringLiteral(", ")),
             QStringLiteral("finishPercent 1 1, addToHistory 0 1, finishOne 0 1, "
                            "finishPercent 0 1, addToHistory 0 0, finishOne 0 0, finishOne 0 0"));
}

void TestWorker::pathsTakenBackAreNeverBegun()
{
    const QString spared = tree->makeFile("spared", 10);
    crusher->addPath(spared);
    crusher->addPath(tree->makeFile("spared too", 10));
    QVERIFY(crusher->takeBackPaths());
    QVERIFY(!crusher->takeBackPaths());
    QCOMPARE(workOn({}), SignalRecords());
    QVERIFY(isAsMade(spared, 10));
}

TEST_SUITE(worker, TestWorker)
#include "worker.moc"
