// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "gallerystage.h"

#include "eventually.h"
#include "tiedprocess.h"
#include "widgets/zztablecell.h"

#include <QApplication>
#include <QCursor>
#include <QFileInfo>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QScreen>
#include <QTableWidget>
#include <QTextStream>
#include <QtTest>

#include <algorithm>

namespace testsupport
{

namespace
{

/// Between two looks at the screen that must agree.
constexpr int betweenLooks = 60;
constexpr QPoint outOfTheWay(5, 5);

void mouse(const QStringList &arguments)
{
    outputOf(QStringLiteral("xdotool"), arguments, QProcessEnvironment::systemEnvironment());
}

void movePointer(const QPoint &position)
{
    const QPoint pixel = position * qApp->devicePixelRatio();
    mouse({QStringLiteral("mousemove"), QString::number(pixel.x()), QString::number(pixel.y())});
    if (!eventually([&] { return QCursor::pos() == position; }))
        qFatal("the pointer does not move");
}

/// A folder that does not exist looks like a file to the window.
void dressAsFolder(const ZZTableCell *cell)
{
    auto *icon = cell->findChild<QLabel *>(QStringLiteral("iconLabel"));
    icon->setPixmap(QIcon(QStringLiteral(":/images/ico_folder")).pixmap(icon->size()));
}

bool isTooltipVisible()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.cbegin(), windows.cend(), [](const QWidget *window) {
        return window->inherits("QTipLabel") && window->isVisible();
    });
}

} // namespace

GalleryStage::GalleryStage(const QDir &folder)
    : pictureFolder(folder)
{
    movePointer(outOfTheWay);
}

GalleryStage::~GalleryStage()
{
    withdraw();
}

void GalleryStage::addRows(const QVector<StagedRow> &rows)
{
    for (const StagedRow &row : rows) {
        shown->addRowToMainTableEva(row.path);
        const int index = shown.table()->rowCount() - 1;
        if (row.kind == StagedRow::Folder)
            dressAsFolder(shown.cell(index));
        shown->setTableItemCheckBoxStateEva(index, row.ticked);
    }
    const int ticked = shown.tickedRows().size();
    shown->setSelectAllCheckBoxEnabledEva(true);
    shown->setSelectAllCheckBoxStateEva(ticked == shown.table()->rowCount());
    shown->setRemoveButtonEnabledEva(ticked > 0);
    shown->setCrushButtonEnabledEva(ticked > 0);
}

void GalleryStage::pointAt(const QWidget *widget) const
{
    pointAt(widget, widget->rect().center());
}

void GalleryStage::pointAt(const QWidget *widget, const QPoint &place) const
{
    movePointer(widget->mapToGlobal(place));
    if (!eventually([&] { return widget->underMouse(); }))
        qFatal("the pointer does not reach %s", qPrintable(widget->objectName()));
}

void GalleryStage::holdDown(const char *name)
{
    holdDown(shown.find(name));
}

void GalleryStage::holdDown(const QWidget *widget)
{
    pointAt(widget);
    mouse({QStringLiteral("mousedown"), QStringLiteral("1")});
    holding = true;
    const auto pressed = [] { return QApplication::mouseButtons() != Qt::NoButton; };
    if (!eventually(pressed))
        qFatal("the mouse button does not go down");
}

void GalleryStage::withdraw()
{
    movePointer(outOfTheWay);
    if (!holding)
        return;
    mouse({QStringLiteral("mouseup"), QStringLiteral("1")});
    holding = false;
    const auto released = [] { return QApplication::mouseButtons() == Qt::NoButton; };
    if (!eventually(released))
        qFatal("the mouse button does not come up");
}

void GalleryStage::waitForTooltip(const QWidget *widget) const
{
    pointAt(widget);
    // A tip comes when the pointer has moved on the widget and then rests.
    movePointer(QCursor::pos() + QPoint(1, 0));
    if (!eventually(isTooltipVisible))
        qFatal("no tooltip appears");
}

void GalleryStage::takePicture(const QString &name, const QWidget *window) const
{
    const QWidget *subject = window != nullptr ? window : shown.find("background")->window();
    const QString file = pictureFolder.filePath(name + QStringLiteral(".png"));
    constexpr int smallest = 0;
    if (!standingScreen(subject->frameGeometry()).save(file, "PNG", smallest))
        qFatal("cannot write %s", qPrintable(file));
    QTextStream(stdout) << name << '\n';
}

/// The part @p area of the screen once two looks at it agree.
QImage GalleryStage::standingScreen(const QRect &area) const
{
    QImage last;
    const auto standsStill = [&] {
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

} // namespace testsupport
