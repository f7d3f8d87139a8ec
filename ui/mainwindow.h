// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// MainWindow is the whole user interface: header, table, buttons and the history
// window. Its slots ending in Eva draw what the controller's signals say; its actions
// post commands. It decides nothing about files. Lives in the GUI thread; created by
// the start-up code. It creates the controller, which outlives it.

#pragma once

#include <QBasicTimer>
#include <QFrame>
#include <QIcon>
#include <QMutex>
#include <QString>

#include <array>
#include <memory>

class HistoryRows;
class QCheckBox;
class QImage;
class QLabel;
class QPushButton;
class RowTable;
class Walle;
class ZZTableCell;

class MainWindow : public QFrame
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

signals:
    /// The user closed the window; the application ends.
    void quit();

public slots:
    void windowQuit();
    /// Does nothing: the window has one size.
    void windowMaxi();
    void windowMini();
    /// Opens the history window, or closes it when it is open.
    void slotShowHistoryEva();
    void copyToClipboardEva();
    void addEva();
    void removeSomeFilesEva();
    void setSelectAllCheckBoxEnabledEva(bool);
    void setSelectAllCheckBoxStateEva(bool);
    void setRemoveButtonEnabledEva(bool);
    void setCrushButtonEnabledEva(bool);
    void addRowToMainTableEva(QString fullName);
    /// A row that does not exist is ignored, here and in the slots below.
    void removeRowFromMainTableEva(int rowIndex);
    void selectAllEva(bool state);
    void setTableItemCheckBoxStateEva(int, bool);
    void crushFilesEva();
    void removeAllFromHistoryEva();
    void historyTableAddItemEva(QString, QString fileName, QString);
    void removeRowFromHistoryTableEva(int rowIndex);
    /// Shows the progress of a row in percent, despite its name; 0 hides the display.
    void setTableRowHeightEva(int, int percent);
    /// Does nothing: the row of a finished file is removed by another signal.
    void finishOneFileEva(QString);
    void finishAllEva(int);
    /// @p b is a RunState.
    void setCrushStartedEva(int b);
    /// Moves the table within its host to @p y percent; connected to nothing.
    void slotMoveTable(int x, int y);
    void slotClipboardSetTextEva(QString text);
    /// @p n is a LoadPhase.
    void setHistoryButtonEnabledEva(bool, int n);
    void tableCellClickedEva(int r, int c);
    /// Shows the report of refused paths for a set of RejectReasons; returns when it is closed.
    void alertDialogEva(uint);
    /// Unticks every row and shows the report of a run; returns when it is closed.
    void showResultDialogEva(uint, uint, uint);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    // mainwindow_layout.cpp: one step for each region of the main window
    void fillWindowSizes();
    void setUpWindow();
    void addBackground();
    void addTitleBar();
    void addHeader();
    void addMainTable();
    void addTableHeading();
    void addBottomButtons();
    void addEmptyPanel();
    void addSuccessPanel();

    // mainwindow_history.cpp: one step for each region of the history window
    void addHistoryWindow();
    void addHistoryTitleBar();
    void addHistoryTable();
    void addHistoryHeading();
    void addHistoryButtons();
    void centreHistoryWindow();

    void connectButtons();
    void connectController();
    void addRowOfLoad(const QString &time, const QString &fileName, const QString &path);
    void enableButtonsOfLoad(bool enabled, int phase);
    ZZTableCell *cellAt(int row) const;
    void drawRowsTogether();
    void hidePanels();
    void setCrushButtonText(const QString &text);
    int runDialog(const QString &text, int kind) const;

    /// Indices of windowSizes.
    enum SizeIndex {
        ScreenWidth,
        ScreenHeight,
        MainWidth,
        MainHeight,
        HistoryWidth,
        HistoryHeight,
        DialogWidth,
        DialogHeight,
        SpareSize,
        SizeCount
    };

    RowTable *mainTable = nullptr;
    QWidget *emptyPanel = nullptr;
    QWidget *successPanel = nullptr; ///< hidden for the whole life of the window
    QLabel *successLabel = nullptr;
    QWidget *historyWindow = nullptr;
    QLabel *logoLabel = nullptr;
    QLabel *subtitleLabel = nullptr;
    RowTable *historyTable = nullptr;
    QPushButton *addButton = nullptr;
    QPushButton *crushButton = nullptr; ///< its text is the window's only record of the run state
    QPushButton *removeButton = nullptr;
    QCheckBox *selectAllCheckBox = nullptr;
    /// In pixels; the screen is measured once, when the window is made.
    std::array<quint16, SizeCount> windowSizes = {};
    Walle *walle; ///< outlives the window, as its thread is never joined
    std::unique_ptr<QImage> rowBackground;
    const QIcon fileIcon{QStringLiteral(":/images/ico_file")};
    const QIcon folderIcon{QStringLiteral(":/images/ico_folder")};
    QBasicTimer rowsTimer; ///< runs while new rows are not drawn yet
    QWidget *tableHost = nullptr;
    std::unique_ptr<QMutex> historyMutex; ///< guards the history table
    std::unique_ptr<QMutex> tableMutex;   ///< guards the main table
    QPushButton *clearHistoryButton = nullptr;
    QPushButton *copyButton = nullptr;
    int rowBase = 0; ///< added to a row to form a cell's index
    bool historyCleared = false;
    bool startAwaited = false; ///< a start was posted and the controller has not answered yet
    HistoryRows *historyRows = nullptr;
    int loadsOutstanding = 0; ///< history loads asked for that have not begun
};
