// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A controller of its own for one test, and what the window does with its
// signals, without a window: it is connected as the window is, lives in the
// test's thread, keeps one log across all signals, and applies the row signals
// to a table that must mirror the job list. The controller and its threads are
// never ended, as in the program; they fall silent.

#pragma once

#include "controller/walle.h"
#include "eventually.h"
#include "signallog.h"

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

class WalleHarness : public QObject
{
    Q_OBJECT

public:
    struct Row {
        QString path;
        bool checked = true;
        int percent = 0;
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
    /// Puts a history text on the clipboard; see clipboard().
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
    int rowOf(const QString &path) const { return paths().indexOf(path); }
    /// The RunState and the button as the window shows them.
    int runState() const { return shownRunState; }
    bool isCrushEnabled() const { return crushEnabled; }
    QString clipboard() const { return clipboardText; }

    /// Asks the controller for its list, row by row, and compares it with the table; empties
    /// both. Empty when they are the same, else what differs.
    QString differenceFromJobList();
    /// Row signals that named no row of the table.
    QStringList faults() const { return rowFaults; }

private:
    void receive(const SignalRecord &signal);
    void showRowSignal(const SignalRecord &signal);
    QVector<int> rowsAnsweringTo(const std::function<void()> &request, const char *signal);

    Walle *controller;
    std::atomic<const char *> awaitedEmission{nullptr};
    QSemaphore emitted;
    SignalLog emissions; ///< tells of each signal in the thread that emits it
    SignalLog window;    ///< is connected as the window is
    SignalRecords records;
    QVector<Row> table;
    int shownRunState = RunState::Idle;
    bool crushEnabled = false;
    QString clipboardText;
    QStringList rowFaults;
    int results = 0;
    int barriers = 0; ///< copies asked for by performed(), which are not in the log
    int copies = 0;   ///< copies asked for by the test, each before any barrier
};

} // namespace testsupport
