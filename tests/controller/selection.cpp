// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The job list: clicks on rows, the commands on all rows, the controls that depend on
// them, and the progress of a row.

#include "suites.h"
#include "walletest.h"

using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::WalleTest;

namespace
{

enum ListKind { Empty, AllChecked, NoneChecked, Mixed };

} // namespace

Q_DECLARE_METATYPE(ListKind)
Q_DECLARE_METATYPE(SignalRecords)

class TestSelection : public WalleTest
{
    Q_OBJECT

private slots:
    void situationTellsTheControls_data();
    void situationTellsTheControls();

    void clickTellsTheRowAndTheControls_data();
    void clickTellsTheRowAndTheControls();
    void stateDrawnByTheWindowIsNotRead();
    void rowNumbersThatDoNotExistAreIgnored_data();
    void rowNumbersThatDoNotExistAreIgnored();
    void clicksArePerformedOldestFirst();
    void clickFollowsItsEntryToAnotherRow();
    void clickOnAnEntryThatHasGoneIsDropped();
    void clickWithoutAPathMeansTheRowAtThatTime();

    void commandOnAllRowsTellsOnlyThoseThatChange();
    void checkAllTellsTheControlsOfAnyList_data();
    void checkAllTellsTheControlsOfAnyList();
    void uncheckAllOnAnEmptyListTellsTheControls();
    void removalNumbersAreThoseOfTheMoment();
    void removingEveryRowClearsAndDisablesTheControls();

    void progressFrom0To100ReachesItsRow_data();
    void progressFrom0To100ReachesItsRow();
    void progressOfAnUnknownPathIsDropped();

private:
    /// Adds @p count rows and unchecks those of @p unchecked.
    void addRows(int count, const QVector<int> &unchecked = {});
    void toggle(int row, bool state = false) const;
};

void TestSelection::addRows(int count, const QVector<int> &unchecked)
{
    WalleTest::addRows(count);
    for (const int row : unchecked)
        answerToClick(row);
}

void TestSelection::toggle(int row, bool state) const
{
    harness->walle().postCellToggle(CellToggle{row, state, QString()});
    harness->post(CommandToggleRow);
}

void TestSelection::situationTellsTheControls_data()
{
    QTest::addColumn<int>("situation");
    QTest::addColumn<ListKind>("kind");
    QTest::addColumn<SignalRecords>("expected");
    const auto row = [](int situation, const SignalRecords &empty, const SignalRecords &allChecked,
                        const SignalRecords &noneChecked, const SignalRecords &mixed) {
        QTest::addRow("%d, no rows", situation) << situation << Empty << empty;
        QTest::addRow("%d, all checked", situation) << situation << AllChecked << allChecked;
        QTest::addRow("%d, none checked", situation) << situation << NoneChecked << noneChecked;
        QTest::addRow("%d, some checked", situation) << situation << Mixed << mixed;
    };
    const auto anyList = [row](int situation, const SignalRecords &expected) {
        row(situation, expected, expected, expected, expected);
    };
    const SignalRecord box = selectAllEnabled(true);
    const SignalRecord tick = selectAllTicked(true);
    const SignalRecord untick = selectAllTicked(false);
    const SignalRecords on{crushEnabled(true), removeEnabled(true)};
    const SignalRecords off{crushEnabled(false), removeEnabled(false)};

    const SignalRecords nothing;
    row(ControlSituation::BatchAdmitted, nothing, SignalRecords{box} + on + SignalRecords{tick},
        {box}, SignalRecords{box} + on);
    row(ControlSituation::RowsRemoved, off + SignalRecords{untick, selectAllEnabled(false)},
        nothing, off, nothing);
    anyList(ControlSituation::AllChecked, SignalRecords{tick} + on);
    anyList(ControlSituation::NoneChecked, SignalRecords{untick} + off);
    anyList(ControlSituation::RowChecked, on);
    anyList(ControlSituation::RowUnchecked, {untick});
    anyList(ControlSituation::StopAsked, {crushEnabled(false)});
    row(ControlSituation::Stopped, SignalRecords{selectAllEnabled(false)} + off,
        SignalRecords{box} + on + SignalRecords{tick},
        SignalRecords{box} + off + SignalRecords{untick},
        SignalRecords{box} + on + SignalRecords{untick});
    for (const int unknown : {-1, 0, 9, 1000})
        anyList(unknown, nothing);
}

void TestSelection::situationTellsTheControls()
{
    QFETCH(int, situation);
    QFETCH(ListKind, kind);
    QFETCH(SignalRecords, expected);
    if (kind != Empty)
        addRows(2);
    if (kind == NoneChecked)
        answerTo({CommandUncheckAll});
    if (kind == Mixed)
        answerToClick(0);
    harness->walle().refreshControls(situation);
    QCOMPARE(harness->log(), expected);
}

void TestSelection::clickTellsTheRowAndTheControls_data()
{
    QTest::addColumn<QVector<int>>("unchecked");
    QTest::addColumn<SignalRecords>("expected");
    QTest::newRow("one of two checked rows")
        << QVector<int>{} << SignalRecords{ticked(0, false), selectAllTicked(false)};
    QTest::newRow("the last checked row")
        << QVector<int>{1}
        << SignalRecords{ticked(0, false), selectAllTicked(false), crushEnabled(false),
                         removeEnabled(false)};
    QTest::newRow("one of two unchecked rows")
        << QVector<int>{0, 1}
        << SignalRecords{ticked(0, true), crushEnabled(true), removeEnabled(true)};
    QTest::newRow("the last unchecked row")
        << QVector<int>{0}
        << SignalRecords{ticked(0, true), selectAllTicked(true), crushEnabled(true),
                         removeEnabled(true)};
}

void TestSelection::clickTellsTheRowAndTheControls()
{
    QFETCH(QVector<int>, unchecked);
    QFETCH(SignalRecords, expected);
    addRows(2, unchecked);
    QCOMPARE(answerToClick(0), expected);
}

void TestSelection::stateDrawnByTheWindowIsNotRead()
{
    addRows(2);
    toggle(0, true);
    toggle(1, false);
    QVERIFY(harness->performed());
    QCOMPARE(harness->checkedPaths(), QStringList());
}

void TestSelection::rowNumbersThatDoNotExistAreIgnored_data()
{
    QTest::addColumn<int>("row");
    QTest::newRow("below the first") << -1;
    QTest::newRow("behind the last") << 2;
    QTest::newRow("smallest") << std::numeric_limits<int>::min();
    QTest::newRow("largest") << std::numeric_limits<int>::max();
}

void TestSelection::rowNumbersThatDoNotExistAreIgnored()
{
    QFETCH(int, row);
    addRows(2);
    QCOMPARE(harness->answerTo([&] { toggle(row); }), SignalRecords());
}

void TestSelection::clicksArePerformedOldestFirst()
{
    addRows(3);
    for (const int row : {2, 0, 1})
        harness->click(row);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log({"setTableItemCheckBoxState"}),
             (SignalRecords{ticked(2, false), ticked(0, false), ticked(1, false)}));
}

/// Row 0 goes while the click on row 2 is still waiting.
void TestSelection::clickFollowsItsEntryToAnotherRow()
{
    addRows(4, {1, 2, 3});
    const QString clicked = harness->paths().at(2);
    harness->post(CommandRemoveChecked);
    harness->click(2);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log({"setTableItemCheckBoxState"}), SignalRecords{ticked(1, true)});
    QCOMPARE(harness->checkedPaths(), QStringList{clicked});
}

void TestSelection::clickOnAnEntryThatHasGoneIsDropped()
{
    addRows(2, {1});
    harness->post(CommandRemoveChecked);
    harness->click(0);
    QVERIFY(harness->performed());
    QCOMPARE(harness->rows().size(), 1);
    QVERIFY(!harness->rows().first().checked);
}

void TestSelection::clickWithoutAPathMeansTheRowAtThatTime()
{
    addRows(3, {1, 2});
    const QString last = harness->paths().at(2);
    harness->post(CommandRemoveChecked);
    toggle(1);
    QVERIFY(harness->performed());
    QCOMPARE(harness->checkedPaths(), QStringList{last});
}

void TestSelection::commandOnAllRowsTellsOnlyThoseThatChange()
{
    addRows(4, {0, 2});
    QCOMPARE(answerTo({CommandCheckAll}),
             (SignalRecords{ticked(0, true), ticked(2, true), selectAllTicked(true),
                            crushEnabled(true), removeEnabled(true)}));
    answerToClick(1);
    QCOMPARE(answerTo({CommandUncheckAll}),
             (SignalRecords{ticked(0, false), ticked(2, false), ticked(3, false),
                            selectAllTicked(false), crushEnabled(false), removeEnabled(false)}));
}

void TestSelection::checkAllTellsTheControlsOfAnyList_data()
{
    QTest::addColumn<int>("rows");
    QTest::newRow("no rows") << 0;
    QTest::newRow("all checked") << 2;
}

void TestSelection::checkAllTellsTheControlsOfAnyList()
{
    QFETCH(int, rows);
    addRows(rows);
    QCOMPARE(answerTo({CommandCheckAll}),
             (SignalRecords{selectAllTicked(true), crushEnabled(true), removeEnabled(true)}));
}

void TestSelection::uncheckAllOnAnEmptyListTellsTheControls()
{
    QCOMPARE(answerTo({CommandUncheckAll}),
             (SignalRecords{selectAllTicked(false), crushEnabled(false), removeEnabled(false)}));
}

void TestSelection::removalNumbersAreThoseOfTheMoment()
{
    addRows(4, {0, 3});
    const QStringList paths = harness->paths();
    QCOMPARE(answerTo({CommandRemoveChecked}),
             (SignalRecords{removed(1), removed(1), crushEnabled(false), removeEnabled(false)}));
    QCOMPARE(harness->paths(), (QStringList{paths.first(), paths.last()}));
    QCOMPARE(harness->checkedPaths(), QStringList());
    QCOMPARE(harness->differenceFromJobList(), QString());
}

void TestSelection::removingEveryRowClearsAndDisablesTheControls()
{
    addRows(3);
    QCOMPARE(
        answerTo({CommandRemoveChecked}),
        (SignalRecords{removed(0), removed(0), removed(0), crushEnabled(false),
                       removeEnabled(false), selectAllTicked(false), selectAllEnabled(false)}));
}

void TestSelection::progressFrom0To100ReachesItsRow_data()
{
    QTest::addColumn<int>("percent");
    QTest::addColumn<bool>("arrives");
    for (const int percent : {0, 1, 50, 99, 100})
        QTest::addRow("%d", percent) << percent << true;
    for (const int percent :
         {101, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QTest::addRow("%d", percent) << percent << false;
}

void TestSelection::progressFrom0To100ReachesItsRow()
{
    QFETCH(int, percent);
    QFETCH(bool, arrives);
    addRows(3);
    for (const int row : {0, 1}) {
        harness->walle().finishPercentWalle(harness->paths().at(row), percent);
        QCOMPARE(harness->takeLog(),
                 arrives ? SignalRecords{progress(row, percent)} : SignalRecords());
    }
}

void TestSelection::progressOfAnUnknownPathIsDropped()
{
    addRows(1);
    const QString path = harness->paths().first();
    harness->walle().finishPercentWalle(QString(), 50);
    harness->walle().finishPercentWalle(path + QLatin1Char('x'), 50);
    answerTo({CommandRemoveChecked});
    harness->walle().finishPercentWalle(path, 50);
    QCOMPARE(harness->log(), SignalRecords());
}

TEST_SUITE(selection, TestSelection)
#include "selection.moc"
