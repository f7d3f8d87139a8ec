// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Which style sheet each widget of both windows wears, word by word.

#include "shownwindow.h"
#include "suites.h"
#include "windowtesthome.h"

#include <QAbstractButton>
#include <QIcon>
#include <QImage>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTableWidget>
#include <QtTest>

using testsupport::ShownWindow;

namespace
{

const char *const linkSheet =
    "QPushButton{color:#00f;border:none;}QPushButton:hover{color:#33f;border:none;}"
    "QPushButton:pressed{color:#66f;border:none;}"
    "QPushButton:disabled{color:#aaa;border:none;}";

const char *const historyLinkSheet = "QPushButton{color:#00f;font-size:13px;border:none;}"
                                     "QPushButton:hover{color:#33f;font-size:13px;border:none;}"
                                     "QPushButton:pressed{color:#66f;font-size:13px;border:none;}";

const char *const closeSheet =
    "QPushButton{background-image:url(:/images/btn_quit_s1);border:none;}"
    "QPushButton:hover{background-image:url(:/images/btn_quit_s2);border:none;}"
    "QPushButton:pressed{background-image:url(:/images/btn_quit_s3);border:none;}";

const char *const minimizeSheet =
    "QPushButton{background-image:url(:/images/btn_mini_s1);border:none;}"
    "QPushButton:hover{background-image:url(:/images/btn_mini_s2);border:none;}"
    "QPushButton:pressed{background-image:url(:/images/btn_mini_s3);border:none;}";

const char *const crushSheet =
    "QPushButton{background-image:url(:/images/btn_green_s1);border:none;color:#fff;}"
    "QPushButton:hover{background-image:url(:/images/btn_green_s2);border:none;color:#fff;}"
    "QPushButton:pressed{background-image:url(:/images/btn_green_s3);border:none;"
    "color:#fff;}"
    "QPushButton:disabled{background-image:url(:/images/btn_green_s4);border:none;"
    "color:#aaa;}";

const char *const historyButtonSheet =
    "QPushButton{background-image:url(:/images/btn_gray_90_s1);border:none;font-size:12px;"
    "font-weight:normal;color:#444;}"
    "QPushButton:hover{background-image:url(:/images/btn_gray_90_s2);border:none;"
    "font-size:12px;font-weight:normal;color:#444;}"
    "QPushButton:pressed{background-image:url(:/images/btn_gray_90_s3);border:none;"
    "font-size:12px;font-weight:normal;color:#444;}"
    "QPushButton:disabled{background-image:url(:/images/btn_gray_90_s1);border:none;"
    "font-size:12px;font-weight:normal;color:#aaa;}";

const char *const mainScrollBarSheet =
    "QScrollBar:vertical{background:none;margin-top:25px;margin-bottom:1px;}"
    "QScrollBar::sub-line{background:none;border:none;height:0px;}"
    "QScrollBar::sub-page{background:none;border:none;}"
    "QScrollBar::add-line{background:none;border:none;height:0px;}"
    "QScrollBar::add-page{background:none;border:none;}"
    "QScrollBar::down-arrow{background:none;border:none;}"
    "QScrollBar::up-arrow{background:none;border:none;}"
    "QScrollBar::drop-down{background:none;border:none;}"
    "QScrollBar::drop-up{background:none;border:none;}"
    "QScrollBar::down-button{background:none;border:none;height:25px;}"
    "QScrollBar::up-button{background:none;border:none;height:25px;}"
    "QScrollBar::handle{background:#eee;border:1px solid #aaa;border-radius:6px;"
    "min-height:20px;}";

const char *const historyScrollBarSheet =
    "QScrollBar:vertical{background:transparent;margin-top:25px;margin-bottom:0px;"
    "border:none;}QScrollBar::sub-line{background:none;border:none;height:0px;}"
    "QScrollBar::sub-page{background:none;border:none;}"
    "QScrollBar::add-line{background:none;border:none;height:0px;}"
    "QScrollBar::add-page{background:none;border:none;}"
    "QScrollBar::down-arrow{background:none;border:none;}"
    "QScrollBar::up-arrow{background:none;border:none;}"
    "QScrollBar::drop-down{background:none;border:none;}"
    "QScrollBar::drop-up{background:none;border:none;}"
    "QScrollBar::down-button{background:none;border:none;height:25px;}"
    "QScrollBar::up-button{background:none;border:none;height:25px;}"
    "QScrollBar::handle{background:#eee;border:1px solid #aaa;border-radius:6px;"
    "min-height:20px;}";

} // namespace

class TestMainWindowStyles : public QObject
{
    Q_OBJECT

private slots:
    void eachWidgetWearsItsSheet_data();
    void eachWidgetWearsItsSheet();
    void imagesNamedInSheetsExist_data();
    void imagesNamedInSheetsExist();
    void scrollBarsWearTheTablesSheets();
    void linkButtonsShowTheirIcons();
};

void TestMainWindowStyles::eachWidgetWearsItsSheet_data()
{
    QTest::addColumn<QString>("sheet");
    const auto row = [](const char *name, const char *sheet) {
        QTest::newRow(name) << QString::fromLatin1(sheet);
    };
    row("background", "background-image:url(:/images/bk)");
    row("titleBar", "");
    row("titleIcon", "background-image:url(:/images/icon_logo)");
    row("titleText", "color:#ffffff;border:none;font-size:14px");
    row("logoLabel", "background-image:url(:/images/logo)");
    row("headlineLabel", "color:#333333;font-size:13px");
    row("subtitleLabel", "color:#333333;font-size:13px");
    row("tableHost", "");
    row("mainTable", "border:none;background:none;");
    row("nameHeading", "background-image:url(:/images/bk_table_head);padding-left:10px;");
    row("pathHeading", "background-image:url(:/images/bk_table_head);padding-left:16px;");
    row("headingSeparator", "background-image:url(:/images/sp_table_head)");
    row("bottomRule", "background-color:#eee");
    row("selectAllCheckBox", "");
    row("emptyPanel", "");
    row("emptyIcon", "background-image:url(:/images/ico_smile)");
    row("emptyLabel", "color:#333333;font-size:14px");
    row("successPanel", "");
    row("successIcon", "background-image:url(:/images/ico_ok)");
    row("successLabel", "color:#333333;font-size:14px");
    row("historyWindow", "background-image:url(:/images/bk_history)");
    row("historyTitleBar", "");
    row("historyTitleIcon", "background-image:url(:/images/icon_logo)");
    row("historyTitleText", "color:#ffffff;border:none;background:none;font-size:14px;");
    row("historyTableHost", "border:none;background:none;");
    row("historyTable", "border:none;background:none;");
    row("historyTimeHeading", "background-image:url(:/images/bk_table_head);padding-left:10px;");
    row("historyNameHeading", "background-image:url(:/images/bk_table_head);padding-left:16px;");
    row("historyPathHeading", "background-image:url(:/images/bk_table_head);padding-left:16px;");
    row("historyNameSeparator", "background-image:url(:/images/sp_table_head)");
    row("historyPathSeparator", "background-image:url(:/images/sp_table_head)");
    row("minimizeButton", minimizeSheet);
    row("closeButton", closeSheet);
    row("historyLink", historyLinkSheet);
    row("addButton", linkSheet);
    row("removeButton", linkSheet);
    row("crushButton", crushSheet);
    row("historyCloseButton", closeSheet);
    row("copyButton", historyButtonSheet);
    row("clearHistoryButton", historyButtonSheet);
}

void TestMainWindowStyles::eachWidgetWearsItsSheet()
{
    ShownWindow window;
    QTEST(window.find(QTest::currentDataTag())->styleSheet(), "sheet");
}

void TestMainWindowStyles::imagesNamedInSheetsExist_data()
{
    eachWidgetWearsItsSheet_data();
}

void TestMainWindowStyles::imagesNamedInSheetsExist()
{
    QFETCH(QString, sheet);
    const QRegularExpression url(QStringLiteral("url\\(([^)]*)\\)"));
    for (auto found = url.globalMatch(sheet); found.hasNext();) {
        const QString image = found.next().captured(1);
        QVERIFY2(!QImage(image).isNull(), qPrintable(image));
    }
}

void TestMainWindowStyles::scrollBarsWearTheTablesSheets()
{
    ShownWindow window;
    QCOMPARE(window.table()->verticalScrollBar()->styleSheet(),
             QString::fromLatin1(mainScrollBarSheet));
    QCOMPARE(window.find<QTableWidget>("historyTable")->verticalScrollBar()->styleSheet(),
             QString::fromLatin1(historyScrollBarSheet));
}

void TestMainWindowStyles::linkButtonsShowTheirIcons()
{
    ShownWindow window;
    const QSize size(16, 16);
    QCOMPARE(window.find<QAbstractButton>("addButton")->icon().pixmap(size).toImage(),
             QIcon(QStringLiteral(":/images/icon_add")).pixmap(size).toImage());
    QCOMPARE(window.find<QAbstractButton>("removeButton")->icon().pixmap(size).toImage(),
             QIcon(QStringLiteral(":/images/icon_remove")).pixmap(size).toImage());
}

TEST_SUITE(styles, TestMainWindowStyles)
#include "styles.moc"
