// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Where the pictures of the gallery are taken: a main window on the screen, rows
// put into it, a real pointer, and a camera that waits until the screen stands
// still. GUI thread only.

#pragma once

#include "windowtest.h"

#include <QVector>

namespace testsupport
{

/// An entry of the table. The paths need not exist, so the pictures are the same
/// everywhere; nothing in the gallery is ever shredded.
struct StagedRow {
    enum Kind { File, Folder };
    QByteArray path; ///< in UTF-8
    Kind kind = File;
    bool ticked = true;
};

class GalleryStage : public ShownWindow
{
public:
    GalleryStage();
    ~GalleryStage();
    GalleryStage(const GalleryStage &) = delete;
    GalleryStage &operator=(const GalleryStage &) = delete;

    // What a scene does with the window.
    using ShownWindow::find;
    using ShownWindow::isEnabled;
    using ShownWindow::partOf;
    using ShownWindow::table;
    using ShownWindow::window;

    /// Appends @p rows and gives ticks and buttons the state the controller would give them.
    void addRows(const QVector<StagedRow> &rows);

    /// Takes the picture @p name of @p subject, or of the main window, into the working folder.
    void takePicture(const QByteArray &name, const QWidget *subject = nullptr) const;
    /// As takePicture(), of the window of @p widget, with the pointer on the middle of that.
    void takeHovered(const QByteArray &name, const QWidget *widget) const;
    /// The same, while it is held down.
    void takePressed(const QByteArray &name, QWidget *button) const;
    /// The same, once its tooltip is there.
    void takeTooltip(const QByteArray &name, const QWidget *widget) const;
};

// What the gallery shows, scene by scene, each on stages of its own. They need a screen, a window
// manager and a home folder in which a history may be written.
void showTables();
void showButtons();
void showRun();
void showDialogs();
void showHistory();

} // namespace testsupport
