// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Both windows before anything has happened: what the class declares, where each widget is, what it
// says, which style sheet it has and how it is set up.

#include "suites.h"
#include "widgets/stylesheets.h"
#include "windowtest.h"

#include <QApplication>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QtTest>

using namespace testsupport;

namespace
{

QPoint middleOfTheScreen(int width, int height)
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    return {(screen.width() - width) / 2, (screen.height() - height) / 2};
}

/// Name, types and the parameters' names, in their order.
QByteArrayList declarationsOf(QMetaMethod::MethodType type)
{
    const QMetaObject &meta = MainWindow::staticMetaObject;
    QByteArrayList declarations;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        const QMetaMethod method = meta.method(index);
        if (method.methodType() != type)
            continue;
        QByteArrayList parameters = method.parameterTypes();
        for (int at = 0; at < parameters.size(); ++at)
            parameters[at] = (parameters[at] + ' ' + method.parameterNames().at(at)).trimmed();
        declarations.append(method.name() + '(' + parameters.join(", ") + ')');
    }
    return declarations;
}

} // namespace

class TestLayout : public WindowTest
{
    Q_OBJECT

private slots:
    void windowDeclaresItsSlotsAndOneSignalInOrder();
    void mainWindowIsFramelessAndOfOneSize();
    void historyWindowIsAWindowOfItsOwn();
    void eachWidgetHasItsPlaceTextAndSheet();
    void onlyWhatTheUserMayDoIsEnabledAndShown();
    void onlyOneTitleButtonIsVisible();
    void headingLabelsCoverTheTablesOwnHeadings();
    void titlesAndPanelTextsAreAligned();
    void buttonsTakeNoFocusAndHaveIconsOrNames();
    void tablesAreSetUpForRows_data();
    void tablesAreSetUpForRows();
    void rowsKeepTheirHeightWithALargeFont();
};

/// Whoever talks to it by meta-object counts on the order.
void TestLayout::windowDeclaresItsSlotsAndOneSignalInOrder()
{
    const auto expected =
        QByteArray(
            "windowQuit()|windowMaxi()|windowMini()|slotShowHistoryEva()|copyToClipboardEva()|"
            "addEva()|removeSomeFilesEva()|setSelectAllCheckBoxEnabledEva(bool)|"
            "setSelectAllCheckBoxStateEva(bool)|setRemoveButtonEnabledEva(bool)|"
            "setCrushButtonEnabledEva(bool)|addRowToMainTableEva(QString fullName)|"
            "removeRowFromMainTableEva(int rowIndex)|selectAllEva(bool state)|"
            "setTableItemCheckBoxStateEva(int, bool)|crushFilesEva()|removeAllFromHistoryEva()|"
            "historyTableAddItemEva(QString, QString fileName, QString)|"
            "removeRowFromHistoryTableEva(int rowIndex)|setTableRowHeightEva(int, int percent)|"
            "finishOneFileEva(QString)|finishAllEva(int)|setCrushStartedEva(int b)|"
            "slotMoveTable(int x, int y)|slotClipboardSetTextEva(QString text)|"
            "setHistoryButtonEnabledEva(bool, int n)|tableCellClickedEva(int r, int c)|"
            "alertDialogEva(uint)|showResultDialogEva(uint, uint, uint)")
            .split('|');
    QCOMPARE(declarationsOf(QMetaMethod::Slot), expected);
    QCOMPARE(declarationsOf(QMetaMethod::Signal), QByteArrayList{"quit()"});
    QCOMPARE(MainWindow::staticMetaObject.superClass(), &QFrame::staticMetaObject);
}

void TestLayout::mainWindowIsFramelessAndOfOneSize()
{
    const MainWindow &main = *window;
    QCOMPARE(main.pos(), middleOfTheScreen(800, 550));
    QVERIFY(main.windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(main.minimumSize(), QSize(800, 550));
    QCOMPARE(main.maximumSize(), QSize(800, 550));
    QCOMPARE(main.size(), QSize(800, 550));
    QCOMPARE(main.windowTitle(), QStringLiteral("Brenvale - 文件粉碎机"));
    QCOMPARE(main.windowIcon().pixmap(48, 48).toImage(),
             QIcon(QStringLiteral(":/images/logo")).pixmap(48, 48).toImage());
    QVERIFY(main.acceptDrops());
}

void TestLayout::historyWindowIsAWindowOfItsOwn()
{
    const QWidget *history = find("historyWindow");
    QCOMPARE(history->pos(), middleOfTheScreen(700, 500));
    QCOMPARE(history->parentWidget(), window.get());
    QCOMPARE(history->windowType(), Qt::Dialog);
    QVERIFY(history->windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(history->windowModality(), Qt::WindowModal);
    QCOMPARE(history->minimumSize(), QSize(700, 500));
    QCOMPARE(history->maximumSize(), QSize(700, 500));
    QCOMPARE(history->styleSheet(), QStringLiteral("background-image:url(:/images/bk_history)"));
}

void TestLayout::eachWidgetHasItsPlaceTextAndSheet()
{
    using namespace stylesheets;
    const auto image = [](const char *name) { return backgroundImage(QLatin1String(name)); };
    const QString close = imageButton(QStringLiteral("btn_quit"));
    const QString minimize = imageButton(QStringLiteral("btn_mini"));
    const char *const main = nullptr;
    const auto check = [&](const char *name, const char *parent, const QRect &place,
                           const QString &sheet, const char *text = "") {
        const QWidget *widget = find(name);
        const QWidget *expected = parent == nullptr ? window.get() : find(parent);
        QVERIFY2(widget->parentWidget() == expected, name);
        QVERIFY2(widget->geometry() == place, name);
        QVERIFY2(widget->styleSheet() == sheet, name);
        QCOMPARE(textOf(name), QString::fromUtf8(text));
    };
    check("background", main, {0, 0, 800, 550}, image("bk"));
    check("titleBar", main, {0, 0, 800, 40}, {});
    check("titleIcon", "titleBar", {16, 12, 16, 16}, image("icon_logo"));
    check("titleText", "titleBar", {40, 0, 380, 40}, mainTitleText(), "Brenvale - 文件粉碎机");
    check("minimizeButton", "titleBar", {736, 0, 27, 27}, minimize);
    check("closeButton", "titleBar", {768, 0, 27, 27}, close);
    check("logoLabel", main, {27, 54, 48, 48}, image("logo"));
    check("headlineLabel", main, {84, 51, 600, 28}, headerText(),
          "彻底粉碎无法删除的 \"顽固\" 文件或文件夹");
    check("subtitleLabel", main, {84, 79, 600, 28}, headerText(),
          "您可以点击添加文件或直接拖拽想要删除的文件或文件夹到本窗口");
    check("historyLink", main, {700, 84, 84, 20}, historyLink(), "查看粉碎记录");
    check("tableHost", main, {1, 115, 798, 394}, {});
    check("mainTable", main, {1, 115, 798, 394}, stylesheets::table());
    check("nameHeading", main, {1, 114, 300, 26}, firstHeading(), "名称");
    check("pathHeading", main, {301, 114, 498, 26}, laterHeading(), "文件路径");
    check("headingSeparator", main, {301, 114, 6, 26}, image("sp_table_head"));
    check("bottomRule", main, {1, 508, 798, 1}, bottomRule());
    check("selectAllCheckBox", main, {16, 516, 54, 27}, {}, "全选");
    check("addButton", main, {100, 516, 96, 27}, linkButton(), "添加文件");
    check("removeButton", main, {200, 516, 96, 27}, linkButton(), "移除文件");
    check("crushButton", main, {705, 516, 76, 27}, crushButton(), "粉碎文件");
    check("emptyPanel", main, {240, 280, 400, 50}, {});
    check("emptyIcon", "emptyPanel", {0, 0, 42, 44}, image("ico_smile"));
    check("emptyLabel", "emptyPanel", {52, 10, 400, 25}, panelText(),
          "试试拖拽想要删除的文件或文件夹到本窗口吧！");
    check("successPanel", main, {240, 280, 400, 50}, {});
    check("successIcon", "successPanel", {0, 0, 45, 45}, image("ico_ok"));
    check("successLabel", "successPanel", {55, 10, 400, 25}, panelText(), "文件粉碎成功！");
    check("historyTitleBar", "historyWindow", {0, 0, 698, 40}, {});
    check("historyTitleIcon", "historyTitleBar", {16, 12, 16, 16}, image("icon_logo"));
    check("historyTitleText", "historyTitleBar", {40, 0, 380, 40}, titleText(),
          "Brenvale - 文件粉碎记录");
    check("historyCloseButton", "historyTitleBar", {668, 0, 27, 27}, close);
    check("historyTableHost", "historyWindow", {1, 42, 698, 415}, stylesheets::table());
    check("historyTable", "historyTableHost", {0, 0, 698, 415}, stylesheets::table());
    check("historyTimeHeading", "historyWindow", {1, 41, 150, 26}, firstHeading(), "日期");
    check("historyNameHeading", "historyWindow", {151, 41, 200, 26}, laterHeading(),
          "已粉碎文件或目录名");
    check("historyPathHeading", "historyWindow", {351, 41, 348, 26}, laterHeading(), "路径");
    check("historyNameSeparator", "historyWindow", {151, 41, 6, 26}, image("sp_table_head"));
    check("historyPathSeparator", "historyWindow", {351, 41, 6, 26}, image("sp_table_head"));
    check("copyButton", "historyWindow", {490, 466, 90, 27}, historyButton(), "复制到剪贴板");
    check("clearHistoryButton", "historyWindow", {597, 466, 90, 27}, historyButton(),
          "清除历史记录");
}

void TestLayout::onlyWhatTheUserMayDoIsEnabledAndShown()
{
    for (const char *name : {"selectAllCheckBox", "removeButton", "crushButton"})
        QVERIFY2(!isEnabled(name), name);
    for (const char *name : {"addButton", "historyLink", "closeButton", "mainTable"})
        QVERIFY2(isEnabled(name) && find(name)->isVisible(), name);
    QVERIFY(!isTicked("selectAllCheckBox"));
    QVERIFY(find("emptyPanel")->isVisible());
    for (const char *name : {"tableHost", "successPanel", "historyWindow", "minimizeButton"})
        QVERIFY2(!find(name)->isVisible(), name);
}

void TestLayout::onlyOneTitleButtonIsVisible()
{
    const auto buttons = find("titleBar")->findChildren<QPushButton *>();
    for (const QPushButton *button : buttons)
        QCOMPARE(button->isVisible(), button == find("closeButton"));
}

void TestLayout::headingLabelsCoverTheTablesOwnHeadings()
{
    window->slotShowHistoryEva();
    const auto uncovered = [&](const char *name, const QByteArrayList &headings) {
        const auto *table = find<QTableWidget>(name);
        const QHeaderView *header = table->horizontalHeader();
        QRegion heading(QRect(header->mapTo(table->window(), QPoint()), header->size()));
        for (const QByteArray &label : headings)
            heading -= find(label.constData())->geometry();
        return heading;
    };
    QVERIFY(uncovered("mainTable", {"nameHeading", "pathHeading"}).isEmpty());
    QVERIFY(uncovered("historyTable",
                      {"historyTimeHeading", "historyNameHeading", "historyPathHeading"})
                .isEmpty());
    QCOMPARE(window->childAt(100, 126), find("nameHeading"));
    QCOMPARE(window->childAt(500, 126), find("pathHeading"));
    // Which read otherwise.
    QCOMPARE(table()->horizontalHeaderItem(0)->text(), QStringLiteral("名称"));
    QCOMPARE(table()->horizontalHeaderItem(1)->text(), QStringLiteral("文件或文件夹路径"));
}

void TestLayout::titlesAndPanelTextsAreAligned()
{
    for (const char *name : {"titleText", "historyTitleText"})
        QCOMPARE(find<QLabel>(name)->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
    for (const char *name : {"emptyLabel", "successLabel"}) {
        QCOMPARE(find<QLabel>(name)->alignment(), Qt::AlignLeft | Qt::AlignTop);
        QCOMPARE(find<QLabel>(name)->margin(), 3);
    }
}

void TestLayout::buttonsTakeNoFocusAndHaveIconsOrNames()
{
    const QStringList notFlat = {QStringLiteral("copyButton"),
                                 QStringLiteral("clearHistoryButton")};
    const auto buttons = window->findChildren<QPushButton *>();
    QCOMPARE(buttons.size(), 9);
    for (const QPushButton *button : buttons) {
        QCOMPARE(button->focusPolicy(), Qt::NoFocus);
        QCOMPARE(button->isFlat(), !notFlat.contains(button->objectName()));
    }
    const auto iconOf = [](const QIcon &icon) { return icon.pixmap(16, 16).toImage(); };
    QCOMPARE(iconOf(find<QPushButton>("addButton")->icon()),
             iconOf(QIcon(QStringLiteral(":/images/icon_add"))));
    QCOMPARE(iconOf(find<QPushButton>("removeButton")->icon()),
             iconOf(QIcon(QStringLiteral(":/images/icon_remove"))));
    QCOMPARE(find("closeButton")->accessibleName(), QStringLiteral("关闭"));
    QCOMPARE(find("historyCloseButton")->accessibleName(), QStringLiteral("关闭"));
    QCOMPARE(find("minimizeButton")->accessibleName(), QStringLiteral("最小化"));
}

void TestLayout::tablesAreSetUpForRows_data()
{
    QTest::addColumn<QList<int>>("columnWidths");
    QTest::addColumn<QString>("scrollBarSheet");
    QTest::newRow("mainTable") << QList<int>{778, 20} << stylesheets::mainScrollBar();
    QTest::newRow("historyTable") << QList<int>{698} << stylesheets::historyScrollBar();
}

void TestLayout::tablesAreSetUpForRows()
{
    QFETCH(QList<int>, columnWidths);
    const auto *table = find<QTableWidget>(QTest::currentDataTag());
    const QHeaderView *header = table->horizontalHeader();
    QCOMPARE(table->rowCount(), 0);
    QCOMPARE(table->columnCount(), columnWidths.size());
    for (int column = 0; column < columnWidths.size(); ++column) {
        QCOMPARE(table->columnWidth(column), columnWidths.at(column));
        QCOMPARE(header->sectionResizeMode(column), QHeaderView::Fixed);
    }
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        QCOMPARE(table->palette().color(group, QPalette::Base), QColor(255, 255, 255, 0));
    QCOMPARE(table->selectionMode(), QAbstractItemView::NoSelection);
    QCOMPARE(table->selectionBehavior(), QAbstractItemView::SelectRows);
    QVERIFY(!table->showGrid());
    QVERIFY(!table->hasAutoScroll());
    QVERIFY(table->verticalHeader()->isHidden());
    QCOMPARE(header->minimumHeight(), 25);
    QCOMPARE(header->maximumHeight(), 25);
    QCOMPARE(header->defaultAlignment(), Qt::AlignLeft);
    QCOMPARE(table->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(table->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    QTEST(table->verticalScrollBar()->styleSheet(), "scrollBarSheet");
    const auto *history = find<QTableWidget>("historyTable");
    QVERIFY(history->horizontalHeaderItem(0) == nullptr);
    QCOMPARE(history->verticalHeader()->sectionResizeMode(0), QHeaderView::Fixed);
}

void TestLayout::rowsKeepTheirHeightWithALargeFont()
{
    const QFont usual = QApplication::font();
    const auto restore = qScopeGuard([usual] { QApplication::setFont(usual); });
    QApplication::setFont(QFont(usual.family(), 36));
    show();
    window->addRowToMainTableEva(QStringLiteral("/a"));
    addToHistory(QStringLiteral("n"));
    QCOMPARE(table()->rowHeight(0), 30);
    QCOMPARE(table()->columnWidth(1), 20);
    QCOMPARE(find<QTableWidget>("historyTable")->rowHeight(0), 30);
}

TEST_SUITE(layout, TestLayout)
#include "layout.moc"
