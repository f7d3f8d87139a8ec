// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// How buttons, tables and the history window are set up: flags, headers, palettes
// and names for those who cannot see them.

#include "shownwindow.h"
#include "suites.h"
#include "windowtesthome.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

using testsupport::ShownWindow;

class TestMainWindowSetup : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QApplication::setFont(usualFont); }

    void buttonsAreFlatAndTakeNoFocus_data();
    void buttonsAreFlatAndTakeNoFocus();
    void mainTableIsSetUpForRows();
    void historyTableIsSetUpForRows();
    void rowsKeepTheirHeightWithALargeFont();
    void historyWindowIsAWindowOfItsOwn();
    void buttonsWithoutWordsHaveNames_data();
    void buttonsWithoutWordsHaveNames();

private:
    const QFont usualFont = QApplication::font();
};

void TestMainWindowSetup::buttonsAreFlatAndTakeNoFocus_data()
{
    QTest::addColumn<bool>("flat");
    QTest::newRow("minimizeButton") << true;
    QTest::newRow("closeButton") << true;
    QTest::newRow("historyLink") << true;
    QTest::newRow("addButton") << true;
    QTest::newRow("removeButton") << true;
    QTest::newRow("crushButton") << true;
    QTest::newRow("historyCloseButton") << true;
    QTest::newRow("copyButton") << false;
    QTest::newRow("clearHistoryButton") << false;
}

void TestMainWindowSetup::buttonsAreFlatAndTakeNoFocus()
{
    ShownWindow window;
    const auto *button = window.find<QPushButton>(QTest::currentDataTag());
    QTEST(button->isFlat(), "flat");
    QCOMPARE(button->focusPolicy(), Qt::NoFocus);
}

void TestMainWindowSetup::mainTableIsSetUpForRows()
{
    ShownWindow window;
    const QTableWidget *table = window.table();
    QCOMPARE(table->rowCount(), 0);
    QCOMPARE(table->columnCount(), 2);
    QCOMPARE(table->columnWidth(0), 778);
    QCOMPARE(table->columnWidth(1), 20);
    QCOMPARE(table->palette().color(QPalette::Active, QPalette::Base), QColor(255, 255, 255, 0));
    QCOMPARE(table->palette().color(QPalette::Inactive, QPalette::Base), QColor(255, 255, 255, 0));
    QCOMPARE(table->palette().color(QPalette::Disabled, QPalette::Base), QColor(255, 255, 255, 0));
    QCOMPARE(table->selectionMode(), QAbstractItemView::NoSelection);
    QCOMPARE(table->selectionBehavior(), QAbstractItemView::SelectRows);
    QVERIFY(!table->showGrid());
    QVERIFY(!table->hasAutoScroll());
    QVERIFY(!table->verticalHeader()->isVisible());
    const QHeaderView *header = table->horizontalHeader();
    QCOMPARE(header->height(), 25);
    QCOMPARE(header->defaultAlignment(), Qt::AlignLeft);
    QCOMPARE(header->sectionResizeMode(0), QHeaderView::Fixed);
    QCOMPARE(header->sectionResizeMode(1), QHeaderView::Fixed);
    QCOMPARE(table->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(table->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
}

void TestMainWindowSetup::historyTableIsSetUpForRows()
{
    ShownWindow window;
    const auto *table = window.find<QTableWidget>("historyTable");
    QCOMPARE(table->rowCount(), 0);
    QCOMPARE(table->columnCount(), 1);
    QCOMPARE(table->columnWidth(0), 698);
    QCOMPARE(table->palette().color(QPalette::Active, QPalette::Base), QColor(255, 255, 255, 0));
    QCOMPARE(table->palette().color(QPalette::Inactive, QPalette::Base), QColor(255, 255, 255, 0));
    QCOMPARE(table->palette().color(QPalette::Disabled, QPalette::Base), QColor(255, 255, 255, 0));
    QCOMPARE(table->selectionMode(), QAbstractItemView::NoSelection);
    QCOMPARE(table->selectionBehavior(), QAbstractItemView::SelectRows);
    QVERIFY(!table->showGrid());
    QVERIFY(!table->hasAutoScroll());
    QVERIFY(table->verticalHeader()->isHidden());
    QCOMPARE(table->verticalHeader()->sectionResizeMode(0), QHeaderView::Fixed);
    const QHeaderView *header = table->horizontalHeader();
    QCOMPARE(header->minimumHeight(), 25);
    QCOMPARE(header->maximumHeight(), 25);
    QCOMPARE(header->defaultAlignment(), Qt::AlignLeft);
    QCOMPARE(header->sectionResizeMode(0), QHeaderView::Fixed);
    QVERIFY(table->horizontalHeaderItem(0) == nullptr);
    QCOMPARE(table->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(table->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
}

void TestMainWindowSetup::rowsKeepTheirHeightWithALargeFont()
{
    QFont large = usualFont;
    large.setPixelSize(48);
    QApplication::setFont(large);
    ShownWindow window;
    window->addRowToMainTableEva(QStringLiteral("/a"));
    window->historyTableAddItemEva(QStringLiteral("t"), QStringLiteral("n"), QStringLiteral("p"));
    QCOMPARE(window.table()->rowHeight(0), 30);
    QCOMPARE(window.table()->columnWidth(1), 20);
    QCOMPARE(window.find<QTableWidget>("historyTable")->rowHeight(0), 30);
}

void TestMainWindowSetup::historyWindowIsAWindowOfItsOwn()
{
    ShownWindow window;
    const QWidget *history = window.find("historyWindow");
    QCOMPARE(history->parentWidget(), &*window);
    QVERIFY(history->isWindow());
    QCOMPARE(history->windowType(), Qt::Dialog);
    QVERIFY(history->windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(history->windowModality(), Qt::WindowModal);
    QCOMPARE(history->minimumSize(), QSize(700, 500));
    QCOMPARE(history->maximumSize(), QSize(700, 500));
}

void TestMainWindowSetup::buttonsWithoutWordsHaveNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("closeButton") << QStringLiteral("关闭");
    QTest::newRow("minimizeButton") << QStringLiteral("最小化");
    QTest::newRow("historyCloseButton") << QStringLiteral("关闭");
}

void TestMainWindowSetup::buttonsWithoutWordsHaveNames()
{
    ShownWindow window;
    QTEST(window.find(QTest::currentDataTag())->accessibleName(), "name");
}

TEST_SUITE(setup, TestMainWindowSetup)
#include "setup.moc"
