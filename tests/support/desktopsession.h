// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A whole desktop for one test program: a virtual X server, a window manager, and a
// person in front of it who moves the pointer, types and looks at the screen.
// Everything ends with the object.

#pragma once

#include "literals.h"
#include "tiedprocess.h"

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QTemporaryDir>
#include <QVector>

namespace testsupport
{

/// An X window by the number the server gave it.
using WindowId = quint32;

class DesktopSession
{
public:
    /// Starts server and window manager, with a screen of @p size pixels that says @p dotsPerInch;
    /// false, with a problem(), when that fails.
    bool start(const QSize &size = QSize(1920, 1080), int dotsPerInch = 96);
    /// The same with two monitors side by side, as pixels.
    bool startWithMonitors(const QSize &left, const QSize &right);
    /// Whether what that takes is installed.
    static bool hasMonitors() { return isInstalled("Xephyr"_s); }
    QString problem() const { return problemText; }
    /// The least a program needs to show itself here, nothing of the caller's desktop.
    QProcessEnvironment environment() const;
    /// Has every program started from now on find @p variables in its environment too.
    void addVariables(const QProcessEnvironment &variables) { additions.insert(variables); }
    /// Runs a command for this display and returns what it prints; see wordsOf().
    template <typename... Values>
    QByteArray run(const QString &command, Values... values) const
    {
        return outputOf(wordsOf(command, values...), environment());
    }

    void movePointer(const QPoint &place) const
    {
        run("xdotool mousemove %1 %2"_s, place.x(), place.y());
    }
    void click(const QPoint &place) const
    {
        run("xdotool mousemove %1 %2 click 1"_s, place.x(), place.y());
    }
    /// Button 1 is the left one, 3 the right one.
    void press(const QPoint &place, int button = 1) const
    {
        run("xdotool mousemove %1 %2 mousedown %3"_s, place.x(), place.y(), button);
    }
    void releaseButton(int button = 1) const { run("xdotool mouseup %1"_s, button); }
    /// Moves the pointer in steps, as a hand does.
    void carryPointer(const QPoint &from, const QPoint &to) const;
    /// The same with @p button held down.
    void drag(const QPoint &from, const QPoint &to, int button = 1) const;
    void type(const QString &text) const;
    void pressKey(const QString &key) const { run("xdotool key %1"_s, key); }

    /// The visible windows of process @p pid, restricted to @p title if that is not empty.
    QVector<WindowId> windowsOf(qint64 pid, const QString &title = QString()) const;
    QRect geometryOf(WindowId window) const;
    /// Whether what is typed goes to @p window, or will.
    bool givesKeyboardTo(WindowId window) const;
    /// Asks as the window manager does when the user closes a window.
    void closeByWindowManager(WindowId window) const { run("wmctrl -i -c %1"_s, window); }

    /// The other program of a drag (see dragsource.cpp), from the first drag on.
    TiedProcess &dragSource();
    QString clipboardText() const
    {
        return QString::fromUtf8(run("xclip -o -selection clipboard"_s));
    }
    /// What the screen shows, pointer included; @p area in screen coordinates.
    QImage picture(const QRect &area = QRect()) const;
    /// Writes the whole screen as a PNG file, making its folder.
    bool savePicture(const QString &file) const;

private:
    bool startServer(const QSize &size, int dotsPerInch);
    bool startMonitors(const QSize &left, const QSize &right);
    bool startDisplay(TiedProcess &process, const QStringList &command);
    bool startWindowManager();

    QTemporaryDir scratch;
    QProcessEnvironment additions;
    QSize screenSize;
    QString displayName;
    QString problemText;
    TiedProcess server;
    TiedProcess monitors;
    TiedProcess windowManager;
    TiedProcess source;
};

/// True when every pixel is the same in both.
bool samePixels(const QImage &one, const QImage &other);

} // namespace testsupport
