// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A main window on screen, met as its user meets it: clicks go through the
// window, so they land on whatever is topmost there, and widgets are found by
// object name. Behind it works a real controller, which stays behind, silent,
// when the window goes.

#pragma once

#include "ui/mainwindow.h"

#include <QList>
#include <QPoint>
#include <QStringList>
#include <QUrl>

class QMimeData;
class QTableWidget;
class ZZTableCell;

namespace testsupport
{

class ShownWindow
{
public:
    ShownWindow();

    MainWindow &operator*() { return window; }
    MainWindow *operator->() { return &window; }

    /// The widget called @p name, of this window or of the history window; there must be one.
    template <class Widget = QWidget>
    Widget *find(const char *name) const
    {
        auto *widget = window.findChild<Widget *>(QString::fromLatin1(name));
        if (widget == nullptr)
            qFatal("no widget is called %s", name);
        return widget;
    }
    QString textOf(const char *name) const;
    bool isEnabled(const char *name) const { return find(name)->isEnabled(); }
    bool isTicked(const char *name) const;

    QTableWidget *table() const;
    ZZTableCell *cell(int row) const;
    /// The paths of the rows, from top to bottom.
    QStringList rows() const;
    /// The paths of the rows with a tick.
    QStringList tickedRows() const;

    void click(const char *name) const { click(find(name)); }
    /// Clicks the middle of what can be seen of @p widget.
    static void click(QWidget *widget);
    /// Clicks at @p place of @p widget.
    static void click(QWidget *widget, QPoint place);
    /// Clicks the name of the entry in @p row.
    void clickRow(int row) const;
    void clickTickBox(int row) const;

    struct DropOutcome {
        bool entered = false;  ///< the window would take the drop
        bool accepted = false; ///< the drop was accepted
    };
    /// Drags @p data over the window and lets go, which a window that refused does not hear of.
    DropOutcome drop(const QMimeData &data);
    void drop(const QStringList &paths);

    /// Waits until the controller has performed everything that was posted, and the window has
    /// shown it; false after too long a time. Uses the clipboard.
    bool settle();

private:
    MainWindow window;
};

} // namespace testsupport
