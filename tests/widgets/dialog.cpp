// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The dialog: what it is built of, what fills it, where it appears and what ends it.

#include "suites.h"
#include "widgets/customdialog.h"
#include "widgets/stylesheets.h"

#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QWindow>
#include <QtTest>

#include <functional>

namespace
{

const QRect rightButtonPlace(323, 180, 76, 27);
const QRect leftButtonPlace(230, 180, 76, 27);

template <class Widget = QWidget>
Widget *child(const CustomDialog &dialog, const char *name)
{
    return dialog.findChild<Widget *>(QString::fromLatin1(name));
}

QString imageSheet(const char *image)
{
    return stylesheets::backgroundImage(QString::fromLatin1(image));
}

/// Asks @p dialog's question and, as soon as it is the modal window on screen, does @p action.
int execWith(CustomDialog &dialog, const std::function<void(QWindow *)> &action)
{
    dialog.setMessage(QStringLiteral("text"), DialogKind::Question);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &dialog, [&] {
        const bool running = QApplication::activeModalWidget() == &dialog;
        if (!running || !dialog.windowHandle()->isExposed())
            return;
        poll.stop();
        action(dialog.windowHandle());
    });
    poll.start();
    return dialog.exec();
}

} // namespace

class TestDialog : public QObject
{
    Q_OBJECT

private slots:
    void windowIsFramelessAndFixed();
    void eachPartHasItsPlaceTextAndSheet();
    void buttonsTakeNoFocus();
    void kindChoosesIconAndButtons_data();
    void kindChoosesIconAndButtons();
    void fixedFormsStartAtTheTopAndMoveNoButton_data();
    void fixedFormsStartAtTheTopAndMoveNoButton();
    void secondContentChangesNothing();
    void buttonsAnswer_data();
    void buttonsAnswer();
    void escapeRejectsAndEnterAnswersNothing();
    void centresOnTheArea_data();
    void centresOnTheArea();
    void backgroundShowsThroughTheLabels();
};

void TestDialog::windowIsFramelessAndFixed()
{
    const CustomDialog dialog;
    QVERIFY(dialog.windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(dialog.minimumSize(), QSize(420, 230));
    QCOMPARE(dialog.maximumSize(), QSize(420, 230));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("文件粉碎机"));
    QVERIFY(!dialog.windowIcon().isNull());
    QCOMPARE(dialog.styleSheet(), imageSheet("bk_dialog"));
}

void TestDialog::eachPartHasItsPlaceTextAndSheet()
{
    using namespace stylesheets;
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("first\n<b>second"), DialogKind::Question);
    const auto check = [&](const char *name, const char *parent, const QRect &place,
                           const QString &sheet, const char *text = "") {
        const auto *part = child(dialog, name);
        QVERIFY2(part->parentWidget()->objectName() == QLatin1String(parent), name);
        QVERIFY2(part->geometry() == place, name);
        QVERIFY2(part->styleSheet() == sheet, name);
        QCOMPARE(part->property("text").toString(), QString::fromUtf8(text));
    };
    check("titleBar", "", {1, 1, 418, 39}, dialogTitleBar());
    check("titleIcon", "titleBar", {16, 12, 16, 16}, imageSheet("icon_logo"));
    check("titleText", "titleBar", {40, 0, 380, 39}, titleText(), "文件粉碎机");
    check("closeButton", "titleBar", {393, 1, 27, 27}, imageButton(QStringLiteral("btn_quit")));
    check("messageIcon", "", {30, 89, 45, 45}, imageSheet("ico_war4"));
    check("messageText", "", {95, 40, 295, 140}, messageText(), "first\n<b>second");
    check("okButton", "", leftButtonPlace, dialogButton(), "确定");
    check("cancelButton", "", rightButtonPlace, dialogButton(), "取消");
    for (const char *name : {"titleText", "messageText"})
        QCOMPARE(child<QLabel>(dialog, name)->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
    QVERIFY(child<QLabel>(dialog, "messageText")->wordWrap());
}

void TestDialog::buttonsTakeNoFocus()
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

void TestDialog::kindChoosesIconAndButtons_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("asks");
    QTest::addColumn<QString>("iconSheet");
    QTest::addColumn<QString>("iconName");
    QTest::newRow("refusal") << 0 << false << imageSheet("ico_war") << "警告";
    QTest::newRow("success") << 1 << false << imageSheet("ico_ok") << "成功";
    QTest::newRow("partial success") << 2 << false << imageSheet("ico_war2") << "部分成功";
    QTest::newRow("failure") << 3 << false << imageSheet("ico_war") << "警告";
    QTest::newRow("question") << 4 << true << imageSheet("ico_war4") << "询问";
    QTest::newRow("above all kinds") << 5 << false << QString() << QString();
    QTest::newRow("below all kinds") << -1 << false << QString() << QString();
}

void TestDialog::kindChoosesIconAndButtons()
{
    QFETCH(int, kind);
    QFETCH(bool, asks);
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("text"), kind);
    QTEST(child(dialog, "messageIcon")->styleSheet(), "iconSheet");
    QTEST(child(dialog, "messageIcon")->accessibleName(), "iconName");
    QCOMPARE(child(dialog, "cancelButton")->isHidden(), !asks);
    QVERIFY(!child(dialog, "okButton")->isHidden());
    QCOMPARE(child(dialog, "okButton")->geometry(), asks ? leftButtonPlace : rightButtonPlace);
}

void TestDialog::fixedFormsStartAtTheTopAndMoveNoButton_data()
{
    QTest::addColumn<bool>("asks");
    QTest::addColumn<QString>("text");
    QTest::newRow("confirmation") << true << "选中的内容将被彻底删除，确定要粉碎选定的内容吗？";
    QTest::newRow("refusal of system files") << false << "您选择的是系统文件或根目录，不能进行粉碎";
}

void TestDialog::fixedFormsStartAtTheTopAndMoveNoButton()
{
    QFETCH(bool, asks);
    CustomDialog dialog;
    asks ? dialog.setConfirmCrush() : dialog.setSystemFileRefusal();
    const auto *label = child<QLabel>(dialog, "messageText");
    QTEST(label->text(), "text");
    QCOMPARE(label->alignment(), Qt::AlignLeft | Qt::AlignTop);
    QCOMPARE(label->styleSheet(), stylesheets::fixedMessageText());
    QCOMPARE(child(dialog, "messageIcon")->styleSheet(), imageSheet("ico_war"));
    QCOMPARE(child(dialog, "cancelButton")->isHidden(), !asks);
    QCOMPARE(child(dialog, "okButton")->geometry(), leftButtonPlace);
}

void TestDialog::secondContentChangesNothing()
{
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("first"), DialogKind::Question);
    const QObjectList children = dialog.children();
    dialog.setMessage(QStringLiteral("second"), DialogKind::Success);
    dialog.setConfirmCrush();
    dialog.setSystemFileRefusal();
    QCOMPARE(dialog.children(), children);
    QCOMPARE(child<QLabel>(dialog, "messageText")->text(), QStringLiteral("first"));
    QCOMPARE(child(dialog, "messageIcon")->styleSheet(), imageSheet("ico_war4"));
    QVERIFY(!child(dialog, "cancelButton")->isHidden());
    QCOMPARE(child(dialog, "okButton")->geometry(), leftButtonPlace);
}

void TestDialog::buttonsAnswer_data()
{
    QTest::addColumn<int>("result");
    QTest::newRow("okButton") << static_cast<int>(QDialog::Accepted);
    QTest::newRow("cancelButton") << static_cast<int>(QDialog::Rejected);
    QTest::newRow("closeButton") << static_cast<int>(QDialog::Rejected);
}

void TestDialog::buttonsAnswer()
{
    CustomDialog dialog;
    const auto *button = child(dialog, QTest::currentDataTag());
    // Told apart from a dialog that never ran, whose result is Rejected too.
    dialog.setResult(-1);
    // Through the dialog's window the click lands on whatever is topmost there.
    const int result = execWith(dialog, [&](QWindow *window) {
        const QPoint middle = button->visibleRegion().boundingRect().center();
        QTest::mouseClick(window, Qt::LeftButton, Qt::NoModifier, button->mapTo(&dialog, middle));
    });
    QTEST(result, "result");
    QVERIFY(!dialog.isVisible());
}

void TestDialog::escapeRejectsAndEnterAnswersNothing()
{
    CustomDialog dialog;
    bool stillOpen = false;
    const int result = execWith(dialog, [&](QWindow *window) {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space})
            QTest::keyClick(window, key);
        stillOpen = dialog.isVisible();
        QTest::keyClick(window, Qt::Key_Escape);
    });
    QVERIFY(stillOpen);
    QCOMPARE(result, static_cast<int>(QDialog::Rejected));
}

void TestDialog::centresOnTheArea_data()
{
    QTest::addColumn<QRect>("area");
    QTest::addColumn<QPoint>("place");
    QTest::newRow("main window") << QRect(560, 265, 800, 550) << QPoint(750, 425);
    QTest::newRow("narrower") << QRect(100, 100, 320, 130) << QPoint(50, 50);
    QTest::newRow("odd difference") << QRect(0, 0, 421, 231) << QPoint(0, 0);
    QTest::newRow("odd negative difference") << QRect(10, 10, 419, 229) << QPoint(10, 10);
    QTest::newRow("off the screen") << QRect(-1000, -900, 800, 550) << QPoint(-810, -740);
}

void TestDialog::centresOnTheArea()
{
    QFETCH(QRect, area);
    CustomDialog dialog;
    dialog.moveToCentreOf(area);
    QTEST(dialog.pos(), "place");
}

void TestDialog::backgroundShowsThroughTheLabels()
{
    // The dialog's sheet has no selector, so each label could draw a displaced
    // piece of the background.
    CustomDialog dialog;
    constexpr int unknownKind = 9;
    dialog.setMessage(QString(), unknownKind);
    dialog.show();
    const QRect content(20, 41, 380, 135);
    const QImage background =
        QImage(QStringLiteral(":/images/bk_dialog")).convertToFormat(QImage::Format_RGB32);
    const QImage drawn = dialog.grab().toImage().convertToFormat(QImage::Format_RGB32);
    QCOMPARE(drawn.copy(content), background.copy(content));
}

TEST_SUITE(dialog, TestDialog)
#include "dialog.moc"
