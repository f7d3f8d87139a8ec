// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "widgets/stylesheets.h"
#include "suites.h"

#include <QtTest>

class TestStylesheets : public QObject
{
    Q_OBJECT

private slots:
    void readsWordForWord_data();
    void readsWordForWord();
};

// The sheets are composed from parts, so each is compared with a literal copy.
void TestStylesheets::readsWordForWord_data()
{
    QTest::addColumn<QString>("sheet");
    QTest::addColumn<QString>("words");
    const auto compare = [](const char *name, const QString &sheet, const char *words) {
        QTest::newRow(name) << sheet << words;
    };
    using namespace stylesheets;
    compare("backgroundImage", backgroundImage(QStringLiteral("bk")),
            "background-image:url(:/images/bk)");
    compare("imageButton", imageButton(QStringLiteral("btn_quit")),
            "QPushButton{background-image:url(:/images/btn_quit_s1);border:none;}"
            "QPushButton:hover{background-image:url(:/images/btn_quit_s2);border:none;}"
            "QPushButton:pressed{background-image:url(:/images/btn_quit_s3);border:none;}");
    compare("dialogTitleBar", dialogTitleBar(), "background:none");
    compare("titleText", titleText(), "color:#ffffff;border:none;background:none;font-size:14px;");
    compare("mainTitleText", mainTitleText(), "color:#ffffff;border:none;font-size:14px");
    compare("headerText", headerText(), "color:#333333;font-size:13px");
    compare("historyLink", historyLink(),
            "QPushButton{color:#00f;font-size:13px;border:none;}"
            "QPushButton:hover{color:#33f;font-size:13px;border:none;}"
            "QPushButton:pressed{color:#66f;font-size:13px;border:none;}");
    compare("linkButton", linkButton(),
            "QPushButton{color:#00f;border:none;}"
            "QPushButton:hover{color:#33f;border:none;}"
            "QPushButton:pressed{color:#66f;border:none;}"
            "QPushButton:disabled{color:#aaa;border:none;}");
    compare("crushButton", crushButton(),
            "QPushButton{background-image:url(:/images/btn_green_s1);border:none;color:#fff;}"
            "QPushButton:hover{background-image:url(:/images/btn_green_s2);border:none;"
            "color:#fff;}"
            "QPushButton:pressed{background-image:url(:/images/btn_green_s3);border:none;"
            "color:#fff;}"
            "QPushButton:disabled{background-image:url(:/images/btn_green_s4);border:none;"
            "color:#aaa;}");
    compare("bottomRule", bottomRule(), "background-color:#eee");
    compare("panelText", panelText(), "color:#333333;font-size:14px");
    compare("table", table(), "border:none;background:none;");
    compare("firstHeading", firstHeading(),
            "background-image:url(:/images/bk_table_head);padding-left:10px;");
    compare("laterHeading", laterHeading(),
            "background-image:url(:/images/bk_table_head);padding-left:16px;");
    // Both scroll bars end with the same parts.
    compare("mainScrollBar", mainScrollBar().replace(scrollBarParts(), QStringLiteral("...")),
            "QScrollBar:vertical{background:none;margin-top:25px;margin-bottom:1px;}...");
    compare("historyScrollBar", historyScrollBar().replace(scrollBarParts(), QStringLiteral("...")),
            "QScrollBar:vertical{background:transparent;margin-top:25px;margin-bottom:0px;"
            "border:none;}...");
    compare("row", row(),
            "background:url(:/images/bk_item);border:none;color:#333;font-size:12px;");
    compare("progressOverlay", progressOverlay(), "background-color:rgb(0, 0, 0, 70)");
    compare("historyButton", historyButton(),
            "QPushButton{background-image:url(:/images/btn_gray_90_s1);border:none;"
            "font-size:12px;font-weight:normal;color:#444;}"
            "QPushButton:hover{background-image:url(:/images/btn_gray_90_s2);border:none;"
            "font-size:12px;font-weight:normal;color:#444;}"
            "QPushButton:pressed{background-image:url(:/images/btn_gray_90_s3);border:none;"
            "font-size:12px;font-weight:normal;color:#444;}"
            "QPushButton:disabled{background-image:url(:/images/btn_gray_90_s1);border:none;"
            "font-size:12px;font-weight:normal;color:#aaa;}");
    compare("dialogButton", dialogButton(),
            "QPushButton{background-image:url(:/images/btn_gray_s1);border:none;"
            "font-size:12px;}"
            "QPushButton:hover{background-image:url(:/images/btn_gray_s2);border:none;"
            "font-size:12px;}"
            "QPushButton:pressed{background-image:url(:/images/btn_gray_s3);border:none;"
            "font-size:12px;}");
    compare("fixedMessageText", fixedMessageText(), "color:#444444;font-size:14px;background:none");
    compare("messageText", messageText(),
            "color:#444444;font-size:14px;background:none;line-height:20px;");
}

void TestStylesheets::readsWordForWord()
{
    QFETCH(QString, sheet);
    QTEST(sheet, "words");
}

TEST_SUITE(stylesheets, TestStylesheets)
#include "stylesheets.moc"
