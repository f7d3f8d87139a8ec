// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "ui/application.h"

#include <QLibrary>
#include <QScreen>
#include <QtGlobal>

#include <algorithm>
#include <vector>

namespace
{

/// Windows drawn by the processor need no OpenGL, and loading it takes a third of the start and a
/// third of the memory.
void drawWithoutOpenGl()
{
    if (!qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION"))
        qputenv("QT_XCB_GL_INTEGRATION", "none");
}

/// Turns Qt's high-DPI scaling on, fractions kept, or off.
void setScaling(bool wanted)
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, wanted);
    QCoreApplication::setAttribute(Qt::AA_DisableHighDpiScaling, !wanted);
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
#endif
}

/// Below this scale, half way to the first size that desktops offer, a unit is a pixel. Otherwise a
/// screen of 100 dots per inch would blur every image for nothing, and one of 75 shrink them.
constexpr qreal smallestScale = 1.125;

/// By the screen's own scale alone; a scale that the user's environment sets does not count.
bool isHardlyScaled()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (screen == nullptr || qEnvironmentVariableIsSet("QT_SCREEN_SCALE_FACTORS"))
        return false;
    const qreal wish = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble();
    const qreal scale = wish > 0 ? screen->devicePixelRatio() / wish : screen->devicePixelRatio();
    return scale < smallestScale && !qFuzzyCompare(scale, qreal(1));
}

/// A second connection to the X server, for the life of the object. A server that loses its last
/// client, which this program may be, resets and refuses connections meanwhile.
class XConnection
{
public:
    XConnection()
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            return;
        using Connect = void *(*)(const char *display, int *screen);
        if (const auto connect = reinterpret_cast<Connect>(library.resolve("xcb_connect")))
            connection = connect(nullptr, nullptr);
    }
    ~XConnection()
    {
        using Disconnect = void (*)(void *connection);
        const auto disconnect = reinterpret_cast<Disconnect>(library.resolve("xcb_disconnect"));
        if (connection != nullptr && disconnect != nullptr)
            disconnect(connection);
    }
    XConnection(const XConnection &) = delete;
    XConnection &operator=(const XConnection &) = delete;

private:
    QLibrary library{QStringLiteral("xcb"), 1}; // which Qt's plugin has loaded
    void *connection = nullptr;
};

} // namespace

std::unique_ptr<QApplication> makeApplication(int &argc, char **argv)
{
    drawWithoutOpenGl();
    setScaling(true);
    // QApplication removes the arguments and the variable that it knows; a second one needs them.
    const std::vector<char *> arguments(argv, argv + argc);
    const QByteArray startupId = qgetenv("DESKTOP_STARTUP_ID");
    auto application = std::make_unique<QApplication>(argc, argv);
    if (!isHardlyScaled())
        return application;

    // The resolution is known only now, but scaling is chosen before the application is made.
    const XConnection connection;
    application.reset();
    setScaling(false);
    if (!startupId.isEmpty())
        qputenv("DESKTOP_STARTUP_ID", startupId);
    std::copy(arguments.cbegin(), arguments.cend(), argv);
    argc = static_cast<int>(arguments.size());
    return std::make_unique<QApplication>(argc, argv);
}
