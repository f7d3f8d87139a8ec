// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "modelwalle.h"

#include <QRegularExpression>

#include <algorithm>

namespace testsupport
{

namespace
{

constexpr quint32 notFound = 0x01;
constexpr quint32 unknownType = 0x02;
constexpr quint32 noPermission = 0x04;
constexpr quint32 duplicate = 0x08;
constexpr quint32 overLimit = 0x10;
constexpr int mostRows = 200;

constexpr int idle = 1;
constexpr int running = 2;
constexpr int stopping = 3;
constexpr int linesPerEntry = 3;

/// An entry has three lines whatever it is called.
QString inOneLine(QString text)
{
    return text.replace(QLatin1Char('\n'), QStringLiteral("\u2424"));
}

/// What the system has everywhere and an ordinary user may not write.
bool isSystemFolder(const QString &path)
{
    return QStringList{QStringLiteral("/"), QStringLiteral("/etc"), QStringLiteral("/usr/bin"),
                       QStringLiteral("/proc")}
        .contains(path);
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

void ModelWalle::lookAtDisk()
{
    picture = ModelDisk(picture.folder());
}

QStringList ModelWalle::paths() const
{
    QStringList all;
    for (const Row &row : rows)
        all.append(row.path);
    return all;
}

int ModelWalle::rowOf(const QString &path) const
{
    return paths().indexOf(path);
}

int ModelWalle::firstChecked() const
{
    const auto found =
        std::find_if(rows.begin(), rows.end(), [](const Row &row) { return row.checked; });
    return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

bool ModelWalle::anyUnchecked() const
{
    return std::any_of(rows.begin(), rows.end(), [](const Row &row) { return !row.checked; });
}

/// The one reason not to take @p path in, or 0.
quint32 ModelWalle::admit(const QString &path)
{
    const QByteArray name = path.toUtf8();
    const bool isLink = picture.isLink(name);
    if (path == QLatin1String("/dev/null"))
        return unknownType;
    if (isSystemFolder(path))
        return noPermission;
    if (!isLink) { // a link stands for itself, whatever it leads to
        if (!picture.exists(name))
            return notFound;
        if (!picture.isFile(name) && !picture.isDirectory(name))
            return unknownType;
        if (!picture.isOpenToUser(name))
            return noPermission;
    }
    if (rowOf(path) >= 0)
        return duplicate;
    if (rows.size() >= mostRows)
        return overLimit;
    rows.append(Row{path});
    say("addRowToMainTable", {path});
    return 0;
}

void ModelWalle::choose(const QStringList &names)
{
    quint32 reasons = 0;
    for (const QString &name : names)
        reasons |= admit(name);
    finishBatch(reasons);
}

void ModelWalle::drop(const QStringList &paths)
{
    quint32 reasons = 0;
    for (const QString &path : paths) {
        if (path.isEmpty())
            break;
        const quint32 reason = admit(path);
        reasons |= reason;
        if (reason == overLimit)
            break;
    }
    finishBatch(reasons);
}

void ModelWalle::finishBatch(quint32 reasons)
{
    refresh(1);
    if (reasons != 0)
        say("alertDialog", {reasons});
}

void ModelWalle::setAllChecked(bool checked)
{
    for (int row = 0; row < rows.size(); ++row) {
        if (rows.at(row).checked == checked)
            continue;
        rows[row].checked = checked;
        say("setTableItemCheckBoxState", {row, checked});
    }
    refresh(checked ? 3 : 4);
}

void ModelWalle::click(const QString &path)
{
    const int row = rowOf(path);
    if (row < 0)
        return;
    const bool checked = !rows.at(row).checked;
    rows[row].checked = checked;
    say("setTableItemCheckBoxState", {row, checked});
    if (checked)
        refresh(anyUnchecked() ? 5 : 3);
    else
        refresh(hasChecked() ? 6 : 4);
}

void ModelWalle::removeChecked()
{
    for (int row = firstChecked(); row >= 0; row = firstChecked()) {
        rows.removeAt(row);
        say("removeRowFromMainTable", {row});
    }
    refresh(2);
}

void ModelWalle::sayCrushAndRemove(bool enabled)
{
    say("setCrushButtonEnabled", {enabled});
    say("setRemoveButtonEnabled", {enabled});
}

/// What the controls are told after each kind of change; the numbers are those of the situations.
void ModelWalle::refresh(int situation)
{
    const bool none = rows.isEmpty();
    switch (situation) {
    case 1:
        if (none)
            return;
        say("setSelectAllCheckBoxEnabled", {true});
        if (hasChecked())
            sayCrushAndRemove(true);
        if (!anyUnchecked())
            say("setSelectAllCheckBoxState", {true});
        return;
    case 2:
        if (!hasChecked())
            sayCrushAndRemove(false);
        if (none) {
            say("setSelectAllCheckBoxState", {false});
            say("setSelectAllCheckBoxEnabled", {false});
        }
        return;
    case 3:
    case 4:
        say("setSelectAllCheckBoxState", {situation == 3});
        return sayCrushAndRemove(situation == 3);
    case 5:
        return sayCrushAndRemove(true);
    case 6:
        return say("setSelectAllCheckBoxState", {false});
    case 7:
        return say("setCrushButtonEnabled", {false});
    case 8:
        say("setSelectAllCheckBoxEnabled", {!none});
        sayCrushAndRemove(hasChecked());
        if (!none)
            say("setSelectAllCheckBoxState", {!anyUnchecked()});
        return;
    default:
        return;
    }
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
    say("setCrushStarted", {running});
    crushNext();
}

void ModelWalle::crushNext()
{
    const int row = firstChecked();
    if (row >= 0 && !stopPending) {
        const QString path = rows.at(row).path;
        const QByteArray name = path.toUtf8();
        const bool exists = picture.exists(name) || picture.isLink(name);
        // What took the place of a file and is none is not handed over, and no verdict comes.
        if (!exists || picture.isLink(name) || picture.isFile(name) || picture.isDirectory(name))
            queue.append(path);
        return;
    }
    endRun();
}

void ModelWalle::endRun()
{
    open = false;
    spared = false;
    say("setCrushStarted", {idle});
    say("finishAll", {finished});
    refresh(2);
    finished = 0;
    say("showResultDialog", {1U, succeeded, failed});
}

void ModelWalle::stop()
{
    stopPending = true;
    worker.stopRequested = true;
    spared = spared || (open && !queue.isEmpty());
    queue.clear();
    refresh(7);
    say("setCrushStarted", {stopping});
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
    ++reports;
    if (report.name == "finishOne")
        return finishOne(path);
    if (report.name == "failedOne")
        return failedOne(path);
    if (report.name == "finishPercent")
        return showPercent(path, report.arguments.at(1).toInt());
    if (report.name == "addToHistory")
        return record(path);
    const bool endsTheRun = spared;
    open = false;
    say("setCrushStarted", {idle});
    refresh(8);
    if (endsTheRun) // no verdict will
        endRun();
}

void ModelWalle::finishOne(const QString &path)
{
    const int row = firstChecked();
    if (row < 0)
        return;
    if (rows.at(row).path == path) {
        rows.removeAt(row);
        say("removeRowFromMainTable", {row});
        ++finished;
        ++succeeded;
    }
    crushNext();
}

void ModelWalle::failedOne(const QString &path)
{
    const int row = firstChecked();
    if (row < 0)
        return;
    rows[row].checked = false;
    ++failed;
    showPercent(path, 0);
    crushNext();
}

void ModelWalle::showPercent(const QString &path, int percent)
{
    const int row = rowOf(path);
    if (row >= 0 && percent >= 0 && percent <= 100)
        say("setTableRowHeight", {row, percent});
}

void ModelWalle::record(const QString &path)
{
    const QByteArray bytes = path.toUtf8();
    if (picture.exists(bytes))
        return;
    const int slash = bytes.lastIndexOf('/');
    historyFile.append(someTime());
    historyFile.append(inOneLine(QString::fromUtf8('/' + bytes.mid(slash + 1)).mid(1)));
    historyFile.append(inOneLine(QString::fromUtf8(cleaned(bytes.left(slash)))));
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
        text += QStringLiteral("日期：") + historyLines.at(line)
                + QStringLiteral("\t已粉碎的文件或目录名：") + historyLines.at(line + 1)
                + QStringLiteral("\t路径：") + historyLines.at(line + 2) + QLatin1Char('\n');
    say("clipboardSetText", {text});
}

void ModelWalle::clearHistory()
{
    historyFile.clear();
}

QString someTime()
{
    return QStringLiteral("0000-00-00 00:00:00");
}

SignalRecords withSomeTime(SignalRecords said)
{
    const QRegularExpression time(
        QStringLiteral("(^|日期：)20\\d\\d-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d"));
    for (SignalRecord &record : said) {
        if (record.name == "addRowToHistoryTable" || record.name == "clipboardSetText")
            record.arguments[0] =
                record.arguments.at(0).toString().replace(time, QStringLiteral("\\1") + someTime());
    }
    return said;
}

} // namespace testsupport
