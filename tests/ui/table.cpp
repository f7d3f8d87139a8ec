// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The main table: how rows come and go, what a click on one does and how its
// progress shows. Rows come from drops on the window, or from the slots where the
// controller has to stay out of it.

#include "promptly.h"
#include "shownwindow.h"
#include "suites.h"
#include "temporarytree.h"
#include "widgets/zztablecell.h"
#include "windowtesthome.h"

#include <QIcon>
#include <QLabel>
#include <QSignalSpy>
#include <QTableWidget>
#include <QtTest>

#include <memory>

using testsupport::ShownWindow;
using testsupport::TemporaryTree;

class TestMainWindowTable : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firstRowHidesBothPanels();
    void tickingARowHidesBothPanels();
    void rowsShowTheProgramsOwnIcons_data();
    void rowsShowTheProgramsOwnIcons();
    void rowIsThirtyPixelsHighAndFillsTheFirstColumn();
    void cellsBehindARemovedRowReportTheirNewRows();
    void clickInAnotherColumnDoesNothing();
    void clickOnARowThatIsNotThereDoesNothing();
    void clickTogglesTheRow_data();
    void clickTogglesTheRow();
    void removingARowThatIsNotThereDoesNothing();
    void tickingARowThatIsNotThereDoesNothing();
    void progressDarkensTheRow_data();
    void progressDarkensTheRow();
    void progressOfARowThatIsNotThereIsIgnored();
    void selectAllBoxFollowsWithoutAsking();
    void tableStaysInItsPlace_data();
    void tableStaysInItsPlace();

private:
    /// Drops @p count files called 0, 1, ... and waits for their rows.
    void dropFiles(int count);
    QStringList paths(const QList<int> &names) const;

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<ShownWindow> window;
};

void TestMainWindowTable::init()
{
    tree = std::make_unique<TemporaryTree>();
    window = std::make_unique<ShownWindow>();
}

void TestMainWindowTable::cleanup()
{
    window.reset();
    tree.reset();
}

void TestMainWindowTable::dropFiles(int count)
{
    QStringList files;
    for (int name = 0; name < count; ++name)
        files.append(tree->makeFile(QString::number(name), 10));
    window->drop(files);
    PROMPTLY_VERIFY(window->isTicked("selectAllCheckBox"));
    QCOMPARE(window->rows(), files);
}

QStringList TestMainWindowTable::paths(const QList<int> &names) const
{
    QStringList all;
    for (const int name : names)
        all.append(tree->path(QString::number(name)));
    return all;
}

void TestMainWindowTable::firstRowHidesBothPanels()
{
    window->find("successPanel")->show();
    QVERIFY(window->find("emptyPanel")->isVisible());
    (*window)->addRowToMainTableEva(tree->makeFile(QStringLiteral("a"), 1));
    QVERIFY(!window->find("emptyPanel")->isVisible());
    QVERIFY(!window->find("successPanel")->isVisible());
}

void TestMainWindowTable::tickingARowHidesBothPanels()
{
    (*window)->addRowToMainTableEva(tree->makeFile(QStringLiteral("a"), 1));
    window->find("emptyPanel")->show();
    window->find("successPanel")->show();
    (*window)->setTableItemCheckBoxStateEva(0, false);
    QVERIFY(!window->cell(0)->isChecked());
    QVERIFY(!window->find("emptyPanel")->isVisible());
    QVERIFY(!window->find("successPanel")->isVisible());
}

void TestMainWindowTable::rowsShowTheProgramsOwnIcons_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("image");
    const QString file = QStringLiteral(":/images/ico_file");
    const QString folder = QStringLiteral(":/images/ico_folder");
    QTest::newRow("file") << QStringLiteral("file.pdf") << file;
    QTest::newRow("folder") << QStringLiteral("folder.txt") << folder;
    QTest::newRow("link to a folder") << QStringLiteral("link") << folder;
    QTest::newRow("link to nothing") << QStringLiteral("dangling") << file;
    QTest::newRow("nothing there") << QStringLiteral("missing") << file;
}

void TestMainWindowTable::rowsShowTheProgramsOwnIcons()
{
    QFETCH(QString, name);
    QFETCH(QString, image);
    tree->makeFile(QStringLiteral("file.pdf"), 1);
    tree->makeLink(QStringLiteral("link"), tree->makeFolder(QStringLiteral("folder.txt")));
    tree->makeLink(QStringLiteral("dangling"), QStringLiteral("nowhere"));
    (*window)->addRowToMainTableEva(tree->path(name));
    const auto *icon = window->cell(0)->findChild<QLabel *>(QStringLiteral("iconLabel"));
    QCOMPARE(icon->property("pixmap").value<QPixmap>().toImage(),
             QIcon(image).pixmap(16, 16).toImage());
}

void TestMainWindowTable::rowIsThirtyPixelsHighAndFillsTheFirstColumn()
{
    dropFiles(3);
    for (int row = 0; row < 3; ++row) {
        QCOMPARE(window->table()->rowHeight(row), 30);
        QCOMPARE(window->cell(row)->size(), QSize(778, 30));
        QCOMPARE(window->cell(row)->mapTo(&**window, QPoint()), QPoint(1, 140 + row * 30));
        QVERIFY(window->table()->cellWidget(row, 1) == nullptr);
        QVERIFY(window->table()->item(row, 0) == nullptr);
        QVERIFY(window->table()->item(row, 1) == nullptr);
    }
}

void TestMainWindowTable::cellsBehindARemovedRowReportTheirNewRows()
{
    dropFiles(5);
    (*window)->removeRowFromMainTableEva(2);
    QCOMPARE(window->rows(), paths({0, 1, 3, 4}));
    for (int row = 0; row < 4; ++row) {
        const QSignalSpy reports(window->cell(row), &ZZTableCell::tableCellClicked);
        window->clickRow(row);
        QCOMPARE(reports.count(), 1);
        QCOMPARE(reports.first(), (QVariantList{row, 0}));
    }
}

void TestMainWindowTable::clickInAnotherColumnDoesNothing()
{
    dropFiles(2);
    (*window)->tableCellClickedEva(0, 1);
    (*window)->tableCellClickedEva(1, -1);
    QVERIFY(window->settle());
    QCOMPARE(window->tickedRows(), paths({0, 1}));
    // Nor is anything left waiting for the next click.
    (*window)->tableCellClickedEva(1, 0);
    QVERIFY(window->settle());
    QCOMPARE(window->tickedRows(), paths({0}));
}

void TestMainWindowTable::clickOnARowThatIsNotThereDoesNothing()
{
    dropFiles(2);
    (*window)->tableCellClickedEva(2, 0);
    (*window)->tableCellClickedEva(-1, 0);
    QVERIFY(window->settle());
    QCOMPARE(window->tickedRows(), paths({0, 1}));
}

void TestMainWindowTable::clickTogglesTheRow_data()
{
    QTest::addColumn<bool>("onTickBox");
    QTest::newRow("name") << false;
    QTest::newRow("tick box") << true;
}

void TestMainWindowTable::clickTogglesTheRow()
{
    QFETCH(bool, onTickBox);
    const auto click = [&](int row) {
        onTickBox ? window->clickTickBox(row) : window->clickRow(row);
    };
    dropFiles(3);
    click(1);
    QVERIFY(window->settle());
    QCOMPARE(window->tickedRows(), paths({0, 2}));
    QVERIFY(!window->isTicked("selectAllCheckBox"));
    QVERIFY(window->isEnabled("crushButton"));
    click(0);
    click(2);
    QVERIFY(window->settle());
    QCOMPARE(window->tickedRows(), QStringList());
    QVERIFY(!window->isEnabled("crushButton"));
    QVERIFY(!window->isEnabled("removeButton"));
    click(2);
    QVERIFY(window->settle());
    QCOMPARE(window->tickedRows(), paths({2}));
    QVERIFY(window->isEnabled("crushButton"));
    click(0);
    click(1);
    QVERIFY(window->settle());
    QCOMPARE(window->tickedRows(), paths({0, 1, 2}));
    QVERIFY(window->isTicked("selectAllCheckBox"));
}

void TestMainWindowTable::removingARowThatIsNotThereDoesNothing()
{
    dropFiles(2);
    (*window)->removeRowFromMainTableEva(2);
    (*window)->removeRowFromMainTableEva(-1);
    QCOMPARE(window->rows(), paths({0, 1}));
}

void TestMainWindowTable::tickingARowThatIsNotThereDoesNothing()
{
    dropFiles(2);
    (*window)->setTableItemCheckBoxStateEva(2, false);
    (*window)->setTableItemCheckBoxStateEva(-1, false);
    QCOMPARE(window->tickedRows(), paths({0, 1}));
}

void TestMainWindowTable::progressDarkensTheRow_data()
{
    QTest::addColumn<int>("percent");
    QTest::addColumn<int>("width");
    QTest::newRow("1") << 1 << 7;
    QTest::newRow("50") << 50 << 388;
    QTest::newRow("99") << 99 << 768;
    QTest::newRow("100") << 100 << 776;
}

void TestMainWindowTable::progressDarkensTheRow()
{
    QFETCH(int, percent);
    dropFiles(2);
    const auto *overlay = window->cell(1)->findChild<QWidget *>(QStringLiteral("progressOverlay"));
    QVERIFY(!overlay->isVisible());
    (*window)->setTableRowHeightEva(1, percent);
    QVERIFY(overlay->isVisible());
    QTEST(overlay->width(), "width");
    QCOMPARE(overlay->height(), 30);
    QCOMPARE(window->table()->rowHeight(1), 30);
    (*window)->setTableRowHeightEva(1, 0);
    QVERIFY(!overlay->isVisible());
}

void TestMainWindowTable::progressOfARowThatIsNotThereIsIgnored()
{
    dropFiles(2);
    (*window)->setTableRowHeightEva(2, 50);
    (*window)->setTableRowHeightEva(3, 50);
    (*window)->setTableRowHeightEva(-1, 50);
    for (int row = 0; row < 2; ++row) {
        QVERIFY(!window->cell(row)
                     ->findChild<QWidget *>(QStringLiteral("progressOverlay"))
                     ->isVisible());
    }
}

void TestMainWindowTable::selectAllBoxFollowsWithoutAsking()
{
    dropFiles(2);
    (*window)->setSelectAllCheckBoxStateEva(false);
    QVERIFY(!window->isTicked("selectAllCheckBox"));
    (*window)->setSelectAllCheckBoxEnabledEva(false);
    QVERIFY(!window->isEnabled("selectAllCheckBox"));
    // Had the box passed its change on, the controller would have unticked the rows.
    QVERIFY(window->settle());
    QCOMPARE(window->tickedRows(), paths({0, 1}));
    (*window)->setSelectAllCheckBoxStateEva(true);
    (*window)->setSelectAllCheckBoxEnabledEva(true);
    QVERIFY(window->isTicked("selectAllCheckBox"));
    QVERIFY(window->isEnabled("selectAllCheckBox"));
}

void TestMainWindowTable::tableStaysInItsPlace_data()
{
    QTest::addColumn<int>("percent");
    QTest::newRow("0") << 0;
    QTest::newRow("50") << 50;
    QTest::newRow("100") << 100;
}

void TestMainWindowTable::tableStaysInItsPlace()
{
    QFETCH(int, percent);
    (*window)->slotMoveTable(30, percent);
    QCOMPARE(window->table()->geometry(), QRect(0, 0, 798, 394));
}

TEST_SUITE(table, TestMainWindowTable)
#include "table.moc"
