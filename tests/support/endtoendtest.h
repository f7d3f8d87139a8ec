// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What every end-to-end test starts from: one desktop for a suite, and for each test
// function a new user, a new folder of victims and no shredder yet. At its end a Qt
// warning or a sanitizer report of the shredder fails the function, and a failed one
// leaves a picture of the screen in the build folder.

#pragma once

#include "desktopsession.h"
#include "eventually.h"
#include "runningshredder.h"
#include "screenreader.h"
#include "shredderuser.h"
#include "temporarytree.h"
#include "windowmap.h"

#include <QObject>

#include <memory>

namespace testsupport
{

class EndToEndTest : public QObject
{
    Q_OBJECT

protected slots:
    void initTestCase();
    void init();
    void cleanup();

protected:
    static constexpr int busyNames = 6000;
    /// Opens the window and drops the files and folders @p paths, if any, on it.
    bool openWith(const QStringList &paths = {});
    /// Starts a run and closes its report.
    bool runToItsReport();
    /// The file dialog or the history, opened by a click on @p button and ready to be typed into.
    std::optional<WindowId> openBy(const QRect &button);
    /// Whether the main window alone is open, or will be.
    bool isAlone() const;
    /// Presses Escape until only the main window is open.
    bool escape();
    /// Clicks the close button and waits for the end with status 0.
    bool closeEndsWell();
    /// The window of that title, once it is there.
    std::optional<HeardNode> hear(const QString &title) const
    {
        return reader.waitForWindow(title);
    }
    /// The window with rows for @p paths, as it is heard.
    std::optional<HeardNode> openAndHear(const QStringList &paths = {});
    /// Makes a folder whose run takes long enough to be met half-way: many names of one file, as
    /// those are made quickly, and among them some files of their own, "own-0" and so on.
    QString makeBusyFolder(int names = busyNames) const;

    DesktopSession desktop;
    ScreenReader reader;
    std::unique_ptr<ShredderUser> user;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<RunningShredder> shredder;
};

} // namespace testsupport
