// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The history window, a second window over the main one. Each time it opens it is
// emptied and the controller loads the history again.

#include "ui/mainwindow.h"

#include "controller/walle.h"
#include "ui/historyrows.h"
#include "ui/rowtable.h"
#include "ui/windowparts.h"
#include "widgets/customtitlebar.h"
#include "widgets/stylesheets.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMutexLocker>
#include <QPushButton>
#include <QScrollBar>

using windowparts::addHeading;
using windowparts::addHeadingSeparator;

namespace
{

QPushButton *addHistoryButton(QWidget *window, const QString &objectName, const QRect &geometry,
                              const QString &text)
{
    auto *button = new QPushButton(text, window);
    button->setObjectName(objectName);
    button->setGeometry(geometry);
    button->setStyleSheet(stylesheets::historyButton());
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

} // namespace

void MainWindow::addHistoryWindow()
{
    historyWindow = new QWidget(this, Qt::Dialog | Qt::FramelessWindowHint);
    historyWindow->setObjectName(QStringLiteral("historyWindow"));
    historyWindow->setAccessibleName(QStringLiteral("Brenvale - 文件粉碎记录"));
    const int width = windowSizes[HistoryWidth];
    const int height = windowSizes[HistoryHeight];
    historyWindow->setGeometry((windowSizes[ScreenWidth] - width) / 2,
                               (windowSizes[ScreenHeight] - height) / 2, width, height);
    historyWindow->setFixedSize(width, height);
    historyWindow->setStyleSheet(stylesheets::backgroundImage(QStringLiteral("bk_history")));
    addHistoryTitleBar();
    addHistoryTable();
    addHistoryHeading();
    addHistoryButtons();
    historyWindow->setWindowModality(Qt::WindowModal);
    connect(clearHistoryButton, &QPushButton::clicked, this, &MainWindow::removeAllFromHistoryEva);
    connect(copyButton, &QPushButton::clicked, this, &MainWindow::copyToClipboardEva);
    historyWindow->hide();
}

void MainWindow::addHistoryTitleBar()
{
    constexpr QRect barGeometry(0, 0, 698, 40);
    constexpr QPoint closePosition(668, 0);

    auto *bar = new CustomTitleBar(historyWindow);
    bar->setObjectName(QStringLiteral("historyTitleBar"));
    bar->setGeometry(barGeometry);
    bar->setMinimizeSlot(0);
    bar->addIcon(QStringLiteral("historyTitleIcon"));
    bar->addTitle(QStringLiteral("historyTitleText"), QStringLiteral("Brenvale - 文件粉碎记录"),
                  stylesheets::titleText());
    const QPushButton *close =
        bar->addCloseButton(QStringLiteral("historyCloseButton"), closePosition);
    connect(close, &QPushButton::clicked, this, &MainWindow::slotShowHistoryEva);
}

void MainWindow::addHistoryTable()
{
    constexpr QRect hostGeometry(1, 42, 698, 415);
    constexpr QRect tableGeometry(0, 0, 698, 415);

    auto *host = new QWidget(historyWindow);
    host->setObjectName(QStringLiteral("historyTableHost"));
    host->setGeometry(hostGeometry);
    host->setStyleSheet(stylesheets::table());
    historyTable = new RowTable(1, host);
    historyTable->setObjectName(QStringLiteral("historyTable"));
    historyTable->setAccessibleName(QStringLiteral("已粉碎的文件或目录"));
    historyTable->setGeometry(tableGeometry);
    historyTable->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    historyTable->setColumnWidth(0, tableGeometry.width());
    historyTable->verticalScrollBar()->setStyleSheet(stylesheets::historyScrollBar());
    historyRows = new HistoryRows(historyTable, this);
}

void MainWindow::addHistoryHeading()
{
    constexpr QRect timeGeometry(1, 41, 150, 26);
    constexpr QRect nameGeometry(151, 41, 200, 26);
    constexpr QRect pathGeometry(351, 41, 348, 26);
    constexpr QRect nameSeparatorGeometry(151, 41, 6, 26);
    constexpr QRect pathSeparatorGeometry(351, 41, 6, 26);
    constexpr int timeTextLeft = 15;
    constexpr int nameTextLeft = 4;
    constexpr int pathTextLeft = 6;

    addHeading(historyWindow, QStringLiteral("historyTimeHeading"), timeGeometry,
               stylesheets::firstHeading(), QStringLiteral("日期"), timeTextLeft);
    addHeading(historyWindow, QStringLiteral("historyNameHeading"), nameGeometry,
               stylesheets::laterHeading(), QStringLiteral("已粉碎文件或目录名"), nameTextLeft);
    addHeading(historyWindow, QStringLiteral("historyPathHeading"), pathGeometry,
               stylesheets::laterHeading(), QStringLiteral("路径"), pathTextLeft);
    addHeadingSeparator(historyWindow, QStringLiteral("historyNameSeparator"),
                        nameSeparatorGeometry);
    addHeadingSeparator(historyWindow, QStringLiteral("historyPathSeparator"),
                        pathSeparatorGeometry);
}

void MainWindow::addHistoryButtons()
{
    constexpr QRect copyGeometry(490, 466, 90, 27);
    constexpr QRect clearGeometry(597, 466, 90, 27);

    copyButton = addHistoryButton(historyWindow, QStringLiteral("copyButton"), copyGeometry,
                                  QStringLiteral("复制到剪贴板"));
    clearHistoryButton = addHistoryButton(historyWindow, QStringLiteral("clearHistoryButton"),
                                          clearGeometry, QStringLiteral("清除历史记录"));
}

void MainWindow::slotShowHistoryEva()
{
    if (!historyWindow || !historyTable || !walle)
        return;
    if (historyWindow->isVisible()) {
        walle->abortHistoryLoad();
        historyWindow->hide();
        return;
    }
    clearHistoryButton->setEnabled(false);
    copyButton->setEnabled(false);
    historyRows->clear();
    centreHistoryWindow();
    historyCleared = false;
    ++loadsOutstanding;
    walle->postCommand(CommandLoadHistory);
    historyWindow->show();
}

void MainWindow::centreHistoryWindow()
{
    const QSize size = historyWindow->size();
    if (const QWidget *parent = historyWindow->parentWidget()) {
        historyWindow->move(parent->x() + (windowSizes[MainWidth] - size.width()) / 2,
                            parent->y() + (windowSizes[MainHeight] - size.height()) / 2);
    } else {
        historyWindow->move((windowSizes[ScreenWidth] - size.width()) / 2,
                            (windowSizes[ScreenHeight] - size.height()) / 2);
    }
}

/// Drops rows of a load while a later one is outstanding, which sends them again.
void MainWindow::addRowOfLoad(const QString &time, const QString &fileName, const QString &path)
{
    if (loadsOutstanding == 0)
        historyTableAddItemEva(time, fileName, path);
}

/// Leaves the buttons disabled when the rows of the load were cleared or a later load is
/// outstanding.
void MainWindow::enableButtonsOfLoad(bool enabled, int phase)
{
    if (phase == LoadPhase::Begun && loadsOutstanding > 0)
        --loadsOutstanding;
    if (!enabled || (!historyCleared && loadsOutstanding == 0))
        setHistoryButtonEnabledEva(enabled, phase);
}

void MainWindow::historyTableAddItemEva(QString time, QString fileName, QString path)
{
    if (!historyTable || !historyMutex)
        return;
    const QMutexLocker locker(historyMutex.get());
    if (historyCleared || !clearHistoryButton || !copyButton)
        return;
    historyRows->prepend(time, fileName, path);
}

void MainWindow::removeRowFromHistoryTableEva(int rowIndex)
{
    if (historyTable)
        historyRows->remove(rowIndex);
}

void MainWindow::removeAllFromHistoryEva()
{
    if (!walle || !historyTable)
        return;
    const QMutexLocker locker(historyMutex.get());
    historyCleared = true;
    walle->postCommand(CommandClearHistory);
    historyRows->clear();
    QGuiApplication::clipboard()->clear(QClipboard::Clipboard);
    clearHistoryButton->setEnabled(false);
    copyButton->setEnabled(false);
}

void MainWindow::copyToClipboardEva()
{
    if (walle)
        walle->postCommand(CommandCopyHistory);
}

void MainWindow::slotClipboardSetTextEva(QString text)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->clear(QClipboard::Clipboard);
    clipboard->setText(text, QClipboard::Clipboard);
}

void MainWindow::setHistoryButtonEnabledEva(bool enabled, int n)
{
    if (!clearHistoryButton || !copyButton)
        return;
    if (n == LoadPhase::Complete || n == LoadPhase::Begun)
        copyButton->setEnabled(enabled);
    if (n == LoadPhase::RowsComing || n == LoadPhase::Begun)
        clearHistoryButton->setEnabled(enabled);
}
