// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The real program on the desktop of a test, with what a person in front of it
// can see and do. Positions come from windowmap.h and are those of the window
// they belong to. Waiting operations return false when the time is over.

#pragma once

#include "desktopsession.h"
#include "shredderuser.h"

#include <memory>
#include <optional>

namespace testsupport
{

class RunningShredder
{
public:
    RunningShredder(const DesktopSession &onDesktop, const ShredderUser &asUser);

    /// Starts the program and waits until its window has been drawn.
    bool openWindow();
    /// Starts the program, which may well end at once.
    void start();
    qint64 processId() const { return process.processId(); }
    bool isRunning() const { return process.state() == QProcess::Running; }
    bool waitForEnd();
    /// The exit status; -1 when a signal ended the program or it still runs.
    int exitStatus() const;
    /// What the program complained about: its Qt warnings and sanitizer reports.
    QStringList complaints() const;

    QRect mainWindowOnScreen() const { return windowOnScreen; }
    WindowId mainWindowId() const { return window; }
    void click(const QRect &placeInMainWindow);
    void rest() const;
    /// What the screen shows at a place of the main window.
    QImage picture(const QRect &placeInMainWindow) const;
    /// Whether a place looks different from how it looked when the window opened.
    bool hasChanged(const QRect &placeInMainWindow) const;
    int rowsShown() const;
    /// Clicks the tick box of a ticked row; what the box looks like then, or nothing.
    std::optional<QImage> untick(int row);

    /// Drags from another process what @p dragArguments say (see dragsource.cpp; plain
    /// paths will do), and drops it on the table once the window agrees.
    bool drop(const QStringList &dragArguments);
    /// True when the window never agrees to the same motion.
    bool refuses(const QStringList &dragArguments);

    /// The dialog now open, waiting for it to appear.
    std::optional<WindowId> waitForDialog() const;
    bool dialogIsOpen() const;
    /// Presses @p button of the dialog that appears, and waits for the dialog to go.
    bool answerDialog(const QRect &button) const;
    /// Another window than the main one and the dialogs: file dialog or history.
    std::optional<WindowId> waitForOtherWindow() const;
    bool onlyMainWindowIsOpen() const;
    /// What a window that the last click or drag opened shows, once it is drawn.
    QImage drawnWindow(WindowId id) const;
    /// Presses the crush button and agrees to the question.
    bool startShredding();

private:
    QString drag(const QStringList &dragArguments, int waitForConsent);

    const DesktopSession &desktop;
    const ShredderUser &user;
    TiedProcess process;
    std::unique_ptr<TiedProcess> dragSource;
    WindowId window = 0;
    QRect windowOnScreen;
    QImage freshWindow;
    QImage screenBefore;
};

} // namespace testsupport
