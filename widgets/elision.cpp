// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "elision.h"

#include <QFontMetrics>
#include <QLatin1String>
#include <QWidget>

namespace
{

// Characters are UTF-16 code units here: six of them hold a dot and the usual
// extensions.
constexpr int tailLength = 6;

// What follows a prefix can reshape its last few characters (ligatures, kerning,
// joined emoji) and make it narrower, but by no more than this many line heights.
constexpr int reshapingReserve = 20;

/// A number of leading characters at or above which no shortening of @p text can
/// fit: the prefix of that length is too wide by itself. The search for the
/// longest fitting one may begin there; beginning at the end of the text would
/// measure a path of 4000 characters nearly 4000 times.
int leadingCharactersToTry(const QString &text, int pixelWidth, const QFontMetrics &metrics)
{
    constexpr int firstGuess = 64;
    const int tooWide = pixelWidth + reshapingReserve * metrics.height();
    const int most = text.length() - tailLength;
    int count = firstGuess;
    while (count < most && metrics.horizontalAdvance(text.left(count)) <= tooWide)
        count *= 2;
    return qMin(count, most);
}

} // namespace

QString elidedKeepingTail(const QString &text, int pixelWidth, const QWidget *widget)
{
    if (text.isEmpty() || pixelWidth < 1 || widget == nullptr)
        return text;

    const QFontMetrics metrics(widget->font());
    if (text.length() <= tailLength || metrics.horizontalAdvance(text) <= pixelWidth)
        return text;

    // The first candidate keeps every character and is wider than the text; it
    // is one all the same when nothing can be left out.
    const QString ending = QLatin1String("...") + text.right(tailLength);
    int count = leadingCharactersToTry(text, pixelWidth, metrics);
    QString shortened = text.left(count) + ending;
    while (count > 1 && metrics.horizontalAdvance(shortened) > pixelWidth) {
        --count;
        shortened = text.left(count) + ending;
    }
    return shortened;
}
