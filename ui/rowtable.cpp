// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "ui/rowtable.h"

#include "ui/accessiblerows.h"

#include <QScrollBar>
#include <QStyledItemDelegate>

namespace
{

/// Every row that comes has the widgets of all of them placed again. They fill their cells;
/// to have the style find out where an item's text would be takes several times as long.
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

RowTable::RowTable(int rows, int columns, QWidget *parent)
    : QTableWidget(rows, columns, parent)
{
    installAccessibleRows();
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem); // some styles ask for pixels
    // There are no items to edit, yet a cell without a widget would open a text field.
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setItemDelegate(new CellFiller(this));
}

/// The scroll bar of a long table takes width from the columns. They could then be scrolled
/// sideways, away from the headings that lie over the table.
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

/// A table would tell that a cell has the focus, and counts cells and headings; here the rows
/// are what there is.
void RowTable::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): past the table's announcement
    QAbstractItemView::currentChanged(current, previous);
    if (!QAccessible::isActive() || !current.isValid() || !hasFocus())
        return;
    QAccessibleEvent focused(this, QAccessible::Focus);
    focused.setChild(current.row());
    QAccessible::updateAccessibility(&focused);
}
