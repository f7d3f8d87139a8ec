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
    auto *walle = new Walle; // never ended, as in the program
    const auto *worker = walle->findChild<FileCrusher *>();
    QVERIFY(worker && worker->isRunning() && !walle->isRunning());
    QCOMPARE(worker->parent(), walle);
    QCOMPARE(worker->thread(), QThread::currentThread());
    QCOMPARE(walle->thread(), QThread::currentThread());
    walle->shutDown();
}

void TestQueue::unknownCodeIsTakenAndIgnored()
{
    constexpr int smallest = std::numeric_limits<int>::min();
    constexpr int largest = std::numeric_limits<int>::max();
    QCOMPARE(answerTo({-1, 11, smallest, largest}), SignalRecords());
    QCOMPARE(answerTo({largest, CommandUncheckAll}).first(), selectAllTicked(false));
}

/// Rows are there, so that a refresh of the controls would show.
void TestQueue::commandWithoutBatchOrClickDoesNothing()
{
    addRows(1);
    QCOMPARE(answerTo({CommandAddDropped, CommandAddChosen, CommandToggleRow}), SignalRecords());
}

void TestQueue::batchesAreAdmittedOnePerCommandInPostingOrder()
{
    const QStringList paths{make("chosen"), make("dropped"), make("chosen too"),
                            make("dropped too")};
    for (const QString &path : {paths.at(0), paths.at(2)})
        harness->walle().addChosenFiles({path});
    for (const QString &path : {paths.at(1), paths.at(3)})
        harness->walle().addDroppedUrls({QUrl::fromLocalFile(path)});
    for (const int rows : {1, 2, 3, 4}) {
        answerTo({rows % 2 == 0 ? CommandAddDropped : CommandAddChosen});
        QCOMPARE(harness->paths(), QStringList(paths.mid(0, rows)));
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
