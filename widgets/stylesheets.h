// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Every style sheet of the program, one named function each. They are functions
// because a namespace-scope QString would be built before main() in an order
// nobody controls.
//
// A sheet without a selector reaches every child of the widget it is set on, and
// its tooltip; the widgets that must not inherit one say so where they are made.

#pragma once

#include <QLatin1String>
#include <QString>

namespace stylesheets
{

// Parts.

/// A sheet that draws the bundle's image @p image as background, tiled.
inline QString backgroundImage(const QString &image)
{
    return QStringLiteral("background-image:url(:/images/") + image + QLatin1Char(')');
}

/// One rule for push buttons in the state @p state (":hover" for example, or nothing).
inline QString buttonRule(const QString &state, const QString &declarations)
{
    return QStringLiteral("QPushButton") + state + QLatin1Char('{') + declarations
           + QLatin1Char('}');
}

/// The declarations of a button that shows @p image; @p text says how its caption looks.
inline QString buttonFace(const QString &image, const QString &text)
{
    return backgroundImage(image) + QStringLiteral(";border:none;") + text;
}

/// A button with the images @p image _s1, _s2 and _s3 for at rest, under the pointer and pressed.
inline QString imageButton(const QString &image, const QString &text = QString())
{
    return buttonRule(QString(), buttonFace(image + QStringLiteral("_s1"), text))
           + buttonRule(QStringLiteral(":hover"), buttonFace(image + QStringLiteral("_s2"), text))
           + buttonRule(QStringLiteral(":pressed"),
                        buttonFace(image + QStringLiteral("_s3"), text));
}

/// A button without a face that turns lighter under the pointer and when pressed.
inline QString textButton(const QString &fontSize = QString())
{
    const QString rest = fontSize + QStringLiteral("border:none;");
    return buttonRule(QString(), QStringLiteral("color:#00f;") + rest)
           + buttonRule(QStringLiteral(":hover"), QStringLiteral("color:#33f;") + rest)
           + buttonRule(QStringLiteral(":pressed"), QStringLiteral("color:#66f;") + rest);
}

/// What both tables' vertical scroll bars share: no arrows, a rounded grey handle.
inline QString scrollBarParts()
{
    return QStringLiteral("QScrollBar::sub-line{background:none;border:none;height:0px;}"
                          "QScrollBar::sub-page{background:none;border:none;}"
                          "QScrollBar::add-line{background:none;border:none;height:0px;}"
                          "QScrollBar::add-page{background:none;border:none;}"
                          "QScrollBar::down-arrow{background:none;border:none;}"
                          "QScrollBar::up-arrow{background:none;border:none;}"
                          "QScrollBar::drop-down{background:none;border:none;}"
                          "QScrollBar::drop-up{background:none;border:none;}"
                          "QScrollBar::down-button{background:none;border:none;height:25px;}"
                          "QScrollBar::up-button{background:none;border:none;height:25px;}"
                          "QScrollBar::handle{background:#eee;border:1px solid #aaa;"
                          "border-radius:6px;min-height:20px;}");
}

// Window backgrounds.

inline QString mainWindowBackground()
{
    return backgroundImage(QStringLiteral("bk"));
}

inline QString historyWindowBackground()
{
    return backgroundImage(QStringLiteral("bk_history"));
}

inline QString dialogBackground()
{
    return backgroundImage(QStringLiteral("bk_dialog"));
}

// Title bars.

/// Keeps the dialog's background out of its title bar, which would draw it shifted by a pixel.
inline QString dialogTitleBar()
{
    return QStringLiteral("background:none");
}

inline QString titleIcon()
{
    return backgroundImage(QStringLiteral("icon_logo"));
}

/// Title of the dialog and of the history window, whose background would else reach the label.
inline QString titleText()
{
    return QStringLiteral("color:#ffffff;border:none;background:none;font-size:14px;");
}

/// Title of the main window, whose background is a widget of its own and reaches no label.
inline QString mainTitleText()
{
    return QStringLiteral("color:#ffffff;border:none;font-size:14px");
}

inline QString closeButton()
{
    return imageButton(QStringLiteral("btn_quit"));
}

inline QString minimizeButton()
{
    return imageButton(QStringLiteral("btn_mini"));
}

// Main window: header, buttons and panels.

inline QString logo()
{
    return backgroundImage(QStringLiteral("logo"));
}

/// Headline and subtitle beside the logo.
inline QString headerText()
{
    return QStringLiteral("color:#333333;font-size:13px");
}

inline QString historyLink()
{
    return textButton(QStringLiteral("font-size:13px;"));
}

/// The add and remove buttons under the table.
inline QString linkButton()
{
    return textButton()
           + buttonRule(QStringLiteral(":disabled"), QStringLiteral("color:#aaa;border:none;"));
}

inline QString crushButton()
{
    return imageButton(QStringLiteral("btn_green"), QStringLiteral("color:#fff;"))
           + buttonRule(QStringLiteral(":disabled"),
                        buttonFace(QStringLiteral("btn_green_s4"), QStringLiteral("color:#aaa;")));
}

/// The hairline between table and buttons.
inline QString bottomRule()
{
    return QStringLiteral("background-color:#eee");
}

inline QString emptyPanelIcon()
{
    return backgroundImage(QStringLiteral("ico_smile"));
}

inline QString successPanelIcon()
{
    return backgroundImage(QStringLiteral("ico_ok"));
}

/// Text of the empty-state and success panels.
inline QString panelText()
{
    return QStringLiteral("color:#333333;font-size:14px");
}

// Tables of the main and history windows.

/// A table, or the frame around one, that lets the window show through.
inline QString table()
{
    return QStringLiteral("border:none;background:none;");
}

/// Heading laid over the first column, which is indented less than the others.
inline QString firstHeading()
{
    return backgroundImage(QStringLiteral("bk_table_head")) + QStringLiteral(";padding-left:10px;");
}

/// Heading that has a separator at its left edge.
inline QString laterHeading()
{
    return backgroundImage(QStringLiteral("bk_table_head")) + QStringLiteral(";padding-left:16px;");
}

inline QString headingSeparator()
{
    return backgroundImage(QStringLiteral("sp_table_head"));
}

/// Scroll bar of the main table; its margins leave the heading and the bottom rule free.
inline QString mainScrollBar()
{
    return QStringLiteral("QScrollBar:vertical{background:none;margin-top:25px;margin-bottom:1px;}")
           + scrollBarParts();
}

inline QString historyScrollBar()
{
    return QStringLiteral("QScrollBar:vertical{background:transparent;margin-top:25px;"
                          "margin-bottom:0px;border:none;}")
           + scrollBarParts();
}

/// A row of either table.
inline QString row()
{
    return QStringLiteral("background:url(:/images/bk_item);border:none;color:#333;"
                          "font-size:12px;");
}

/// The darkening over the shredded part of a row: black, 70 of 255 opaque.
inline QString progressOverlay()
{
    return QStringLiteral("background-color:rgb(0, 0, 0, 70)");
}

/// The copy and clear buttons. A disabled one keeps its face and only greys its caption.
inline QString historyButton()
{
    const QString font = QStringLiteral("font-size:12px;font-weight:normal;");
    return imageButton(QStringLiteral("btn_gray_90"), font + QStringLiteral("color:#444;"))
           + buttonRule(
               QStringLiteral(":disabled"),
               buttonFace(QStringLiteral("btn_gray_90_s1"), font + QStringLiteral("color:#aaa;")));
}

// The dialog.

inline QString dialogButton()
{
    return imageButton(QStringLiteral("btn_gray"), QStringLiteral("font-size:12px;"));
}

inline QString warningIcon()
{
    return backgroundImage(QStringLiteral("ico_war"));
}

inline QString successIcon()
{
    return backgroundImage(QStringLiteral("ico_ok"));
}

inline QString partialSuccessIcon()
{
    return backgroundImage(QStringLiteral("ico_war2"));
}

inline QString questionIcon()
{
    return backgroundImage(QStringLiteral("ico_war4"));
}

/// Message text of the two dialogs whose wording is fixed.
inline QString fixedMessageText()
{
    return QStringLiteral("color:#444444;font-size:14px;background:none");
}

inline QString messageText()
{
    return fixedMessageText() + QStringLiteral(";line-height:20px;");
}

} // namespace stylesheets
