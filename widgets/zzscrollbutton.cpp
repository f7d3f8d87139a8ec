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

bool ZZScrollButton::Bounds::contains(QPoint position) const
{
    return position.x() >= left && position.x() <= right && position.y() >= top
           && position.y() <= bottom;
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

// The three handlers do not call QPushButton's, so that a drag never ends in a click.

void ZZScrollButton::mousePressEvent(QMouseEvent *event)
{
    if (dragAxes == NotDraggable)
        return;
    // Every mouse button drags, but only the left one sets the grab point.
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
    QPoint position = pos();
    if ((dragAxes & Vertical) != 0)
        position.ry() += pointer.y() - grabPoint.y();
    if ((dragAxes & Horizontal) != 0)
        position.rx() += pointer.x() - grabPoint.x();

    // A step that leaves the bounds on one axis is not taken on the other either.
    if (boundsSet && !bounds.contains(position))
        return;
    move(position);
    emit mouseDrag(percentage(position.x(), bounds.left, bounds.right),
                   percentage(position.y(), bounds.top, bounds.bottom));
}
