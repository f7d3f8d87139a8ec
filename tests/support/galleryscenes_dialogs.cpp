// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The dialogs, each opened by the window as in life and photographed from within.

#include "galleryscenes.h"

#include "dialogdriver.h"
#include "gallerystage.h"

#include <QDialog>
#include <QPushButton>

namespace testsupport
{

namespace
{

constexpr uint everyReason = 0x3f;
constexpr uint firstReason = 0x01;
constexpr uint limitReason = 0x10;

/// Takes the picture @p name of the next dialog.
void awaitDialog(DialogDriver &driver, const GalleryStage &stage, const QString &name)
{
    driver.next([&stage, name](const QDialog &dialog) { stage.takePicture(name, &dialog); });
}

} // namespace

void showDialogs(const QDir &folder)
{
    GalleryStage stage(folder);
    DialogDriver driver;
    awaitDialog(driver, stage, QStringLiteral("dialog-refusal-one"));
    stage.shown->alertDialogEva(firstReason);
    awaitDialog(driver, stage, QStringLiteral("dialog-refusal-limit"));
    stage.shown->alertDialogEva(limitReason);
    awaitDialog(driver, stage, QStringLiteral("dialog-refusal-six"));
    stage.shown->alertDialogEva(everyReason);
    awaitDialog(driver, stage, QStringLiteral("dialog-success"));
    stage.shown->showResultDialogEva(0, 3, 0);
    awaitDialog(driver, stage, QStringLiteral("dialog-partial"));
    stage.shown->showResultDialogEva(0, 197, 3);
    awaitDialog(driver, stage, QStringLiteral("dialog-failure"));
    stage.shown->showResultDialogEva(0, 0, 3);
    awaitDialog(driver, stage, QStringLiteral("dialog-question"));
    stage.shown->crushFilesEva();

    driver.next([&stage](const QDialog &dialog) {
        stage.takePicture(QStringLiteral("question-over-window"));
        stage.pointAt(dialog.findChild<QPushButton *>(QStringLiteral("okButton")));
        stage.takePicture(QStringLiteral("dialog-hover-ok"), &dialog);
        stage.holdDown(dialog.findChild<QPushButton *>(QStringLiteral("cancelButton")));
        stage.takePicture(QStringLiteral("dialog-pressed-cancel"), &dialog);
        stage.withdraw();
        stage.pointAt(dialog.findChild<QPushButton *>(QStringLiteral("closeButton")));
        stage.takePicture(QStringLiteral("dialog-hover-close"), &dialog);
        stage.withdraw();
    });
    stage.addRows({{QStringLiteral("/home/lina/文档/旧合同.docx"), StagedRow::File, true},
                   {QStringLiteral("/home/lina/下载/旧手机备份"), StagedRow::Folder, true}});
    stage.shown->crushFilesEva();
}

} // namespace testsupport
