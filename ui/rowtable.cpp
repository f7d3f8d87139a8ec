// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "ui/rowtable.h"

#include "ui/accessiblerows.h"

RowTable::RowTable(int rows, int columns, QWidget *parent)
    : QTableWidget(rows, columns, parent)
{
    installAccessibleRows();
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
