// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "zztablecell.h"

#include "elision.h"
#include "plainlabel.h"
#include "progressoverlay.h"
#include "stylesheets.h"

#include <QAbstractScrollArea>
#include <QAccessible>
#include <QCheckBox>
#include <QFileInfo>
#include <QIcon>
#include <QLabel>
#include <QMouseEvent>

namespace
{

constexpr QRect checkBoxGeometry(15, 0, 25, ZZTableCell::cellHeight);
constexpr QRect iconGeometry(42, 7, 16, 16);
constexpr QRect nameGeometry(60, 0, 240, ZZTableCell::cellHeight);
constexpr QRect folderGeometry(315, 0, 463, ZZTableCell::cellHeight);
constexpr QRect overlayGeometry(1, 0, ZZTableCell::cellWidth - 2, ZZTableCell::cellHeight);

/// Takes clicks anywhere on its geometry. A QCheckBox without a caption passes clicks beside its
/// square on to the row.
class RowCheckBox : public QCheckBox
{
public:
    using QCheckBox::QCheckBox;

protected:
    bool hitButton(const QPoint &position) const override { return rect().contains(position); }
};

/// The viewport where @p parent is a table, because setCellWidget() makes it the parent in any
/// case. A later change of parent would have all style sheets of the row read again.
QWidget *parentOfRow(QWidget *parent)
{
    const auto *table = qobject_cast<QAbstractScrollArea *>(parent);
    return table != nullptr ? table->viewport() : parent;
}

} // namespace

ZZTableCell::ZZTableCell(QWidget *parent)
    : QFrame(parentOfRow(parent))
{
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
    QLabel *name = addTextLabel(QStringLiteral("nameLabel"), nameGeometry, entry.fileName());
    addIconLabel(icon);
    QLabel *folder =
        addTextLabel(QStringLiteral("placeLabel"), folderGeometry, entry.absolutePath());
    // After the labels: each new widget asks its style for margins, which takes long with a style
    // sheet. Before the overlay, whose own sheet would otherwise be read twice.
    setStyleSheet(stylesheets::row());
    showElided(name);
    showElided(folder);
    addProgressOverlay();
    built = true;
}

void ZZTableCell::addCheckBox(const QString &fileName, const QString &folder)
{
    checkBox = new RowCheckBox(this);
    checkBox->setObjectName(QStringLiteral("checkBox"));
    checkBox->setAccessibleName(fileName.isEmpty() ? entryPath : fileName);
    checkBox->setAccessibleDescription(folder);
    checkBox->setGeometry(checkBoxGeometry);
    checkBox->setPalette(stylesheets::windowPalette());
    checkBox->setChecked(true);
    connect(checkBox, &QCheckBox::clicked, this, &ZZTableCell::checkBoxClicked);
    connect(checkBox, &QCheckBox::toggled, this, &ZZTableCell::announceTick);
}

void ZZTableCell::addIconLabel(const QIcon &icon)
{
    auto *label = new PlainLabel(this, QStringLiteral("iconLabel"), iconGeometry);
    label->setPixmap(icon.pixmap(iconGeometry.size(), QIcon::Normal, QIcon::Off));
}

QLabel *ZZTableCell::addTextLabel(const QString &objectName, const QRect &geometry,
                                  const QString &text)
{
    auto *label = new PlainLabel(this, objectName, geometry);
    label->setToolTip(text);
    label->setAccessibleName(text); // not the elided text
    return label;
}

void ZZTableCell::showElided(QLabel *label)
{
    label->ensurePolished(); // measures the text in the font of the style sheet
    label->setText(elidedKeepingTail(label->toolTip(), label->width(), label));
}

void ZZTableCell::addProgressOverlay()
{
    progressOverlay = new ProgressOverlay(this);
    progressOverlay->setObjectName(QStringLiteral("progressOverlay"));
    progressOverlay->setStyleSheet(stylesheets::progressOverlay());
    progressOverlay->setGeometry(overlayGeometry);
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
    if (built)
        progressOverlay->showPercent(percent, overlayGeometry.size());
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

/// Announces the new state of the row; QCheckBox announces only its own.
void ZZTableCell::announceTick()
{
    if (!QAccessible::isActive())
        return;
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent change(this, changed);
    QAccessible::updateAccessibility(&change);
}
