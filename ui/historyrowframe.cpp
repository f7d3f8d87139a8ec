// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "ui/historyrowframe.h"

#include "widgets/plainlabel.h"
#include "widgets/stylesheets.h"

#include <QFontMetrics>
#include <QRect>

namespace
{

constexpr int rowFrameWidth = 678;
constexpr int rowFrameHeight = 30;
constexpr QRect timePlace(2, 0, 150, rowFrameHeight);
constexpr QRect namePlace(154, 0, 200, rowFrameHeight);
constexpr int pathLeft = 356;
/// Sets the first column off the border of the window.
constexpr int timeIndent = 13;
constexpr QRect pathPlace(pathLeft, 0, rowFrameWidth - pathLeft, rowFrameHeight);

PlainLabel *addLabel(QWidget *frame, const QString &objectName, const QRect &place)
{
    auto *label = new PlainLabel(frame);
    label->setObjectName(objectName);
    label->setGeometry(place);
    return label;
}

void showElided(PlainLabel *label, const QString &text)
{
    label->ensurePolished(); // the font comes from the frame's style sheet
    label->setText(label->fontMetrics().elidedText(text, Qt::ElideRight, label->width()));
    label->setToolTip(text);
}

} // namespace

HistoryRowFrame::HistoryRowFrame(QWidget *parent)
    : QFrame(parent, Qt::FramelessWindowHint)
    , timeLabel(addLabel(this, QStringLiteral("timeLabel"), timePlace))
    , nameLabel(addLabel(this, QStringLiteral("nameLabel"), namePlace))
    , pathLabel(addLabel(this, QStringLiteral("pathLabel"), pathPlace))
{
    timeLabel->setIndent(timeIndent);
    resize(rowFrameWidth, rowFrameHeight);
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
