// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The history window, a second window over the main one. It keeps nothing: each
// time it opens it is emptied and the controller loads the history anew.

#include "ui/mainwindow.h"

#include "controller/walle.h"
#include "ui/headings.h"
#include "ui/historyrows.h"
#include "ui/rowtable.h"
#include "widgets/customtitlebar.h"
#include "widgets/stylesheets.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QMutexLocker>
#include <QPushButton>
#include <QScrollBar>

namespace
{

QLabel *addHeadingLabel(QWidget *window, const QRect &place, const QString &styleSheet,
                        const QString &text = QString())
{
    auto *label = new QLabel(text, window);
    label->setGeometry(place);
    label->setStyleSheet(styleSheet);
    return label;
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
    historyWindow->setStyleSheet(stylesheets::historyWindowBackground());
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
    constexpr QRect barPlace(0, 0, 698, 40);
    constexpr QRect iconPlace(16, 12, 16, 16);
    constexpr QRect titlePlace(40, 0, 380, 40);
    constexpr QRect closePlace(668, 0, 27, 27);

    auto *bar = new CustomTitleBar(historyWindow);
    bar->setObjectName(QStringLiteral("historyTitleBar"));
    bar->setGeometry(barPlace);
    bar->setMinimizeSlot(0);
    auto *icon = new QLabel(bar);
    icon->setObjectName(QStringLiteral("historyTitleIcon"));
    icon->setGeometry(iconPlace);
    icon->setStyleSheet(stylesheets::titleIcon());
    auto *title = new QLabel(QStringLiteral("Brenvale - 文件粉碎记录"), bar);
    title->setObjectName(QStringLiteral("historyTitleText"));
    title->setGeometry(titlePlace);
    title->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    title->setStyleSheet(stylesheets::titleText());
    auto *close = new QPushButton(bar);
    close->setObjectName(QStringLiteral("historyCloseButton"));
    close->setAccessibleName(QStringLiteral("关闭"));
    close->setGeometry(closePlace);
    close->setFlat(true);
    close->setStyleSheet(stylesheets::closeButton());
    close->setFocusPolicy(Qt::NoFocus);
    connect(close, &QPushButton::clicked, this, &MainWindow::slotShowHistoryEva);
}

void MainWindow::addHistoryTable()
{
    constexpr QRect hostPlace(1, 42, 698, 415);
    constexpr QRect tablePlace(0, 0, 698, 415);
    constexpr int headingHeight = 25;

    auto *host = new QWidget(historyWindow);
    host->setObjectName(QStringLiteral("historyTableHost"));
    host->setGeometry(hostPlace);
    host->setStyleSheet(stylesheets::table());
    historyTable = new RowTable(0, 1, host);
    historyTable->setObjectName(QStringLiteral("historyTable"));
    historyTable->setAccessibleName(QStringLiteral("已粉碎的文件或目录"));
    historyTable->setGeometry(tablePlace);
    QPalette palette = historyTable->palette();
    palette.setBrush(QPalette::Base, QColor(255, 255, 255, 0));
    historyTable->setPalette(palette);
    historyTable->setStyleSheet(stylesheets::table());
    historyTable->setSelectionMode(QAbstractItemView::NoSelection);
    historyTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    historyTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    historyTable->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    historyTable->setAutoScroll(false);
    historyTable->setColumnWidth(0, tablePlace.width());
    historyTable->horizontalHeader()->setFixedHeight(headingHeight);
    historyTable->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft);
    historyTable->setShowGrid(false);
    historyTable->verticalHeader()->hide();
    historyTable->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    historyTable->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    historyTable->verticalScrollBar()->setStyleSheet(stylesheets::historyScrollBar());
    historyRows = new HistoryRows(historyTable, this);
}

void MainWindow::addHistoryHeading()
{
    constexpr QRect timePlace(1, 41, 150, 26);
    constexpr QRect namePlace(151, 41, 200, 26);
    constexpr QRect pathPlace(351, 41, 348, 26);
    constexpr QRect firstSeparatorPlace(151, 41, 6, 26);
    constexpr QRect secondSeparatorPlace(351, 41, 6, 26);
    constexpr int timeTextLeft = 15;
    constexpr int nameTextLeft = 4;
    constexpr int pathTextLeft = 6;

    QLabel *time = addHeadingLabel(historyWindow, timePlace, stylesheets::firstHeading(),
                                   QStringLiteral("日期"));
    time->setObjectName(QStringLiteral("historyTimeHeading"));
    startTextAt(time, timeTextLeft);
    QLabel *name = addHeadingLabel(historyWindow, namePlace, stylesheets::laterHeading(),
                                   QStringLiteral("已粉碎文件或目录名"));
    name->setObjectName(QStringLiteral("historyNameHeading"));
    startTextAt(name, nameTextLeft);
    QLabel *path = addHeadingLabel(historyWindow, pathPlace, stylesheets::laterHeading(),
                                   QStringLiteral("路径"));
    path->setObjectName(QStringLiteral("historyPathHeading"));
    startTextAt(path, pathTextLeft);
    addHeadingLabel(historyWindow, firstSeparatorPlace, stylesheets::headingSeparator())
        ->setObjectName(QStringLiteral("historyNameSeparator"));
    addHeadingLabel(historyWindow, secondSeparatorPlace, stylesheets::headingSeparator())
        ->setObjectName(QStringLiteral("historyPathSeparator"));
}

void MainWindow::addHistoryButtons()
{
    constexpr QRect copyPlace(490, 466, 90, 27);
    constexpr QRect clearPlace(597, 466, 90, 27);

    copyButton = addHistoryButton(QStringLiteral("copyButton"), QStringLiteral("复制到剪贴板"));
    copyButton->setGeometry(copyPlace);
    clearHistoryButton =
        addHistoryButton(QStringLiteral("clearHistoryButton"), QStringLiteral("清除历史记录"));
    clearHistoryButton->setGeometry(clearPlace);
}

QPushButton *MainWindow::addHistoryButton(const QString &objectName, const QString &text)
{
    auto *button = new QPushButton(text, historyWindow);
    button->setObjectName(objectName);
    button->setStyleSheet(stylesheets::historyButton());
    button->setFocusPolicy(Qt::NoFocus);
    return button;
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
    placeHistoryWindow();
    historyCleared = false;
    ++loadsOutstanding;
    walle->postCommand(CommandLoadHistory);
    historyWindow->show();
}

void MainWindow::placeHistoryWindow()
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

/// Drops rows of a load that a later opening has overtaken; the later load sends them again.
void MainWindow::addRowOfLoad(const QString &time, const QString &fileName, const QString &path)
{
    if (loadsOutstanding == 0)
        historyTableAddItemEva(time, fileName, path);
}

/// Leaves the buttons disabled when the rows of the load were cleared or it was overtaken.
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
