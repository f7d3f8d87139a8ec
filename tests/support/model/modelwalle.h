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

#include <algorithm>
#include <functional>

namespace testsupport
{

class ModelWalle
{
public:
    explicit ModelWalle(const QByteArray &root)
        : picture(root)
        , worker(picture, [this](const SignalRecord &report) { hearWorker(report); })
    {
    }

    /// Everything said since this was emptied last.
    SignalRecords said;
    /// How often the worker has reported something.
    int reports = 0;
    /// Called with each signal when it is in the list.
    std::function<void(const SignalRecord &)> onSignal;
    /// Stands for the time in every entry of the history.
    static QString someTime() { return QStringLiteral("0000-00-00 00:00:00"); }

    QStringList paths() const { return rows; }
    /// True from a start to its end: another start is dropped.
    bool isRunning() const { return open; }
    const ModelDisk &disk() const { return picture; }
    /// Looks at the disk anew, after a test has changed something there.
    void lookAtDisk() { picture = ModelDisk(picture.folder()); }

    // The requests. A batch or a click brings its command with it, so nothing comes of that alone.

    void post(int code)
    {
        switch (code) {
        case 0: // remove the checked rows
            while (!checked.isEmpty())
                removeRow(firstChecked());
            return sayWhatIsLeft();
        case 1: // start
            return start();
        case 2: // clear the history
            return historyFile.clear();
        case 3: // copy it
            return copyHistory();
        case 6: // check all rows
        case 7: // uncheck all
            return setAllChecked(code == 6);
        case 9: // stop
            return stop();
        case 10: // load the history
            return loadHistory();
        default: // nothing comes of a batch or a click that was not posted
            return;
        }
    }

    void choose(const QStringList &names)
    {
        quint32 reasons = 0;
        for (const QString &name : names)
            reasons |= admit(name);
        endBatch(reasons);
    }

    void drop(const QList<QUrl> &urls)
    {
        quint32 reasons = 0;
        for (const QUrl &url : urls) {
            if (!url.isLocalFile())
                break;
            const quint32 reason = admit(url.toLocalFile());
            reasons |= reason;
            if (reason == OverLimit)
                break;
        }
        endBatch(reasons);
    }

    void click(const QString &path)
    {
        const int row = rows.indexOf(path);
        if (row < 0)
            return;
        const bool on = !checked.remove(path);
        if (on)
            checked.insert(path);
        say("setTableItemCheckBoxState", {row, on});
        if (!on || allAreChecked())
            sayBox(on);
        if (on || checked.isEmpty())
            sayButtons(on);
    }

    void abortHistoryLoad() { historyLoadAborted = true; }

    /// Lets the worker do all it was handed. No command waits for it by itself.
    void work()
    {
        while (!queue.isEmpty())
            worker.takeFromQueue(queue.takeFirst());
        worker.endPass();
    }

private:
    enum Reason { NotFound = 1, UnknownType = 2, NoPermission = 4, Duplicate = 8, OverLimit = 16 };
    enum State { Idle = 1, Running = 2, Stopping = 3 };
    static constexpr int mostRows = 200;
    static constexpr int linesPerEntry = 3;

    void say(const char *name, const QVariantList &arguments)
    {
        said.append(SignalRecord(name, arguments));
        if (onSignal)
            onSignal(said.last());
    }

    void sayBox(bool ticked) { say("setSelectAllCheckBoxState", {ticked}); }
    void sayBoxEnabled(bool enabled) { say("setSelectAllCheckBoxEnabled", {enabled}); }
    void sayButtons(bool enabled)
    {
        say("setCrushButtonEnabled", {enabled});
        say("setRemoveButtonEnabled", {enabled});
    }

    void sayWhatIsLeft()
    {
        if (checked.isEmpty())
            sayButtons(false);
        if (rows.isEmpty()) {
            sayBox(false);
            sayBoxEnabled(false);
        }
    }

    /// The one reason not to take @p path in, or 0.
    quint32 admit(const QString &path)
    {
        // What the system has everywhere and an ordinary user may not write.
        static const QByteArrayList systemFolders{"/", "/etc", "/usr/bin", "/proc"};
        const QByteArray name = path.toUtf8();
        if (name == "/dev/null")
            return UnknownType;
        if (systemFolders.contains(name))
            return NoPermission;
        if (!picture.isLink(name)) { // a link stands for itself, whatever it leads to
            if (!picture.exists(name))
                return NotFound;
            if (!picture.isFile(name) && !picture.isDirectory(name))
                return UnknownType;
            if (!picture.isOpenToUser(name))
                return NoPermission;
        }
        if (rows.contains(path))
            return Duplicate;
        if (rows.size() >= mostRows)
            return OverLimit;
        rows.append(path);
        checked.insert(path);
        say("addRowToMainTable", {path});
        return 0;
    }

    void endBatch(quint32 reasons)
    {
        if (!rows.isEmpty())
            sayBoxEnabled(true);
        if (!checked.isEmpty())
            sayButtons(true);
        if (!rows.isEmpty() && allAreChecked())
            sayBox(true);
        if (reasons != 0)
            say("alertDialog", {reasons});
    }

    void setAllChecked(bool on)
    {
        for (int row = 0; row < rows.size(); ++row) {
            const QString &path = rows.at(row);
            if (checked.contains(path) == on)
                continue;
            if (on)
                checked.insert(path);
            else
                checked.remove(path);
            say("setTableItemCheckBoxState", {row, on});
        }
        sayBox(on);
        sayButtons(on);
    }

    void removeRow(const QString &path)
    {
        const int row = rows.indexOf(path);
        rows.removeAt(row);
        checked.remove(path);
        say("removeRowFromMainTable", {row});
    }

    /// Empty when no row is checked.
    QString firstChecked() const
    {
        const auto found = std::find_if(rows.begin(), rows.end(), [this](const QString &path) {
            return checked.contains(path);
        });
        return found == rows.end() ? QString() : *found;
    }

    bool allAreChecked() const { return checked.size() == rows.size(); }

    void start()
    {
        if (open)
            return;
        worker.endPass(); // a stop is answered before the next run starts
        open = true;
        succeeded = 0;
        failed = 0;
        stopPending = false;
        say("setCrushStarted", {Running});
        goOn();
    }

    void goOn()
    {
        const QString path = firstChecked();
        const QByteArray name = path.toUtf8();
        if (path.isEmpty() || stopPending)
            endRun();
        else if (picture.isLink(name) || !picture.exists(name) || picture.isFile(name)
                 || picture.isDirectory(name))
            queue.append(path);
        // What took the place of a file and is none is not handed over, and no verdict comes.
    }

    void endRun()
    {
        open = false;
        spared = false;
        say("setCrushStarted", {Idle});
        say("finishAll", {finished});
        sayWhatIsLeft();
        finished = 0;
        say("showResultDialog", {1U, succeeded, failed});
    }

    void stop()
    {
        stopPending = true;
        worker.stopRequested = true;
        spared = spared || (open && !queue.isEmpty());
        queue.clear();
        say("setCrushButtonEnabled", {false});
        say("setCrushStarted", {Stopping});
    }

    void hearWorker(const SignalRecord &report)
    {
        const QString path = report.arguments.value(0).toString();
        const QString first = firstChecked();
        ++reports;
        if (report.name == "finishPercent") {
            showPercent(path, report.arguments.at(1).toInt());
        } else if (report.name == "addToHistory") {
            record(path);
        } else if (report.name == "stopped") {
            const bool noVerdictWillCome = spared;
            open = false;
            say("setCrushStarted", {Idle});
            sayBoxEnabled(!rows.isEmpty());
            sayButtons(!checked.isEmpty());
            if (!rows.isEmpty())
                sayBox(allAreChecked());
            if (noVerdictWillCome)
                endRun();
        } else if (!first.isEmpty()) {
            if (report.name == "failedOne") {
                checked.remove(first);
                ++failed;
                showPercent(path, 0);
            } else if (path == first) {
                removeRow(path);
                ++finished;
                ++succeeded;
            }
            goOn();
        }
    }

    void showPercent(const QString &path, int percent)
    {
        const int row = rows.indexOf(path);
        if (row >= 0 && percent >= 0 && percent <= 100)
            say("setTableRowHeight", {row, percent});
    }

    void record(const QString &path)
    {
        const QByteArray bytes = path.toUtf8();
        const int slash = bytes.lastIndexOf('/');
        if (!picture.exists(bytes))
            historyFile << someTime() << textOf(bytes.mid(slash + 1))
                        << textOf(cleaned(bytes.left(slash)));
    }

    /// As QString::fromUtf8(), which drops a byte order mark at the beginning; in one line.
    static QString textOf(const QByteArray &bytes)
    {
        return QString::fromUtf8('/' + bytes).mid(1).replace(QLatin1Char('\n'), QChar(0x2424));
    }

    void loadHistory()
    {
        historyLoadAborted = false;
        historyLines.clear();
        say("setHistoryButtonEnabled", {false, 3});
        for (const QString &line : qAsConst(historyFile))
            historyLines.append(QString::fromUtf8(line.toUtf8()).trimmed());
        if (historyLines.isEmpty())
            return;
        say("setHistoryButtonEnabled", {true, 2});
        for (int line = 0; line < historyLines.size() && !historyLoadAborted; line += linesPerEntry)
            say("addRowToHistoryTable",
                {historyLines.at(line), historyLines.at(line + 1), historyLines.at(line + 2)});
        say("setHistoryButtonEnabled", {true, 1});
    }

    void copyHistory()
    {
        QString text;
        for (int line = 0; line < historyLines.size(); line += linesPerEntry)
            text += QStringLiteral("日期：%1\t已粉碎的文件或目录名：%2\t路径：%3\n")
                        .arg(historyLines.at(line), historyLines.at(line + 1),
                             historyLines.at(line + 2));
        say("clipboardSetText", {text});
    }

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
