// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the tests of the controller share: a controller of its own for each test, and what
// the window does with its signals, without a window.

#pragma once

#include "controller/walle.h"
#include "promptly.h"
#include "sandboxhome.h"
#include "signallog.h"
#include "temporarytree.h"

#include <QObject>
#include <QSet>
#include <QStringList>

#include <functional>
#include <memory>

namespace testsupport
{

/// A controller and its user. Is connected as the window is, in the test's thread, keeps one log
/// across all signals, and applies the row signals to a table that must mirror the job list.
class WalleHarness
{
public:
    /// Makes a controller. It and its threads are never ended, as in the program.
    void startController();
    /// The controller falls silent.
    void leaveController();

    // What the user does.
    void post(int code);
    void choose(const QStringList &names);
    void drop(const QList<QUrl> &urls);
    void dropFiles(const QStringList &paths);
    /// A click on the row that shows @p path.
    void click(const QString &path);
    /// A click on @p row of the table.
    void click(int row) { click(table.at(row)); }
    void abortHistoryLoad() { walle->abortHistoryLoad(); }

    /// Waits until everything posted so far is performed and its signals are here; false after
    /// too long a time.
    bool performed();
    /// Waits until the result of a run is in the log.
    bool finished();
    /// Chooses @p paths, waits until that is performed and forgets what was said about it.
    bool admitted(const QStringList &paths);
    /// What the controller emits because of @p request; forgets what it emitted before.
    SignalRecords answerTo(const std::function<void()> &request);
    SignalRecords answerTo(const QList<int> &codes);
    SignalRecords answerToClick(int row);
    /// Starts a run and waits for its result.
    SignalRecords answerToRun();
    /// Does @p request and waits, without serving the event loop, until the controller thread
    /// emits @p signal, which is then still undelivered; false after @p milliseconds.
    bool emittedUnheard(const char *signal, const std::function<void()> &request,
                        int milliseconds = patience) const;

    /// What the window does in its slot for @p signal, after the table has changed.
    std::function<void(const SignalRecord &signal)> onSignal;
    /// Does @p step when the signal @p name comes for the next time.
    void onNext(const char *name, const std::function<void()> &step);

    SignalRecords log() const { return records; }
    SignalRecords log(const QByteArrayList &names) const;
    int count(const char *name) const { return log({name}).size(); }
    /// The log since it was last taken.
    SignalRecords takeLog();

    QStringList paths() const { return table; }
    QStringList checkedPaths() const;

    /// Posts @p code and holds the worker at its @p report th verdict or answer to a stop from now.
    /// The controller has heard that one; what it hands over stays in the worker's queue. After a
    /// stop without a run the worker has nothing in hand. False when it never gets there.
    bool holdWorkerAfter(int code, int report = 1);
    /// Lets the worker go on, if it is held.
    void releaseWorker();

    Walle *walle = nullptr;
    FileCrusher *worker = nullptr;

private:
    struct Gate;

    void receive(const SignalRecord &signal);

    std::shared_ptr<Gate> gate;           ///< where the worker is held; may be null
    std::unique_ptr<SignalLog> emissions; ///< of what is emitted, in whatever thread
    std::unique_ptr<SignalLog> window;    ///< is connected as the window is
    SignalRecords records;
    QStringList table;
    QSet<QString> unticked; ///< of the table
    int barriers = 0;       ///< copies asked for by performed(), which are not in the log
    int copies = 0;         ///< copies asked for by the test, each before any barrier
};

/// A home without a history, a folder and a controller, and words for what the controller emits.
class WalleTest : public QObject, protected WalleHarness
{
    Q_OBJECT

protected slots:
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

    QString make(const char *name, qint64 size = 10) const { return tree->makeFile(name, size); }
    QStringList makeFiles(const char *prefix, int count) const;
    /// A folder that cannot be removed, as a fifo stays in it.
    QString makeStubborn(const char *name) const;
    /// What was admitted as a file becomes a fifo, which the controller does not hand over.
    void becomeFifo(const QString &path) const;
    void becomeFile(const QString &path) const;
    /// Admits that many files.
    void addRows(int count);

    /// What the log holds of the run's beginnings, ends and results.
    SignalRecords runLog() const
    {
        return log({"setCrushStarted", "finishAll", "showResultDialog"});
    }
    /// Starts a run over @p rows files that stands still at the first.
    void startRunThatStandsStill(int rows);
    /// Stops, lets a held worker go on and waits until it has answered.
    SignalRecords answerToStop();

    /// Compares table and job list row by row, by what the controller answers, and empties both.
    void compareTableWithJobList();

    SandboxHome home;
    std::unique_ptr<TemporaryTree> tree;
};

} // namespace testsupport
