// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "zztablecell.h"

#include "accessiblewidgets.h"
#include "elision.h"
#include "plainlabel.h"
#include "progressoverlay.h"
#include "stylesheets.h"
#include "windowpalette.h"

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QCheckBox>
#include <QFileInfo>
#include <QIcon>
#include <QLabel>
#include <QMouseEvent>

namespace
{

constexpr QRect checkBoxPlace(15, 0, 25, 30);
constexpr QRect iconPlace(42, 7, 16, 16);
constexpr QRect namePlace(60, 0, 240, 30);
constexpr QRect placePlace(315, 0, 463, 30);
constexpr int overlayLeft = 1;

/// Takes clicks anywhere on its place; a plain check box without a caption lets
/// those beside its small square through to the row.
class RowCheckBox : public QCheckBox
{
public:
    using QCheckBox::QCheckBox;

protected:
    bool hitButton(const QPoint &position) const override { return rect().contains(position); }
};

/// Where a row of @p parent is put in the end: a table shows its rows in its
/// viewport. Moved there later, the row would have its style sheets read anew, the
/// overlay's among them.
QWidget *ownerOfRow(QWidget *parent)
{
    const auto *table = qobject_cast<QAbstractScrollArea *>(parent);
    return table != nullptr ? table->viewport() : parent;
}

} // namespace

ZZTableCell::ZZTableCell(QWidget *parent)
    : QFrame(ownerOfRow(parent))
{
    installAccessibleWidgets();
}

void ZZTableCell::build(const QString &fullPath, const QIcon &icon, const QImage &, int newRow,
                        int newColumn)
{
    if (built)
        return;
    entryPath = fullPath;
    setIndex(newRow, newColumn);
    setWindowFlags(Qt::FramelessWindowHint);
    resize(cellWidth, cellHeight);

    const QFileInfo entry(fullPath);
    addCheckBox(entry.fileName(), entry.absolutePath());
    QLabel *name = addTextLabel(QStringLiteral("nameLabel"), namePlace, entry.fileName());
    addIconLabel(icon);
    QLabel *place = addTextLabel(QStringLiteral("placeLabel"), placePlace, entry.absolutePath());
    // Only now: every widget that is made asks its style for margins, and a style sheet takes
    // long to answer. But before the overlay, which would else have its own sheet read again.
    setStyleSheet(stylesheets::row());
    showElided(name);
    showElided(place);
    addProgressOverlay();
    built = true;
}

void ZZTableCell::addCheckBox(const QString &fileName, const QString &folder)
{
    checkBox = new RowCheckBox(this);
    checkBox->setObjectName(QStringLiteral("checkBox"));
    checkBox->setAccessibleName(fileName.isEmpty() ? entryPath : fileName);
    checkBox->setAccessibleDescription(folder);
    checkBox->setGeometry(checkBoxPlace);
    checkBox->setPalette(windowPalette());
    checkBox->setChecked(true);
    connect(checkBox, &QCheckBox::clicked, this, &ZZTableCell::checkBoxClicked);
    connect(checkBox, &QCheckBox::toggled, this, &ZZTableCell::announceTick);
}

void ZZTableCell::addIconLabel(const QIcon &icon)
{
    auto *label = new PlainLabel(this);
    label->setObjectName(QStringLiteral("iconLabel"));
    label->setGeometry(iconPlace);
    label->setPixmap(icon.pixmap(iconPlace.size(), QIcon::Normal, QIcon::Off));
}

QLabel *ZZTableCell::addTextLabel(const QString &objectName, const QRect &place,
                                  const QString &text)
{
    auto *label = new PlainLabel(this);
    label->setObjectName(objectName);
    label->setGeometry(place);
    label->setToolTip(text);
    label->setAccessibleName(text); // who listens is told the whole text
    return label;
}

void ZZTableCell::showElided(QLabel *label)
{
    // Gives the label the style sheet's font now, so that the text is measured in
    // the font it will be drawn in.
    label->ensurePolished();
    label->setText(elidedKeepingTail(label->toolTip(), label->width(), label));
}

void ZZTableCell::addProgressOverlay()
{
    progressOverlay = new ProgressOverlay(this);
    progressOverlay->setObjectName(QStringLiteral("progressOverlay"));
    progressOverlay->setStyleSheet(stylesheets::progressOverlay());
    progressOverlay->setGeometry(overlayLeft, 0, cellWidth - 2 * overlayLeft, cellHeight);
    progressOverlay->hide();
}

QString ZZTableCell::fullPath() const
{
    return entryPath;
}

void ZZTableCell::setIndex(int newRow, int newColumn)
{
    row = newRow;
    column = newColumn;
}

void ZZTableCell::setProgress(int percent)
{
    if (!built)
        return;
    progressOverlay->showPercent(percent, QSize(cellWidth - 2 * overlayLeft, cellHeight));
}

void ZZTableCell::setChecked(bool checked)
{
    if (built)
        checkBox->setChecked(checked);
}

bool ZZTableCell::isChecked() const
{
    return built && checkBox->isChecked();
}

void ZZTableCell::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        emit tableCellClicked(row, column);
}

void ZZTableCell::checkBoxClicked()
{
    emit tableCellClicked(row, column);
}

/// The box tells of its tick itself; this is for the row.
void ZZTableCell::announceTick()
{
    if (!QAccessible::isActive())
        return;
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent change(this, changed);
    QAccessible::updateAccessibility(&change);
}
