// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The signals of the controller thread are queued, those of a slot are direct. Here a slot
// is called when the controller thread has emitted a signal that the window has not yet
// received: what the slot emits must come later.

#include "suites.h"
#include "walleharness.h"

using testsupport::SignalRecords;
using testsupport::WalleTest;

Q_DECLARE_METATYPE(SignalRecords)

class TestOrder : public WalleTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void progressFollowsAChangeUnderWay_data();
    void progressFollowsAChangeUnderWay();
    void progressFollowsTheInsertionOfItsRow();
    void verdictFollowsTheStartUnderWay();
    void answerFollowsTheStopUnderWay();
    void resultFollowsTheInsertionUnderWay();
    void rowAddedWhileAFailureEndsTheRunKeepsItsTick();

private:
    /// Posts @p code and returns when @p signal is emitted and not delivered.
    void postUntil(const char *signal, int code);
    void addUntilEmitted(const QString &path);
    /// Starts a run that stands still at its only row.
    void startRunThatStandsStill();

    QString a;
    QString b;
};

void TestOrder::init()
{
    WalleTest::init();
    a = make("a");
    b = make("b");
}

void TestOrder::cleanup()
{
    harness->onSignal = nullptr;
    QCOMPARE(harness->differenceFromJobList(), QString());
    WalleTest::cleanup();
}

void TestOrder::postUntil(const char *signal, int code)
{
    QVERIFY(harness->emittedUnheard(signal, [this, code] { harness->post(code); }));
}

void TestOrder::addUntilEmitted(const QString &path)
{
    QVERIFY(harness->emittedUnheard("addRowToMainTable", [&] { harness->choose({path}); }));
}

void TestOrder::startRunThatStandsStill()
{
    QVERIFY(harness->admitted({a}));
    becomeFifo(a);
    answerTo({CommandStartCrush});
}

void TestOrder::progressFollowsAChangeUnderWay_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<SignalRecords>("expected");
    // The row has another number in the list than in the table.
    QTest::newRow("removal") << int(CommandRemoveChecked) << QByteArray("removeRowFromMainTable")
                             << SignalRecords{removed(0), crushEnabled(false),
                                              removeEnabled(false)};
    QTest::newRow("click") << int(CommandToggleRow) << QByteArray("setTableItemCheckBoxState")
                           << SignalRecords{ticked(1, true), selectAllTicked(true),
                                            crushEnabled(true), removeEnabled(true)};
    QTest::newRow("uncheck all") << int(CommandUncheckAll)
                                 << QByteArray("setTableItemCheckBoxState")
                                 << SignalRecords{ticked(0, false), selectAllTicked(false),
                                                  crushEnabled(false), removeEnabled(false)};
}

void TestOrder::progressFollowsAChangeUnderWay()
{
    QFETCH(int, code);
    QFETCH(QByteArray, signal);
    QFETCH(SignalRecords, expected);
    QVERIFY(harness->admitted({a, b}));
    answerToClick(1);
    if (code == CommandToggleRow)
        harness->walle().postCellToggle(CellToggle{1, true, b});
    postUntil(signal.constData(), code);
    harness->walle().finishPercentWalle(b, 50);
    QCOMPARE(harness->log(),
             expected + SignalRecords{progress(code == CommandRemoveChecked ? 0 : 1, 50)});
}

void TestOrder::progressFollowsTheInsertionOfItsRow()
{
    addUntilEmitted(a);
    harness->walle().finishPercentWalle(a, 50);
    QCOMPARE(harness->log({"addRowToMainTable", "setTableRowHeight"}),
             (SignalRecords{added(a), progress(0, 50)}));
}

void TestOrder::verdictFollowsTheStartUnderWay()
{
    QVERIFY(harness->admitted({a}));
    becomeFifo(a);
    postUntil("setCrushStarted", CommandStartCrush);
    harness->walle().failedOneWalle(a);
    QCOMPARE(harness->log({"setCrushStarted", "setTableRowHeight"}),
             (SignalRecords{running(), progress(0, 0), idle()}));
    harness->post(CommandCheckAll); // the row is drawn ticked still
}

/// The button is disabled between the request to the worker and "stopping".
void TestOrder::answerFollowsTheStopUnderWay()
{
    startRunThatStandsStill();
    postUntil("setCrushButtonEnabled", CommandStopCrush);
    harness->walle().stoppedWalle();
    QCOMPARE(harness->log().mid(0, 3), (SignalRecords{crushEnabled(false), stopping(), idle()}));
}

/// Else the window, which unticks its rows then, would miss the new one.
void TestOrder::resultFollowsTheInsertionUnderWay()
{
    startRunThatStandsStill();
    answerTo({CommandStopCrush});
    addUntilEmitted(b);
    harness->walle().finishOneWalle(a);
    QCOMPARE(harness->log({"addRowToMainTable", "removeRowFromMainTable", "showResultDialog"}),
             (SignalRecords{added(b), removed(0), result(1, 0)}));
    QCOMPARE(harness->checkedPaths(), QStringList{b});
}

/// A failure does not hold up the controller thread, which admits a row between the last look at
/// the list and the result.
void TestOrder::rowAddedWhileAFailureEndsTheRunKeepsItsTick()
{
    startRunThatStandsStill();
    onNext("finishAll", [this] { addUntilEmitted(b); });
    harness->walle().failedOneWalle(a);
    QVERIFY(harness->performed());
    QCOMPARE(harness->paths(), (QStringList{a, b}));
    QCOMPARE(harness->count("showResultDialog"), 1);
    const SignalRecords answer = answerTo({CommandCheckAll});
    QCOMPARE(answer.first(), ticked(0, true));
    QVERIFY(!answer.contains(ticked(1, true)));
}

TEST_SUITE(order, TestOrder)
#include "order.moc"
