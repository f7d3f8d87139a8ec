// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The signals of the controller thread are queued, those of a slot are direct. Here a slot
// is called when the controller thread has emitted a signal that the window has not yet
// received: what the slot emits must come later.

#include "suites.h"
#include "walleharness.h"

using testsupport::SignalRecords;
using testsupport::WalleTest;

class TestOrder : public WalleTest
{
    Q_OBJECT

private slots:
    void cleanup();
    void progressFollowsAChangeUnderWay_data();
    void progressFollowsAChangeUnderWay();
    void progressFollowsTheInsertionOfItsRow();
    void slotThatTheControllerWaitsForMayReportProgress();
    void verdictFollowsTheStartUnderWay();
    void answerFollowsTheStopUnderWay();
    void resultFollowsTheInsertionUnderWay();
    void rowAddedWhileAFailureEndsTheRunKeepsItsTick();

private:
    /// Posts @p code and returns when @p signal is emitted and not delivered.
    void postUntil(const char *signal, int code)
    {
        QVERIFY(emittedUnheard(signal, [&] { post(code); }));
    }
    void addUntilEmitted(const QString &path)
    {
        QVERIFY(emittedUnheard("addRowToMainTable", [&] { choose({path}); }));
    }
};

void TestOrder::cleanup()
{
    onSignal = nullptr;
    compareTableWithJobList();
    WalleTest::cleanup();
}

void TestOrder::progressFollowsAChangeUnderWay_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<SignalRecords>("expected");
    const SignalRecords buttonsOff{crushEnabled(false), removeEnabled(false)};
    // The row has another number in the list than in the table.
    QTest::newRow("removal") << int(CommandRemoveChecked)
                             << SignalRecords{removed(0)} + buttonsOff
                                    + SignalRecords{progress(0, 50)};
    QTest::newRow("click") << int(CommandToggleRow)
                           << SignalRecords{ticked(1, true), selectAllTicked(true),
                                            crushEnabled(true), removeEnabled(true),
                                            progress(1, 50)};
    QTest::newRow("uncheck all") << int(CommandUncheckAll)
                                 << SignalRecords{ticked(0, false), selectAllTicked(false)}
                                        + buttonsOff + SignalRecords{progress(1, 50)};
}

void TestOrder::progressFollowsAChangeUnderWay()
{
    QFETCH(int, code);
    QFETCH(SignalRecords, expected);
    addRows(2);
    const QString last = paths().constLast();
    answerToClick(1);
    if (code == CommandToggleRow)
        walle->postCellToggle(CellToggle{1, true, last});
    postUntil(expected.first().name.constData(), code);
    walle->finishPercentWalle(last, 50);
    QCOMPARE(log(), expected);
}

void TestOrder::progressFollowsTheInsertionOfItsRow()
{
    const QString file = make("file");
    addUntilEmitted(file);
    walle->finishPercentWalle(file, 50);
    QCOMPARE(log({"addRowToMainTable", "setTableRowHeight"}),
             (SignalRecords{added(file), progress(0, 50)}));
}

/// What it waits for cannot come before it returns.
void TestOrder::slotThatTheControllerWaitsForMayReportProgress()
{
    const QString path = make("file");
    onNext("addRowToMainTable", [&] { walle->finishPercentWalle(path, 50); });
    choose({path});
    QVERIFY(performed());
    QCOMPARE(log({"setTableRowHeight"}), SignalRecords{progress(0, 50)});
}

void TestOrder::verdictFollowsTheStartUnderWay()
{
    addRows(1);
    becomeFifo(paths().constFirst());
    postUntil("setCrushStarted", CommandStartCrush);
    walle->failedOneWalle(paths().constFirst());
    QCOMPARE(log({"setCrushStarted", "setTableRowHeight"}),
             (SignalRecords{running(), progress(0, 0), idle()}));
    answerTo({CommandCheckAll}); // the row is drawn ticked still
}

/// The button is disabled between the request to the worker and "stopping".
void TestOrder::answerFollowsTheStopUnderWay()
{
    startRunThatStandsStill(1);
    postUntil("setCrushButtonEnabled", CommandStopCrush);
    walle->stoppedWalle();
    QCOMPARE(log().mid(0, 3), (SignalRecords{crushEnabled(false), stopping(), idle()}));
}

/// Else the window, which unticks its rows then, would miss the new one.
void TestOrder::resultFollowsTheInsertionUnderWay()
{
    startRunThatStandsStill(1);
    answerTo({CommandStopCrush});
    const QString file = make("file");
    addUntilEmitted(file);
    walle->finishOneWalle(paths().constFirst());
    QCOMPARE(log({"addRowToMainTable", "removeRowFromMainTable", "showResultDialog"}),
             (SignalRecords{added(file), removed(0), result(1, 0)}));
    QCOMPARE(checkedPaths(), QStringList{file});
}

/// A failure does not hold up the controller thread, which admits a row between the last look at
/// the list and the result.
void TestOrder::rowAddedWhileAFailureEndsTheRunKeepsItsTick()
{
    startRunThatStandsStill(1);
    const QStringList rows{paths().constFirst(), make("file")};
    onNext("finishAll", [&] { addUntilEmitted(rows.last()); });
    walle->failedOneWalle(rows.first());
    QVERIFY(performed());
    QCOMPARE(paths(), rows);
    QCOMPARE(count("showResultDialog"), 1);
    const SignalRecords answer = answerTo({CommandCheckAll});
    QCOMPARE(answer.first(), ticked(0, true));
    QVERIFY(!answer.contains(ticked(1, true)));
}

TEST_SUITE(order, TestOrder)
#include "order.moc"
