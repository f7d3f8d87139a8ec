// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Runs, and the history.

#include "modelwalle.h"

#include <QRegularExpression>

namespace testsupport
{

namespace
{

constexpr int idle = 1;
constexpr int running = 2;
constexpr int stopping = 3;
constexpr int linesPerEntry = 3;

/// An entry has three lines whatever it is called.
QString inOneLine(QString text)
{
    return text.replace(QLatin1Char('\n'), QStringLiteral("\u2424"));
}

} // namespace

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
