// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "shownwindow.h"

#include "promptly.h"
#include "widgets/zztablecell.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QTableWidget>
#include <QWindow>
#include <QtTest>

namespace testsupport
{

ShownWindow::ShownWindow()
{
    window.show();
    if (!QTest::qWaitForWindowExposed(&window, patience))
        qFatal("the window does not appear");
}

QString ShownWindow::textOf(const char *name) const
{
    return find(name)->property("text").toString();
}

bool ShownWindow::isTicked(const char *name) const
{
    return find<QAbstractButton>(name)->isChecked();
}

QTableWidget *ShownWindow::table() const
{
    return find<QTableWidget>("mainTable");
}

ZZTableCell *ShownWindow::cell(int row) const
{
    return qobject_cast<ZZTableCell *>(table()->cellWidget(row, 0));
}

QStringList ShownWindow::rows() const
{
    QStringList paths;
    for (int row = 0; row < table()->rowCount(); ++row)
        paths.append(cell(row)->fullPath());
    return paths;
}

QStringList ShownWindow::tickedRows() const
{
    QStringList paths;
    for (int row = 0; row < table()->rowCount(); ++row) {
        if (cell(row)->isChecked())
            paths.append(cell(row)->fullPath());
    }
    return paths;
}

void ShownWindow::click(QWidget *widget)
{
    click(widget, widget->visibleRegion().boundingRect().center());
}

void ShownWindow::click(QWidget *widget, QPoint place)
{
    const QWidget *top = widget->window();
    QTest::mouseClick(top->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      widget->mapTo(top, place));
}

void ShownWindow::clickRow(int row) const
{
    click(cell(row)->findChild<QWidget *>(QStringLiteral("nameLabel")));
}

void ShownWindow::clickTickBox(int row) const
{
    click(cell(row)->findChild<QWidget *>(QStringLiteral("checkBox")));
}

ShownWindow::DropOutcome ShownWindow::drop(const QMimeData &data)
{
    const QPoint place = window.rect().center();
    const Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(place, offered, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(&window, &enter);
    QDropEvent letGo(place, offered, &data, Qt::LeftButton, Qt::NoModifier);
    letGo.ignore();
    QApplication::sendEvent(&window, &letGo);
    return {enter.isAccepted(), letGo.isAccepted()};
}

void ShownWindow::drop(const QStringList &paths)
{
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls.append(QUrl::fromLocalFile(path));
    QMimeData data;
    data.setUrls(urls);
    drop(data);
}

bool ShownWindow::settle()
{
    // Commands are performed in order, and a copy answers whatever the state of things.
    const QString uncopied = QStringLiteral("nothing was copied yet");
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setText(uncopied);
    window.copyToClipboardEva();
    return promptly([&] { return clipboard->text() != uncopied; });
}

} // namespace testsupport
