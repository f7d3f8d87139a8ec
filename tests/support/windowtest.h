// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What every test of the main window begins with: a home without a history, a folder
// for files, the window on screen and somebody who answers its dialogs.

#pragma once

#include "dialogdriver.h"
#include "promptly.h"
#include "sandboxhome.h"
#include "temporarytree.h"
#include "ui/mainwindow.h"
#include "widgets/zztablecell.h"

#include <QMimeData>
#include <QPoint>
#include <QStringList>
#include <QTableWidget>

#include <memory>

namespace testsupport
{

/// A main window on screen, met as its user meets it: clicks go through the window, so they land
/// on whatever is topmost there, and widgets are found by object name. Behind it works a real
/// controller, which stays behind, silent, when the window goes.
class ShownWindow
{
protected:
    void show();

    /// The widget called @p name, of this window or of the history window; there must be one.
    template <class Widget = QWidget>
    Widget *find(const char *name) const
    {
        auto *widget = window->findChild<Widget *>(QString::fromLatin1(name));
        if (widget == nullptr)
            qFatal("no widget is called %s", name);
        return widget;
    }
    QString textOf(const char *name) const { return find(name)->property("text").toString(); }
    bool isEnabled(const char *name) const { return find(name)->isEnabled(); }
    bool isTicked(const char *name) const { return find(name)->property("checked").toBool(); }

    QTableWidget *table() const { return find<QTableWidget>("mainTable"); }
    ZZTableCell *cell(int row) const
    {
        return qobject_cast<ZZTableCell *>(table()->cellWidget(row, 0));
    }
    QWidget *partOf(int row, const char *name) const
    {
        return cell(row)->findChild<QWidget *>(QString::fromLatin1(name));
    }
    QWidget *overlayOf(int row) const { return partOf(row, "progressOverlay"); }
    // Their paths, from top to bottom.
    QStringList rows() const;
    QStringList tickedRows() const;

    void click(const char *name) const { click(find(name)); }
    /// Clicks the middle of what can be seen of @p widget.
    static void click(QWidget *widget);
    void clickRow(int row) const { click(partOf(row, "nameLabel")); }
    void clickTickBox(int row) const { click(partOf(row, "checkBox")); }

    std::unique_ptr<MainWindow> window;
};

/// The home of this test program.
const SandboxHome &testHome();

/// Brings the home and points Qt's environment to it, for Qt's own settings. Before the
/// application exists: Qt looks a user name up while it starts, and from then on the user database
/// is what it was.
void moveIntoTestHome();

/// The data of a drag of the files @p paths.
std::unique_ptr<QMimeData> dragOf(const QStringList &paths);

class WindowTest : public QObject, protected ShownWindow
{
    Q_OBJECT

protected slots:
    void init();
    void cleanup();

protected:
    /// Makes @p count files of 10 bytes x, called 0, 1, ...; returns their paths.
    QStringList makeFiles(int count) const;

    struct DropOutcome {
        bool entered = false; ///< the window would take the drop
        bool accepted = false;
    };
    /// Drags @p data over the window and lets go, which a window that refused does not hear of.
    DropOutcome letGo(const QMimeData &data) const;
    void letGo(const QStringList &paths) const { letGo(*dragOf(paths)); }
    /// Drops @p paths and waits until they are the last rows.
    void drop(const QStringList &paths);
    /// Makes @p count files as above, drops them and waits for their rows.
    QStringList dropFiles(int count);

    void addToHistory(const QString &name, const QString &path = QStringLiteral("/folder"),
                      const QString &time = QStringLiteral("2026-01-02"))
    {
        window->historyTableAddItemEva(time, name, path);
    }

    /// Waits until the controller has performed everything that was posted, and the window has
    /// shown it. Uses the clipboard.
    void settle();
    // A click, and waiting for what comes of it.
    void press(const char *name);
    void pressRow(int row);
    /// Presses the crush button and plans an OK to the question and one to the report.
    void beginCrush();
    /// As beginCrush(), and waits for the end of the report.
    void crush();
    /// The texts of the dialogs seen so far that ask nothing.
    QStringList reports() const;

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<DialogDriver> dialogs;
};

// The texts of the crush button.
inline QString idleText()
{
    return QStringLiteral("粉碎文件");
}

inline QString runningText()
{
    return QStringLiteral("停止粉碎");
}

inline QString stoppingText()
{
    return QStringLiteral("正在停止");
}

/// What the header says once @p count entries were shredded.
inline QString headerText(int count)
{
    return QStringLiteral("已成功粉碎%1个文件（文件夹）").arg(count);
}

} // namespace testsupport
