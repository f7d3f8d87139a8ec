// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "customtitlebar.h"

#include "stylesheets.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QWindow>

#include <algorithm>

namespace
{

constexpr QRect iconGeometry(16, 12, 16, 16);
constexpr int titleLeft = 40;
constexpr int titleWidth = 380;
constexpr QSize buttonSize(27, 27);
constexpr int buttonSlotWidth = 32;

/// A Wayland client cannot move its window. It may ask the compositor to, from within the press
/// event only, because the request carries that event's serial number. False on other platforms,
/// and before Qt 5.15.
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

/// Screens of an X server have one scale, unless the user asks for another one on some of them.
bool scalesDiffer()
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    return QGuiApplication::platformName() == QLatin1String("xcb")
           && std::any_of(screens.cbegin(), screens.cend(), [&screens](const QScreen *screen) {
                  return !qFuzzyCompare(screen->devicePixelRatio(),
                                        screens.first()->devicePixelRatio());
              });
}

/// The pixels of @p place, in the units of @p screen, whose own top left corner is in pixels.
QRect inPixels(const QRect &place, const QScreen *screen)
{
    const QPoint origin = screen->geometry().topLeft();
    const qreal scale = screen->devicePixelRatio();
    return {origin + (place.topLeft() - origin) * scale, place.size() * scale};
}

/// Where scales differ, a place means something else on each screen, and Qt scales a window for
/// the screen that its middle is on. A window that reaches another screen than the pointer's has
/// its middle kept on that one: its new size would take the middle back to the other screen.
void moveAmongScales(QWidget *window, const QPoint &grabPoint)
{
    const QPoint pointer = QCursor::pos();
    QScreen *screen = QGuiApplication::screenAt(pointer);
    if (screen == nullptr) // rounded up, at the last pixel of one
        screen = QGuiApplication::screenAt(pointer - QPoint(1, 1));
    QWindow *handle = window->windowHandle();
    if (screen == nullptr || handle == nullptr)
        return;
    // Its size is fixed, and what it says of it on its way may belong to the other scale.
    QRect place(pointer - grabPoint, window->minimumSize());
    const QRect pixels = inPixels(place, screen);
    const QList<QScreen *> screens = QGuiApplication::screens();
    const bool reachesAnother =
        std::any_of(screens.cbegin(), screens.cend(), [&](const QScreen *other) {
            return other != screen && inPixels(other->geometry(), other).intersects(pixels);
        });
    if (reachesAnother) {
        const QRect area = screen->geometry();
        const QPoint middle = place.center();
        place.moveCenter({qBound(area.left(), middle.x(), area.right()),
                          qBound(area.top(), middle.y(), area.bottom())});
    }
    handle->setScreen(screen);
    handle->setGeometry(place);
}

} // namespace

CustomTitleBar::CustomTitleBar(QWidget *parent)
    : QLabel(parent)
    , draggedWindow(parent)
{
}

void CustomTitleBar::addIcon(const QString &objectName)
{
    auto *icon = new QLabel(this);
    icon->setObjectName(objectName);
    icon->setGeometry(iconGeometry);
    icon->setStyleSheet(stylesheets::backgroundImage(QStringLiteral("icon_logo")));
}

void CustomTitleBar::addTitle(const QString &objectName, const QString &text,
                              const QString &styleSheet)
{
    auto *title = new QLabel(text, this);
    title->setObjectName(objectName);
    title->setGeometry(titleLeft, 0, titleWidth, height());
    title->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    title->setStyleSheet(styleSheet);
}

QPushButton *CustomTitleBar::addMinimizeButton(const QString &objectName, QPoint position)
{
    return addButton(objectName, QStringLiteral("最小化"), QStringLiteral("btn_mini"), position);
}

QPushButton *CustomTitleBar::addCloseButton(const QString &objectName, QPoint position)
{
    return addButton(objectName, QStringLiteral("关闭"), QStringLiteral("btn_quit"), position);
}

QPushButton *CustomTitleBar::addButton(const QString &objectName, const QString &accessibleName,
                                       const QString &image, QPoint position)
{
    auto *button = new QPushButton(this);
    button->setObjectName(objectName);
    button->setAccessibleName(accessibleName);
    button->setGeometry(QRect(position, buttonSize));
    button->setFlat(true);
    button->setStyleSheet(stylesheets::imageButton(image));
    button->setAutoDefault(false); // Enter must not close a dialog
    button->setFocusPolicy(Qt::NoFocus);
    return button;
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

    // Every mouse button drags, but only the left one sets the grab point: a drag with
    // another button uses that of the last left press.
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
    // The windows have a fixed size, so a double click maximises nothing. The
    // handler of QWidget would call mousePressEvent(), which begins a drag.
}

void CustomTitleBar::mouseMoveEvent(QMouseEvent *event)
{
    if (!dragging || draggedWindow == nullptr)
        return;
    event->accept();
    if (scalesDiffer()) {
        moveAmongScales(draggedWindow, grabPoint);
        return;
    }
    // The window may leave the screen, as with any title bar.
    const QPoint pointer(qRound(event->screenPos().x()), qRound(event->screenPos().y()));
    draggedWindow->move(pointer - grabPoint);
}
