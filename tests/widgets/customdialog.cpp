// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "widgets/customdialog.h"
#include "suites.h"

#include <QLabel>
#include <QPushButton>
#include <QtTest>

namespace
{

const QRect rightButtonPlace(323, 180, 76, 27);
const QRect leftButtonPlace(230, 180, 76, 27);

QWidget *child(const CustomDialog &dialog, const char *name)
{
    return dialog.findChild<QWidget *>(QString::fromLatin1(name));
}

QLabel *label(const CustomDialog &dialog, const char *name)
{
    return dialog.findChild<QLabel *>(QString::fromLatin1(name));
}

} // namespace

class TestCustomDialog : public QObject
{
    Q_OBJECT

private slots:
    void partsHaveTheirPlaces_data();
    void partsHaveTheirPlaces();
    void windowIsFramelessAndFixed();
    void partsHaveTheirTextsAndSheets();
    void buttonsTakeNoFocus();
    void kindChoosesIconAndButtons_data();
    void kindChoosesIconAndButtons();
    void messageIsPlainAndWraps();
    void messageIsShownLiterally();
    void longMessageWrapsInItsPlace();
    void secondContentChangesNothing();
    void confirmationHasBothButtons();
    void refusalOfSystemFilesKeepsOkInItsPlace();
};

void TestCustomDialog::partsHaveTheirPlaces_data()
{
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QRect>("place");
    QTest::newRow("titleBar") << QString() << QRect(1, 1, 418, 39);
    QTest::newRow("titleIcon") << QStringLiteral("titleBar") << QRect(16, 12, 16, 16);
    QTest::newRow("titleText") << QStringLiteral("titleBar") << QRect(40, 0, 380, 39);
    QTest::newRow("closeButton") << QStringLiteral("titleBar") << QRect(393, 1, 27, 27);
    QTest::newRow("messageIcon") << QString() << QRect(30, 89, 45, 45);
    QTest::newRow("messageText") << QString() << QRect(95, 40, 295, 140);
    QTest::newRow("okButton") << QString() << leftButtonPlace;
    QTest::newRow("cancelButton") << QString() << rightButtonPlace;
}

void TestCustomDialog::partsHaveTheirPlaces()
{
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("text"), DialogKind::Question);
    const QWidget *part = child(dialog, QTest::currentDataTag());
    QVERIFY(part != nullptr);
    QTEST(part->geometry(), "place");
    QTEST(part->parentWidget()->objectName(), "parent");
}

void TestCustomDialog::windowIsFramelessAndFixed()
{
    const CustomDialog dialog;
    QVERIFY(dialog.windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(dialog.minimumSize(), QSize(420, 230));
    QCOMPARE(dialog.maximumSize(), QSize(420, 230));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("文件粉碎机"));
    QVERIFY(!dialog.windowIcon().isNull());
}

void TestCustomDialog::partsHaveTheirTextsAndSheets()
{
    const CustomDialog dialog;
    QCOMPARE(dialog.styleSheet(), QStringLiteral("background-image:url(:/images/bk_dialog)"));
    QCOMPARE(child(dialog, "titleBar")->styleSheet(), QStringLiteral("background:none"));
    QCOMPARE(child(dialog, "titleIcon")->styleSheet(),
             QStringLiteral("background-image:url(:/images/icon_logo)"));
    QCOMPARE(label(dialog, "titleText")->text(), QStringLiteral("文件粉碎机"));
    QCOMPARE(label(dialog, "titleText")->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
    QCOMPARE(label(dialog, "titleText")->styleSheet(),
             QStringLiteral("color:#ffffff;border:none;background:none;font-size:14px;"));
    QVERIFY(child(dialog, "closeButton")->styleSheet().contains(QStringLiteral("btn_quit_s3")));
    QCOMPARE(child(dialog, "closeButton")->accessibleName(), QStringLiteral("关闭"));
    QVERIFY(child(dialog, "okButton")->styleSheet().contains(QStringLiteral("btn_gray_s3")));
    QCOMPARE(child(dialog, "okButton")->styleSheet(), child(dialog, "cancelButton")->styleSheet());
}

void TestCustomDialog::buttonsTakeNoFocus()
{
    const CustomDialog dialog;
    const auto buttons = dialog.findChildren<QPushButton *>();
    QCOMPARE(buttons.count(), 3);
    for (const QPushButton *button : buttons) {
        QVERIFY(!button->autoDefault());
        QVERIFY(!button->isDefault());
        QCOMPARE(button->focusPolicy(), Qt::NoFocus);
        QCOMPARE(button->isFlat(), button->text().isEmpty());
    }
}

void TestCustomDialog::kindChoosesIconAndButtons_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("iconSheet");
    QTest::addColumn<bool>("asks");
    const auto image = [](const char *name) {
        return QStringLiteral("background-image:url(:/images/%1)").arg(QLatin1String(name));
    };
    QTest::newRow("refusal") << 0 << image("ico_war") << false;
    QTest::newRow("success") << 1 << image("ico_ok") << false;
    QTest::newRow("partial success") << 2 << image("ico_war2") << false;
    QTest::newRow("failure") << 3 << image("ico_war") << false;
    QTest::newRow("question") << 4 << image("ico_war4") << true;
    QTest::newRow("above all kinds") << 5 << QString() << false;
    QTest::newRow("below all kinds") << -1 << QString() << false;
}

void TestCustomDialog::kindChoosesIconAndButtons()
{
    QFETCH(int, kind);
    QFETCH(bool, asks);
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("text"), kind);
    QTEST(child(dialog, "messageIcon")->styleSheet(), "iconSheet");
    QCOMPARE(child(dialog, "cancelButton")->isHidden(), !asks);
    QVERIFY(!child(dialog, "okButton")->isHidden());
    QCOMPARE(child(dialog, "okButton")->geometry(), asks ? leftButtonPlace : rightButtonPlace);
}

void TestCustomDialog::messageIsPlainAndWraps()
{
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("first\nsecond"), DialogKind::Success);
    const QLabel *text = label(dialog, "messageText");
    QCOMPARE(text->text(), QStringLiteral("first\nsecond"));
    QVERIFY(text->wordWrap());
    QCOMPARE(text->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
    QCOMPARE(text->styleSheet(),
             QStringLiteral("color:#444444;font-size:14px;background:none;line-height:20px;"));
}

void TestCustomDialog::messageIsShownLiterally()
{
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("<b>x</b>"), DialogKind::Success);
    QCOMPARE(label(dialog, "messageText")->textFormat(), Qt::PlainText);
}

void TestCustomDialog::longMessageWrapsInItsPlace()
{
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("选中的内容将被彻底删除，").repeated(4), DialogKind::Success);
    const QLabel *text = label(dialog, "messageText");
    text->ensurePolished();
    QVERIFY(text->fontMetrics().horizontalAdvance(text->text()) > text->width());
    const QRect wrapped = text->fontMetrics().boundingRect(
        QRect(QPoint(), text->size()), static_cast<int>(Qt::TextWordWrap), text->text());
    QVERIFY(wrapped.width() <= 295);
    QVERIFY(wrapped.height() >= 2 * text->fontMetrics().height());
    QCOMPARE(text->geometry(), QRect(95, 40, 295, 140));
}

void TestCustomDialog::secondContentChangesNothing()
{
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("first"), DialogKind::Question);
    const QObjectList children = dialog.children();
    dialog.setMessage(QStringLiteral("second"), DialogKind::Success);
    dialog.setConfirmCrush();
    dialog.setSystemFileRefusal();
    QCOMPARE(dialog.children(), children);
    QCOMPARE(label(dialog, "messageText")->text(), QStringLiteral("first"));
    QVERIFY(child(dialog, "messageIcon")->styleSheet().contains(QStringLiteral("ico_war4")));
    QVERIFY(!child(dialog, "cancelButton")->isHidden());
    QCOMPARE(child(dialog, "okButton")->geometry(), leftButtonPlace);
}

void TestCustomDialog::confirmationHasBothButtons()
{
    CustomDialog dialog;
    dialog.setConfirmCrush();
    const QLabel *text = label(dialog, "messageText");
    QCOMPARE(text->text(), QStringLiteral("选中的内容将被彻底删除，确定要粉碎选定的内容吗？"));
    QCOMPARE(text->alignment(), Qt::AlignLeft | Qt::AlignTop);
    QCOMPARE(text->styleSheet(), QStringLiteral("color:#444444;font-size:14px;background:none"));
    QVERIFY(text->wordWrap());
    QCOMPARE(child(dialog, "messageIcon")->styleSheet(),
             QStringLiteral("background-image:url(:/images/ico_war)"));
    QVERIFY(!child(dialog, "cancelButton")->isHidden());
    QCOMPARE(child(dialog, "okButton")->geometry(), leftButtonPlace);
}

void TestCustomDialog::refusalOfSystemFilesKeepsOkInItsPlace()
{
    CustomDialog dialog;
    dialog.setSystemFileRefusal();
    const QLabel *text = label(dialog, "messageText");
    QCOMPARE(text->text(), QStringLiteral("您选择的是系统文件或根目录，不能进行粉碎"));
    QCOMPARE(text->alignment(), Qt::AlignLeft | Qt::AlignTop);
    QVERIFY(child(dialog, "cancelButton")->isHidden());
    QCOMPARE(child(dialog, "okButton")->geometry(), leftButtonPlace);
}

TEST_SUITE(customdialog, TestCustomDialog)
#include "customdialog.moc"
