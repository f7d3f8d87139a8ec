// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The controller: owns the job list that the main table mirrors, admits and
// refuses paths, drives the worker and keeps the history. The object and its slots
// live in the GUI thread. run() is the controller thread, which performs one
// posted command at a time. The window creates it; it lives until the process ends.

#pragma once

#include "controller/deliveryfence.h"
#include "controller/protocol.h"

#include <QList>
#include <QMutex>
#include <QMutexLocker>
#include <QString>
#include <QStringList>
#include <QThread>
#include <QUrl>

#include <atomic>
#include <mutex>
#include <optional>

class FileCrusher;

class Walle : public QThread
{
    Q_OBJECT

public:
    explicit Walle(QObject *parent = nullptr);
    ~Walle() override;

    // Requests of the window, from the GUI thread. All but shutDown() return at once.

    /// Queues a WalleCommand; any other code is taken and ignored.
    void postCommand(int code);
    /// Queues a click on a row; CommandToggleRow performs it.
    void postCellToggle(const CellToggle &entry);
    /// Queues one batch of names from the file dialog; CommandAddChosen admits it.
    void addChosenFiles(const QStringList &names);
    /// Queues one batch of dropped URLs; CommandAddDropped admits it.
    void addDroppedUrls(const QList<QUrl> &urls);
    /// Ends a history load in progress.
    void abortHistoryLoad();
    /// Disconnects all signals and stops the run. The threads are never joined, so they must not
    /// reach what is about to be destroyed. GUI thread, once, from the window's destructor.
    void shutDown();

    /// Appends @p path to the job list as a checked row, or returns the one reason not to.
    /// Controller thread; returns when the row is in the table.
    RejectReasons admitPath(const QString &path);
    /// Emits the signals that a ControlSituation calls for. Controller or GUI thread.
    void refreshControls(int situation);
    /// The history file of the user who runs the program. Any thread.
    static QString historyFilePath();

signals:
    void setSelectAllCheckBoxEnabled(bool);
    void setSelectAllCheckBoxState(bool);
    void setRemoveButtonEnabled(bool);
    void setCrushButtonEnabled(bool);
    /// A RunState.
    void setCrushStarted(int);
    void addRowToMainTable(QString fullName);
    void removeRowFromMainTable(int rowIndex);
    void setTableItemCheckBoxState(int, bool);
    void addRowToHistoryTable(QString time, QString baseName, QString filePath);
    /// Never emitted: the history is only ever cleared as a whole.
    void removeRowFromHistoryTable(int);
    /// Progress of a row in percent, despite its name.
    void setTableRowHeight(int, int);
    /// Never emitted: a finished row is removed instead.
    void finishOne(QString);
    void finishAll(int);
    void clipboardSetText(QString);
    /// The second argument is a LoadPhase.
    void setHistoryButtonEnabled(bool, int);
    /// A set of RejectReasons.
    void alertDialog(uint);
    void showResultDialog(uint, uint, uint);

public slots:
    // Connected to the worker's signals. GUI thread, while the worker waits.
    void finishOneWalle(QString);
    void finishPercentWalle(QString, int percent);
    void failedOneWalle(QString);
    void addToHistoryWalle(QString);
    void stoppedWalle();

protected:
    void run() override;

private:
    /// Where a run is, from an accepted start to the worker's answer to its stop.
    enum class RunPhase {
        Idle,           ///< a start is accepted
        Running,        ///< until the last verdict, or a stop; a further start is dropped
        Stopping,       ///< a stop was requested, and a verdict may still come
        TakenBack,      ///< the same, but the path was taken back: no verdict will come
        Ending,         ///< the signals of the end are being emitted; a start waits
        AwaitingAnswer, ///< the worker has yet to emit stopped(); a start waits
        ShutDown        ///< the window is gone; nothing is handed over any more
    };
    /// A copy of one row of the job list; row is -1 when there is none.
    struct Job {
        int row = -1;
        QString path;
    };
    struct Selection {
        int rows = 0;
        bool anyChecked = false;
        bool anyUnchecked = false;
    };

    void connectWorker();
    std::optional<int> takeCommand();
    bool isStartHeld() const;
    void perform(int code);
    /// The oldest entry of @p queue, removed from it.
    template <typename Entry>
    std::optional<Entry> takeOldest(QList<Entry> &queue);

    // walle_admission.cpp
    RejectReasons admitChosen();
    RejectReasons admitDropped();
    RejectReasons refusalOf(const QString &path) const;
    void refreshAfterBatch();
    void reportRefusals(RejectReasons reasons);

    // walle_joblist.cpp
    void setAllChecked(bool state);
    void toggleRow();
    void removeChecked();
    int rowOf(const CellToggle &toggle) const;
    void appendJob(const QString &path);
    void removeJob(int row);
    bool isChecked(int row) const;
    void setChecked(int row, bool state);
    bool uncheckFirst();
    std::unique_lock<QMutex> lockListDelivered();
    Job firstChecked() const;
    Selection selection() const;
    int rowCount() const;

    // walle_run.cpp
    void startCrush();
    void stopCrush();
    void crushNext();
    void handOver(const QString &path);
    void takeBack();
    void endRun();
    void emitEnd();
    bool acceptStart();
    bool acceptStop();
    void leaveEnding();

    // walle_history.cpp
    void appendHistory(const QString &path);
    void loadHistory();
    void showHistory();
    void copyHistory();
    void clearHistory();

    std::atomic<bool> running{true}; ///< never cleared: the thread ends with the process
    std::atomic<bool> historyLoadAborted{false};
    std::atomic<quint32> failedCount{0};
    std::atomic<quint32> resultKind{0};
    std::atomic<quint32> succeededCount{0};
    QStringList jobPaths;     ///< guarded by listMutex
    QList<bool> jobChecked;   ///< guarded by listMutex; always as long as jobPaths
    QStringList historyLines; ///< controller thread only
    QStringList systemDirectories;
    FileCrusher *crusher = nullptr;    ///< child object
    QList<int> commandQueue;           ///< guarded by queueMutex
    QList<CellToggle> toggleQueue;     ///< guarded by queueMutex
    QList<QList<QUrl>> droppedBatches; ///< guarded by queueMutex
    QList<QStringList> chosenBatches;  ///< guarded by queueMutex
    std::atomic<qint32> finishedCount{0};
    qint32 maxJobs = 200;
    std::atomic<bool> stopPending{false};           ///< changed under listMutex only
    std::atomic<RunPhase> runPhase{RunPhase::Idle}; ///< changed under listMutex only

    QMutex jobMutex;     ///< makes an operation on the job list atomic for other threads
    QMutex historyMutex; ///< guards appending to and clearing the history file
    QMutex spareMutex;   ///< never locked
    /// Keeps the two lists consistent for operations that take historyMutex or no mutex. This and
    /// queueMutex are held for single accesses; nothing is waited for or emitted under them.
    mutable QMutex listMutex;
    mutable QMutex queueMutex;
    DeliveryFence fence;
};

template <typename Entry>
std::optional<Entry> Walle::takeOldest(QList<Entry> &queue)
{
    const QMutexLocker locker(&queueMutex);
    if (queue.isEmpty())
        return std::nullopt;
    return queue.takeFirst();
}
