// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the controller offers and how it works off what is posted.

#include "engine/filecrusher.h"
#include "eventually.h"
#include "sandboxhome.h"
#include "suites.h"
#include "temporarytree.h"
#include "walleharness.h"

#include <QElapsedTimer>
#include <QMetaMethod>
#include <QtTest>

using testsupport::eventually;
using testsupport::SignalRecords;
using testsupport::WalleHarness;

class TestWalleQueue : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void signalsAndSlotsKeepTheirDeclaredOrder();
    void parametersAreNamedAsDeclared();
    void controllerAndWorkerLiveWhereTheyAreMade();
    void workerIsStartedByTheConstructor();
    void idleControllerSaysNothing();
    void unknownCodeIsTakenAndIgnored_data();
    void unknownCodeIsTakenAndIgnored();
    void batchCommandWithoutBatchDoesNothing_data();
    void batchCommandWithoutBatchDoesNothing();
    void batchesAreAdmittedOnePerCommandInPostingOrder();
    void droppedBatchesAreAdmittedOnePerCommandInPostingOrder();
    void commandsArePerformedInPostingOrder();
    void burstIsWorkedOffAtOneCommandAPoll();
    void openRefusalReportHoldsUpFurtherCommands();
    void signalsThatAreOnlyDeclaredAreNeverEmitted();

private:
    testsupport::SandboxHome home;
};

void TestWalleQueue::signalsAndSlotsKeepTheirDeclaredOrder()
{
    const QByteArrayList declared{
        "setSelectAllCheckBoxEnabled(bool)",
        "setSelectAllCheckBoxState(bool)",
        "setRemoveButtonEnabled(bool)",
        "setCrushButtonEnabled(bool)",
        "setCrushStarted(int)",
        "addRowToMainTable(QString)",
        "removeRowFromMainTable(int)",
        "setTableItemCheckBoxState(int,bool)",
        "addRowToHistoryTable(QString,QString,QString)",
        "removeRowFromHistoryTable(int)",
        "setTableRowHeight(int,int)",
        "finishOne(QString)",
        "finishAll(int)",
        "clipboardSetText(QString)",
        "setHistoryButtonEnabled(bool,int)",
        "alertDialog(uint)",
        "showResultDialog(uint,uint,uint)",
        "finishOneWalle(QString)",
        "finishPercentWalle(QString,int)",
        "failedOneWalle(QString)",
        "addToHistoryWalle(QString)",
        "stoppedWalle()",
    };
    constexpr int signalCount = 17;
    const QMetaObject &meta = Walle::staticMetaObject;
    QByteArrayList found;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        const QMetaMethod method = meta.method(index);
        const bool isSignal = index - meta.methodOffset() < signalCount;
        QCOMPARE(method.methodType(), isSignal ? QMetaMethod::Signal : QMetaMethod::Slot);
        found.append(method.methodSignature());
    }
    QCOMPARE(found, declared);
}

void TestWalleQueue::parametersAreNamedAsDeclared()
{
    const QMap<QByteArray, QByteArrayList> declared{
        {"addRowToMainTable", {"fullName"}},
        {"removeRowFromMainTable", {"rowIndex"}},
        {"addRowToHistoryTable", {"time", "baseName", "filePath"}},
        {"finishPercentWalle", {QByteArray(), "percent"}},
    };
    const QMetaObject &meta = Walle::staticMetaObject;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        const QMetaMethod method = meta.method(index);
        QByteArrayList unnamed;
        for (int parameter = 0; parameter < method.parameterCount(); ++parameter)
            unnamed.append(QByteArray());
        QCOMPARE(method.parameterNames(), declared.value(method.name(), unnamed));
    }
}

void TestWalleQueue::controllerAndWorkerLiveWhereTheyAreMade()
{
    const WalleHarness harness;
    const auto *worker = harness.walle().findChild<FileCrusher *>();
    QVERIFY(worker);
    QCOMPARE(worker->parent(), &harness.walle());
    QCOMPARE(worker->thread(), QThread::currentThread());
    QCOMPARE(harness.walle().thread(), QThread::currentThread());
}

void TestWalleQueue::workerIsStartedByTheConstructor()
{
    auto *walle = new Walle; // never ended, as in the program
    QVERIFY(walle->findChild<FileCrusher *>()->isRunning());
    QVERIFY(!walle->isRunning());
    walle->shutDown();
}

void TestWalleQueue::idleControllerSaysNothing()
{
    WalleHarness harness;
    QVERIFY(harness.performed());
    QCOMPARE(harness.log(), SignalRecords());
}

void TestWalleQueue::unknownCodeIsTakenAndIgnored_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("below the first") << -1;
    QTest::newRow("above the last") << 11;
    QTest::newRow("smallest") << std::numeric_limits<int>::min();
    QTest::newRow("largest") << std::numeric_limits<int>::max();
}

void TestWalleQueue::unknownCodeIsTakenAndIgnored()
{
    QFETCH(int, code);
    WalleHarness harness;
    harness.post(code);
    QVERIFY(harness.performed());
    QCOMPARE(harness.log(), SignalRecords());
    harness.post(CommandUncheckAll);
    QVERIFY(harness.performed());
    QCOMPARE(harness.count("setSelectAllCheckBoxState"), 1);
}

void TestWalleQueue::batchCommandWithoutBatchDoesNothing_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("dropped") << int(CommandAddDropped);
    QTest::newRow("chosen") << int(CommandAddChosen);
}

/// Rows are there, so that a refresh of the controls would show.
void TestWalleQueue::batchCommandWithoutBatchDoesNothing()
{
    QFETCH(int, code);
    const testsupport::TemporaryTree tree;
    WalleHarness harness;
    QVERIFY(harness.admitted({tree.makeFile(QStringLiteral("a"), 1)}));
    harness.post(code);
    QVERIFY(harness.performed());
    QCOMPARE(harness.log(), SignalRecords());
}

void TestWalleQueue::batchesAreAdmittedOnePerCommandInPostingOrder()
{
    const testsupport::TemporaryTree tree;
    const QString first = tree.makeFile(QStringLiteral("first"), 1);
    const QString second = tree.makeFile(QStringLiteral("second"), 1);
    WalleHarness harness;
    harness.walle().addChosenFiles({first});
    harness.walle().addChosenFiles({second});
    harness.post(CommandAddChosen);
    QVERIFY(harness.performed());
    QCOMPARE(harness.paths(), QStringList{first});
    harness.post(CommandAddChosen);
    QVERIFY(harness.performed());
    QCOMPARE(harness.paths(), (QStringList{first, second}));
}

void TestWalleQueue::droppedBatchesAreAdmittedOnePerCommandInPostingOrder()
{
    const testsupport::TemporaryTree tree;
    const QString first = tree.makeFile(QStringLiteral("first"), 1);
    const QString second = tree.makeFile(QStringLiteral("second"), 1);
    WalleHarness harness;
    harness.walle().addDroppedUrls({QUrl::fromLocalFile(first)});
    harness.walle().addDroppedUrls({QUrl::fromLocalFile(second)});
    harness.post(CommandAddDropped);
    QVERIFY(harness.performed());
    QCOMPARE(harness.paths(), QStringList{first});
    harness.post(CommandAddDropped);
    QVERIFY(harness.performed());
    QCOMPARE(harness.paths(), (QStringList{first, second}));
}

void TestWalleQueue::commandsArePerformedInPostingOrder()
{
    const testsupport::TemporaryTree tree;
    const QString path = tree.makeFile(QStringLiteral("a"), 1);
    WalleHarness harness;
    harness.choose({path});
    harness.post(CommandUncheckAll);
    harness.post(CommandCheckAll);
    harness.post(CommandRemoveChecked);
    QVERIFY(harness.performed());
    const QByteArrayList rowSignals{"addRowToMainTable", "setTableItemCheckBoxState",
                                    "removeRowFromMainTable"};
    QCOMPARE(harness.log(rowSignals), (SignalRecords{
                                          {"addRowToMainTable", {path}},
                                          {"setTableItemCheckBoxState", {0, false}},
                                          {"setTableItemCheckBoxState", {0, true}},
                                          {"removeRowFromMainTable", {0}},
                                      }));
}

/// The first of the polls may have begun before the posting.
void TestWalleQueue::burstIsWorkedOffAtOneCommandAPoll()
{
    constexpr int commands = 20;
    constexpr int pollMilliseconds = 10;
    WalleHarness harness;
    QElapsedTimer timer;
    timer.start();
    for (int index = 0; index < commands; ++index)
        harness.post(CommandUncheckAll);
    QVERIFY(harness.performed());
    QCOMPARE(harness.count("setSelectAllCheckBoxState"), commands);
    QVERIFY(timer.elapsed() >= commands * pollMilliseconds);
}

void TestWalleQueue::openRefusalReportHoldsUpFurtherCommands()
{
    constexpr int fewMilliseconds = 100;
    WalleHarness harness;
    bool heldUp = false;
    harness.onSignal = [&](const testsupport::SignalRecord &signal) {
        if (signal.name != "alertDialog")
            return;
        harness.post(CommandUncheckAll);
        const auto answered = [&] { return harness.log().constLast().name != "alertDialog"; };
        heldUp = !eventually(answered, fewMilliseconds);
    };
    harness.choose({QStringLiteral("/nonexistent/path")});
    QTRY_COMPARE(harness.count("setRemoveButtonEnabled"), 1);
    QVERIFY(heldUp);
}

void TestWalleQueue::signalsThatAreOnlyDeclaredAreNeverEmitted()
{
    const testsupport::TemporaryTree tree;
    const QString stubborn = tree.makeFolder(QStringLiteral("folder"));
    const QString fifo = tree.makeFifo(QStringLiteral("folder/fifo"));
    WalleHarness harness;
    harness.choose({tree.makeFile(QStringLiteral("file"), 10), stubborn, fifo});
    harness.dropFiles({tree.makeFile(QStringLiteral("dropped"), 10)});
    harness.post(CommandStartCrush);
    QVERIFY(harness.finished());
    harness.post(CommandLoadHistory);
    harness.post(CommandCheckAll);
    harness.post(CommandRemoveChecked);
    harness.post(CommandClearHistory);
    harness.post(CommandLoadHistory);
    QVERIFY(harness.performed());
    QVERIFY(harness.count("showResultDialog") == 1 && harness.count("addRowToHistoryTable") > 0);
    QCOMPARE(harness.count("removeRowFromHistoryTable"), 0);
    QCOMPARE(harness.count("finishOne"), 0);
}

TEST_SUITE(queue, TestWalleQueue)
#include "queue.moc"
