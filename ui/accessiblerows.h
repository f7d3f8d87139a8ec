// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The accessible interfaces of the two tables: each is a list of its rows. A row of the
// main table is its cell. A row of the history is an entry, because only rows near the
// view have a frame. All of it lives in the GUI thread; Qt owns the interfaces.

#pragma once

#include <QAccessibleWidget>
#include <QHash>

class HistoryRows;
class RowTable;

class AccessibleRows : public QAccessibleWidget
{
public:
    explicit AccessibleRows(RowTable *table);
    ~AccessibleRows() override;

    int childCount() const override;
    QAccessibleInterface *child(int row) const override;
    int indexOfChild(const QAccessibleInterface *row) const override;
    /// @p x and @p y are screen coordinates.
    QAccessibleInterface *childAt(int x, int y) const override;

    RowTable *rowTable() const { return table; }
    /// The entries that the table shows; null for the main table, whose rows are its cells.
    const HistoryRows *history() const;

private:
    QAccessibleInterface *entry(int row, int count) const;
    void forgetEntries() const;

    RowTable *table;
    /// The interfaces made so far, by the order of the entries' arrival.
    mutable QHash<int, QAccessible::Id> knownEntries;
    mutable QMetaObject::Connection forgetting; ///< of knownEntries, before they are renumbered
};

/// An entry of the history by its file name, described by time and folder.
class AccessibleEntry : public QAccessibleInterface
{
public:
    AccessibleEntry(const AccessibleRows *list, int arrival);

    /// Counted from the top of the list.
    int row() const;

    bool isValid() const override;
    QObject *object() const override { return nullptr; }
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QString text(QAccessible::Text kind) const override;
    /// Does nothing: the history is read-only.
    void setText(QAccessible::Text, const QString &) override {}
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override;

private:
    const AccessibleRows *list;
    int arrival;
};

/// Registers these interfaces and those of the widgets with Qt, once before they are asked for;
/// again does nothing.
void installAccessibility();
