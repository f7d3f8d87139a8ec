// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "ui/rowtable.h"

#include "widgets/stylesheets.h"

#include <QAccessible>
#include <QHeaderView>
#include <QScrollBar>
#include <QStyledItemDelegate>

namespace
{

/// Each new row has the geometry of all rows' widgets set again. They fill their cells; the default
/// delegate asks the style for an item's text rectangle, which takes several times as long.
class CellFiller : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void updateEditorGeometry(QWidget *widget, const QStyleOptionViewItem &option,
                              const QModelIndex &) const override
    {
        widget->setGeometry(option.rect);
    }
};

} // namespace

RowTable::RowTable(int columns, QWidget *parent)
    : QTableWidget(0, columns, parent)
{
    setStyleSheet(stylesheets::table());
    QPalette transparent = palette();
    transparent.setBrush(QPalette::Base, QColor(255, 255, 255, 0));
    setPalette(transparent);
    setSelectionMode(QAbstractItemView::NoSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setShowGrid(false);
    setAutoScroll(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem); // some styles default to pixels
    // There are no items to edit, yet a cell without a widget would open a text field.
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setItemDelegate(new CellFiller(this));
    setUpHeaders();
}

void RowTable::setUpHeaders()
{
    constexpr int headingHeight = 25;
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft);
    horizontalHeader()->setFixedHeight(headingHeight);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(0); // a large font would make rows higher
    // A row whose height is set after it came has the table laid out once more.
    verticalHeader()->setDefaultSectionSize(entryHeight);
}

/// The scroll bar of a long table takes width from the columns. They could then be scrolled
/// sideways, out of line with the headings over the table.
void RowTable::updateGeometries()
{
    QTableWidget::updateGeometries();
    horizontalScrollBar()->setRange(0, 0);
}

void RowTable::announceRow(int row)
{
    if (!QAccessible::isActive() || cellWidget(row, 0) == nullptr)
        return;
    QAccessibleEvent created(cellWidget(row, 0), QAccessible::ObjectCreated);
    QAccessible::updateAccessibility(&created);
}

/// Announces the focus of a row. QTableView would announce that of a cell, in an index that counts
/// headings too.
void RowTable::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): QTableView's would make its announcement
    QAbstractItemView::currentChanged(current, previous);
    if (!QAccessible::isActive() || !current.isValid() || !hasFocus())
        return;
    QAccessibleEvent focused(this, QAccessible::Focus);
    focused.setChild(current.row());
    QAccessible::updateAccessibility(&focused);
}
