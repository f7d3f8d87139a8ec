// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the controller is to do, told as plainly as possible: every command runs to
// its end, worker included, in the caller's thread. While the worker is at work, a
// test may give further commands when it hears a signal, as a user does.

#pragma once

#include "modeldisk.h"
#include "modelengine.h"

#include <QList>
#include <QStringList>

#include <functional>

namespace testsupport
{

class ModelWalle
{
public:
    explicit ModelWalle(const QByteArray &root);

    /// Everything said since this was emptied last.
    SignalRecords said;
    /// How often the worker has reported something.
    int reports = 0;
    /// Called with each signal when it is in the list.
    std::function<void(const SignalRecord &)> onSignal;
    /// Raised by a test that hears of a history load and wants no more of it.
    bool historyLoadAborted = false;

    void choose(const QStringList &names);
    /// Local paths; an empty one stands for a URL that is none.
    void drop(const QStringList &paths);
    void setAllChecked(bool checked);
    /// A click on the row that showed @p path, which may be gone by now.
    void click(const QString &path);
    void removeChecked();
    void start();
    void stop();
    /// True from a start to its end: another start is dropped.
    bool isRunning() const { return open; }
    void loadHistory();
    void copyHistory();
    void clearHistory();

    /// Lets the worker do all it was handed. No command waits for it by itself.
    void work();
    /// Looks at the disk anew, after a test has changed something there.
    void lookAtDisk();

    QStringList paths() const;
    bool hasChecked() const { return firstChecked() >= 0; }
    const ModelDisk &disk() const { return picture; }

private:
    struct Row {
        QString path;
        bool checked = true;
    };

    void say(const char *name, const QVariantList &arguments = {});
    quint32 admit(const QString &path);
    void finishBatch(quint32 reasons);
    void refresh(int situation);
    void sayCrushAndRemove(bool enabled);
    int rowOf(const QString &path) const;
    int firstChecked() const;
    bool anyUnchecked() const;

    void hearWorker(const SignalRecord &report);
    void crushNext();
    void endRun();
    void finishOne(const QString &path);
    void failedOne(const QString &path);
    void showPercent(const QString &path, int percent);
    void record(const QString &path);

    ModelDisk picture;
    ModelEngine worker;
    QStringList queue; ///< the worker's
    QList<Row> rows;
    uint succeeded = 0;
    uint failed = 0;
    int finished = 0;
    bool stopPending = false;
    bool open = false;   ///< a run, until its end
    bool spared = false; ///< the stop took back what was handed over
    QStringList historyFile;
    QStringList historyLines;
};

/// Stands for the time in every entry of the history.
QString someTime();
/// @p said with someTime() where the product tells the time of an entry.
SignalRecords withSomeTime(SignalRecords said);

} // namespace testsupport
