// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The main table: how rows come, go and are drawn, and how they are selected. Rows come
// from drops on the window, or from the slots where the controller has to stay out of it.

#include "suites.h"
#include "widgets/zztablecell.h"
#include "windowtest.h"

#include <QIcon>
#include <QLabel>
#include <QSignalSpy>
#include <QTableWidget>
#include <QtTest>

using testsupport::entryExists;
using testsupport::WindowTest;

class TestTable : public WindowTest
{
    Q_OBJECT

private slots:
    void firstRowHidesBothPanels();
    void tickingARowHidesBothPanels();
    void rowsShowTheProgramsOwnIcons();
    void rowIsThirtyPixelsHighAndFillsTheFirstColumn();
    void rowsThatComeTogetherAreAllDrawn();
    void cellsBehindARemovedRowReportTheirNewRows();
    void progressDarkensTheRow();
    void rowsThatAreNotThereAreIgnored();
    void clickInAnotherColumnDoesNothing();
    void clickTogglesTheRow_data();
    void clickTogglesTheRow();
    void clickHoldsForItsEntryWhenTheRowMoves();
    void selectAllTicksAndUnticksEveryRow();
    void selectAllBoxFollowsWithoutAsking();
    void tickedRowsAreRemoved();
    void tableStaysInItsPlace();
};

void TestTable::firstRowHidesBothPanels()
{
    window->find("successPanel")->show();
    QVERIFY(window->find("emptyPanel")->isVisible());
    mainWindow->addRowToMainTableEva(QStringLiteral("/a"));
    QVERIFY(!window->find("emptyPanel")->isVisible());
    QVERIFY(!window->find("successPanel")->isVisible());
}

void TestTable::tickingARowHidesBothPanels()
{
    mainWindow->addRowToMainTableEva(QStringLiteral("/a"));
    window->find("emptyPanel")->show();
    window->find("successPanel")->show();
    mainWindow->setTableItemCheckBoxStateEva(0, false);
    QVERIFY(!window->cell(0)->isChecked());
    QVERIFY(!window->find("emptyPanel")->isVisible());
    QVERIFY(!window->find("successPanel")->isVisible());
}

void TestTable::rowsShowTheProgramsOwnIcons()
{
    const QString file = QStringLiteral(":/images/ico_file");
    const QString folder = QStringLiteral(":/images/ico_folder");
    const QString realFolder = tree->makeFolder(QStringLiteral("folder.txt"));
    const QList<QPair<QString, QString>> entries = {
        {tree->makeFile(QStringLiteral("file.pdf"), 1), file},
        {realFolder, folder},
        {tree->makeLink(QStringLiteral("link to a folder"), realFolder), folder},
        {tree->makeLink(QStringLiteral("link to nothing"), QStringLiteral("nowhere")), file},
        {tree->path(QStringLiteral("nothing there")), file},
    };
    for (int row = 0; row < entries.size(); ++row) {
        mainWindow->addRowToMainTableEva(entries.at(row).first);
        const auto *icon = window->cell(row)->findChild<QLabel *>(QStringLiteral("iconLabel"));
        QCOMPARE(icon->property("pixmap").value<QPixmap>().toImage(),
                 QIcon(entries.at(row).second).pixmap(16, 16).toImage());
    }
}

void TestTable::rowIsThirtyPixelsHighAndFillsTheFirstColumn()
{
    dropFiles(3);
    for (int row = 0; row < 3; ++row) {
        QCOMPARE(window->table()->rowHeight(row), 30);
        QCOMPARE(window->cell(row)->size(), QSize(778, 30));
        QCOMPARE(window->cell(row)->mapTo(mainWindow, QPoint()), QPoint(1, 140 + row * 30));
        QVERIFY(window->table()->cellWidget(row, 1) == nullptr);
        QVERIFY(window->table()->item(row, 0) == nullptr);
        QVERIFY(window->table()->item(row, 1) == nullptr);
    }
}

/// Drawing a row takes longer than adding it, so those that come together are drawn together.
void TestTable::rowsThatComeTogetherAreAllDrawn()
{
    for (int turn = 0; turn < 2; ++turn) {
        mainWindow->addRowToMainTableEva(QStringLiteral("/one"));
        mainWindow->addRowToMainTableEva(QStringLiteral("/more"));
        QVERIFY(!window->table()->updatesEnabled());
        QTRY_VERIFY(window->table()->updatesEnabled());
    }
}

void TestTable::cellsBehindARemovedRowReportTheirNewRows()
{
    QStringList files = dropFiles(5);
    mainWindow->removeRowFromMainTableEva(2);
    files.removeAt(2);
    QCOMPARE(window->rows(), files);
    for (int row = 0; row < 4; ++row) {
        const QSignalSpy reports(window->cell(row), &ZZTableCell::tableCellClicked);
        window->clickRow(row);
        QCOMPARE(reports.count(), 1);
        QCOMPARE(reports.first(), (QVariantList{row, 0}));
    }
}

void TestTable::progressDarkensTheRow()
{
    dropFiles(2);
    QVERIFY(!overlayOf(1)->isVisible());
    mainWindow->setTableRowHeightEva(1, 50);
    QVERIFY(overlayOf(1)->isVisible());
    QCOMPARE(overlayOf(1)->size(), QSize(388, 30));
    QVERIFY(!overlayOf(0)->isVisible());
    QCOMPARE(window->table()->rowHeight(1), 30);
    mainWindow->setTableRowHeightEva(1, 0);
    QVERIFY(!overlayOf(1)->isVisible());
}

void TestTable::rowsThatAreNotThereAreIgnored()
{
    const QStringList files = dropFiles(2);
    for (const int row : {2, 3, -1}) {
        mainWindow->setTableRowHeightEva(row, 50);
        mainWindow->setTableItemCheckBoxStateEva(row, false);
        mainWindow->removeRowFromMainTableEva(row);
        mainWindow->tableCellClickedEva(row, 0);
    }
    settle();
    QCOMPARE(window->tickedRows(), files);
    QVERIFY(!overlayOf(0)->isVisible());
    QVERIFY(!overlayOf(1)->isVisible());
}

void TestTable::clickInAnotherColumnDoesNothing()
{
    const QStringList files = dropFiles(2);
    mainWindow->tableCellClickedEva(0, 1);
    mainWindow->tableCellClickedEva(1, -1);
    settle();
    QCOMPARE(window->tickedRows(), files);
    // Nor is anything left waiting for the next click.
    mainWindow->tableCellClickedEva(1, 0);
    settle();
    QCOMPARE(window->tickedRows(), files.mid(0, 1));
}

void TestTable::clickTogglesTheRow_data()
{
    QTest::addColumn<bool>("onTickBox");
    QTest::newRow("name") << false;
    QTest::newRow("tick box") << true;
}

void TestTable::clickTogglesTheRow()
{
    QFETCH(bool, onTickBox);
    const auto click = [&](const QList<int> &rows) {
        for (const int row : rows)
            onTickBox ? window->clickTickBox(row) : window->clickRow(row);
        settle();
    };
    const QStringList files = dropFiles(3);
    click({1});
    QCOMPARE(window->tickedRows(), (QStringList{files.at(0), files.at(2)}));
    QVERIFY(!window->isTicked("selectAllCheckBox"));
    QVERIFY(window->isEnabled("crushButton"));
    click({0, 2});
    QCOMPARE(window->tickedRows(), QStringList());
    QVERIFY(!window->isEnabled("crushButton"));
    QVERIFY(!window->isEnabled("removeButton"));
    click({2});
    QCOMPARE(window->tickedRows(), files.mid(2));
    QVERIFY(window->isEnabled("crushButton"));
    click({0, 1});
    QCOMPARE(window->tickedRows(), files);
    QVERIFY(window->isTicked("selectAllCheckBox"));
}

void TestTable::clickHoldsForItsEntryWhenTheRowMoves()
{
    const QStringList files = dropFiles(3);
    pressRow(1);
    pressRow(2);
    // Not performed yet when the row below is clicked.
    mainWindow->removeSomeFilesEva();
    mainWindow->tableCellClickedEva(1, 0);
    settle();
    QCOMPARE(window->rows(), files.mid(1));
    QCOMPARE(window->tickedRows(), files.mid(1, 1));
}

void TestTable::selectAllTicksAndUnticksEveryRow()
{
    const QStringList files = dropFiles(2);
    press("selectAllCheckBox");
    QCOMPARE(window->tickedRows(), QStringList());
    QVERIFY(!window->isEnabled("crushButton"));
    QVERIFY(!window->isEnabled("removeButton"));
    pressRow(1);
    QVERIFY(!window->isTicked("selectAllCheckBox"));
    press("selectAllCheckBox");
    QCOMPARE(window->tickedRows(), files);
    QVERIFY(window->isEnabled("crushButton"));
    QVERIFY(window->isEnabled("removeButton"));
}

void TestTable::selectAllBoxFollowsWithoutAsking()
{
    const QStringList files = dropFiles(2);
    for (const bool state : {false, true}) {
        mainWindow->setSelectAllCheckBoxStateEva(state);
        mainWindow->setSelectAllCheckBoxEnabledEva(state);
        QCOMPARE(window->isTicked("selectAllCheckBox"), state);
        QCOMPARE(window->isEnabled("selectAllCheckBox"), state);
        // Had the box passed its change on, the controller would have unticked the rows.
        settle();
        QCOMPARE(window->tickedRows(), files);
    }
}

void TestTable::tickedRowsAreRemoved()
{
    const QStringList files = dropFiles(3);
    pressRow(1);
    press("removeButton");
    QCOMPARE(window->rows(), files.mid(1, 1));
    QCOMPARE(window->tickedRows(), QStringList());
    QVERIFY(!window->isEnabled("removeButton"));
    pressRow(0);
    press("removeButton");
    QCOMPARE(window->rows(), QStringList());
    QVERIFY(!window->isEnabled("selectAllCheckBox"));
    for (const QString &file : files)
        QVERIFY(entryExists(file));
}

void TestTable::tableStaysInItsPlace()
{
    for (const int percent : {0, 50, 100}) {
        mainWindow->slotMoveTable(30, percent);
        QCOMPARE(window->table()->geometry(), QRect(0, 0, 798, 394));
    }
}

TEST_SUITE(table, TestTable)
#include "table.moc"
