// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The real program on the desktop of a test, with what a person in front of it
// can see and do. Positions come from windowmap.h and are those of the window
// they belong to. Waiting operations return false when the time is over.

#pragma once

#include "desktopsession.h"
#include "shredderuser.h"
#include "windowmap.h"

#include <optional>

namespace testsupport
{

class RunningShredder
{
public:
    RunningShredder(DesktopSession &onDesktop, const ShredderUser &asUser)
        : desktop(onDesktop)
        , user(asUser)
    {
    }

    /// Starts the program and waits until its window has been drawn.
    bool openWindow();
    /// Starts the program, which may well end at once.
    void start();
    qint64 processId() const { return process.processId(); }
    bool isRunning() const { return process.state() == QProcess::Running; }
    /// Waits for the end; then the exit status, or minus the number of the signal that ended it.
    std::optional<int> waitForEnd();
    /// What the program complained about: its Qt warnings and sanitizer reports.
    QStringList complaints() const;

    QRect mainWindowOnScreen() const { return windowOnScreen; }
    WindowId mainWindowId() const { return window; }
    /// A click leaves the pointer where it lights up no button and covers nothing.
    void click(const QRect &placeInMainWindow);
    void clickIn(WindowId opened, const QRect &place) const
    {
        clickAt(desktop.geometryOf(opened).topLeft() + place.center());
    }
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
    bool dialogIsOpen() const { return !dialogs().isEmpty(); }
    /// Presses @p button of the dialog that appears, and waits for the dialog to go.
    bool answerDialog(const QRect &button) const;
    /// Another window than the main one and the dialogs: file dialog or history.
    std::optional<WindowId> waitForOtherWindow() const;
    bool onlyMainWindowIsOpen() const;
    /// What a window that the last click or drag opened shows, once it is drawn.
    QImage drawnWindow(WindowId id) const;
    /// Presses the crush button until the question is there: a window whose last dialog is just
    /// going takes no click yet.
    bool askToShred();
    /// Presses the crush button and agrees to the question.
    bool startShredding();

private:
    void clickAt(const QPoint &place) const;
    QVector<WindowId> dialogs() const;
    QPoint restingPlace() const { return windowOnScreen.topLeft() + mainwindow::restingPlace; }
    /// What the source of the drag says of its end.
    QByteArray drag(const QStringList &dragArguments, int waitForConsent);

    DesktopSession &desktop;
    const ShredderUser &user;
    TiedProcess process;
    WindowId window = 0;
    QRect windowOnScreen = mainwindow::onScreen;
    QImage freshWindow;
    QImage screenBefore;
};

} // namespace testsupport
