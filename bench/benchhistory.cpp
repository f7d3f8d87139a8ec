// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Measures the history: opening it with few and with many entries in the real
// window, what that costs in memory, whether the window stays usable meanwhile,
// and recording one removal. Run it with a sandbox home; see scripts/bench.

#include "controller/historyfile.h"
#include "controller/walle.h"
#include "ui/mainwindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QPushButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QTextStream>

#include <cstdlib>

namespace
{

constexpr int firstScreenfulRows = 12;

struct Opening {
    qint64 firstScreenful = -1; ///< milliseconds
    qint64 allRows = -1;        ///< milliseconds
    qint64 longestStall = 0;    ///< milliseconds between two turns of the event loop
};

void writeHistory(int entries)
{
    QFile file(Walle::historyFilePath());
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(file.fileName()));
    const QDateTime time(QDate(2026, 1, 2), QTime(3, 4, 5));
    for (int index = 0; index < entries; ++index) {
        file.write(
            historyfile::entryFor(QStringLiteral("/home/somebody/文档/年度报告/第%1章/附件 %2.pdf")
                                      .arg(index % 97)
                                      .arg(index),
                                  time.addSecs(index)));
    }
}

Opening openHistory(MainWindow &window, int entries)
{
    auto *table = window.findChild<QTableWidget *>(QStringLiteral("historyTable"));
    auto *copyButton = window.findChild<QPushButton *>(QStringLiteral("copyButton"));
    Opening opening;
    QElapsedTimer clock;
    QElapsedTimer sinceTurn;
    clock.start();
    sinceTurn.start();
    window.slotShowHistoryEva();
    while (opening.allRows < 0 && clock.elapsed() < 120000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        opening.longestStall = qMax(opening.longestStall, sinceTurn.restart());
        if (opening.firstScreenful < 0 && table->cellWidget(0, 0)
            && table->rowCount() >= qMin(entries, firstScreenfulRows))
            opening.firstScreenful = clock.elapsed();
        if (copyButton->isEnabled() && table->rowCount() == entries)
            opening.allRows = clock.elapsed();
    }
    return opening;
}

qint64 jumpToEnd(MainWindow &window)
{
    auto *table = window.findChild<QTableWidget *>(QStringLiteral("historyTable"));
    QElapsedTimer clock;
    clock.start();
    table->verticalScrollBar()->setValue(table->verticalScrollBar()->maximum());
    QCoreApplication::processEvents();
    return clock.elapsed();
}

long residentMebibytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLong() / 1024;
    }
    return -1;
}

double microsecondsPerRecord(int existingEntries)
{
    constexpr int records = 2000;
    writeHistory(existingEntries);
    auto *walle = new Walle; // lives until the process ends, like every controller
    QElapsedTimer clock;
    clock.start();
    for (int index = 0; index < records; ++index)
        walle->addToHistoryWalle(QStringLiteral("/nowhere/gone/file-%1").arg(index));
    return static_cast<double>(clock.nsecsElapsed()) / 1000.0 / records;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QTextStream out(stdout);
    if (!Walle::historyFilePath().contains(QStringLiteral("sandbox"))) {
        out << "the home directory is no sandbox; start this with scripts/bench\n";
        return EXIT_FAILURE;
    }
    out << "| entries | first screenful ms | all rows ms | longest stall ms | jump to end ms |"
           " resident MiB |\n|---|---|---|---|---|---|\n";
    MainWindow window;
    window.show();
    for (const int entries : {10, 1000, 10000, 100000}) {
        writeHistory(entries);
        const Opening opening = openHistory(window, entries);
        const qint64 jump = jumpToEnd(window);
        out << "| " << entries << " | " << opening.firstScreenful << " | " << opening.allRows
            << " | " << opening.longestStall << " | " << jump << " | " << residentMebibytes()
            << " |\n";
        window.slotShowHistoryEva();
    }
    for (const int entries : {0, 10000, 100000})
        out << "\nRecording one removal by itself with " << entries
            << " entries before it: " << microsecondsPerRecord(entries) << " microseconds.\n";
    out.flush();
    // The controllers' threads still run.
    std::_Exit(EXIT_SUCCESS);
}
