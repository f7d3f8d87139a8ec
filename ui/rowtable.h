// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A table whose rows each have one widget, and no items. It is looked at, not edited,
// and scrolls up and down only; Tab leaves it. Screen readers meet it as a list of those rows.
// Lives in the GUI thread and belongs to its window.

#pragma once

#include <QTableWidget>

class RowTable : public QTableWidget
{
    Q_OBJECT

public:
    static constexpr int entryHeight = 30; ///< pixels of a row

    RowTable(int rows, int columns, QWidget *parent);

    /// Tells screen readers that @p row has come.
    void announceRow(int row);

protected:
    void updateGeometries() override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
};
