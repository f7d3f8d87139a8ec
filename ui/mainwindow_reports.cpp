// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The two reports: refused paths, and the result of a run.

#include "ui/mainwindow.h"

#include "controller/walle.h"
#include "ui/reporttexts.h"
#include "ui/rowtable.h"
#include "widgets/customdialog.h"
#include "widgets/zztablecell.h"

#include <QCheckBox>

void MainWindow::alertDialogEva(uint reasons)
{
    showReport(reporttexts::rejectionText(reasons), DialogKind::Refusal);
}

void MainWindow::showResultDialogEva(uint first, uint succeeded, uint failed)
{
    Q_UNUSED(first)
    if (!mainTable || !selectAllCheckBox)
        return;
    for (int row = 0; row < mainTable->rowCount(); ++row) {
        if (ZZTableCell *cell = cellAt(row))
            cell->setChecked(false);
    }
    if (selectAllCheckBox->checkState() != Qt::Unchecked)
        selectAllCheckBox->setCheckState(Qt::Unchecked);
    // After a stop some rows are still checked in the list, and a row may be on its way here. What
    // is shown as unticked must not be shredded by the next run.
    if (walle)
        walle->postCommand(CommandUncheckAll);
    showReport(reporttexts::resultText(succeeded, failed),
               reporttexts::resultDialogKind(succeeded, failed));
}

void MainWindow::showReport(const QString &text, int kind)
{
    CustomDialog dialog;
    dialog.moveToCentreOf(geometry());
    dialog.setMessage(text, kind);
    dialog.exec();
}
