// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The table of either window: transparent, read-only, one widget for each row and no
// items. It scrolls vertically only, and Tab leaves it. To screen readers it is a list of
// its rows. Lives in the GUI thread and belongs to its window.

#pragma once

#include "widgets/zztablecell.h"

#include <QTableWidget>

class RowTable : public QTableWidget
{
    Q_OBJECT

public:
    static constexpr int entryHeight = ZZTableCell::cellHeight; ///< pixels of a row

    RowTable(int columns, QWidget *parent);

    /// Tells screen readers of the new row @p row.
    void announceRow(int row);

protected:
    void updateGeometries() override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    void setUpHeaders();
};
