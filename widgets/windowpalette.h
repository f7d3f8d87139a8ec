// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The colours of what no style sheet speaks of: headings, check boxes, captions of
// grey buttons. The windows are light on every desktop; on a dark one these would
// else be white on white, or black. To be set after a widget's sheet, and on the
// widget itself: a widget with a sheet takes no palette over from its parent.

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
