// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The colours of what no style sheet speaks of: headings, check boxes, captions of
// grey buttons. The windows are light on every desktop, and these must not turn
// white with a dark one.

#pragma once

#include <QColor>
#include <QPalette>

inline QPalette windowPalette()
{
    const QColor face(0xef, 0xef, 0xef);
    const QColor ink(0x33, 0x33, 0x33);
    const QColor disabledInk(0xaa, 0xaa, 0xaa);
    QPalette palette(face);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
        palette.setColor(role, ink);
        palette.setColor(QPalette::Disabled, role, disabledInk);
    }
    return palette;
}
