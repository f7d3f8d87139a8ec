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
    void stateDrawnByTheWindowIsNotRead();
    void rowNumbersThatDoNotExistAreIgnored();
    void clickFollowsItsEntryToAnotherRow();
    void clickOnAnEntryThatHasGoneIsDropped();
    void clickWithoutAPathMeansTheRowAtThatTime();

    void checkAllOnACheckedListTellsTheControls();
    void uncheckAllOnAnEmptyListTellsTheControls();
    void removalNumbersAreThoseOfTheMoment();
    void removingEveryRowClearsAndDisablesTheControls();

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

void TestSelection::stateDrawnByTheWindowIsNotRead()
{
    addRows(2);
    toggle(0, true);
    toggle(1, false);
    QVERIFY(harness->performed());
    QCOMPARE(harness->checkedPaths(), QStringList());
}

void TestSelection::rowNumbersThatDoNotExistAreIgnored()
{
    addRows(2);
    for (const int row : {-1, 2, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QCOMPARE(harness->answerTo([&] { toggle(row); }), SignalRecords());
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

void TestSelection::progressFrom0To100ReachesItsRow()
{
    addRows(2);
    const auto answerTo = [this](int percent) {
        harness->walle().finishPercentWalle(harness->paths().at(1), percent);
        return harness->takeLog();
    };
    for (const int percent : {0, 1, 50, 99, 100})
        QCOMPARE(answerTo(percent), SignalRecords{progress(1, percent)});
    for (const int percent :
         {101, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QCOMPARE(answerTo(percent), SignalRecords());
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
