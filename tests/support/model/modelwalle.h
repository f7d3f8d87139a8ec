// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the controller is to do, told as plainly as possible: every command runs to
// its end in the caller's thread. While the worker is at work, a test may give further
// commands when it hears a signal, as a user does.

#pragma once

#include "modeldisk.h"
#include "modelengine.h"

#include <QSet>
#include <QStringList>
#include <QUrl>

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
    /// Stands for the time in every entry of the history.
    static QString someTime() { return QStringLiteral("0000-00-00 00:00:00"); }

    // The requests; a batch or a click brings its command with it.
    void post(int code);
    void choose(const QStringList &names);
    void drop(const QList<QUrl> &urls);
    void click(const QString &path);
    void abortHistoryLoad() { historyLoadAborted = true; }

    /// Lets the worker do all it was handed. No command waits for it by itself.
    void work();
    /// Looks at the disk anew, after a test has changed something there.
    void lookAtDisk() { picture = ModelDisk(picture.folder()); }

    QStringList paths() const { return rows; }
    /// True from a start to its end: another start is dropped.
    bool isRunning() const { return open; }
    const ModelDisk &disk() const { return picture; }

private:
    void say(const char *name, const QVariantList &arguments = {});
    void sayBox(bool ticked) { say("setSelectAllCheckBoxState", {ticked}); }
    void sayButtons(bool enabled);
    void sayWhatIsLeft();
    quint32 admit(const QString &path);
    void endBatch(quint32 reasons);
    void setAllChecked(bool on);
    void removeRow(const QString &path);
    QString firstChecked() const;
    bool allAreChecked() const { return checked.size() == rows.size(); }

    void start();
    void stop();
    void goOn();
    void endRun();
    void hearWorker(const SignalRecord &report);
    void showPercent(const QString &path, int percent);
    void record(const QString &path);
    void loadHistory();
    void copyHistory();

    ModelDisk picture;
    ModelEngine worker;
    QStringList queue; ///< the worker's
    QStringList rows;
    QSet<QString> checked; ///< of the rows
    uint succeeded = 0;
    uint failed = 0;
    int finished = 0;
    bool stopPending = false;
    bool open = false;   ///< a run, until its end
    bool spared = false; ///< the stop took back what was handed over
    bool historyLoadAborted = false;
    QStringList historyFile;
    QStringList historyLines;
};

} // namespace testsupport
