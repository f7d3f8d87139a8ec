// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "plainlabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTextDocument>
#include <QToolTip>

PlainLabel::PlainLabel(QWidget *row, const QString &objectName, const QRect &geometry)
    : QLabel(row)
{
    setObjectName(objectName);
    setGeometry(geometry);
    // A row's style sheet has no selector, so it would draw the row's image in every label too,
    // displaced where the label does not begin at the row's top.
    setAttribute(Qt::WA_NoSystemBackground);
    setTextFormat(Qt::PlainText);
}

bool PlainLabel::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip || toolTip().isEmpty())
        return QLabel::event(event);
    showPlainToolTip(static_cast<QHelpEvent *>(event)->globalPos());
    return true;
}

/// Passes no widget to QToolTip, because the tooltip would inherit that widget's style sheet.
void PlainLabel::showPlainToolTip(const QPoint &position) const
{
    QString tip = toolTip();
    if (Qt::mightBeRichText(tip)) {
        tip = QStringLiteral("<span style='white-space:pre-wrap'>") + tip.toHtmlEscaped()
              + QStringLiteral("</span>");
    }
    QToolTip::showText(position, tip);
}

void PlainLabel::paintEvent(QPaintEvent *event)
{
    if (text().contains(QLatin1Char('\n')))
        paintOnOneLine();
    else
        QLabel::paintEvent(event);
}

/// A file name may hold line feeds, and a row is one line high.
void PlainLabel::paintOnOneLine()
{
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(),
                          static_cast<int>(alignment() | Qt::TextSingleLine), palette(),
                          isEnabled(), text(), foregroundRole());
}
