// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "desktopsession.h"

#include "eventually.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QtEndian>

namespace testsupport
{

namespace
{

// The server keeps its screen in a file in the format of xwd: a header of 32-bit
// words in network order, the colour table, then the lines. Reading that is
// instant, so that conditions about pixels can be polled.
constexpr int widthWord = 4;
constexpr int heightWord = 5;
constexpr int lineBytesWord = 12;
constexpr int coloursWord = 19;
constexpr int headerWords = 25;
constexpr int colourBytes = 12;

int headerWord(const uchar *screen, int index)
{
    return static_cast<int>(qFromBigEndian<quint32>(screen + sizeof(quint32) * size_t(index)));
}

} // namespace

DesktopSession::~DesktopSession()
{
    windowManager.end();
    monitors.end();
    server.end();
}

bool DesktopSession::start(const QSize &size, int dotsPerInch)
{
    return startServer(size, dotsPerInch) && startWindowManager();
}

bool DesktopSession::startWithMonitors(const QSize &left, const QSize &right)
{
    const QSize both(left.width() + right.width(), qMax(left.height(), right.height()));
    return startServer(both, 96) && startMonitors(left, right) && startWindowManager();
}

bool DesktopSession::hasMonitors()
{
    return !QStandardPaths::findExecutable(QStringLiteral("Xephyr")).isEmpty();
}

bool DesktopSession::startServer(const QSize &size, int dotsPerInch)
{
    return startDisplay(server,
                        QStringLiteral("Xvfb -screen 0 %1x%2x24 -dpi %3")
                            .arg(size.width())
                            .arg(size.height())
                            .arg(dotsPerInch),
                        {QStringLiteral("-fbdir"), scratch.path()});
}

/// The first server has one monitor, whatever it is told. The second shows each of its two as a
/// window of the first, where pictures can be taken of them.
bool DesktopSession::startMonitors(const QSize &left, const QSize &right)
{
    monitors.setProcessEnvironment(environment());
    // Qt would take the two for copies of each other by what RANDR says of them.
    return startDisplay(monitors, QStringLiteral("Xephyr +xinerama -extension RANDR"
                                                 " -screen %1x%2+0+0 -origin %1,0"
                                                 " -screen %3x%4+%1+0")
                                      .arg(left.width())
                                      .arg(left.height())
                                      .arg(right.width())
                                      .arg(right.height()));
}

/// Access control is off because a second user's shredder shows itself here too; nothing but test
/// windows is ever on this screen.
bool DesktopSession::startDisplay(TiedProcess &process, const QString &command,
                                  const QStringList &more)
{
    const QStringList words = (command + QStringLiteral(" -displayfd 1 -nolisten tcp -ac -noreset"))
                                  .split(QLatin1Char(' '));
    process.setStandardErrorFile(scratch.filePath(words.first()));
    process.start(words.first(), words.mid(1) + more);
    while (!process.canReadLine() && process.waitForReadyRead(patience))
        continue;
    const QByteArray line = process.readLine().trimmed();
    if (line.isEmpty()) {
        problemText = QStringLiteral("no virtual X server: ") + process.errorString();
        return false;
    }
    displayName = QLatin1Char(':') + QString::fromLatin1(line);
    return true;
}

bool DesktopSession::startWindowManager()
{
    windowManager.setProcessEnvironment(environment());
    windowManager.setStandardOutputFile(QProcess::nullDevice());
    windowManager.setStandardErrorFile(scratch.filePath(QStringLiteral("manager-messages")));
    windowManager.start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
    const auto announced = [this] {
        return outputOf(QStringLiteral("xprop"),
                        {QStringLiteral("-root"), QStringLiteral("_NET_SUPPORTING_WM_CHECK")},
                        environment())
            .contains("window id");
    };
    if (eventually(announced))
        return true;
    problemText = QStringLiteral("no window manager: ") + windowManager.errorString();
    return false;
}

QProcessEnvironment DesktopSession::environment() const
{
    const QProcessEnvironment own = QProcessEnvironment::systemEnvironment();
    QProcessEnvironment least;
    for (const QString &name : {QStringLiteral("PATH"), QStringLiteral("TZ"),
                                QStringLiteral("ASAN_OPTIONS"), QStringLiteral("UBSAN_OPTIONS")}) {
        if (own.contains(name))
            least.insert(name, own.value(name));
    }
    least.insert(QStringLiteral("DISPLAY"), displayName);
    least.insert(QStringLiteral("HOME"), scratch.path());
    least.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    least.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    least.insert(QStringLiteral("XDG_RUNTIME_DIR"), scratch.path());
    least.insert(additions);
    return least;
}

/// @p command has no blanks within its words.
QByteArray DesktopSession::xdotool(const QString &command) const
{
    return outputOf(QStringLiteral("xdotool"), command.split(QLatin1Char(' ')), environment());
}

void DesktopSession::movePointer(const QPoint &place) const
{
    xdotool(QStringLiteral("mousemove %1 %2").arg(place.x()).arg(place.y()));
}

void DesktopSession::movePointerInto(WindowId window, const QPoint &place) const
{
    xdotool(
        QStringLiteral("mousemove --window %1 %2 %3").arg(window).arg(place.x()).arg(place.y()));
}

void DesktopSession::moveWindow(WindowId window, const QRect &place) const
{
    xdotool(QStringLiteral("windowsize %1 %2 %3 windowmove %1 %4 %5")
                .arg(window)
                .arg(place.width())
                .arg(place.height())
                .arg(place.x())
                .arg(place.y()));
}

void DesktopSession::click(const QPoint &place) const
{
    xdotool(QStringLiteral("mousemove %1 %2 click 1").arg(place.x()).arg(place.y()));
}

void DesktopSession::pressButton(int button) const
{
    xdotool(QStringLiteral("mousedown %1").arg(button));
}

void DesktopSession::releaseButton(int button) const
{
    xdotool(QStringLiteral("mouseup %1").arg(button));
}

void DesktopSession::carryPointer(const QPoint &from, const QPoint &to) const
{
    constexpr int steps = 8;
    QStringList moves;
    for (int step = 1; step <= steps; ++step) {
        const QPoint place = from + (to - from) * step / steps;
        moves << QStringLiteral("mousemove %1 %2 sleep 0.01").arg(place.x()).arg(place.y());
    }
    xdotool(moves.join(QLatin1Char(' ')));
}

void DesktopSession::drag(const QPoint &from, const QPoint &to, int button) const
{
    movePointer(from);
    pressButton(button);
    carryPointer(from, to);
    releaseButton(button);
}

void DesktopSession::type(const QString &text) const
{
    // Not at the pace of a typist.
    outputOf(QStringLiteral("xdotool"),
             {QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("1"),
              QStringLiteral("--"), text},
             environment());
}

void DesktopSession::pressKey(const QString &key) const
{
    xdotool(QStringLiteral("key ") + key);
}

QVector<WindowId> DesktopSession::windowsOf(qint64 pid, const QString &title) const
{
    const QString name = title.isEmpty() ? QString() : QLatin1Char('^') + title + QLatin1Char('$');
    const QStringList search{QStringLiteral("search"),
                             QStringLiteral("--all"),
                             QStringLiteral("--onlyvisible"),
                             QStringLiteral("--pid"),
                             QString::number(pid),
                             QStringLiteral("--name"),
                             name};
    QVector<WindowId> windows;
    // A window that goes while all are searched ends the search without an answer.
    for (int attempt = 0; attempt < 2 && windows.isEmpty(); ++attempt) {
        const auto lines = outputOf(QStringLiteral("xdotool"), search, environment()).split('\n');
        for (const QByteArray &line : lines) {
            if (!line.isEmpty())
                windows.append(line.toUInt());
        }
    }
    return windows;
}

QRect DesktopSession::geometryOf(WindowId window) const
{
    // The answer is lines such as X=560.
    const auto lines =
        xdotool(QStringLiteral("getwindowgeometry --shell %1").arg(window)).split('\n');
    const auto value = [&lines](const char *name) {
        for (const QByteArray &line : lines) {
            if (line.startsWith(name))
                return line.mid(static_cast<int>(qstrlen(name))).toInt();
        }
        return 0;
    };
    return QRect(value("X="), value("Y="), value("WIDTH="), value("HEIGHT="));
}

void DesktopSession::closeByWindowManager(WindowId window) const
{
    outputOf(QStringLiteral("wmctrl"),
             {QStringLiteral("-i"), QStringLiteral("-c"), QString::number(window)}, environment());
}

void DesktopSession::takeDisplayFrom(const QString &window) const
{
    xdotool(QStringLiteral("windowkill ") + window);
}

QString DesktopSession::clipboardText() const
{
    return QString::fromUtf8(
        outputOf(QStringLiteral("xclip"),
                 {QStringLiteral("-o"), QStringLiteral("-selection"), QStringLiteral("clipboard")},
                 environment()));
}

QImage DesktopSession::picture(const QRect &area) const
{
    QFile screen(scratch.filePath(QStringLiteral("Xvfb_screen0")));
    if (!screen.open(QIODevice::ReadOnly))
        return QImage();
    const uchar *words = screen.map(0, screen.size());
    if (words == nullptr || screen.size() < headerWords * qint64(sizeof(quint32)))
        return QImage();
    const int offset = headerWord(words, 0) + headerWord(words, coloursWord) * colourBytes;
    const int height = headerWord(words, heightWord);
    const int lineBytes = headerWord(words, lineBytesWord);
    if (screen.size() < offset + qint64(height) * lineBytes)
        return QImage();
    const QImage whole(words + offset, headerWord(words, widthWord), height, lineBytes,
                       QImage::Format_RGB32);
    return whole.copy(area);
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
