// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The dialog on screen: where it appears, what it looks like and what ends it.

#include "suites.h"
#include "widgets/customdialog.h"

#include <QImage>
#include <QTimer>
#include <QWindow>
#include <QtTest>

#include <functional>

namespace
{

QWidget *child(const CustomDialog &dialog, const char *name)
{
    return dialog.findChild<QWidget *>(QString::fromLatin1(name));
}

/// Runs the dialog and, as soon as it is the modal window on screen, does @p action.
int execWith(CustomDialog &dialog, const std::function<void()> &action)
{
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &dialog, [&] {
        const bool running = QApplication::activeModalWidget() == &dialog;
        if (!running || !dialog.windowHandle()->isExposed())
            return;
        poll.stop();
        action();
    });
    poll.start();
    return dialog.exec();
}

/// A click through the dialog's window, which lands on whatever is topmost there.
void clickOn(const CustomDialog &dialog, const QWidget *widget)
{
    const QPoint middle = widget->visibleRegion().boundingRect().center();
    QTest::mouseClick(dialog.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      widget->mapTo(&dialog, middle));
}

int execAndClick(CustomDialog &dialog, const char *button)
{
    return execWith(dialog, [&] { clickOn(dialog, child(dialog, button)); });
}

} // namespace

class TestRunningDialog : public QObject
{
    Q_OBJECT

private slots:
    void buttonsAnswer_data();
    void buttonsAnswer();
    void escapeRejects();
    void enterAnswersNothing();
    void titleBarDragsTheRunningDialog();
    void centresOnTheArea_data();
    void centresOnTheArea();
    void backgroundShowsThroughTheLabels();
};

void TestRunningDialog::buttonsAnswer_data()
{
    QTest::addColumn<int>("result");
    QTest::newRow("okButton") << static_cast<int>(QDialog::Accepted);
    QTest::newRow("cancelButton") << static_cast<int>(QDialog::Rejected);
    QTest::newRow("closeButton") << static_cast<int>(QDialog::Rejected);
}

void TestRunningDialog::buttonsAnswer()
{
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("text"), DialogKind::Question);
    // Told apart from a dialog that never ran, whose result is Rejected too.
    dialog.setResult(-1);
    QTEST(execAndClick(dialog, QTest::currentDataTag()), "result");
    QVERIFY(!dialog.isVisible());
}

void TestRunningDialog::escapeRejects()
{
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("text"), DialogKind::Question);
    QCOMPARE(execWith(dialog, [&] { QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape); }),
             static_cast<int>(QDialog::Rejected));
}

void TestRunningDialog::enterAnswersNothing()
{
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("text"), DialogKind::Question);
    bool stillOpen = false;
    execWith(dialog, [&] {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space})
            QTest::keyClick(dialog.windowHandle(), key);
        stillOpen = dialog.isVisible();
        dialog.reject();
    });
    QVERIFY(stillOpen);
}

void TestRunningDialog::titleBarDragsTheRunningDialog()
{
    CustomDialog dialog;
    dialog.setMessage(QStringLiteral("text"), DialogKind::Success);
    dialog.moveToCentreOf(QRect(100, 100, 420, 230));
    QPoint moved;
    execWith(dialog, [&] {
        QTest::mousePress(dialog.windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(380, 20));
        QTest::mouseMove(dialog.windowHandle(), QPoint(350, 60));
        QTest::mouseRelease(dialog.windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(380, 20));
        moved = dialog.pos() - QPoint(100, 100);
        dialog.reject();
    });
    QCOMPARE(moved, QPoint(-30, 40));
}

void TestRunningDialog::centresOnTheArea_data()
{
    QTest::addColumn<QRect>("area");
    QTest::addColumn<QPoint>("place");
    QTest::newRow("main window") << QRect(560, 265, 800, 550) << QPoint(750, 425);
    QTest::newRow("narrower") << QRect(100, 100, 320, 130) << QPoint(50, 50);
    QTest::newRow("odd difference") << QRect(0, 0, 421, 231) << QPoint(0, 0);
    QTest::newRow("odd negative difference") << QRect(10, 10, 419, 229) << QPoint(10, 10);
    QTest::newRow("off the screen") << QRect(-1000, -900, 800, 550) << QPoint(-810, -740);
}

void TestRunningDialog::centresOnTheArea()
{
    QFETCH(QRect, area);
    CustomDialog dialog;
    dialog.moveToCentreOf(area);
    QTEST(dialog.pos(), "place");
}

void TestRunningDialog::backgroundShowsThroughTheLabels()
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

TEST_SUITE(customdialog_running, TestRunningDialog)
#include "customdialog_running.moc"
