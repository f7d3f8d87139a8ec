// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "progressoverlay.h"

#include "stylesheets.h"

#include <QAccessible>
#include <QEvent>
#include <QPainter>

ProgressOverlay::ProgressOverlay(QWidget *row)
    : QLabel(row)
{
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(QStringLiteral("粉碎进度"));
}

void ProgressOverlay::showPercent(int percent, QSize wholeSize)
{
    constexpr int whole = 100;
    shownPercent = percent;
    setVisible(percent != 0);
    if (percent != 0)
        resize(wholeSize.width() * percent / whole, wholeSize.height());
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent change(this, percent);
        QAccessible::updateAccessibility(&change);
    }
}

/// Keeps the style from reading the overlay's sheet. Drawn by the style, the row's image would
/// cover the colour, and Qt would warn of an rgb() with four numbers.
bool ProgressOverlay::event(QEvent *event)
{
    const bool ofStyle = event->type() == QEvent::Polish || event->type() == QEvent::StyleChange;
    return ofStyle || QLabel::event(event);
}

void ProgressOverlay::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), stylesheets::progressColor());
}
