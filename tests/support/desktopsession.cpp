// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "desktopsession.h"

#include "eventually.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace testsupport
{

bool DesktopSession::start(const QSize &size, int dotsPerInch)
{
    return startServer(size, dotsPerInch) && startWindowManager();
}

bool DesktopSession::startWithMonitors(const QSize &left, const QSize &right)
{
    const QSize both(left.width() + right.width(), qMax(left.height(), right.height()));
    return startServer(both, 96) && startMonitors(left, right) && startWindowManager();
}

bool DesktopSession::startServer(const QSize &size, int dotsPerInch)
{
    screenSize = size;
    return startDisplay(server, wordsOf("Xvfb -screen 0 %1x%2x24 -dpi %3 -fbdir ."_s, size.width(),
                                        size.height(), dotsPerInch));
}

/// The first server has one monitor, whatever it is told. The second shows each of its two as a
/// window of the first, where pictures can be taken of them.
bool DesktopSession::startMonitors(const QSize &left, const QSize &right)
{
    // Qt would take the two for copies of each other by what RANDR says of them.
    return startDisplay(monitors,
                        wordsOf("Xephyr +xinerama -extension RANDR -screen %1x%2+0+0"
                                " -origin %1,0 -screen %3x%4+%1+0"_s,
                                left.width(), left.height(), right.width(), right.height()));
}

/// Access control is off because a second user's shredder shows itself here too; nothing but test
/// windows is ever on this screen.
bool DesktopSession::startDisplay(TiedProcess &process, const QStringList &command)
{
    process.setWorkingDirectory(scratch.path());
    process.launch(environment(), command + wordsOf("-displayfd 1 -nolisten tcp -ac -noreset"_s));
    const QByteArray number = process.firstLine();
    if (number.isEmpty())
        problemText = "no virtual X server: "_s + process.errorString();
    displayName = QLatin1Char(':') + QString::fromLatin1(number);
    return !number.isEmpty();
}

bool DesktopSession::startWindowManager()
{
    windowManager.launch(environment(), {"openbox"_s, "--sm-disable"_s});
    const bool announced = eventually(
        [this] { return run("xprop -root _NET_SUPPORTING_WM_CHECK"_s).contains("window id"); });
    if (!announced)
        problemText = "no window manager: "_s + windowManager.errorString();
    return announced;
}

QProcessEnvironment DesktopSession::environment() const
{
    const QProcessEnvironment own = QProcessEnvironment::systemEnvironment();
    QProcessEnvironment least;
    for (const QString &name : {"PATH"_s, "TZ"_s, "ASAN_OPTIONS"_s, "UBSAN_OPTIONS"_s}) {
        if (own.contains(name))
            least.insert(name, own.value(name));
    }
    // Without an address Qt would have a session bus launched.
    least.insert("DBUS_SESSION_BUS_ADDRESS"_s, "disabled:"_s);
    least.insert("DISPLAY"_s, displayName);
    least.insert("HOME"_s, scratch.path());
    least.insert("LC_ALL"_s, "C.UTF-8"_s);
    least.insert("QT_QPA_PLATFORM"_s, "xcb"_s);
    least.insert("XDG_RUNTIME_DIR"_s, scratch.path());
    least.insert(additions);
    return least;
}

void DesktopSession::carryPointer(const QPoint &from, const QPoint &to) const
{
    constexpr int steps = 8;
    QString moves = "xdotool"_s;
    for (int step = 1; step <= steps; ++step) {
        const QPoint place = from + (to - from) * step / steps;
        moves += " mousemove %1 %2 sleep 0.01"_s.arg(place.x()).arg(place.y());
    }
    run(moves);
}

void DesktopSession::drag(const QPoint &from, const QPoint &to, int button) const
{
    press(from, button);
    carryPointer(from, to);
    releaseButton(button);
}

void DesktopSession::type(const QString &text) const
{
    // Not at the pace of a typist.
    outputOf(wordsOf("xdotool type --delay 1 --"_s) << text, environment());
}

QVector<WindowId> DesktopSession::windowsOf(qint64 pid, const QString &title) const
{
    QStringList search = wordsOf("xdotool search --all --onlyvisible --pid %1 --name"_s, pid);
    search << (title.isEmpty() ? QString() : "^%1$"_s.arg(title));
    QVector<WindowId> windows;
    // A window that goes while all are searched ends the search without an answer.
    for (int attempt = 0; attempt < 2 && windows.isEmpty(); ++attempt) {
        const auto lines = outputOf(search, environment()).split('\n');
        for (const QByteArray &line : lines) {
            if (!line.isEmpty())
                windows.append(line.toUInt());
        }
    }
    return windows;
}

TiedProcess &DesktopSession::dragSource()
{
    if (source.state() == QProcess::NotRunning)
        source.launch(environment(), {QStringLiteral(DRAG_SOURCE_PROGRAM)});
    return source;
}

QRect DesktopSession::geometryOf(WindowId window) const
{
    static const QRegularExpression answer("X=(.+)\nY=(.+)\nWIDTH=(.+)\nHEIGHT=(.+)\n"_s);
    const auto found =
        answer.match(QString::fromLatin1(run("xdotool getwindowgeometry --shell %1"_s, window)));
    const auto number = [&](int which) { return found.captured(which).toInt(); };
    return QRect(number(1), number(2), number(3), number(4));
}

bool DesktopSession::givesKeyboardTo(WindowId window) const
{
    return eventually([&] { return run("xdotool getwindowfocus"_s).toUInt() == window; });
}

/// The server keeps its screen in a file that ends with the pixels. Reading that is instant, so
/// that conditions about pixels can be polled.
QImage DesktopSession::picture(const QRect &area) const
{
    QFile file(scratch.filePath("Xvfb_screen0"_s));
    const int lineBytes = screenSize.width() * static_cast<int>(sizeof(QRgb));
    const qint64 bytes = qint64(lineBytes) * screenSize.height();
    if (!file.open(QIODevice::ReadOnly) || file.size() < bytes)
        return QImage();
    const uchar *pixels = file.map(file.size() - bytes, bytes);
    return QImage(pixels, screenSize.width(), screenSize.height(), lineBytes, QImage::Format_RGB32)
        .copy(area);
}

bool DesktopSession::savePicture(const QString &file) const
{
    return QDir().mkpath(QFileInfo(file).path()) && picture().save(file, "PNG");
}

bool samePixels(const QImage &one, const QImage &other)
{
    return !one.isNull() && one == other;
}

} // namespace testsupport
