// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The style sheets and colours of the program. Sheets are functions because the order in
// which namespace-scope QStrings are built before main() is not defined. A sheet without a
// selector reaches every child of its widget and the widget's tooltip; widgets that must
// not inherit one say so where they are made.

#pragma once

#include <QColor>
#include <QLatin1String>
#include <QPalette>
#include <QString>

namespace stylesheets
{

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

/// The declarations of a button that shows @p image; those in @p text are for its caption.
inline QString buttonFace(const QString &image, const QString &text)
{
    return backgroundImage(image) + QStringLiteral(";border:none;") + text;
}

/// A button with the images @p image _s1, _s2 and _s3: normal, under the pointer and pressed.
inline QString imageButton(const QString &image, const QString &text = QString())
{
    return buttonRule(QString(), buttonFace(image + QStringLiteral("_s1"), text))
           + buttonRule(QStringLiteral(":hover"), buttonFace(image + QStringLiteral("_s2"), text))
           + buttonRule(QStringLiteral(":pressed"),
                        buttonFace(image + QStringLiteral("_s3"), text));
}

/// A button that is only its caption, lighter under the pointer and when pressed.
inline QString textButton(const QString &fontSize = QString())
{
    const QString common = fontSize + QStringLiteral("border:none;");
    return buttonRule(QString(), QStringLiteral("color:#00f;") + common)
           + buttonRule(QStringLiteral(":hover"), QStringLiteral("color:#33f;") + common)
           + buttonRule(QStringLiteral(":pressed"), QStringLiteral("color:#66f;") + common);
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

// Title bars.

/// Without it the bar would draw the dialog's background, shifted by a pixel.
inline QString dialogTitleBar()
{
    return QStringLiteral("background:none");
}

/// Title of the dialog and of the history window, whose backgrounds would reach the label.
inline QString titleText()
{
    return QStringLiteral("color:#ffffff;border:none;background:none;font-size:14px;");
}

/// Title of the main window, whose background is set on a widget that has no label in it.
inline QString mainTitleText()
{
    return QStringLiteral("color:#ffffff;border:none;font-size:14px");
}

// Main window: header, buttons and panels.

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

/// Text of the empty-state and success panels.
inline QString panelText()
{
    return QStringLiteral("color:#333333;font-size:14px");
}

// Tables of the main and history windows.

/// A transparent table, or the widget around one.
inline QString table()
{
    return QStringLiteral("border:none;background:none;");
}

/// Heading over the first column, which is indented less than the others.
inline QString firstHeading()
{
    return backgroundImage(QStringLiteral("bk_table_head")) + QStringLiteral(";padding-left:10px;");
}

/// Heading that has a separator at its left edge.
inline QString laterHeading()
{
    return backgroundImage(QStringLiteral("bk_table_head")) + QStringLiteral(";padding-left:16px;");
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

/// What darkens the shredded part of a row.
inline QColor progressColor()
{
    return QColor(0, 0, 0, 70);
}

/// Qt warns that rgb() takes three numbers, so the overlay paints progressColor() itself.
inline QString progressOverlay()
{
    const QColor color = progressColor();
    return QStringLiteral("background-color:rgb(%1, %2, %3, %4)")
        .arg(color.red())
        .arg(color.green())
        .arg(color.blue())
        .arg(color.alpha());
}

/// The copy and clear buttons. Disabled, they keep their image; only the caption turns grey.
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

/// Message of the two dialogs with a fixed text.
inline QString fixedMessageText()
{
    return QStringLiteral("color:#444444;font-size:14px;background:none");
}

inline QString messageText()
{
    return fixedMessageText() + QStringLiteral(";line-height:20px;");
}

// What the sheets leave to the desktop.

/// The colours of headings, check boxes and captions of grey buttons, whose sheets name none. The
/// windows are light on every desktop; the colours of a dark one would not be readable on them. To
/// be set after the widget's sheet, and on the widget itself: a widget with a sheet inherits no
/// palette.
inline QPalette windowPalette()
{
    const QColor face(0xef, 0xef, 0xef);
    const QColor text(0x33, 0x33, 0x33);
    const QColor disabledText(0xaa, 0xaa, 0xaa);
    QPalette palette(face);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, disabledText);
    }
    return palette;
}

} // namespace stylesheets
