// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Shortening of file names and folders for the main table. The last characters stay, so
// that the extension can be read.

#pragma once

#include <QString>

class QWidget;

/// @p text shortened until it is at most @p pixelWidth pixels wide in the font of
/// @p widget: as many leading characters as fit, three full stops, the last six
/// characters. Nothing shorter than one leading character is tried, so the result
/// can be wider than asked for; a text of six characters or fewer, a width below
/// one and a missing widget leave the text as it is. GUI thread only.
QString elidedKeepingTail(const QString &text, int pixelWidth, const QWidget *widget);
