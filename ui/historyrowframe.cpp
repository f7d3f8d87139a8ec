// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "ui/historyrowframe.h"

#include "ui/rowtable.h"
#include "widgets/plainlabel.h"
#include "widgets/stylesheets.h"

#include <QFontMetrics>

namespace
{

constexpr int rowFrameWidth = 678;
constexpr QRect timeGeometry(2, 0, 150, RowTable::entryHeight);
constexpr QRect nameGeometry(154, 0, 200, RowTable::entryHeight);
constexpr int pathLeft = 356;
/// Between the window's border and the text of the first column.
constexpr int timeIndent = 13;
constexpr QRect pathGeometry(pathLeft, 0, rowFrameWidth - pathLeft, RowTable::entryHeight);

void showElided(PlainLabel *label, const QString &text)
{
    label->ensurePolished(); // the font comes from the frame's style sheet
    label->setText(label->fontMetrics().elidedText(text, Qt::ElideRight, label->width()));
    label->setToolTip(text);
}

} // namespace

HistoryRowFrame::HistoryRowFrame(QWidget *parent)
    : QFrame(parent, Qt::FramelessWindowHint)
    , timeLabel(new PlainLabel(this, QStringLiteral("timeLabel"), timeGeometry))
    , nameLabel(new PlainLabel(this, QStringLiteral("nameLabel"), nameGeometry))
    , pathLabel(new PlainLabel(this, QStringLiteral("pathLabel"), pathGeometry))
{
    timeLabel->setIndent(timeIndent);
    resize(rowFrameWidth, RowTable::entryHeight);
    setStyleSheet(stylesheets::row());
}

void HistoryRowFrame::setTexts(const QString &time, const QString &fileName, const QString &path)
{
    if (timeLabel->text() == time && nameLabel->toolTip() == fileName
        && pathLabel->toolTip() == path)
        return;
    timeLabel->setText(time);
    timeLabel->setToolTip(time);
    showElided(nameLabel, fileName);
    showElided(pathLabel, path);
}
