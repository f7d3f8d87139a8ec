// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "gallerystage.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCursor>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QScreen>
#include <QTextStream>
#include <QtTest>

#include <algorithm>

namespace testsupport
{

namespace
{

constexpr QPoint outOfTheWay(5, 5);

void movePointer(const QPoint &position)
{
    QCursor::setPos(position);
    if (!eventually([&] { return QCursor::pos() == position; }))
        qFatal("the pointer does not move");
}

bool isTooltipVisible()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.cbegin(), windows.cend(), [](const QWidget *window) {
        return window->inherits("QTipLabel") && window->isVisible();
    });
}

void pointAt(const QWidget *widget)
{
    movePointer(widget->mapToGlobal(widget->rect().center()));
    // The tip of what the pointer was on before stays for a moment.
    if (!eventually([&] { return widget->underMouse() && !isTooltipVisible(); }))
        qFatal("the pointer does not reach %s", qPrintable(widget->objectName()));
}

/// The part @p area of the screen once two looks at it agree.
QImage standingScreen(const QRect &area)
{
    QImage last;
    const auto standsStill = [&] {
        constexpr int betweenLooks = 60; // milliseconds
        QTest::qWait(betweenLooks);
        constexpr WId wholeScreen = 0;
        const QImage now =
            QGuiApplication::primaryScreen()
                ->grabWindow(wholeScreen, area.x(), area.y(), area.width(), area.height())
                .toImage()
                .convertToFormat(QImage::Format_RGB888);
        const bool same = !now.isNull() && now == last;
        last = now;
        return same;
    };
    if (!eventually(standsStill))
        qFatal("the screen does not stand still");
    return last;
}

} // namespace

GalleryStage::GalleryStage()
{
    show();
    movePointer(outOfTheWay);
}

GalleryStage::~GalleryStage()
{
    movePointer(outOfTheWay);
}

void GalleryStage::addRows(const QVector<StagedRow> &rows)
{
    for (const StagedRow &row : rows) {
        window->addRowToMainTableEva(QString::fromUtf8(row.path));
        const int index = table()->rowCount() - 1;
        if (row.kind == StagedRow::Folder) {
            // One that does not exist looks like a file to the window.
            auto *icon = cell(index)->findChild<QLabel *>(QStringLiteral("iconLabel"));
            icon->setPixmap(QIcon(QStringLiteral(":/images/ico_folder")).pixmap(icon->size()));
        }
        window->setTableItemCheckBoxStateEva(index, row.ticked);
    }
    const int ticked = tickedRows().size();
    window->setSelectAllCheckBoxEnabledEva(true);
    window->setSelectAllCheckBoxStateEva(ticked == table()->rowCount());
    window->setRemoveButtonEnabledEva(ticked > 0);
    window->setCrushButtonEnabledEva(ticked > 0);
}

void GalleryStage::takePicture(const QByteArray &name, const QWidget *subject) const
{
    const QRect place = (subject != nullptr ? subject : window.get())->frameGeometry();
    constexpr int smallest = 0;
    if (!standingScreen(place).save(QString::fromLatin1(name + ".png"), "PNG", smallest))
        qFatal("cannot write the picture %s", name.constData());
    QTextStream(stdout) << name << '\n';
}

void GalleryStage::takeHovered(const QByteArray &name, const QWidget *widget) const
{
    pointAt(widget);
    takePicture(name, widget->window());
}

void GalleryStage::takePressed(const QByteArray &name, QWidget *button) const
{
    auto *pressed = qobject_cast<QAbstractButton *>(button);
    pressed->setDown(true);
    takeHovered(name, button);
    pressed->setDown(false);
}

void GalleryStage::takeTooltip(const QByteArray &name, const QWidget *widget) const
{
    pointAt(widget);
    // A tip comes when the pointer has moved on the widget and then rests.
    movePointer(QCursor::pos() + QPoint(1, 0));
    if (!eventually(isTooltipVisible))
        qFatal("no tooltip appears");
    takePicture(name, widget->window());
}

} // namespace testsupport
