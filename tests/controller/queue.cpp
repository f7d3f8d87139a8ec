// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the controller offers and how it works off what is posted.

#include "engine/filecrusher.h"
#include "suites.h"
#include "walletest.h"

#include <QElapsedTimer>
#include <QMetaMethod>

using testsupport::eventually;
using testsupport::SignalRecords;
using testsupport::WalleTest;

class TestQueue : public WalleTest
{
    Q_OBJECT

private slots:
    void signalsAndSlotsKeepTheirDeclaredOrder();
    void parametersAreNamedAsDeclared();
    void controllerAndItsRunningWorkerLiveWhereTheyAreMade();
    void unknownCodeIsTakenAndIgnored_data();
    void unknownCodeIsTakenAndIgnored();
    void commandWithoutBatchOrClickDoesNothing_data();
    void commandWithoutBatchOrClickDoesNothing();
    void batchesAreAdmittedOnePerCommandInPostingOrder_data();
    void batchesAreAdmittedOnePerCommandInPostingOrder();
    void commandsArePerformedInPostingOrder();
    void burstIsWorkedOffAtOneCommandEvery10Milliseconds();
    void openRefusalReportHoldsUpFurtherCommands();
    void signalsThatAreOnlyDeclaredAreNeverEmitted();
};

void TestQueue::signalsAndSlotsKeepTheirDeclaredOrder()
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

void TestQueue::parametersAreNamedAsDeclared()
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

void TestQueue::controllerAndItsRunningWorkerLiveWhereTheyAreMade()
{
    auto *walle = new Walle; // never ended, as in the program
    const auto *worker = walle->findChild<FileCrusher *>();
    QVERIFY(worker && worker->isRunning() && !walle->isRunning());
    QCOMPARE(worker->parent(), walle);
    QCOMPARE(worker->thread(), QThread::currentThread());
    QCOMPARE(walle->thread(), QThread::currentThread());
    walle->shutDown();
}

void TestQueue::unknownCodeIsTakenAndIgnored_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("below the first") << -1;
    QTest::newRow("above the last") << 11;
    QTest::newRow("smallest") << std::numeric_limits<int>::min();
    QTest::newRow("largest") << std::numeric_limits<int>::max();
}

void TestQueue::unknownCodeIsTakenAndIgnored()
{
    QFETCH(int, code);
    QCOMPARE(answerTo({code}), SignalRecords());
    QCOMPARE(answerTo({code, CommandUncheckAll}).first(), selectAllTicked(false));
}

void TestQueue::commandWithoutBatchOrClickDoesNothing_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("dropped") << int(CommandAddDropped);
    QTest::newRow("chosen") << int(CommandAddChosen);
    QTest::newRow("click") << int(CommandToggleRow);
}

/// Rows are there, so that a refresh of the controls would show.
void TestQueue::commandWithoutBatchOrClickDoesNothing()
{
    QFETCH(int, code);
    addRows(1);
    QCOMPARE(answerTo({code}), SignalRecords());
}

void TestQueue::batchesAreAdmittedOnePerCommandInPostingOrder_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("dropped") << int(CommandAddDropped);
    QTest::newRow("chosen") << int(CommandAddChosen);
}

void TestQueue::batchesAreAdmittedOnePerCommandInPostingOrder()
{
    QFETCH(int, code);
    const QStringList paths{make("first"), make("second")};
    for (const QString &path : paths) {
        if (code == CommandAddDropped)
            harness->walle().addDroppedUrls({QUrl::fromLocalFile(path)});
        else
            harness->walle().addChosenFiles({path});
    }
    answerTo({code});
    QCOMPARE(harness->paths(), QStringList{paths.first()});
    answerTo({code});
    QCOMPARE(harness->paths(), paths);
}

void TestQueue::commandsArePerformedInPostingOrder()
{
    const QString path = make("a");
    harness->choose({path});
    for (const int code : {CommandUncheckAll, CommandCheckAll, CommandRemoveChecked})
        harness->post(code);
    QVERIFY(harness->performed());
    QCOMPARE(
        harness->log({"addRowToMainTable", "setTableItemCheckBoxState", "removeRowFromMainTable"}),
        (SignalRecords{added(path), ticked(0, false), ticked(0, true), removed(0)}));
}

/// A busy machine makes it slower, never faster. The first poll may have begun before the posting.
void TestQueue::burstIsWorkedOffAtOneCommandEvery10Milliseconds()
{
    constexpr int commands = 20;
    QElapsedTimer timer;
    timer.start();
    const SignalRecords answer = answerTo(QVector<int>(commands, CommandUncheckAll).toList());
    QVERIFY(timer.elapsed() >= commands * 10);
    QCOMPARE(answer.count(selectAllTicked(false)), commands);
}

void TestQueue::openRefusalReportHoldsUpFurtherCommands()
{
    constexpr int fewMilliseconds = 100;
    bool heldUp = false;
    onNext("alertDialog", [this, &heldUp] {
        harness->post(CommandUncheckAll);
        const auto answered = [&] { return harness->log().constLast().name != "alertDialog"; };
        heldUp = !eventually(answered, fewMilliseconds);
    });
    harness->choose({QStringLiteral("/nonexistent/path")});
    QTRY_COMPARE(harness->count("setRemoveButtonEnabled"), 1);
    QVERIFY(heldUp);
}

void TestQueue::signalsThatAreOnlyDeclaredAreNeverEmitted()
{
    harness->choose({make("file"), makeStubborn("folder"), QStringLiteral("/dev/null")});
    harness->dropFiles({make("dropped")});
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    for (const int code : {CommandLoadHistory, CommandCheckAll, CommandRemoveChecked,
                           CommandClearHistory, CommandLoadHistory})
        harness->post(code);
    QVERIFY(harness->performed());
    QVERIFY(harness->count("showResultDialog") == 1 && harness->count("addRowToHistoryTable") > 0);
    QCOMPARE(harness->count("removeRowFromHistoryTable"), 0);
    QCOMPARE(harness->count("finishOne"), 0);
}

TEST_SUITE(queue, TestQueue)
#include "queue.moc"
