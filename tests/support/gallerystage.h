// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Where the pictures of the gallery are taken: a main window on the screen, rows
// put into it, a real pointer, and a camera that waits until the screen stands
// still. GUI thread only.

#pragma once

#include "shownwindow.h"

#include <QDir>
#include <QPoint>
#include <QString>
#include <QVector>

class QDialog;
class QImage;
class QRect;
class QWidget;

namespace testsupport
{

/// An entry of the table. The paths need not exist, so the pictures are the same
/// everywhere; nothing in the gallery is ever shredded.
struct StagedRow {
    enum Kind { File, Folder };
    QString path;
    Kind kind = File;
    bool ticked = true;
};

class GalleryStage
{
public:
    /// Pictures go to @p folder.
    explicit GalleryStage(const QDir &folder);
    ~GalleryStage();
    GalleryStage(const GalleryStage &) = delete;
    GalleryStage &operator=(const GalleryStage &) = delete;

    /// Appends @p rows and gives ticks and buttons the state the controller would give them.
    void addRows(const QVector<StagedRow> &rows);

    /// Rests the pointer on the middle of @p widget, or of its part @p place.
    void pointAt(const QWidget *widget) const;
    void pointAt(const QWidget *widget, const QPoint &place) const;
    void pointAt(const char *name) const { pointAt(shown.find(name)); }
    /// Presses the mouse button on the widget called @p name and holds it down.
    void holdDown(const char *name);
    void holdDown(const QWidget *widget);
    /// Takes the pointer where nothing reacts to it, still holding, and only then lets go, so
    /// that nothing is clicked.
    void withdraw();
    /// Points at @p widget until its tooltip is there.
    void waitForTooltip(const QWidget *widget) const;

    /// Takes the picture @p name of @p window, or of the main window.
    void takePicture(const QString &name, const QWidget *window = nullptr) const;

    ShownWindow shown;

private:
    QImage standingScreen(const QRect &area) const;

    QDir pictureFolder;
    bool holding = false;
};

} // namespace testsupport
