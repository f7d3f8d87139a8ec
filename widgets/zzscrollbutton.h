// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A push button that is dragged about inside a rectangle of its parent and emits its
// position in percent of that rectangle. Lives in the GUI thread and belongs to its
// parent. Part of the widget set; no window uses it at present.

#pragma once

#include <QPoint>
#include <QPushButton>

class ZZScrollButton : public QPushButton
{
    Q_OBJECT

public:
    /// The directions in which a button can be dragged; they add up.
    enum DragAxis { NotDraggable = 0, Vertical = 1, Horizontal = 2 };

    explicit ZZScrollButton(QWidget *parent);

    /// The range of the button's top left corner, in pixels of the parent: from
    /// @p x to @p x + @p width and from @p y to @p y + @p height, ends included.
    void setBounds(int x, int y, int width, int height);
    /// Lets the button be dragged along @p axes, a sum of DragAxis values. Call
    /// setBounds() first: percentages mean nothing without bounds.
    void setDragAxes(int axes);

signals:
    /// The button was dragged to @p x and @p y percent of its bounds; a bound
    /// range of no width counts as 100.
    void mouseDrag(int x, int y);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    /// Both ends are positions that the button can take, so the range has one position more than
    /// its width in pixels.
    struct Bounds {
        int left = 0;
        int top = 0;
        int right = 0;
        int bottom = 0;

        bool contains(QPoint position) const;
    };

    QPoint grabPoint; ///< of the last left press, inside the button
    bool dragging = false;
    int dragAxes = NotDraggable;
    Bounds bounds;
    bool boundsSet = false;
};
