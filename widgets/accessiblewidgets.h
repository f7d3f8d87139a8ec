// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The accessible interfaces of this folder's widgets where Qt's own do not suffice: a row
// is a list item that can be ticked, its overlay a progress bar, a title bar a title bar.
// All of it lives in the GUI thread; Qt owns the interfaces.

#pragma once

#include <QAccessibleWidget>

class ProgressOverlay;
class ZZTableCell;

/// A row of the main table, by the name of its entry.
class AccessibleCell : public QAccessibleWidget
{
public:
    explicit AccessibleCell(ZZTableCell *cell);

    /// The table, whose children the rows are; not its viewport.
    QAccessibleInterface *parent() const override;
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    /// Ticks and unticks, as a click on the box does.
    void doAction(const QString &actionName) override;

private:
    QString description() const;

    ZZTableCell *cell;
};

/// How far the entry of a row is shredded, in percent.
class AccessibleProgress : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit AccessibleProgress(ProgressOverlay *overlay);

    void *interface_cast(QAccessible::InterfaceType type) override;
    QString text(QAccessible::Text kind) const override;
    QVariant currentValue() const override;
    /// Does nothing: the value is read-only.
    void setCurrentValue(const QVariant &) override {}
    QVariant maximumValue() const override { return 100; }
    QVariant minimumValue() const override { return 0; }
    QVariant minimumStepSize() const override { return 1; }

private:
    ProgressOverlay *overlay;
};

/// Registers the interfaces with Qt, once before the widgets are asked for theirs; again does
/// nothing.
void installAccessibleWidgets();
