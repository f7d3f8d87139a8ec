// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "progressoverlay.h"

#include <QAccessible>
#include <QEvent>
#include <QPainter>

ProgressOverlay::ProgressOverlay(QWidget *row)
    : QLabel(row)
{
    setAttribute(Qt::WA_NoSystemBackground);
    // The mouse goes through to what the overlay darkens.
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

/// The overlay fills itself, because its style sheet cannot do that: the row's image would lie
/// over the colour, and Qt takes rgb() with four numbers for a mistake and warns of it. So the
/// style is kept from looking at the sheet at all.
bool ProgressOverlay::event(QEvent *event)
{
    const bool ofStyle = event->type() == QEvent::Polish || event->type() == QEvent::StyleChange;
    return ofStyle || QLabel::event(event);
}

void ProgressOverlay::paintEvent(QPaintEvent *)
{
    const QColor darkening(0, 0, 0, 70);
    QPainter(this).fillRect(rect(), darkening);
}
