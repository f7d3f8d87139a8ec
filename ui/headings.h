// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The headings that lie over the tables.

#pragma once

#include "widgets/windowpalette.h"

#include <QLabel>

/// Lets the text of @p heading begin @p pixels from its left edge, where the texts of its column
/// begin; left to the padding of its sheet it would begin beside them.
inline void startTextAt(QLabel *heading, int pixels)
{
    // The sheet names no colour for the text.
    heading->setPalette(windowPalette());
    heading->ensurePolished(); // the padding comes from the sheet
    const int shift = pixels - heading->contentsRect().left();
    heading->setIndent(qMax(0, shift));
    heading->setMargin(qMin(0, shift));
}
