// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the controller offers and how it works off what is posted.

#include "engine/filecrusher.h"
#include "suites.h"
#include "walleharness.h"

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
    void controllerAndItsRunningWorkerLiveWhereTheyAreMade();
    void unknownCodeIsTakenAndIgnored();
    void commandWithoutBatchOrClickDoesNothing();
    void batchesAreAdmittedOnePerCommandInPostingOrder();
    void burstIsWorkedOffAtOneCommandEvery10Milliseconds();
    void openRefusalReportHoldsUpFurtherCommands();
    void signalsThatAreOnlyDeclaredAreNeverEmitted();
};

void TestQueue::signalsAndSlotsKeepTheirDeclaredOrder()
{
    const QByteArrayList declared{
        "signal setSelectAllCheckBoxEnabled(bool)()",
        "signal setSelectAllCheckBoxState(bool)()",
        "signal setRemoveButtonEnabled(bool)()",
        "signal setCrushButtonEnabled(bool)()",
        "signal setCrushStarted(int)()",
        "signal addRowToMainTable(QString)(fullName)",
        "signal removeRowFromMainTable(int)(rowIndex)",
        "signal setTableItemCheckBoxState(int,bool)(,)",
        "signal addRowToHistoryTable(QString,QString,QString)(time,baseName,filePath)",
        "signal removeRowFromHistoryTable(int)()",
        "signal setTableRowHeight(int,int)(,)",
        "signal finishOne(QString)()",
        "signal finishAll(int)()",
        "signal clipboardSetText(QString)()",
        "signal setHistoryButtonEnabled(bool,int)(,)",
        "signal alertDialog(uint)()",
        "signal showResultDialog(uint,uint,uint)(,,)",
        "slot finishOneWalle(QString)()",
        "slot finishPercentWalle(QString,int)(,percent)",
        "slot failedOneWalle(QString)()",
        "slot addToHistoryWalle(QString)()",
        "slot stoppedWalle()()",
    };
    const QMetaObject &meta = Walle::staticMetaObject;
    QByteArrayList found;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        const QMetaMethod method = meta.method(index);
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        found.append((isSignal ? "signal " : "slot ") + method.methodSignature() + '('
                     + method.parameterNames().join(',') + ')');
    }
    QCOMPARE(found, declared);
}

void TestQueue::controllerAndItsRunningWorkerLiveWhereTheyAreMade()
{
    QVERIFY(worker && worker->isRunning());
    QCOMPARE(worker->parent(), walle);
    QCOMPARE(worker->thread(), QThread::currentThread());
    QCOMPARE(walle->thread(), QThread::currentThread());
}

void TestQueue::unknownCodeIsTakenAndIgnored()
{
    constexpr int smallest = std::numeric_limits<int>::min();
    constexpr int largest = std::numeric_limits<int>::max();
    QCOMPARE(answerTo({-1, 11, smallest, largest}), SignalRecords());
    QCOMPARE(answerTo({largest, CommandUncheckAll}).constFirst(), selectAllTicked(false));
}

/// Rows are there, so that a refresh of the controls would show.
void TestQueue::commandWithoutBatchOrClickDoesNothing()
{
    addRows(1);
    QCOMPARE(answerTo({CommandAddDropped, CommandAddChosen, CommandToggleRow}), SignalRecords());
}

void TestQueue::batchesAreAdmittedOnePerCommandInPostingOrder()
{
    const QStringList files = makeFiles("file", 4);
    for (const int first : {0, 2}) {
        walle->addChosenFiles({files.at(first)});
        walle->addDroppedUrls({QUrl::fromLocalFile(files.at(first + 1))});
    }
    for (const int rows : {1, 2, 3, 4}) {
        answerTo({rows % 2 == 0 ? CommandAddDropped : CommandAddChosen});
        QCOMPARE(paths(), QStringList(files.mid(0, rows)));
    }
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
    onNext("alertDialog", [&] {
        post(CommandUncheckAll);
        const auto answered = [this] { return log().constLast().name != "alertDialog"; };
        heldUp = !eventually(answered, fewMilliseconds);
    });
    choose({QStringLiteral("/nonexistent/path")});
    QTRY_COMPARE(count("setRemoveButtonEnabled"), 1);
    QVERIFY(heldUp);
}

void TestQueue::signalsThatAreOnlyDeclaredAreNeverEmitted()
{
    choose({make("file"), makeStubborn("folder"), QStringLiteral("/dev/null")});
    dropFiles({make("dropped")});
    post(CommandStartCrush);
    QVERIFY(finished());
    for (const int code : {CommandLoadHistory, CommandCheckAll, CommandRemoveChecked,
                           CommandClearHistory, CommandLoadHistory})
        post(code);
    QVERIFY(performed());
    QVERIFY(count("showResultDialog") == 1 && count("addRowToHistoryTable") > 0);
    QCOMPARE(log({"removeRowFromHistoryTable", "finishOne"}), SignalRecords());
}

TEST_SUITE(queue, TestQueue)
#include "queue.moc"
