// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// How the windows get onto the screen.

#pragma once

#include <QtGlobal>

/// Before the application is constructed: windows drawn by the processor need no OpenGL, and
/// loading it takes a third of the start and a third of the memory. Whoever set the variable has
/// their reasons.
inline void drawWithoutOpenGl()
{
    if (!qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION"))
        qputenv("QT_XCB_GL_INTEGRATION", "none");
}
