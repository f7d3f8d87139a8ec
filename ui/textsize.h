// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// How large a text may be whose place has a fixed size and whose sheet names no size.

#pragma once

#include <QFont>
#include <QFontInfo>
#include <QWidget>

/// Gives @p widget the desktop's font, in the largest size at which "全选" stays whole beside the
/// box of any style where the desktop's is larger. That is 11 points on a screen that is not
/// scaled. After the widget's sheet.
inline void limitTextSize(QWidget *widget)
{
    constexpr int largestPixelSize = 15;
    widget->ensurePolished();
    if (QFontInfo(widget->font()).pixelSize() <= largestPixelSize)
        return;
    QFont limited;
    limited.setPixelSize(largestPixelSize);
    widget->setFont(limited);
}
