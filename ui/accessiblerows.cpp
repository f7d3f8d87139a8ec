// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "ui/accessiblerows.h"

#include "ui/historyrows.h"
#include "ui/rowtable.h"
#include "widgets/accessiblewidgets.h"

namespace
{

QAccessibleInterface *accessibleTable(const QString &, QObject *object)
{
    auto *table = qobject_cast<RowTable *>(object);
    return table != nullptr ? new AccessibleRows(table) : nullptr;
}

} // namespace

AccessibleRows::AccessibleRows(RowTable *ofTable)
    : QAccessibleWidget(ofTable, QAccessible::List)
    , table(ofTable)
{
}

AccessibleRows::~AccessibleRows()
{
    QObject::disconnect(forgetting);
    for (const QAccessible::Id id : qAsConst(knownEntries))
        QAccessible::deleteAccessibleInterface(id);
}

/// Not a member, because Qt may ask for the interface before the table has its history.
const HistoryRows *AccessibleRows::history() const
{
    return table->findChild<HistoryRows *>(QString(), Qt::FindDirectChildrenOnly);
}

int AccessibleRows::childCount() const
{
    const HistoryRows *entries = history();
    return entries != nullptr ? entries->count() : table->rowCount();
}

QAccessibleInterface *AccessibleRows::child(int row) const
{
    if (const HistoryRows *entries = history())
        return entry(row, entries->count());
    QWidget *cell = table->cellWidget(row, 0);
    return cell != nullptr ? QAccessible::queryAccessibleInterface(cell) : nullptr;
}

QAccessibleInterface *AccessibleRows::entry(int row, int count) const
{
    if (row < 0 || row >= count)
        return nullptr;
    if (!forgetting) {
        forgetting = QObject::connect(history(), &HistoryRows::aboutToRemove, table,
                                      [this] { forgetEntries(); });
    }
    const int arrival = count - 1 - row;
    if (!knownEntries.contains(arrival)) {
        auto *made = new AccessibleEntry(this, arrival);
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): Qt owns it from here on
        knownEntries.insert(arrival, QAccessible::registerAccessibleInterface(made));
    }
    return QAccessible::accessibleInterface(knownEntries.value(arrival));
}

int AccessibleRows::indexOfChild(const QAccessibleInterface *row) const
{
    if (const auto *ofHistory = dynamic_cast<const AccessibleEntry *>(row))
        return ofHistory->isValid() ? ofHistory->row() : -1;
    const QObject *cell = row != nullptr ? row->object() : nullptr;
    for (int index = 0; cell != nullptr && index < table->rowCount(); ++index) {
        if (table->cellWidget(index, 0) == cell)
            return index;
    }
    return -1;
}

QAccessibleInterface *AccessibleRows::childAt(int x, int y) const
{
    const int row = table->rowAt(table->viewport()->mapFromGlobal(QPoint(x, y)).y());
    return row >= 0 ? child(row) : nullptr;
}

/// Their interfaces would belong to other entries afterwards.
void AccessibleRows::forgetEntries() const
{
    for (const QAccessible::Id id : qAsConst(knownEntries)) {
        QAccessibleEvent gone(QAccessible::accessibleInterface(id), QAccessible::ObjectDestroyed);
        QAccessible::updateAccessibility(&gone);
        QAccessible::deleteAccessibleInterface(id);
    }
    knownEntries.clear();
}

AccessibleEntry::AccessibleEntry(const AccessibleRows *ofList, int ofArrival)
    : list(ofList)
    , arrival(ofArrival)
{
}

int AccessibleEntry::row() const
{
    const HistoryRows *entries = list->history();
    return entries != nullptr ? entries->count() - 1 - arrival : -1;
}

bool AccessibleEntry::isValid() const
{
    return row() >= 0;
}

QAccessibleInterface *AccessibleEntry::parent() const
{
    return QAccessible::queryAccessibleInterface(list->rowTable());
}

QString AccessibleEntry::text(QAccessible::Text kind) const
{
    if (!isValid())
        return QString();
    const HistoryRows::Entry &entry = list->history()->entryAt(row());
    if (kind == QAccessible::Name)
        return entry.fileName;
    if (kind == QAccessible::Description)
        return QStringLiteral("日期：%1，路径：%2").arg(entry.time, entry.path);
    return QString();
}

QRect AccessibleEntry::rect() const
{
    const RowTable *table = list->rowTable();
    const QRect inView(0, table->rowViewportPosition(row()), table->columnWidth(0),
                       table->rowHeight(row()));
    return QRect(table->viewport()->mapToGlobal(inView.topLeft()), inView.size());
}

QAccessible::State AccessibleEntry::state() const
{
    QAccessible::State state;
    const RowTable *table = list->rowTable();
    const QRect view(table->viewport()->mapToGlobal(QPoint(0, 0)), table->viewport()->size());
    state.invalid = !isValid();
    state.readOnly = true;
    state.invisible = !table->isVisible();
    state.offscreen = !view.intersects(rect());
    return state;
}

void installAccessibility()
{
    installAccessibleWidgets();
    QAccessible::installFactory(accessibleTable);
}
