// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The dialog: what it is built of, what fills it, where it appears and what ends it.

#include "suites.h"
#include "widgets/customdialog.h"

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

QString sheetOf(const CustomDialog &dialog, const char *name)
{
    return child(dialog, name)->styleSheet();
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
    void partsHaveTheirPlaces_data();
    void partsHaveTheirPlaces();
    void windowIsFramelessAndFixed();
    void partsHaveTheirTextsAndSheets();
    void buttonsTakeNoFocus();
    void kindChoosesIconAndButtons_data();
    void kindChoosesIconAndButtons();
    void longMessageWrapsInItsPlace();
    void secondContentChangesNothing();
    void formsDifferInTextAndButtons_data();
    void formsDifferInTextAndButtons();
    void buttonsAnswer_data();
    void buttonsAnswer();
    void escapeRejectsAndEnterAnswersNothing();
    void titleBarDragsTheRunningDialog();
    void centresOnTheArea_data();
    void centresOnTheArea();
    void backgroundShowsThroughTheLabels();
};

void TestDialog::partsHaveTheirPlaces_data()
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

void TestDialog::partsHaveTheirPlaces()
{
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("text"), DialogKind::Question);
    const auto *part = child(dialog, QTest::currentDataTag());
    QVERIFY(part != nullptr);
    QTEST(part->geometry(), "place");
    QTEST(part->parentWidget()->objectName(), "parent");
}

void TestDialog::windowIsFramelessAndFixed()
{
    const CustomDialog dialog;
    QVERIFY(dialog.windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(dialog.minimumSize(), QSize(420, 230));
    QCOMPARE(dialog.maximumSize(), QSize(420, 230));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("文件粉碎机"));
    QVERIFY(!dialog.windowIcon().isNull());
}

void TestDialog::partsHaveTheirTextsAndSheets()
{
    const CustomDialog dialog;
    QCOMPARE(dialog.styleSheet(), QStringLiteral("background-image:url(:/images/bk_dialog)"));
    QCOMPARE(sheetOf(dialog, "titleBar"), QStringLiteral("background:none"));
    QCOMPARE(sheetOf(dialog, "titleIcon"),
             QStringLiteral("background-image:url(:/images/icon_logo)"));
    const auto *title = child<QLabel>(dialog, "titleText");
    QCOMPARE(title->text(), QStringLiteral("文件粉碎机"));
    QCOMPARE(title->alignment(), Qt::AlignLeft | Qt::AlignVCenter);
    QCOMPARE(title->styleSheet(),
             QStringLiteral("color:#ffffff;border:none;background:none;font-size:14px;"));
    QVERIFY(sheetOf(dialog, "closeButton").contains(QStringLiteral("btn_quit_s3")));
    QCOMPARE(child(dialog, "closeButton")->accessibleName(), QStringLiteral("关闭"));
    QVERIFY(sheetOf(dialog, "okButton").contains(QStringLiteral("btn_gray_s3")));
    QCOMPARE(sheetOf(dialog, "okButton"), sheetOf(dialog, "cancelButton"));
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

void TestDialog::kindChoosesIconAndButtons()
{
    QFETCH(int, kind);
    QFETCH(bool, asks);
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("text"), kind);
    QTEST(sheetOf(dialog, "messageIcon"), "iconSheet");
    QCOMPARE(child(dialog, "cancelButton")->isHidden(), !asks);
    QVERIFY(!child(dialog, "okButton")->isHidden());
    QCOMPARE(child(dialog, "okButton")->geometry(), asks ? leftButtonPlace : rightButtonPlace);
}

void TestDialog::longMessageWrapsInItsPlace()
{
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("选中的内容将被彻底删除，").repeated(4), DialogKind::Success);
    const auto *text = child<QLabel>(dialog, "messageText");
    text->ensurePolished();
    QVERIFY(text->fontMetrics().horizontalAdvance(text->text()) > text->width());
    const QRect wrapped = text->fontMetrics().boundingRect(
        QRect(QPoint(), text->size()), static_cast<int>(Qt::TextWordWrap), text->text());
    QVERIFY(wrapped.width() <= 295);
    QVERIFY(wrapped.height() >= 2 * text->fontMetrics().height());
    QCOMPARE(text->geometry(), QRect(95, 40, 295, 140));
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
    QVERIFY(sheetOf(dialog, "messageIcon").contains(QStringLiteral("ico_war4")));
    QVERIFY(!child(dialog, "cancelButton")->isHidden());
    QCOMPARE(child(dialog, "okButton")->geometry(), leftButtonPlace);
}

void TestDialog::formsDifferInTextAndButtons_data()
{
    QTest::addColumn<int>("form");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("startsAtTheTop");
    QTest::addColumn<bool>("hasCancel");
    QTest::addColumn<QRect>("okPlace");
    QTest::newRow("message") << 0 << QStringLiteral("first\n<b>second") << false << false
                             << rightButtonPlace;
    QTest::newRow("confirmation") << 1
                                  << QStringLiteral(
                                         "选中的内容将被彻底删除，确定要粉碎选定的内容吗？")
                                  << true << true << leftButtonPlace;
    // Unlike a message it leaves the OK button where it is.
    QTest::newRow("refusal of system files")
        << 2 << QStringLiteral("您选择的是系统文件或根目录，不能进行粉碎") << true << false
        << leftButtonPlace;
}

void TestDialog::formsDifferInTextAndButtons()
{
    QFETCH(int, form);
    QFETCH(QString, text);
    QFETCH(bool, startsAtTheTop);
    CustomDialog dialog;
    if (form == 0)
        dialog.setMessage(text, DialogKind::Failure);
    else
        form == 1 ? dialog.setConfirmCrush() : dialog.setSystemFileRefusal();
    const auto *label = child<QLabel>(dialog, "messageText");
    QCOMPARE(label->text(), text);
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QVERIFY(label->wordWrap());
    QCOMPARE(label->alignment(),
             Qt::AlignLeft | (startsAtTheTop ? Qt::AlignTop : Qt::AlignVCenter));
    const QString sheet = QStringLiteral("color:#444444;font-size:14px;background:none");
    QCOMPARE(label->styleSheet(),
             startsAtTheTop ? sheet : sheet + QStringLiteral(";line-height:20px;"));
    QCOMPARE(sheetOf(dialog, "messageIcon"),
             QStringLiteral("background-image:url(:/images/ico_war)"));
    QTEST(!child(dialog, "cancelButton")->isHidden(), "hasCancel");
    QTEST(child(dialog, "okButton")->geometry(), "okPlace");
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

void TestDialog::titleBarDragsTheRunningDialog()
{
    CustomDialog dialog;
    dialog.moveToCentreOf(QRect(100, 100, 420, 230));
    execWith(dialog, [&](QWindow *window) {
        QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, QPoint(380, 20));
        QTest::mouseMove(window, QPoint(350, 60));
        QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, QPoint(380, 20));
        dialog.reject();
    });
    QCOMPARE(dialog.pos(), QPoint(70, 140));
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
