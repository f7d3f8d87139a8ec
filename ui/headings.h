// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The headings that lie over the tables.

#pragma once

#include "ui/textsize.h"
#include "widgets/windowpalette.h"

#include <QLabel>

/// Lets the text of @p heading begin @p pixels from its left edge, where the texts of its column
/// begin, or at the padding of its sheet where that is further in.
inline void startTextAt(QLabel *heading, int pixels)
{
    // The sheet names neither colour nor size for the text.
    heading->setPalette(windowPalette());
    limitTextSize(heading);
    heading->ensurePolished(); // the padding comes from the sheet
    heading->setIndent(qMax(0, pixels - heading->contentsRect().left()));
}
