// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "zzscrollbutton.h"

#include <QMouseEvent>

namespace
{

int percentage(int position, int first, int last)
{
    constexpr int whole = 100;
    if (position == last || first == last)
        return whole;
    return (position - first) * whole / (last - first);
}

} // namespace

bool ZZScrollButton::Bounds::contains(QPoint place) const
{
    return place.x() >= left && place.x() <= right && place.y() >= top && place.y() <= bottom;
}

ZZScrollButton::ZZScrollButton(QWidget *parent)
    : QPushButton(parent)
{
    setAttribute(Qt::WA_MouseTracking);
}

void ZZScrollButton::setBounds(int x, int y, int width, int height)
{
    bounds = {x, y, x + width, y + height};
    boundsSet = true;
}

void ZZScrollButton::setDragAxes(int axes)
{
    dragAxes = axes;
}

// The three handlers keep the events from QPushButton on purpose: a button that
// is dragged is never also clicked.

void ZZScrollButton::mousePressEvent(QMouseEvent *event)
{
    if (dragAxes == NotDraggable)
        return;
    // Every button drags, but only the left one says where the button is held.
    dragging = true;
    if (event->button() == Qt::LeftButton) {
        grabPoint = QPoint(qRound(event->localPos().x()), qRound(event->localPos().y()));
        event->accept();
    }
}

void ZZScrollButton::mouseReleaseEvent(QMouseEvent *event)
{
    dragging = false;
    event->accept();
}

void ZZScrollButton::mouseMoveEvent(QMouseEvent *event)
{
    if (dragAxes == NotDraggable || !dragging)
        return;
    event->accept();

    const QPoint pointer(qRound(event->localPos().x()), qRound(event->localPos().y()));
    QPoint place = pos();
    if ((dragAxes & Vertical) != 0)
        place.ry() += pointer.y() - grabPoint.y();
    if ((dragAxes & Horizontal) != 0)
        place.rx() += pointer.x() - grabPoint.x();

    // A step that leaves the bounds on one axis is not taken on the other either.
    if (boundsSet && !bounds.contains(place))
        return;
    move(place);
    emit mouseDrag(percentage(place.x(), bounds.left, bounds.right),
                   percentage(place.y(), bounds.top, bounds.bottom));
}
