// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The title strip of a frameless window: while a mouse button is held on it, the
// window follows the pointer. Lives in the GUI thread and belongs to the window
// it moves. As a Wayland client it leaves the moving to the compositor, for the left
// button only.

#pragma once

#include <QLabel>
#include <QPoint>

class CustomTitleBar : public QLabel
{
    Q_OBJECT

public:
    /// @p parent owns the bar and is the window that it moves.
    explicit CustomTitleBar(QWidget *parent);

    /// Keeps room for a minimise button at the right end (any @p slot above 0), or does not.
    void setMinimizeSlot(int slot);
    /// Keeps room for a maximise button at the right end (any @p slot above 0), or does not.
    void setMaximizeSlot(int slot);
    /// The width in pixels from whose right end the room for the buttons is measured.
    void setBarWidth(int width);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    // Where the last left press happened, in the moved window's coordinates.
    QPoint grabPoint;
    QWidget *draggedWindow;
    bool dragging = false;
    int minimizeSlot = 1;
    int maximizeSlot = 0;
    // The main window's width, and deliberately not this widget's: on a narrower
    // window the room for the buttons lies outside the bar, all of which then
    // drags. Its buttons are child widgets and take their own presses.
    int barWidth = 800;
};
