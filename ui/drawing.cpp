// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "ui/drawing.h"

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

/// Whether a unit is as many pixels as the screen has for a 96th of an inch.
void scaleWithTheScreen(bool wanted)
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, wanted);
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
#endif
}

/// A screen that says 100 dots per inch would blur every image for nothing, one that says 75
/// would shrink them. Below this, half way to the first size that desktops offer, a unit is a
/// pixel.
constexpr qreal smallestScale = 1.125;

bool isHardlyScaled(const QApplication &application)
{
    const qreal scale = application.devicePixelRatio();
    return scale < smallestScale && !qFuzzyCompare(scale, qreal(1));
}

} // namespace

std::unique_ptr<QApplication> makeApplication(int &argc, char **argv)
{
    drawWithoutOpenGl();
    scaleWithTheScreen(true);
    // An application takes out the arguments that it knows.
    const std::vector<char *> arguments(argv, argv + argc);
    auto application = std::make_unique<QApplication>(argc, argv);
    if (!isHardlyScaled(*application))
        return application;

    // What the screen says is known only now, and the choice has to be made before.
    application.reset();
    scaleWithTheScreen(false);
    std::copy(arguments.cbegin(), arguments.cend(), argv);
    argc = static_cast<int>(arguments.size());
    return std::make_unique<QApplication>(argc, argv);
}
