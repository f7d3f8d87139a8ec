// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "customdialog.h"

#include "customtitlebar.h"
#include "messagelabel.h"
#include "stylesheets.h"

#include <QIcon>
#include <QLabel>
#include <QPushButton>

namespace
{

struct MessageIcon {
    QString image;
    QString accessibleName;
};

/// The icon of @p kind, a DialogKind; empty for an unknown one.
MessageIcon messageIcon(int kind)
{
    switch (kind) {
    case DialogKind::Refusal:
    case DialogKind::Failure:
        return {QStringLiteral("ico_war"), QStringLiteral("警告")};
    case DialogKind::Success:
        return {QStringLiteral("ico_ok"), QStringLiteral("成功")};
    case DialogKind::PartialSuccess:
        return {QStringLiteral("ico_war2"), QStringLiteral("部分成功")};
    case DialogKind::Question:
        return {QStringLiteral("ico_war4"), QStringLiteral("询问")};
    default:
        return {};
    }
}

} // namespace

CustomDialog::CustomDialog(QWidget *parent)
    : QDialog(parent)
{
    setWindowFlags(Qt::FramelessWindowHint);
    setFixedSize(dialogWidth, dialogHeight);
    setStyleSheet(stylesheets::backgroundImage(QStringLiteral("bk_dialog")));

    addTitleBar();
    okButton = addButton(QStringLiteral("okButton"), QStringLiteral("确定"), okButtonGeometry);
    cancelButton =
        addButton(QStringLiteral("cancelButton"), QStringLiteral("取消"), cancelButtonGeometry);
    connect(okButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancelButton, &QPushButton::clicked, this, &QDialog::reject);

    setWindowTitle(QStringLiteral("文件粉碎机"));
    setWindowIcon(QIcon(QStringLiteral(":/images/logo")));
}

void CustomDialog::addTitleBar()
{
    auto *bar = new CustomTitleBar(this);
    bar->setObjectName(QStringLiteral("titleBar"));
    bar->setGeometry(titleBarGeometry);
    bar->setStyleSheet(stylesheets::dialogTitleBar());
    bar->addIcon(QStringLiteral("titleIcon"));
    bar->addTitle(QStringLiteral("titleText"), QStringLiteral("文件粉碎机"),
                  stylesheets::titleText());
    const QPushButton *close =
        bar->addCloseButton(QStringLiteral("closeButton"), closeButtonPosition);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
}

QPushButton *CustomDialog::addButton(const QString &objectName, const QString &text,
                                     const QRect &geometry)
{
    auto *button = new QPushButton(text, this);
    button->setObjectName(objectName);
    button->setGeometry(geometry);
    button->setStyleSheet(stylesheets::dialogButton());
    button->setPalette(stylesheets::windowPalette()); // the sheet names no colour for the caption
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

QString CustomDialog::confirmCrushText()
{
    return QStringLiteral("选中的内容将被彻底删除，确定要粉碎选定的内容吗？");
}

void CustomDialog::setMessage(const QString &text, int kind)
{
    if (!addMessage(text, kind, stylesheets::messageText(), Qt::AlignLeft | Qt::AlignVCenter))
        return;
    if (kind != DialogKind::Question) {
        cancelButton->hide();
        okButton->setGeometry(cancelButtonGeometry);
    }
}

void CustomDialog::setConfirmCrush()
{
    addMessage(confirmCrushText(), DialogKind::Refusal, stylesheets::fixedMessageText(),
               Qt::AlignLeft | Qt::AlignTop);
}

void CustomDialog::setSystemFileRefusal()
{
    // The OK button is not moved as in setMessage(): the two layouts are meant to differ.
    if (addMessage(QStringLiteral("您选择的是系统文件或根目录，不能进行粉碎"), DialogKind::Refusal,
                   stylesheets::fixedMessageText(), Qt::AlignLeft | Qt::AlignTop))
        cancelButton->hide();
}

/// Adds the icon of @p kind and @p text; false when the dialog has a message already.
bool CustomDialog::addMessage(const QString &text, int kind, const QString &styleSheet,
                              Qt::Alignment alignment)
{
    if (filled)
        return false;
    filled = true;
    addMessageIcon(kind);
    addMessageText(text, styleSheet, alignment);
    return true;
}

void CustomDialog::addMessageIcon(int kind)
{
    const MessageIcon icon = messageIcon(kind);
    auto *label = new QLabel(this);
    label->setObjectName(QStringLiteral("messageIcon"));
    label->setAccessibleName(icon.accessibleName);
    label->setGeometry(messageIconGeometry);
    if (icon.image.isEmpty())
        label->setAttribute(Qt::WA_NoSystemBackground); // else it inherits the dialog's image
    else
        label->setStyleSheet(stylesheets::backgroundImage(icon.image));
}

void CustomDialog::addMessageText(const QString &text, const QString &styleSheet,
                                  Qt::Alignment alignment)
{
    auto *label = new MessageLabel(this);
    label->setObjectName(QStringLiteral("messageText"));
    label->setGeometry(messageTextGeometry);
    label->setStyleSheet(styleSheet);
    label->setAlignment(alignment);
    label->setText(text);
    // No widget of the dialog takes the focus, so a screen reader reads only the dialog itself.
    setAccessibleDescription(text);
}
