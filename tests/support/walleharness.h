// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the tests of the controller share: a controller of its own for each test, and what
// the window does with its signals, without a window.

#pragma once

#include "controller/walle.h"
#include "eventually.h"
#include "sandboxhome.h"
#include "signallog.h"
#include "temporarytree.h"

#include <QObject>
#include <QSemaphore>
#include <QStringList>
#include <QVector>

#include <atomic>
#include <functional>
#include <memory>

namespace testsupport
{

/// As long as it exists the worker goes no further than its next verdict or answer to a stop. The
/// controller has heard that one, and the worker's queue holds what it was handed meanwhile.
class HeldWorker
{
public:
    /// Holds at the @p report th of them.
    explicit HeldWorker(const Walle &walle, int report = 1);
    ~HeldWorker();
    HeldWorker(const HeldWorker &) = delete;
    HeldWorker &operator=(const HeldWorker &) = delete;

    /// True once the worker stands there.
    bool stands() const;

private:
    struct Reports;
    std::shared_ptr<Reports> reports;
    QList<QMetaObject::Connection> connections;
};

/// Is connected as the window is, lives in the test's thread, keeps one log across all signals, and
/// applies the row signals to a table that must mirror the job list. The controller and its threads
/// are never ended, as in the program; they fall silent.
class WalleHarness : public QObject
{
    Q_OBJECT

public:
    struct Row {
        QString path;
        bool checked = true;
    };

    WalleHarness();
    ~WalleHarness() override;

    Walle &walle() const { return *controller; }

    // What the user does.
    void post(int code) const { controller->postCommand(code); }
    void choose(const QStringList &names) const;
    void drop(const QList<QUrl> &urls) const;
    void dropFiles(const QStringList &paths) const;
    /// A click on @p row of the table, which knows what it shows there.
    void click(int row) const;
    /// The same as posting it, but performed() does the same without a trace.
    void copyHistory();

    /// Waits until everything posted so far is performed and its signals are here; false after
    /// too long a time.
    bool performed();
    /// Does @p request and waits, without serving the event loop, until the controller thread
    /// emits @p signal (a literal), which is then still undelivered; false after @p milliseconds.
    bool emittedUnheard(const char *signal, const std::function<void()> &request,
                        int milliseconds = patience);
    /// What the controller emits because of @p request; forgets what it emitted before.
    SignalRecords answerTo(const std::function<void()> &request);
    /// Chooses @p paths, waits until that is performed and forgets what was said about it.
    bool admitted(const QStringList &paths);
    /// Waits until a run that was started has given its result.
    bool finished();

    /// What the window does in its slot for @p signal, after the table has changed.
    std::function<void(const SignalRecord &signal)> onSignal;

    SignalRecords log() const { return records; }
    SignalRecords log(const QByteArrayList &names) const;
    int count(const char *name) const { return log({name}).size(); }
    /// The log since it was last taken.
    SignalRecords takeLog();

    const QVector<Row> &rows() const { return table; }
    QStringList paths() const;
    QStringList checkedPaths() const;
    /// The RunState as the window shows it.
    int runState() const { return shownRunState; }

    /// Asks the controller for its list, row by row, and compares it with the table; empties
    /// both. Empty when they are the same, else what differs.
    QString differenceFromJobList();

private:
    void receive(const SignalRecord &signal);
    QVector<int> rowsAnsweringTo(const std::function<void()> &request, const char *signal);

    Walle *controller;
    std::atomic<const char *> awaitedEmission{nullptr};
    QSemaphore emitted;
    SignalLog emissions; ///< tells of each signal in the thread that emits it
    SignalLog window;    ///< is connected as the window is
    SignalRecords records;
    QVector<Row> table;
    int shownRunState = RunState::Idle;
    int results = 0;
    int barriers = 0; ///< copies asked for by performed(), which are not in the log
    int copies = 0;   ///< copies asked for by the test, each before any barrier
};

/// A home without a history, a folder and a controller, and words for what the controller emits.
class WalleTest : public QObject
{
    Q_OBJECT

protected slots:
    void initTestCase();
    void init();
    void cleanup();

protected:
    // What the controller emits.
    static SignalRecord selectAllEnabled(bool on) { return {"setSelectAllCheckBoxEnabled", {on}}; }
    static SignalRecord selectAllTicked(bool on) { return {"setSelectAllCheckBoxState", {on}}; }
    static SignalRecord crushEnabled(bool on) { return {"setCrushButtonEnabled", {on}}; }
    static SignalRecord removeEnabled(bool on) { return {"setRemoveButtonEnabled", {on}}; }
    static SignalRecord added(const QString &path) { return {"addRowToMainTable", {path}}; }
    static SignalRecord removed(int row) { return {"removeRowFromMainTable", {row}}; }
    static SignalRecord ticked(int row, bool on)
    {
        return {"setTableItemCheckBoxState", {row, on}};
    }
    static SignalRecord progress(int row, int percent)
    {
        return {"setTableRowHeight", {row, percent}};
    }
    static SignalRecord running() { return {"setCrushStarted", {RunState::Running}}; }
    static SignalRecord stopping() { return {"setCrushStarted", {RunState::Stopping}}; }
    static SignalRecord idle() { return {"setCrushStarted", {RunState::Idle}}; }
    static SignalRecord all(int finished) { return {"finishAll", {finished}}; }
    static SignalRecord result(int done, int failed)
    {
        return {"showResultDialog", {1, done, failed}};
    }

    QString make(const char *name, qint64 size = 10) const;
    QStringList makeFiles(const char *prefix, int count) const;
    /// A folder that cannot be removed, as a fifo stays in it.
    QString makeStubborn(const char *name) const;
    /// What was admitted as a file becomes a fifo, which the controller does not hand over.
    void becomeFifo(const QString &path) const;
    void becomeFile(const QString &path) const;
    /// Admits that many files.
    void addRows(int count);

    SignalRecords answerTo(const QList<int> &codes);
    SignalRecords answerToClick(int row);
    /// Starts a run and waits for its result.
    SignalRecords answerToRun();
    /// What the log holds of the run's beginnings, ends and results.
    SignalRecords runLog() const;
    /// Holds the worker with nothing in hand and nothing in its queue.
    void holdIdleWorker();
    /// Starts a run and holds the worker at its @p verdict th verdict; the next row is handed over.
    void startAndHoldAt(int verdict);
    /// Does @p step when the signal @p name comes for the next time.
    void onNext(const char *name, const std::function<void()> &step);

    SandboxHome home;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<WalleHarness> harness;
    std::unique_ptr<HeldWorker> held;
};

} // namespace testsupport
