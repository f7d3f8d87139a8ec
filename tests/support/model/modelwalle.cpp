// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "modelwalle.h"

#include <algorithm>

namespace testsupport
{

namespace
{

enum Command {
    RemoveChecked = 0,
    StartCrush = 1,
    ClearHistory = 2,
    CopyHistory = 3,
    CheckAll = 6,
    UncheckAll = 7,
    StopCrush = 9,
    LoadHistory = 10
};
enum Reason { NotFound = 1, UnknownType = 2, NoPermission = 4, Duplicate = 8, OverLimit = 16 };
enum State { Idle = 1, Running = 2, Stopping = 3 };
constexpr int mostRows = 200;
constexpr int linesPerEntry = 3;

/// As QString::fromUtf8(), which drops a byte order mark at the beginning; in one line.
QString textOf(const QByteArray &bytes)
{
    return QString::fromUtf8('/' + bytes).mid(1).replace(QLatin1Char('\n'), QChar(0x2424));
}

} // namespace

ModelWalle::ModelWalle(const QByteArray &root)
    : picture(root)
    , worker(picture, [this](const SignalRecord &report) { hearWorker(report); })
{
}

void ModelWalle::say(const char *name, const QVariantList &arguments)
{
    said.append(SignalRecord(name, arguments));
    if (onSignal)
        onSignal(said.last());
}

void ModelWalle::sayButtons(bool enabled)
{
    say("setCrushButtonEnabled", {enabled});
    say("setRemoveButtonEnabled", {enabled});
}

void ModelWalle::sayWhatIsLeft()
{
    if (checked.isEmpty())
        sayButtons(false);
    if (rows.isEmpty()) {
        sayBox(false);
        say("setSelectAllCheckBoxEnabled", {false});
    }
}

void ModelWalle::post(int code)
{
    switch (code) {
    case RemoveChecked:
        while (!checked.isEmpty())
            removeRow(firstChecked());
        return sayWhatIsLeft();
    case StartCrush:
        return start();
    case ClearHistory:
        return historyFile.clear();
    case CopyHistory:
        return copyHistory();
    case CheckAll:
    case UncheckAll:
        return setAllChecked(code == CheckAll);
    case StopCrush:
        return stop();
    case LoadHistory:
        return loadHistory();
    default: // nothing comes of a batch or a click that was not posted
        return;
    }
}

/// The one reason not to take @p path in, or 0.
quint32 ModelWalle::admit(const QString &path)
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

void ModelWalle::choose(const QStringList &names)
{
    quint32 reasons = 0;
    for (const QString &name : names)
        reasons |= admit(name);
    endBatch(reasons);
}

void ModelWalle::drop(const QList<QUrl> &urls)
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

void ModelWalle::endBatch(quint32 reasons)
{
    if (!rows.isEmpty())
        say("setSelectAllCheckBoxEnabled", {true});
    if (!checked.isEmpty())
        sayButtons(true);
    if (!rows.isEmpty() && allAreChecked())
        sayBox(true);
    if (reasons != 0)
        say("alertDialog", {reasons});
}

void ModelWalle::setAllChecked(bool on)
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

void ModelWalle::click(const QString &path)
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

void ModelWalle::removeRow(const QString &path)
{
    const int row = rows.indexOf(path);
    rows.removeAt(row);
    checked.remove(path);
    say("removeRowFromMainTable", {row});
}

/// Empty when no row is checked.
QString ModelWalle::firstChecked() const
{
    const auto found = std::find_if(rows.begin(), rows.end(),
                                    [this](const QString &path) { return checked.contains(path); });
    return found == rows.end() ? QString() : *found;
}

void ModelWalle::start()
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

void ModelWalle::goOn()
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

void ModelWalle::endRun()
{
    open = false;
    spared = false;
    say("setCrushStarted", {Idle});
    say("finishAll", {finished});
    sayWhatIsLeft();
    finished = 0;
    say("showResultDialog", {1U, succeeded, failed});
}

void ModelWalle::stop()
{
    stopPending = true;
    worker.stopRequested = true;
    spared = spared || (open && !queue.isEmpty());
    queue.clear();
    say("setCrushButtonEnabled", {false});
    say("setCrushStarted", {Stopping});
}

void ModelWalle::work()
{
    while (!queue.isEmpty())
        worker.takeFromQueue(queue.takeFirst());
    worker.endPass();
}

void ModelWalle::hearWorker(const SignalRecord &report)
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
        say("setSelectAllCheckBoxEnabled", {!rows.isEmpty()});
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

void ModelWalle::showPercent(const QString &path, int percent)
{
    const int row = rows.indexOf(path);
    if (row >= 0 && percent >= 0 && percent <= 100)
        say("setTableRowHeight", {row, percent});
}

void ModelWalle::record(const QString &path)
{
    const QByteArray bytes = path.toUtf8();
    const int slash = bytes.lastIndexOf('/');
    if (!picture.exists(bytes))
        historyFile << someTime() << textOf(bytes.mid(slash + 1))
                    << textOf(cleaned(bytes.left(slash)));
}

void ModelWalle::loadHistory()
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

void ModelWalle::copyHistory()
{
    QString text;
    for (int line = 0; line < historyLines.size(); line += linesPerEntry)
        text +=
            QStringLiteral("日期：%1\t已粉碎的文件或目录名：%2\t路径：%3\n")
                .arg(historyLines.at(line), historyLines.at(line + 1), historyLines.at(line + 2));
    say("clipboardSetText", {text});
}

} // namespace testsupport
