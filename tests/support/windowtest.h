// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What every test of the main window begins with: a home without a history, a folder
// for files, the window on screen and somebody who answers its dialogs.

#pragma once

#include "dialogdriver.h"
#include "promptly.h"
#include "sandboxhome.h"
#include "shownwindow.h"
#include "temporarytree.h"

#include <QObject>
#include <QStringList>

#include <memory>

namespace testsupport
{

/// The home of this test program.
const SandboxHome &testHome();

/// Brings the home and points Qt's environment to it, for Qt's own settings. Before the
/// application exists: Qt looks a user name up while it starts, and from then on the user database
/// is what it was.
void moveIntoTestHome();

class WindowTest : public QObject
{
    Q_OBJECT

protected slots:
    void init();
    void cleanup();

protected:
    /// Makes @p count files of 10 bytes x, called 0, 1, ...; returns their paths.
    QStringList makeFiles(int count) const;
    /// Makes a folder of @p files files and returns its path.
    QString makeBigFolder(int files) const;
    /// Makes a folder that cannot be shredded, as it holds a fifo, and returns its path.
    QString makeFailingFolder() const;
    /// Drops @p paths on the window and waits until they are its last rows.
    void drop(const QStringList &paths);
    /// Makes @p count files as above, drops them and waits for their rows.
    QStringList dropFiles(int count);
    /// What darkens @p row of the main table.
    QWidget *overlayOf(int row) const;
    /// Waits until the controller has answered everything, and the window has shown it.
    void settle();
    /// Clicks the button @p name and waits for what comes of it.
    void press(const char *name);
    /// Clicks the name in @p row and waits for what comes of it.
    void pressRow(int row);
    /// Presses the crush button, says OK to the question and to the report, and waits for that.
    void crush();
    /// The texts of the reports seen so far: of dialogs that ask nothing.
    QStringList reports() const;

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<ShownWindow> window;
    std::unique_ptr<DialogDriver> dialogs;
    MainWindow *mainWindow = nullptr; ///< the same window, for its slots
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

} // namespace testsupport
