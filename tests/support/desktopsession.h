// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A whole desktop for one test program: a virtual X server of 1920 x 1080, a
// window manager, and a person in front of it who moves the pointer, types and
// looks at the screen. Everything ends with the object.

#pragma once

#include "tiedprocess.h"

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <QTemporaryDir>
#include <QVector>

namespace testsupport
{

/// An X window by the number the server gave it.
using WindowId = quint32;

class DesktopSession
{
public:
    DesktopSession() = default;
    ~DesktopSession();
    DesktopSession(const DesktopSession &) = delete;
    DesktopSession &operator=(const DesktopSession &) = delete;

    /// Starts server and window manager, with a screen of @p size pixels that says @p dotsPerInch;
    /// false, with a problem(), when that fails.
    bool start(const QSize &size = QSize(1920, 1080), int dotsPerInch = 96);
    /// The same with two monitors side by side, as pixels.
    bool startWithMonitors(const QSize &left, const QSize &right);
    /// Whether what that takes is installed.
    static bool hasMonitors();
    QString problem() const { return problemText; }
    QString display() const { return displayName; }
    /// The least a program needs to show itself here, nothing of the caller's desktop.
    QProcessEnvironment environment() const;
    /// Has every program started from now on find @p variables in its environment too.
    void addVariables(const QProcessEnvironment &variables) { additions.insert(variables); }

    void movePointer(const QPoint &place) const;
    /// Moves the pointer to a place inside @p window, below its title bar if it has one.
    void movePointerInto(WindowId window, const QPoint &place) const;
    /// Moves a window of another program out of the way.
    void moveWindow(WindowId window, const QRect &place) const;
    void click(const QPoint &place) const;
    /// In the middle of @p place of @p window.
    void clickIn(WindowId window, const QRect &place) const
    {
        click(geometryOf(window).topLeft() + place.center());
    }
    /// Button 1 is the left one, 3 the right one.
    void pressButton(int button = 1) const;
    void releaseButton(int button = 1) const;
    /// Moves the pointer in steps, as a hand does.
    void carryPointer(const QPoint &from, const QPoint &to) const;
    /// The same with @p button held down.
    void drag(const QPoint &from, const QPoint &to, int button = 1) const;
    void type(const QString &text) const;
    void pressKey(const QString &key) const;

    /// The visible windows of process @p pid, restricted to @p title if that is not empty.
    QVector<WindowId> windowsOf(qint64 pid, const QString &title = QString()) const;
    QRect geometryOf(WindowId window) const;
    /// Asks as the window manager does when the user closes a window.
    void closeByWindowManager(WindowId window) const;

    /// Cuts the connection of the program that shows @p window, as the end of a session does.
    void takeDisplayFrom(const QString &window) const;

    QString clipboardText() const;
    /// What the screen shows, pointer included; @p area in screen coordinates.
    QImage picture(const QRect &area = QRect()) const;
    /// Writes the whole screen as a PNG file, making its folder.
    bool savePicture(const QString &file) const;

private:
    bool startServer(const QSize &size, int dotsPerInch);
    bool startMonitors(const QSize &left, const QSize &right);
    bool startDisplay(TiedProcess &process, const QString &command, const QStringList &more = {});
    bool startWindowManager();
    QByteArray xdotool(const QString &command) const;

    TiedProcess server;
    TiedProcess monitors;
    TiedProcess windowManager;
    QTemporaryDir scratch;
    QProcessEnvironment additions;
    QString displayName;
    QString problemText;
};

/// True when every pixel is the same in both.
bool samePixels(const QImage &one, const QImage &other);

} // namespace testsupport
