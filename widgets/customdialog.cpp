// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "customdialog.h"

#include "customtitlebar.h"
#include "messagelabel.h"
#include "stylesheets.h"
#include "windowpalette.h"

#include <QIcon>
#include <QLabel>
#include <QPushButton>

namespace
{

/// What the icon says, for those who do not see it.
QString iconName(int kind)
{
    switch (kind) {
    case DialogKind::Refusal:
    case DialogKind::Failure:
        return QStringLiteral("警告");
    case DialogKind::PartialSuccess:
        return QStringLiteral("部分成功");
    case DialogKind::Success:
        return QStringLiteral("成功");
    case DialogKind::Question:
        return QStringLiteral("询问");
    default:
        return QString();
    }
}

QString iconSheet(int kind)
{
    switch (kind) {
    case DialogKind::Refusal:
    case DialogKind::Failure:
        return stylesheets::warningIcon();
    case DialogKind::Success:
        return stylesheets::successIcon();
    case DialogKind::PartialSuccess:
        return stylesheets::partialSuccessIcon();
    case DialogKind::Question:
        return stylesheets::questionIcon();
    default:
        return QString();
    }
}

} // namespace

CustomDialog::CustomDialog(QWidget *parent)
    : QDialog(parent)
{
    setWindowFlags(Qt::FramelessWindowHint);
    setFixedSize(dialogWidth, dialogHeight);
    setStyleSheet(stylesheets::dialogBackground());

    addTitleBar();
    okButton = addButton(QStringLiteral("okButton"), QStringLiteral("确定"), okButtonPlace);
    cancelButton =
        addButton(QStringLiteral("cancelButton"), QStringLiteral("取消"), cancelButtonPlace);
    connect(okButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancelButton, &QPushButton::clicked, this, &QDialog::reject);

    setWindowTitle(QStringLiteral("文件粉碎机"));
    setWindowIcon(QIcon(QStringLiteral(":/images/logo")));
}

void CustomDialog::addTitleBar()
{
    auto *bar = new CustomTitleBar(this);
    bar->setObjectName(QStringLiteral("titleBar"));
    bar->setGeometry(titleBarPlace);
    bar->setStyleSheet(stylesheets::dialogTitleBar());

    auto *icon = new QLabel(bar);
    icon->setObjectName(QStringLiteral("titleIcon"));
    icon->setGeometry(titleIconPlace);
    icon->setStyleSheet(stylesheets::titleIcon());

    auto *title = new QLabel(QStringLiteral("文件粉碎机"), bar);
    title->setObjectName(QStringLiteral("titleText"));
    title->setGeometry(titleTextPlace);
    title->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    title->setStyleSheet(stylesheets::titleText());

    addCloseButton(bar);
}

void CustomDialog::addCloseButton(CustomTitleBar *bar)
{
    auto *button = new QPushButton(bar);
    button->setObjectName(QStringLiteral("closeButton"));
    button->setAccessibleName(QStringLiteral("关闭"));
    button->setGeometry(closeButtonPlace);
    button->setFlat(true);
    button->setStyleSheet(stylesheets::closeButton());
    button->setAutoDefault(false);
    button->setFocusPolicy(Qt::NoFocus);
    connect(button, &QPushButton::clicked, this, &QDialog::reject);
}

QPushButton *CustomDialog::addButton(const QString &objectName, const QString &text,
                                     const QRect &place)
{
    auto *button = new QPushButton(text, this);
    button->setObjectName(objectName);
    button->setGeometry(place);
    button->setStyleSheet(stylesheets::dialogButton());
    button->setPalette(windowPalette()); // the sheet names no colour for the caption
    // Enter must not answer a question that destroys files.
    button->setAutoDefault(false);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

void CustomDialog::moveToCentreOf(const QRect &area)
{
    move(area.left() + (area.width() - dialogWidth) / 2,
         area.top() + (area.height() - dialogHeight) / 2);
}

void CustomDialog::setMessage(const QString &text, int kind)
{
    if (!claimContent())
        return;
    const QString sheet = iconSheet(kind);
    QLabel *icon = addMessageIcon(sheet, iconName(kind));
    // Without a sheet of its own the label would repeat a corner of the dialog's
    // background in the middle of the dialog.
    if (sheet.isEmpty())
        icon->setAttribute(Qt::WA_NoSystemBackground);
    addMessageText(text, stylesheets::messageText(), Qt::AlignLeft | Qt::AlignVCenter);

    if (kind != DialogKind::Question) {
        cancelButton->hide();
        okButton->setGeometry(cancelButtonPlace);
    }
}

void CustomDialog::setConfirmCrush()
{
    if (!claimContent())
        return;
    addMessageIcon(stylesheets::warningIcon(), iconName(DialogKind::Refusal));
    addMessageText(QStringLiteral("选中的内容将被彻底删除，确定要粉碎选定的内容吗？"),
                   stylesheets::fixedMessageText(), Qt::AlignLeft | Qt::AlignTop);
}

void CustomDialog::setSystemFileRefusal()
{
    if (!claimContent())
        return;
    addMessageIcon(stylesheets::warningIcon(), iconName(DialogKind::Refusal));
    addMessageText(QStringLiteral("您选择的是系统文件或根目录，不能进行粉碎"),
                   stylesheets::fixedMessageText(), Qt::AlignLeft | Qt::AlignTop);
    // Unlike in setMessage() the OK button keeps its own place: the two layouts
    // differ on purpose.
    cancelButton->hide();
}

/// True for the first content of the dialog, false for every later one.
bool CustomDialog::claimContent()
{
    const bool first = !filled;
    filled = true;
    return first;
}

QLabel *CustomDialog::addMessageIcon(const QString &sheet, const QString &name)
{
    auto *label = new QLabel(this);
    label->setObjectName(QStringLiteral("messageIcon"));
    label->setAccessibleName(name);
    label->setGeometry(messageIconPlace);
    label->setStyleSheet(sheet);
    return label;
}

QLabel *CustomDialog::addMessageText(const QString &text, const QString &sheet,
                                     Qt::Alignment alignment)
{
    auto *label = new MessageLabel(this);
    label->setObjectName(QStringLiteral("messageText"));
    label->setGeometry(messageTextPlace);
    label->setStyleSheet(sheet);
    label->setAlignment(alignment);
    label->setText(text);
    // No part of the dialog takes the focus, so a screen reader has only the dialog to read.
    setAccessibleDescription(text);
    return label;
}
