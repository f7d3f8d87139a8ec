// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Where things are in the windows, for tests that meet the program as a person
// does: with a pointer and by looking. All windows have a fixed size, so a place
// is a constant. Coordinates are those of the window named by the namespace.

#pragma once

#include "literals.h"

#include <QPoint>
#include <QRect>

namespace testsupport
{

namespace mainwindow
{

inline QString title()
{
    return "Brenvale - 文件粉碎机"_s;
}

constexpr QSize size{800, 550};
/// Centred on the 1920 x 1080 screen of a DesktopSession.
constexpr QRect onScreen{QPoint{560, 265}, size};

constexpr QRect closeButton{768, 0, 27, 27};
constexpr QRect subtitle{84, 79, 600, 28};
constexpr QRect historyLink{700, 84, 84, 20};
constexpr QRect emptyPanel{240, 280, 400, 50};
/// The box itself; the words beside it change with the fonts installed.
constexpr QRect selectAllBox{16, 516, 18, 27};
constexpr QRect addButton{100, 516, 96, 27};
constexpr QRect removeButton{200, 516, 96, 27};
constexpr QRect crushButton{705, 516, 76, 27};

constexpr int firstRow = 140;
constexpr int rowHeight = 30;

constexpr QRect rowTickBox(int row)
{
    return {16, firstRow + row * rowHeight, 25, rowHeight};
}
constexpr QRect rowIcon(int row)
{
    return {43, firstRow + row * rowHeight + 7, 16, 16};
}

/// A place of the window that reacts to nothing: a pointer left here lights up
/// no button and covers nothing a test looks at.
constexpr QPoint restingPlace{500, 60};
/// Where the title strip is held.
constexpr QPoint grip{200, 20};

} // namespace mainwindow

namespace dialog
{

inline QString title()
{
    return "文件粉碎机"_s;
}

constexpr QSize size{420, 230};
/// Relative to the main window, in whose middle it opens.
constexpr QPoint overMainWindow{190, 160};
constexpr QRect closeButton{394, 2, 27, 27};
/// A report has its OK where a question has its Cancel.
constexpr QRect reportOk{323, 180, 76, 27};
constexpr QRect questionOk{230, 180, 76, 27};
constexpr QRect questionCancel = reportOk;

} // namespace dialog

namespace historywindow
{

constexpr QSize size{700, 500};
/// Relative to the main window it opens over.
constexpr QPoint overMainWindow{50, 25};
constexpr QRect closeButton{668, 0, 27, 27};
constexpr QRect copyButton{490, 466, 90, 27};
constexpr QRect clearButton{597, 466, 90, 27};

} // namespace historywindow

} // namespace testsupport
