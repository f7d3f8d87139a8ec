// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "customtitlebar.h"

#include "accessiblewidgets.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QWindow>

namespace
{

constexpr int buttonSlotWidth = 32;

/// A Wayland client cannot move its window, but may ask the compositor to move it as long as the
/// button is down. Only from within the press event, whose serial number goes with the request.
/// False on other platforms, and before Qt 5.15.
bool startCompositorMove(const QWidget *window)
{
#if QT_VERSION >= QT_VERSION_CHECK(5, 15, 0)
    QWindow *handle = window->windowHandle();
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland")) && handle != nullptr
           && handle->startSystemMove();
#else
    Q_UNUSED(window)
    return false;
#endif
}

} // namespace

CustomTitleBar::CustomTitleBar(QWidget *parent)
    : QLabel(parent)
    , draggedWindow(parent)
{
    installAccessibleWidgets();
}

void CustomTitleBar::setMinimizeSlot(int slot)
{
    minimizeSlot = slot > 0 ? 1 : 0;
}

void CustomTitleBar::setMaximizeSlot(int slot)
{
    maximizeSlot = slot > 0 ? 1 : 0;
}

void CustomTitleBar::setBarWidth(int width)
{
    barWidth = width;
}

void CustomTitleBar::mousePressEvent(QMouseEvent *event)
{
    const QPoint pressed(qRound(event->localPos().x()), qRound(event->localPos().y()));
    // A window always has a close button, so one slot is kept in every case.
    const int buttonSlots = minimizeSlot + maximizeSlot + 1;
    if (pressed.x() > barWidth - buttonSlots * buttonSlotWidth) {
        event->ignore();
        return;
    }

    // Every button drags, but only the left one says where the window is held: a
    // drag with another button goes on from the last left press.
    dragging = true;
    if (event->button() == Qt::LeftButton) {
        grabPoint = mapToParent(pressed);
        event->accept();
        if (startCompositorMove(window()))
            dragging = false;
    }
}

void CustomTitleBar::mouseReleaseEvent(QMouseEvent *)
{
    dragging = false;
}

void CustomTitleBar::mouseDoubleClickEvent(QMouseEvent *)
{
    // The windows have a fixed size; a double click does not maximise them, nor
    // does its second press begin a drag.
}

void CustomTitleBar::mouseMoveEvent(QMouseEvent *event)
{
    if (!dragging || draggedWindow == nullptr)
        return;
    // The window may leave the screen, as with any title bar.
    const QPoint pointer(qRound(event->screenPos().x()), qRound(event->screenPos().y()));
    draggedWindow->move(pointer - grabPoint);
    event->accept();
}
