// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The main table: how rows come, go and are drawn, and how they are ticked. Rows come from drops,
// or from the slots where the controller has to stay out of it.

#include "suites.h"
#include "windowtest.h"

#include <QIcon>
#include <QImage>
#include <QSignalSpy>
#include <QtTest>

using namespace testsupport;

class TestTable : public WindowTest
{
    Q_OBJECT

private slots:
    void firstRowAndATickHideBothPanels();
    void rowsShowTheProgramsOwnIcons();
    void rowIsThirtyPixelsHighAndFillsTheFirstColumn();
    void rowsThatComeTogetherAreAllDrawn();
    void cellsBehindARemovedRowReportTheirNewRows();
    void progressDarkensTheRow();
    void rowsThatAreNotThereAreIgnored();
    void clickInAnotherColumnDoesNothing();
    void clickOnNameOrTickBoxTogglesTheRow();
    void clickHoldsForItsEntryWhenTheRowMoves();
    void selectAllTicksAndUnticksEveryRow();
    void selectAllBoxFollowsWithoutAsking();
    void tickedRowsAreRemoved();
    void tableStaysInItsPlace();
};

void TestTable::firstRowAndATickHideBothPanels()
{
    const auto hides = [this](const std::function<void()> &change) {
        find("successPanel")->show();
        find("emptyPanel")->show();
        change();
        return !find("emptyPanel")->isVisible() && !find("successPanel")->isVisible();
    };
    QVERIFY(hides([this] { window->addRowToMainTableEva(QStringLiteral("/a")); }));
    QVERIFY(hides([this] { window->setTableItemCheckBoxStateEva(0, false); }));
    QVERIFY(!cell(0)->isChecked());
}

void TestTable::rowsShowTheProgramsOwnIcons()
{
    const QImage file = QIcon(QStringLiteral(":/images/ico_file")).pixmap(16).toImage();
    const QImage folder = QIcon(QStringLiteral(":/images/ico_folder")).pixmap(16).toImage();
    const QString realFolder = tree->makeFolder("folder.txt");
    const auto iconOf = [&](const QString &path) {
        window->addRowToMainTableEva(path);
        const QWidget *label = partOf(table()->rowCount() - 1, "iconLabel");
        return label->property("pixmap").value<QPixmap>().toImage();
    };
    QCOMPARE(iconOf(tree->makeFile("file.pdf", 1)), file);
    QCOMPARE(iconOf(realFolder), folder);
    QCOMPARE(iconOf(tree->makeLink("link to a folder", realFolder)), folder);
    QCOMPARE(iconOf(tree->makeLink("link to nothing", QStringLiteral("nowhere"))), file);
    QCOMPARE(iconOf(tree->path("nothing there")), file);
}

void TestTable::rowIsThirtyPixelsHighAndFillsTheFirstColumn()
{
    dropFiles(3);
    for (int row = 0; row < 3; ++row) {
        QCOMPARE(table()->rowHeight(row), 30);
        QCOMPARE(cell(row)->size(), QSize(778, 30));
        QCOMPARE(cell(row)->mapTo(window.get(), QPoint()), QPoint(1, 140 + row * 30));
        QVERIFY(table()->cellWidget(row, 1) == nullptr);
        QVERIFY(table()->item(row, 0) == nullptr && table()->item(row, 1) == nullptr);
    }
}

/// Drawing a row takes longer than adding it, so those that come together are drawn together.
void TestTable::rowsThatComeTogetherAreAllDrawn()
{
    for (int turn = 0; turn < 2; ++turn) {
        window->addRowToMainTableEva(QStringLiteral("/one"));
        window->addRowToMainTableEva(QStringLiteral("/more"));
        QVERIFY(!table()->updatesEnabled());
        QTRY_VERIFY(table()->updatesEnabled());
    }
}

void TestTable::cellsBehindARemovedRowReportTheirNewRows()
{
    QStringList files = dropFiles(5);
    window->removeRowFromMainTableEva(2);
    files.removeAt(2);
    QCOMPARE(rows(), files);
    for (int row = 0; row < 4; ++row) {
        const QSignalSpy reports(cell(row), &ZZTableCell::tableCellClicked);
        clickRow(row);
        QCOMPARE(reports.count(), 1);
        QCOMPARE(reports.first(), (QVariantList{row, 0}));
    }
}

void TestTable::progressDarkensTheRow()
{
    dropFiles(2);
    QVERIFY(!overlayOf(1)->isVisible());
    window->setTableRowHeightEva(1, 50);
    QVERIFY(overlayOf(1)->isVisible());
    QCOMPARE(overlayOf(1)->size(), QSize(388, 30));
    QVERIFY(!overlayOf(0)->isVisible());
    QCOMPARE(table()->rowHeight(1), 30);
    window->setTableRowHeightEva(1, 0);
    QVERIFY(!overlayOf(1)->isVisible());
}

void TestTable::rowsThatAreNotThereAreIgnored()
{
    const QStringList files = dropFiles(2);
    for (const int row : {2, 3, -1}) {
        window->setTableRowHeightEva(row, 50);
        window->setTableItemCheckBoxStateEva(row, false);
        window->removeRowFromMainTableEva(row);
        window->tableCellClickedEva(row, 0);
    }
    settle();
    QCOMPARE(tickedRows(), files);
    QVERIFY(!overlayOf(0)->isVisible());
    QVERIFY(!overlayOf(1)->isVisible());
}

void TestTable::clickInAnotherColumnDoesNothing()
{
    const QStringList files = dropFiles(2);
    window->tableCellClickedEva(0, 1);
    window->tableCellClickedEva(1, -1);
    settle();
    QCOMPARE(tickedRows(), files);
    // Nor is anything left waiting for the next click.
    window->tableCellClickedEva(1, 0);
    settle();
    QCOMPARE(tickedRows(), files.mid(0, 1));
}

void TestTable::clickOnNameOrTickBoxTogglesTheRow()
{
    const QStringList files = dropFiles(3);
    pressRow(1);
    QCOMPARE(tickedRows(), (QStringList{files.at(0), files.at(2)}));
    QVERIFY(!isTicked("selectAllCheckBox"));
    QVERIFY(isEnabled("crushButton"));
    clickTickBox(0);
    clickTickBox(2);
    settle();
    QCOMPARE(tickedRows(), QStringList());
    QVERIFY(!isEnabled("crushButton"));
    QVERIFY(!isEnabled("removeButton"));
    clickTickBox(2);
    settle();
    QCOMPARE(tickedRows(), files.mid(2));
    QVERIFY(isEnabled("crushButton"));
    clickRow(0);
    clickRow(1);
    settle();
    QCOMPARE(tickedRows(), files);
    QVERIFY(isTicked("selectAllCheckBox"));
}

void TestTable::clickHoldsForItsEntryWhenTheRowMoves()
{
    const QStringList files = dropFiles(3);
    pressRow(1);
    pressRow(2);
    // Not performed yet when the row below is clicked.
    window->removeSomeFilesEva();
    window->tableCellClickedEva(1, 0);
    settle();
    QCOMPARE(rows(), files.mid(1));
    QCOMPARE(tickedRows(), files.mid(1, 1));
}

void TestTable::selectAllTicksAndUnticksEveryRow()
{
    const QStringList files = dropFiles(2);
    for (const QStringList &expected : {QStringList(), files}) {
        press("selectAllCheckBox");
        QCOMPARE(tickedRows(), expected);
        QCOMPARE(isEnabled("crushButton"), !expected.isEmpty());
        QCOMPARE(isEnabled("removeButton"), !expected.isEmpty());
    }
}

void TestTable::selectAllBoxFollowsWithoutAsking()
{
    const QStringList files = dropFiles(2);
    for (const bool state : {false, true}) {
        window->setSelectAllCheckBoxStateEva(state);
        window->setSelectAllCheckBoxEnabledEva(state);
        QCOMPARE(isTicked("selectAllCheckBox"), state);
        QCOMPARE(isEnabled("selectAllCheckBox"), state);
        // Had the box passed its change on, the controller would have unticked the rows.
        settle();
        QCOMPARE(tickedRows(), files);
    }
}

void TestTable::tickedRowsAreRemoved()
{
    const QStringList files = dropFiles(3);
    pressRow(1);
    press("removeButton");
    QCOMPARE(rows(), files.mid(1, 1));
    QCOMPARE(tickedRows(), QStringList());
    QVERIFY(!isEnabled("removeButton"));
    pressRow(0);
    press("removeButton");
    QCOMPARE(rows(), QStringList());
    QVERIFY(!isEnabled("selectAllCheckBox"));
    for (const QString &file : files)
        QVERIFY(entryExists(file));
}

void TestTable::tableStaysInItsPlace()
{
    for (const int percent : {0, 50, 100}) {
        window->slotMoveTable(30, percent);
        QCOMPARE(table()->geometry(), QRect(0, 0, 798, 394));
    }
}

TEST_SUITE(table, TestTable)
#include "table.moc"
