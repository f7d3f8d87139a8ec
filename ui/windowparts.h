// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Makes the labels and buttons of main and history window. The widget given as parent
// owns them. GUI thread only.

#pragma once

#include <QRect>
#include <QString>

class QLabel;
class QPushButton;
class QWidget;

namespace windowparts
{

QLabel *addLabel(QWidget *parent, const QString &objectName, const QRect &geometry,
                 const QString &styleSheet, const QString &text = QString());

/// A label over a table's own heading. Its text begins @p textLeft pixels from its left edge, as
/// the texts of its column do, or at the padding of its sheet where that is larger.
void addHeading(QWidget *window, const QString &objectName, const QRect &geometry,
                const QString &styleSheet, const QString &text, int textLeft);

/// The line between two headings.
void addHeadingSeparator(QWidget *window, const QString &objectName, const QRect &geometry);

/// A flat button that does not take the focus.
QPushButton *addFlatButton(QWidget *parent, const QString &objectName, const QRect &geometry,
                           const QString &styleSheet, const QString &text);

/// Limits the desktop's font to 15 pixels for @p widget, whose geometry is fixed and whose sheet
/// names no font size. "全选" then fits beside the box of any style. To be called after setting the
/// sheet.
void limitTextSize(QWidget *widget);

} // namespace windowparts
