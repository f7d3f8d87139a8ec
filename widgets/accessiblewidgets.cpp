// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "accessiblewidgets.h"

#include "customtitlebar.h"
#include "progressoverlay.h"
#include "zztablecell.h"

#include <QAbstractScrollArea>
#include <QCheckBox>
#include <QFileInfo>

namespace
{

/// A plain QWidget that is a dialog window, as the history window is. Qt's own interface has no
/// meaningful role for it.
bool isPlainDialog(const QWidget *widget)
{
    return widget->metaObject() == &QWidget::staticMetaObject && widget->isWindow()
           && widget->windowType() == Qt::Dialog;
}

QAccessibleInterface *accessibleWidget(const QString &className, QObject *object)
{
    if (auto *cell = qobject_cast<ZZTableCell *>(object))
        return new AccessibleCell(cell);
    if (auto *overlay = qobject_cast<ProgressOverlay *>(object))
        return new AccessibleProgress(overlay);
    if (auto *bar = qobject_cast<CustomTitleBar *>(object))
        return new QAccessibleWidget(bar, QAccessible::TitleBar);
    if (className == QLatin1String("QWidget")) {
        auto *widget = qobject_cast<QWidget *>(object);
        if (widget != nullptr && isPlainDialog(widget))
            return new QAccessibleWidget(widget, QAccessible::Dialog);
    }
    return nullptr;
}

} // namespace

AccessibleCell::AccessibleCell(ZZTableCell *ofCell)
    : QAccessibleWidget(ofCell, QAccessible::ListItem)
    , cell(ofCell)
{
}

QAccessibleInterface *AccessibleCell::parent() const
{
    QWidget *owner = cell->parentWidget();
    if (owner != nullptr && qobject_cast<QAbstractScrollArea *>(owner->parentWidget()) != nullptr)
        return QAccessible::queryAccessibleInterface(owner->parentWidget());
    return QAccessibleWidget::parent();
}

QString AccessibleCell::text(QAccessible::Text kind) const
{
    if (kind == QAccessible::Name) {
        const QString fileName = QFileInfo(cell->fullPath()).fileName();
        return fileName.isEmpty() ? cell->fullPath() : fileName;
    }
    return kind == QAccessible::Description ? description() : QAccessibleWidget::text(kind);
}

/// The folder, and the progress while the entry is shredded.
QString AccessibleCell::description() const
{
    QString description = QFileInfo(cell->fullPath()).absolutePath();
    const auto *overlay = cell->findChild<ProgressOverlay *>();
    if (overlay != nullptr && overlay->percent() != 0)
        description += QStringLiteral("，已粉碎%1%").arg(overlay->percent());
    return description;
}

QAccessible::State AccessibleCell::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = true;
    state.checked = cell->isChecked();
    return state;
}

QStringList AccessibleCell::actionNames() const
{
    return {QAccessibleActionInterface::toggleAction()};
}

void AccessibleCell::doAction(const QString &actionName)
{
    auto *box = cell->findChild<QCheckBox *>();
    if (box != nullptr && actionName == QAccessibleActionInterface::toggleAction())
        box->click();
}

AccessibleProgress::AccessibleProgress(ProgressOverlay *ofOverlay)
    : QAccessibleWidget(ofOverlay, QAccessible::ProgressBar)
    , overlay(ofOverlay)
{
}

void *AccessibleProgress::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ValueInterface)
        return static_cast<QAccessibleValueInterface *>(this);
    return QAccessibleWidget::interface_cast(type);
}

QString AccessibleProgress::text(QAccessible::Text kind) const
{
    if (kind == QAccessible::Value)
        return QStringLiteral("%1%").arg(overlay->percent());
    return QAccessibleWidget::text(kind);
}

QVariant AccessibleProgress::currentValue() const
{
    return overlay->percent();
}

void installAccessibleWidgets()
{
    QAccessible::installFactory(accessibleWidget);
}
