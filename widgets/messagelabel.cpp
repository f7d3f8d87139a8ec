// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "messagelabel.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QStringList>
#include <QTextLayout>

namespace
{

/// The line-height of the label's style sheet, which Qt ignores for labels.
constexpr int usualLineHeight = 20;
/// Kept free above and below, so that a long text does not touch the title bar.
constexpr int verticalMargin = 2;

/// @p paragraph in lines of at most @p width pixels.
QStringList wrapped(const QString &paragraph, const QFont &font, qreal width)
{
    QStringList lines;
    QTextLayout layout(paragraph, font);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines.append(paragraph.mid(line.textStart(), line.textLength()));
    }
    layout.endLayout();
    return lines;
}

/// As wrapped(), in as many lines but of about the same length, so that the last line is not a
/// single word.
QStringList wrappedEvenly(const QString &paragraph, const QFont &font, int width)
{
    const int lines = wrapped(paragraph, font, width).size();
    int narrowest = lines > 1 ? width / lines : width;
    while (narrowest < width && wrapped(paragraph, font, narrowest).size() > lines)
        ++narrowest;
    return wrapped(paragraph, font, narrowest);
}

} // namespace

MessageLabel::MessageLabel(QWidget *dialog)
    : QLabel(dialog)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
}

void MessageLabel::paintEvent(QPaintEvent *)
{
    QStringList lines;
    const QStringList paragraphs = text().split(QLatin1Char('\n'));
    for (const QString &paragraph : paragraphs)
        lines += wrappedEvenly(paragraph, font(), width());

    const int lineHeight = qMin(usualLineHeight, (height() - 2 * verticalMargin) / lines.size());
    const bool onTop = (alignment() & Qt::AlignTop) != 0;
    const int top = onTop ? 0 : (height() - lineHeight * lines.size()) / 2;
    const QFontMetricsF metrics(font());
    const int firstBaseline = top + qRound((lineHeight + metrics.ascent() - metrics.descent()) / 2);

    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    for (int index = 0; index < lines.size(); ++index)
        painter.drawText(0, firstBaseline + index * lineHeight, lines.at(index));
}
