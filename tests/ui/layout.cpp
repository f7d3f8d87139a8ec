// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Where everything is in both windows before anything has happened, what it says
// and what state it is in.

#include "shownwindow.h"
#include "suites.h"
#include "windowtesthome.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTableWidget>
#include <QtTest>

using testsupport::ShownWindow;

class TestMainWindowLayout : public QObject
{
    Q_OBJECT

private slots:
    void windowIsFramelessAndOfOneSize();
    void windowOpensInTheMiddleOfTheScreen();
    void eachWidgetHasItsPlaceAndText_data();
    void eachWidgetHasItsPlaceAndText();
    void onlyWhatTheUserMayDoIsEnabled_data();
    void onlyWhatTheUserMayDoIsEnabled();
    void onlyOneTitleButtonIsVisible();
    void visibleHeadingDiffersFromTheTables();
    void headingLiesOverTheTables_data();
    void headingLiesOverTheTables();
    void labelsAreAligned_data();
    void labelsAreAligned();
};

void TestMainWindowLayout::windowIsFramelessAndOfOneSize()
{
    ShownWindow window;
    QVERIFY(window->windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(window->minimumSize(), QSize(800, 550));
    QCOMPARE(window->maximumSize(), QSize(800, 550));
    QCOMPARE(window->size(), QSize(800, 550));
    QCOMPARE(window->windowTitle(), QStringLiteral("Brenvale - 文件粉碎机"));
    QVERIFY(!window->windowIcon().isNull());
    QCOMPARE(window->windowIcon().pixmap(48, 48).toImage(),
             QIcon(QStringLiteral(":/images/logo")).pixmap(48, 48).toImage());
    QVERIFY(window->acceptDrops());
    QVERIFY(!window->isMaximized());
}

void TestMainWindowLayout::windowOpensInTheMiddleOfTheScreen()
{
    const QSize screen = QGuiApplication::primaryScreen()->availableGeometry().size();
    const MainWindow window;
    QCOMPARE(window.pos(), QPoint((screen.width() - 800) / 2, (screen.height() - 550) / 2));
    const auto *history = window.findChild<QWidget *>(QStringLiteral("historyWindow"));
    QCOMPARE(history->pos(), QPoint((screen.width() - 700) / 2, (screen.height() - 500) / 2));
}

void TestMainWindowLayout::eachWidgetHasItsPlaceAndText_data()
{
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QRect>("place");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *parent, const QRect &place,
                        const char *text = "") {
        QTest::newRow(name) << QString::fromLatin1(parent) << place << QString::fromUtf8(text);
    };
    const char *const window = "";
    row("background", window, {0, 0, 800, 550});
    row("titleBar", window, {0, 0, 800, 40});
    row("titleIcon", "titleBar", {16, 12, 16, 16});
    row("titleText", "titleBar", {40, 0, 380, 40}, "Brenvale - 文件粉碎机");
    row("minimizeButton", "titleBar", {736, 0, 27, 27});
    row("closeButton", "titleBar", {768, 0, 27, 27});
    row("logoLabel", window, {27, 54, 48, 48});
    row("headlineLabel", window, {84, 51, 600, 28}, "彻底粉碎无法删除的 \"顽固\" 文件或文件夹");
    row("subtitleLabel", window, {84, 79, 600, 28},
        "您可以点击添加文件或直接拖拽想要删除的文件或文件夹到本窗口");
    row("historyLink", window, {700, 84, 84, 20}, "查看粉碎记录");
    row("tableHost", window, {1, 115, 798, 394});
    row("mainTable", window, {1, 115, 798, 394});
    row("nameHeading", window, {1, 114, 300, 26}, "名称");
    row("pathHeading", window, {301, 114, 498, 26}, "文件路径");
    row("headingSeparator", window, {301, 114, 6, 26});
    row("bottomRule", window, {1, 508, 798, 1});
    row("selectAllCheckBox", window, {16, 516, 54, 27}, "全选");
    row("addButton", window, {100, 516, 96, 27}, "添加文件");
    row("removeButton", window, {200, 516, 96, 27}, "移除文件");
    row("crushButton", window, {705, 516, 76, 27}, "粉碎文件");
    row("emptyPanel", window, {240, 280, 400, 50});
    row("emptyIcon", "emptyPanel", {0, 0, 42, 44});
    row("emptyLabel", "emptyPanel", {52, 10, 400, 25},
        "试试拖拽想要删除的文件或文件夹到本窗口吧！");
    row("successPanel", window, {240, 280, 400, 50});
    row("successIcon", "successPanel", {0, 0, 45, 45});
    row("successLabel", "successPanel", {55, 10, 400, 25}, "文件粉碎成功！");

    row("historyTitleBar", "historyWindow", {0, 0, 698, 40});
    row("historyTitleIcon", "historyTitleBar", {16, 12, 16, 16});
    row("historyTitleText", "historyTitleBar", {40, 0, 380, 40}, "Brenvale - 文件粉碎记录");
    row("historyCloseButton", "historyTitleBar", {668, 0, 27, 27});
    row("historyTableHost", "historyWindow", {1, 42, 698, 415});
    row("historyTable", "historyTableHost", {0, 0, 698, 415});
    row("historyTimeHeading", "historyWindow", {1, 41, 150, 26}, "日期");
    row("historyNameHeading", "historyWindow", {151, 41, 200, 26}, "已粉碎文件或目录名");
    row("historyPathHeading", "historyWindow", {351, 41, 348, 26}, "路径");
    row("historyNameSeparator", "historyWindow", {151, 41, 6, 26});
    row("historyPathSeparator", "historyWindow", {351, 41, 6, 26});
    row("copyButton", "historyWindow", {490, 466, 90, 27}, "复制到剪贴板");
    row("clearHistoryButton", "historyWindow", {597, 466, 90, 27}, "清除历史记录");
}

void TestMainWindowLayout::eachWidgetHasItsPlaceAndText()
{
    QFETCH(QString, parent);
    ShownWindow window;
    const QWidget *widget = window.find(QTest::currentDataTag());
    QCOMPARE(widget->parentWidget(), parent.isEmpty() ? &*window : window.find(qPrintable(parent)));
    QTEST(widget->geometry(), "place");
    QTEST(widget->property("text").toString(), "text");
}

void TestMainWindowLayout::onlyWhatTheUserMayDoIsEnabled_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<bool>("visible");
    QTest::newRow("selectAllCheckBox") << false << true;
    QTest::newRow("removeButton") << false << true;
    QTest::newRow("crushButton") << false << true;
    QTest::newRow("addButton") << true << true;
    QTest::newRow("historyLink") << true << true;
    QTest::newRow("closeButton") << true << true;
    QTest::newRow("emptyPanel") << true << true;
    QTest::newRow("mainTable") << true << true;
    QTest::newRow("tableHost") << true << false;
    QTest::newRow("successPanel") << true << false;
    QTest::newRow("historyWindow") << true << false;
    QTest::newRow("minimizeButton") << true << false;
}

void TestMainWindowLayout::onlyWhatTheUserMayDoIsEnabled()
{
    ShownWindow window;
    const QWidget *widget = window.find(QTest::currentDataTag());
    QTEST(widget->isEnabled(), "enabled");
    QTEST(widget->isVisible(), "visible");
    QVERIFY(!window.isTicked("selectAllCheckBox"));
}

void TestMainWindowLayout::onlyOneTitleButtonIsVisible()
{
    ShownWindow window;
    QStringList visible;
    const auto buttons = window.find("titleBar")->findChildren<QPushButton *>();
    for (const QPushButton *button : buttons) {
        if (button->isVisible())
            visible.append(button->objectName());
    }
    QCOMPARE(visible, QStringList(QStringLiteral("closeButton")));
}

void TestMainWindowLayout::visibleHeadingDiffersFromTheTables()
{
    ShownWindow window;
    const QTableWidget *table = window.table();
    QCOMPARE(table->horizontalHeaderItem(0)->text(), QStringLiteral("名称"));
    QCOMPARE(table->horizontalHeaderItem(1)->text(), QStringLiteral("文件或文件夹路径"));
    QCOMPARE(window.textOf("nameHeading"), QStringLiteral("名称"));
    QCOMPARE(window.textOf("pathHeading"), QStringLiteral("文件路径"));
    // What the user sees in the middle of both columns' heading is the labels.
    QCOMPARE(window->childAt(100, 126), window.find("nameHeading"));
    QCOMPARE(window->childAt(500, 126), window.find("pathHeading"));
}

void TestMainWindowLayout::headingLiesOverTheTables_data()
{
    QTest::addColumn<QString>("top");
    QTest::addColumn<QString>("table");
    QTest::addColumn<QStringList>("headings");
    QTest::newRow("main") << QString() << QStringLiteral("mainTable")
                          << QStringList{QStringLiteral("nameHeading"),
                                         QStringLiteral("pathHeading")};
    QTest::newRow("history") << QStringLiteral("historyWindow") << QStringLiteral("historyTable")
                             << QStringList{QStringLiteral("historyTimeHeading"),
                                            QStringLiteral("historyNameHeading"),
                                            QStringLiteral("historyPathHeading")};
}

void TestMainWindowLayout::headingLiesOverTheTables()
{
    QFETCH(QString, top);
    QFETCH(QString, table);
    QFETCH(QStringList, headings);
    ShownWindow window;
    window->slotShowHistoryEva();
    const QWidget *shown = top.isEmpty() ? &*window : window.find(qPrintable(top));
    const QHeaderView *header = window.find<QTableWidget>(qPrintable(table))->horizontalHeader();
    QRegion uncovered(QRect(header->mapTo(shown, QPoint()), header->size()));
    for (const QString &heading : qAsConst(headings))
        uncovered -= window.find(qPrintable(heading))->geometry();
    QVERIFY(uncovered.isEmpty());
}

void TestMainWindowLayout::labelsAreAligned_data()
{
    QTest::addColumn<int>("alignment");
    QTest::addColumn<int>("margin");
    const int middle = Qt::AlignLeft | Qt::AlignVCenter;
    const int top = Qt::AlignLeft | Qt::AlignTop;
    QTest::newRow("titleText") << middle << 0;
    QTest::newRow("historyTitleText") << middle << 0;
    QTest::newRow("emptyLabel") << top << 3;
    QTest::newRow("successLabel") << top << 3;
}

void TestMainWindowLayout::labelsAreAligned()
{
    ShownWindow window;
    const auto *label = window.find<QLabel>(QTest::currentDataTag());
    QTEST(static_cast<int>(label->alignment()), "alignment");
    QTEST(label->margin(), "margin");
}

TEST_SUITE(layout, TestMainWindowLayout)
#include "layout.moc"
