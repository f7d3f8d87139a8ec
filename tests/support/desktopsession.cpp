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

int headerWord(const QByteArray &screen, int index)
{
    const auto *words = screen.constData();
    return static_cast<int>(qFromBigEndian<quint32>(words + sizeof(quint32) * size_t(index)));
}

QImage decodeScreen(const QByteArray &screen)
{
    if (screen.size() < headerWords * int(sizeof(quint32)))
        return QImage();
    const int offset = headerWord(screen, 0) + headerWord(screen, coloursWord) * colourBytes;
    const int width = headerWord(screen, widthWord);
    const int height = headerWord(screen, heightWord);
    const int lineBytes = headerWord(screen, lineBytesWord);
    if (screen.size() < offset + height * lineBytes)
        return QImage();
    const auto *lines = reinterpret_cast<const uchar *>(screen.constData()) + offset;
    return QImage(lines, width, height, lineBytes, QImage::Format_RGB32).copy();
}

QString number(int value)
{
    return QString::number(value);
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

/// The first server has one monitor, whatever it is told. The second shows each of its two as a
/// window of the first, where pictures can be taken of them.
bool DesktopSession::startMonitors(const QSize &left, const QSize &right)
{
    const QString pixels = QStringLiteral("%1x%2+%3+0");
    monitors.setProcessEnvironment(environment());
    monitors.setStandardErrorFile(scratch.filePath(QStringLiteral("monitor-messages")));
    // Qt would take the two for copies of each other by what RANDR says of them.
    monitors.start(QStringLiteral("Xephyr"),
                   {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("+xinerama"),
                    QStringLiteral("-extension"), QStringLiteral("RANDR"),
                    QStringLiteral("-screen"), pixels.arg(left.width()).arg(left.height()).arg(0),
                    QStringLiteral("-origin"), QStringLiteral("%1,0").arg(left.width()),
                    QStringLiteral("-screen"),
                    pixels.arg(right.width()).arg(right.height()).arg(left.width()),
                    QStringLiteral("-nolisten"), QStringLiteral("tcp"), QStringLiteral("-ac"),
                    QStringLiteral("-noreset")});
    return learnDisplay(monitors);
}

bool DesktopSession::startServer(const QSize &size, int dotsPerInch)
{
    // Access control is off because a second user's shredder shows itself here
    // too; nothing but test windows is ever on this screen.
    server.setStandardErrorFile(scratch.filePath(QStringLiteral("server-messages")));
    const QString screen = QStringLiteral("%1x%2x24").arg(size.width()).arg(size.height());
    server.start(QStringLiteral("Xvfb"),
                 {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                  QStringLiteral("0"), screen, QStringLiteral("-dpi"), number(dotsPerInch),
                  QStringLiteral("-nolisten"), QStringLiteral("tcp"), QStringLiteral("-ac"),
                  QStringLiteral("-noreset"), QStringLiteral("-fbdir"), scratch.path()});
    return learnDisplay(server);
}

bool DesktopSession::learnDisplay(TiedProcess &ofServer)
{
    while (!ofServer.canReadLine() && ofServer.waitForReadyRead(patience))
        continue;
    const QByteArray line = ofServer.readLine().trimmed();
    if (line.isEmpty()) {
        problemText = QStringLiteral("no virtual X server: ") + ofServer.errorString();
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
    least.insert(more);
    return least;
}

QByteArray DesktopSession::xdotool(const QStringList &arguments) const
{
    return outputOf(QStringLiteral("xdotool"), arguments, environment());
}

void DesktopSession::movePointer(const QPoint &position) const
{
    xdotool({QStringLiteral("mousemove"), number(position.x()), number(position.y())});
}

void DesktopSession::movePointerInto(WindowId window, const QPoint &place) const
{
    xdotool({QStringLiteral("mousemove"), QStringLiteral("--window"), QString::number(window),
             number(place.x()), number(place.y())});
}

void DesktopSession::moveWindow(WindowId window, const QRect &place) const
{
    xdotool({QStringLiteral("windowsize"), QString::number(window), number(place.width()),
             number(place.height()), QStringLiteral("windowmove"), QString::number(window),
             number(place.x()), number(place.y())});
}

void DesktopSession::click(const QPoint &position) const
{
    xdotool({QStringLiteral("mousemove"), number(position.x()), number(position.y()),
             QStringLiteral("click"), QStringLiteral("1")});
}

void DesktopSession::pressButton(int button) const
{
    xdotool({QStringLiteral("mousedown"), number(button)});
}

void DesktopSession::releaseButton(int button) const
{
    xdotool({QStringLiteral("mouseup"), number(button)});
}

void DesktopSession::drag(const QPoint &from, const QPoint &to, int button) const
{
    constexpr int steps = 8;
    movePointer(from);
    pressButton(button);
    for (int step = 1; step <= steps; ++step)
        movePointer(from + (to - from) * step / steps);
    releaseButton(button);
}

void DesktopSession::type(const QString &text) const
{
    xdotool({QStringLiteral("type"), QStringLiteral("--"), text});
}

void DesktopSession::pressKey(const QString &key) const
{
    xdotool({QStringLiteral("key"), key});
}

QVector<WindowId> DesktopSession::windowsOf(qint64 pid, const QString &title) const
{
    // A window that goes while all are searched ends the search without an answer.
    const QVector<WindowId> windows = searchWindowsOf(pid, title);
    return windows.isEmpty() ? searchWindowsOf(pid, title) : windows;
}

QVector<WindowId> DesktopSession::searchWindowsOf(qint64 pid, const QString &title) const
{
    const QList<QByteArray> lines =
        xdotool({QStringLiteral("search"), QStringLiteral("--all"), QStringLiteral("--onlyvisible"),
                 QStringLiteral("--pid"), QString::number(pid), QStringLiteral("--name"),
                 title.isEmpty() ? QString() : QLatin1Char('^') + title + QLatin1Char('$')})
            .split('\n');
    QVector<WindowId> windows;
    for (const QByteArray &line : lines) {
        if (!line.isEmpty())
            windows.append(line.toUInt());
    }
    return windows;
}

QRect DesktopSession::geometryOf(WindowId window) const
{
    // The answer is lines such as X=560, of which the first four count.
    const QList<QByteArray> lines = xdotool({QStringLiteral("getwindowgeometry"),
                                             QStringLiteral("--shell"), QString::number(window)})
                                        .split('\n');
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
    xdotool({QStringLiteral("windowkill"), window});
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
    const QImage whole = decodeScreen(screen.readAll());
    return area.isNull() ? whole : whole.copy(area);
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
