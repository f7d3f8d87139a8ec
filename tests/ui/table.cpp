// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The main table: how rows come, go and are drawn, and how they are selected. Rows come
// from drops on the window, or from the slots where the controller has to stay out of it.

#include "suites.h"
#include "widgets/zztablecell.h"
#include "windowtest.h"

#include <QIcon>
#include <QLabel>
#include <QSet>
#include <QSignalSpy>
#include <QTableWidget>
#include <QtTest>

using testsupport::entryExists;
using testsupport::WindowTest;

namespace
{

/// Notes which widgets are painted.
class PaintLog : public QObject
{
public:
    QSet<QObject *> painted;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            painted.insert(watched);
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

class TestTable : public WindowTest
{
    Q_OBJECT

private slots:
    void firstRowHidesBothPanels();
    void tickingARowHidesBothPanels();
    void rowsShowTheProgramsOwnIcons_data();
    void rowsShowTheProgramsOwnIcons();
    void rowIsThirtyPixelsHighAndFillsTheFirstColumn();
    void rowsThatComeTogetherAreAllDrawn();
    void cellsBehindARemovedRowReportTheirNewRows();
    void progressDarkensTheRow();
    void rowsThatAreNotThereAreIgnored();
    void clickInAnotherColumnDoesNothing();
    void clickTogglesTheRow_data();
    void clickTogglesTheRow();
    void selectAllTicksAndUnticksEveryRow();
    void selectAllBoxFollowsWithoutAsking();
    void tickedRowsAreRemoved();
    void tableStaysInItsPlace();

private:
    QWidget *overlayOf(int row) const
    {
        return window->cell(row)->findChild<QWidget *>(QStringLiteral("progressOverlay"));
    }
    void settle() { QVERIFY(window->settle()); }
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

void TestTable::rowsShowTheProgramsOwnIcons_data()
{
    QTest::addColumn<QString>("image");
    const QString file = QStringLiteral(":/images/ico_file");
    const QString folder = QStringLiteral(":/images/ico_folder");
    QTest::newRow("file.pdf") << file;
    QTest::newRow("folder.txt") << folder;
    QTest::newRow("link to a folder") << folder;
    QTest::newRow("link to nothing") << file;
    QTest::newRow("nothing there") << file;
}

void TestTable::rowsShowTheProgramsOwnIcons()
{
    QFETCH(QString, image);
    tree->makeFile(QStringLiteral("file.pdf"), 1);
    tree->makeLink(QStringLiteral("link to a folder"),
                   tree->makeFolder(QStringLiteral("folder.txt")));
    tree->makeLink(QStringLiteral("link to nothing"), QStringLiteral("nowhere"));
    mainWindow->addRowToMainTableEva(tree->path(QString::fromLatin1(QTest::currentDataTag())));
    const auto *icon = window->cell(0)->findChild<QLabel *>(QStringLiteral("iconLabel"));
    QCOMPARE(icon->property("pixmap").value<QPixmap>().toImage(),
             QIcon(image).pixmap(16, 16).toImage());
}

void TestTable::rowIsThirtyPixelsHighAndFillsTheFirstColumn()
{
    drop(makeFiles(3));
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
    constexpr int rows = 8; // fewer than the view holds
    PaintLog log;
    const auto addRow = [&](int row) {
        mainWindow->addRowToMainTableEva(QStringLiteral("/nowhere/%1").arg(row));
        window->cell(row)->installEventFilter(&log);
    };
    for (int row = 0; row < rows; ++row)
        addRow(row);
    QVERIFY(log.painted.isEmpty());
    QTRY_COMPARE(log.painted.size(), rows);
    QVERIFY(window->table()->updatesEnabled());
    addRow(rows);
    QTRY_VERIFY(log.painted.contains(window->cell(rows)));
}

void TestTable::cellsBehindARemovedRowReportTheirNewRows()
{
    QStringList files = makeFiles(5);
    drop(files);
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
    drop(makeFiles(2));
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
    const QStringList files = makeFiles(2);
    drop(files);
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
    const QStringList files = makeFiles(2);
    drop(files);
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
    const QStringList files = makeFiles(3);
    drop(files);
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

void TestTable::selectAllTicksAndUnticksEveryRow()
{
    const QStringList files = makeFiles(2);
    drop(files);
    window->click("selectAllCheckBox");
    settle();
    QCOMPARE(window->tickedRows(), QStringList());
    QVERIFY(!window->isEnabled("crushButton"));
    QVERIFY(!window->isEnabled("removeButton"));
    window->clickRow(1);
    settle();
    QVERIFY(!window->isTicked("selectAllCheckBox"));
    window->click("selectAllCheckBox");
    settle();
    QCOMPARE(window->tickedRows(), files);
    QVERIFY(window->isEnabled("crushButton"));
    QVERIFY(window->isEnabled("removeButton"));
}

void TestTable::selectAllBoxFollowsWithoutAsking()
{
    const QStringList files = makeFiles(2);
    drop(files);
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
    const QStringList files = makeFiles(3);
    drop(files);
    window->clickRow(1);
    settle();
    window->click("removeButton");
    settle();
    QCOMPARE(window->rows(), files.mid(1, 1));
    QCOMPARE(window->tickedRows(), QStringList());
    QVERIFY(!window->isEnabled("removeButton"));
    window->clickRow(0);
    settle();
    window->click("removeButton");
    settle();
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
