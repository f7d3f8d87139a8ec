// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "dialogdriver.h"

#include "eventually.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QWindow>
#include <QtTest>

#include <algorithm>

namespace testsupport
{

namespace
{

QStringList visibleCaptions(const QDialog &dialog)
{
    QList<QPushButton *> buttons = dialog.findChildren<QPushButton *>();
    std::sort(buttons.begin(), buttons.end(), [](const QPushButton *one, const QPushButton *other) {
        return one->x() < other->x();
    });
    QStringList captions;
    for (const QPushButton *button : qAsConst(buttons)) {
        if (button->isVisible() && !button->text().isEmpty())
            captions.append(button->text());
    }
    return captions;
}

SeenDialog lookAt(const QDialog &dialog)
{
    SeenDialog seen;
    if (const auto *text = dialog.findChild<QLabel *>(QStringLiteral("messageText")))
        seen.text = text->text();
    if (const auto *icon = dialog.findChild<QLabel *>(QStringLiteral("messageIcon")))
        seen.iconSheet = icon->styleSheet();
    seen.buttons = visibleCaptions(dialog);
    seen.place = dialog.geometry();
    return seen;
}

void give(Answer answer, const QDialog &dialog)
{
    if (answer == Answer::Escape)
        return QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape);
    const auto *button = dialog.findChild<QPushButton *>(
        answer == Answer::Ok ? QStringLiteral("okButton") : QStringLiteral("cancelButton"));
    if (button == nullptr || !button->isVisible())
        return;
    // Through the window, so that the click lands on whatever is topmost there.
    const QPoint middle = button->visibleRegion().boundingRect().center();
    QTest::mouseClick(dialog.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      button->mapTo(&dialog, middle));
}

} // namespace

DialogDriver::DialogDriver()
{
    qApp->installEventFilter(this);
}

bool DialogDriver::eventFilter(QObject *watched, QEvent *event)
{
    auto *dialog = qobject_cast<QDialog *>(watched);
    if (dialog != nullptr && event->type() == QEvent::Show && !event->spontaneous()) {
        ++open;
        QTimer::singleShot(0, dialog, [this, dialog] { meet(*dialog); });
    }
    return QObject::eventFilter(watched, event);
}

void DialogDriver::meet(QDialog &dialog)
{
    const QPointer<QDialog> running(&dialog);
    const bool onScreen =
        QTest::qWaitForWindowExposed(&dialog, patience) && eventually([&] {
            return running.isNull() || QApplication::activeModalWidget() == running;
        });
    if (onScreen && !running.isNull()) {
        met.append(lookAt(dialog));
        const auto plan = plans.isEmpty() ? qMakePair(Answer::Escape, Action()) : plans.takeFirst();
        if (plan.second)
            plan.second(dialog);
        if (!running.isNull() && running->isVisible())
            give(plan.first, dialog);
    }
    if (!running.isNull() && running->isVisible())
        running->reject();
    --open;
}

} // namespace testsupport
