// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The constructor, and the connections between window and controller.

#include "ui/mainwindow.h"

#include "controller/walle.h"
#include "ui/accessiblerows.h"
#include "ui/historyrows.h"
#include "ui/rowtable.h"

#include <QCheckBox>
#include <QIcon>
#include <QImage>
#include <QPushButton>

MainWindow::MainWindow(QWidget *parent)
    : QFrame(parent)
    , walle(new Walle)
    , rowBackground(std::make_unique<QImage>())
    , historyMutex(std::make_unique<QMutex>())
    , tableMutex(std::make_unique<QMutex>())
{
    installAccessibility();
    fillWindowSizes();
    setUpWindow();
    addBackground();
    addTitleBar();
    addHeader();
    addMainTable();
    addTableHeading();
    addBottomButtons();
    connectButtons();
    addEmptyPanel();
    addSuccessPanel();
    addHistoryWindow();

    connectController();
    walle->start(QThread::InheritPriority);

    setWindowTitle(QStringLiteral("Brenvale - 文件粉碎机"));
    setWindowIcon(QIcon(QStringLiteral(":/images/logo")));
}

MainWindow::~MainWindow()
{
    walle->shutDown();
    // The table may still scroll while it is destroyed, and would ask this for rows.
    delete historyRows;
}

void MainWindow::connectButtons()
{
    connect(selectAllCheckBox, &QCheckBox::clicked, this, &MainWindow::selectAllEva);
    connect(addButton, &QPushButton::clicked, this, &MainWindow::addEva);
    connect(removeButton, &QPushButton::clicked, this, &MainWindow::removeSomeFilesEva);
    connect(crushButton, &QPushButton::clicked, this, &MainWindow::crushFilesEva);
}

/// Blocking where the controller must not go on before the window has done it, or before the user
/// has closed the report.
void MainWindow::connectController()
{
    connect(walle, &Walle::setSelectAllCheckBoxEnabled, this,
            &MainWindow::setSelectAllCheckBoxEnabledEva);
    connect(walle, &Walle::setSelectAllCheckBoxState, this,
            &MainWindow::setSelectAllCheckBoxStateEva);
    connect(walle, &Walle::setRemoveButtonEnabled, this, &MainWindow::setRemoveButtonEnabledEva);
    connect(walle, &Walle::setCrushButtonEnabled, this, &MainWindow::setCrushButtonEnabledEva);
    connect(walle, &Walle::addRowToMainTable, this, &MainWindow::addRowToMainTableEva,
            Qt::BlockingQueuedConnection);
    connect(walle, &Walle::removeRowFromMainTable, this, &MainWindow::removeRowFromMainTableEva);
    connect(walle, &Walle::setTableItemCheckBoxState, this,
            &MainWindow::setTableItemCheckBoxStateEva);
    connect(walle, &Walle::addRowToHistoryTable, this, &MainWindow::addRowOfLoad,
            Qt::BlockingQueuedConnection);
    connect(walle, &Walle::removeRowFromHistoryTable, this,
            &MainWindow::removeRowFromHistoryTableEva, Qt::BlockingQueuedConnection);
    connect(walle, &Walle::setTableRowHeight, this, &MainWindow::setTableRowHeightEva);
    connect(walle, &Walle::finishOne, this, &MainWindow::finishOneFileEva);
    connect(walle, &Walle::finishAll, this, &MainWindow::finishAllEva);
    connect(walle, &Walle::setCrushStarted, this, &MainWindow::setCrushStartedEva);
    connect(walle, &Walle::clipboardSetText, this, &MainWindow::slotClipboardSetTextEva,
            Qt::BlockingQueuedConnection);
    connect(walle, &Walle::setHistoryButtonEnabled, this, &MainWindow::enableButtonsOfLoad,
            Qt::BlockingQueuedConnection);
    connect(walle, &Walle::alertDialog, this, &MainWindow::alertDialogEva,
            Qt::BlockingQueuedConnection);
    connect(walle, &Walle::showResultDialog, this, &MainWindow::showResultDialogEva);
}
