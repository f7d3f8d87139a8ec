// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "ui/windowparts.h"

#include "widgets/stylesheets.h"

#include <QFont>
#include <QFontInfo>
#include <QLabel>
#include <QPushButton>

namespace windowparts
{

QLabel *addLabel(QWidget *parent, const QString &objectName, const QRect &geometry,
                 const QString &styleSheet, const QString &text)
{
    auto *label = new QLabel(text, parent);
    label->setObjectName(objectName);
    label->setGeometry(geometry);
    label->setStyleSheet(styleSheet);
    return label;
}

void addHeading(QWidget *window, const QString &objectName, const QRect &geometry,
                const QString &styleSheet, const QString &text, int textLeft)
{
    QLabel *heading = addLabel(window, objectName, geometry, styleSheet, text);
    heading->setPalette(stylesheets::windowPalette());
    limitTextSize(heading);
    heading->ensurePolished(); // the padding comes from the sheet
    heading->setIndent(qMax(0, textLeft - heading->contentsRect().left()));
}

void addHeadingSeparator(QWidget *window, const QString &objectName, const QRect &geometry)
{
    addLabel(window, objectName, geometry,
             stylesheets::backgroundImage(QStringLiteral("sp_table_head")));
}

QPushButton *addFlatButton(QWidget *parent, const QString &objectName, const QRect &geometry,
                           const QString &styleSheet, const QString &text)
{
    auto *button = new QPushButton(text, parent);
    button->setObjectName(objectName);
    button->setGeometry(geometry);
    button->setFlat(true);
    button->setStyleSheet(styleSheet);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

void limitTextSize(QWidget *widget)
{
    constexpr int largestPixelSize = 15; // 11 points on a screen that is not scaled
    widget->ensurePolished();
    if (QFontInfo(widget->font()).pixelSize() <= largestPixelSize)
        return;
    QFont limited;
    limited.setPixelSize(largestPixelSize);
    widget->setFont(limited);
}

} // namespace windowparts
