// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The title bar of a frameless window: logo, title, buttons. While a mouse button is
// held on it, the window follows the pointer; as a Wayland client it asks the compositor
// to move the window, for the left button only. Lives in the GUI thread and belongs to
// the window that it moves.

#pragma once

#include <QLabel>
#include <QPoint>

class QPushButton;

class CustomTitleBar : public QLabel
{
    Q_OBJECT

public:
    /// @p parent owns the bar and is the window that it moves.
    explicit CustomTitleBar(QWidget *parent);

    /// Adds the program's small logo at the left end.
    void addIcon(const QString &objectName);
    /// Adds @p text beside the logo, as high as the bar, whose geometry is set before.
    void addTitle(const QString &objectName, const QString &text, const QString &styleSheet);
    // The buttons' top left corner is @p position; what they do is connected by the caller.
    QPushButton *addMinimizeButton(const QString &objectName, QPoint position);
    QPushButton *addCloseButton(const QString &objectName, QPoint position);

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
    QPushButton *addButton(const QString &objectName, const QString &accessibleName,
                           const QString &image, QPoint position);

    QPoint grabPoint; ///< of the last left press, in the moved window's coordinates
    QWidget *draggedWindow;
    bool dragging = false;
    int minimizeSlot = 1;
    int maximizeSlot = 0;
    /// The main window's width, not this widget's. On a narrower window the room for the buttons
    /// therefore lies outside the bar, and all of the bar drags; its buttons are child widgets and
    /// take their own presses.
    int barWidth = 800;
};
