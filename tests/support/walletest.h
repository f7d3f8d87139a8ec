// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What a test of the controller starts with: a home without a history, a folder
// and a controller. It has the test's words for what the controller emits.

#pragma once

#include "sandboxhome.h"
#include "temporarytree.h"
#include "walleharness.h"

#include <memory>

namespace testsupport
{

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
