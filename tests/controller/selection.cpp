// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The job list: clicks on rows, the commands on all rows, the controls that depend on
// them, and the progress of a row.

#include "suites.h"
#include "walleharness.h"

using testsupport::SignalRecords;
using testsupport::WalleTest;

class TestSelection : public WalleTest
{
    Q_OBJECT

private slots:
    void rowNumbersThatDoNotExistAreIgnored();
    void clickFollowsItsEntryToAnotherRowOrIsDropped();
    void clickWithoutAPathMeansTheRowAtThatTime();

    void checkAllOnACheckedListTellsTheControls();
    void uncheckAllOnAnEmptyListTellsTheControls();
    void removalNumbersAreThoseOfTheMoment();
    void removingEveryRowClearsAndDisablesTheControls();
    void unknownSituationTellsTheControlsNothing();

    void progressFrom0To100ReachesItsRow();
    void progressOfAnUnknownPathIsDropped();

private:
    /// Adds @p count rows and unchecks those of @p unchecked.
    void addRows(int count, const QVector<int> &unchecked = {});
    /// A click by number alone.
    void toggle(int row)
    {
        walle->postCellToggle(CellToggle{row, false, QString()});
        post(CommandToggleRow);
    }

    static constexpr int smallest = std::numeric_limits<int>::min();
    static constexpr int largest = std::numeric_limits<int>::max();
};

void TestSelection::addRows(int count, const QVector<int> &unchecked)
{
    WalleTest::addRows(count);
    for (const int row : unchecked)
        answerToClick(row);
}

void TestSelection::rowNumbersThatDoNotExistAreIgnored()
{
    addRows(2);
    for (const int row : {-1, 2, smallest, largest})
        QCOMPARE(answerTo([&] { toggle(row); }), SignalRecords());
}

/// Row 0 goes while the clicks on it and on row 2 are still waiting.
void TestSelection::clickFollowsItsEntryToAnotherRowOrIsDropped()
{
    addRows(4, {1, 2, 3});
    const QString clicked = paths().at(2);
    post(CommandRemoveChecked);
    click(0);
    click(2);
    QVERIFY(performed());
    QCOMPARE(log({"setTableItemCheckBoxState"}), SignalRecords{ticked(1, true)});
    QCOMPARE(checkedPaths(), QStringList{clicked});
}

void TestSelection::clickWithoutAPathMeansTheRowAtThatTime()
{
    addRows(3, {1, 2});
    const QString last = paths().constLast();
    post(CommandRemoveChecked);
    toggle(1);
    QVERIFY(performed());
    QCOMPARE(checkedPaths(), QStringList{last});
}

void TestSelection::checkAllOnACheckedListTellsTheControls()
{
    addRows(2);
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
    const QStringList before = paths();
    QCOMPARE(answerTo({CommandRemoveChecked}),
             (SignalRecords{removed(1), removed(1), crushEnabled(false), removeEnabled(false)}));
    QCOMPARE(paths(), (QStringList{before.first(), before.last()}));
    compareTableWithJobList();
}

void TestSelection::removingEveryRowClearsAndDisablesTheControls()
{
    addRows(3);
    QCOMPARE(
        answerTo({CommandRemoveChecked}),
        (SignalRecords{removed(0), removed(0), removed(0), crushEnabled(false),
                       removeEnabled(false), selectAllTicked(false), selectAllEnabled(false)}));
}

void TestSelection::unknownSituationTellsTheControlsNothing()
{
    addRows(2, {1});
    for (const int situation : {-1, 0, 9, smallest, largest})
        walle->refreshControls(situation);
    QCOMPARE(log(), SignalRecords());
}

void TestSelection::progressFrom0To100ReachesItsRow()
{
    addRows(2);
    const auto answerTo = [this](int percent) {
        walle->finishPercentWalle(paths().at(1), percent);
        return takeLog();
    };
    for (const int percent : {0, 1, 50, 99, 100})
        QCOMPARE(answerTo(percent), SignalRecords{progress(1, percent)});
    for (const int percent : {101, -1, smallest, largest})
        QCOMPARE(answerTo(percent), SignalRecords());
}

void TestSelection::progressOfAnUnknownPathIsDropped()
{
    addRows(2, {1});
    const QString gone = paths().constFirst();
    answerTo({CommandRemoveChecked});
    for (const QString &path : {QString(), paths().constFirst() + QLatin1Char('x'), gone})
        walle->finishPercentWalle(path, 50);
    QCOMPARE(log(), SignalRecords());
}

TEST_SUITE(selection, TestSelection)
#include "selection.moc"
