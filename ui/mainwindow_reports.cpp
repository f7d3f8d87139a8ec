// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The reports of refused paths and of a run, and the one way to run a dialog.

#include "ui/mainwindow.h"

#include "controller/walle.h"
#include "ui/reporttexts.h"
#include "ui/rowtable.h"
#include "widgets/customdialog.h"
#include "widgets/zztablecell.h"

#include <QCheckBox>

void MainWindow::alertDialogEva(uint reasons)
{
    runDialog(reporttexts::rejectionText(reasons), DialogKind::Refusal);
}

void MainWindow::showResultDialogEva(uint, uint succeeded, uint failed)
{
    if (!mainTable || !selectAllCheckBox)
        return;
    for (int row = 0; row < mainTable->rowCount(); ++row) {
        if (ZZTableCell *cell = cellAt(row))
            cell->setChecked(false);
    }
    if (selectAllCheckBox->checkState() != Qt::Unchecked)
        selectAllCheckBox->setCheckState(Qt::Unchecked);
    // After a stop some entries are still checked in the list, and another row may just be
    // arriving. The next run must not shred what is shown as unticked.
    if (walle)
        walle->postCommand(CommandUncheckAll);
    runDialog(reporttexts::resultText(succeeded, failed),
              reporttexts::resultDialogKind(succeeded, failed));
}

/// Returns when the user has closed the dialog, with a QDialog::DialogCode.
int MainWindow::runDialog(const QString &text, int kind) const
{
    CustomDialog dialog;
    dialog.moveToCentreOf(geometry());
    dialog.setMessage(text, kind);
    return dialog.exec();
}
