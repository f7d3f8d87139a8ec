// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "walleharness.h"

#include "engine/filecrusher.h"
#include "promptly.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QUrl>

#include <utility>

namespace testsupport
{

struct HeldWorker::Reports {
    std::atomic<int> left;
    QSemaphore arrived;
    QSemaphore released;
};

/// The controller's own connections are older and so are served first.
HeldWorker::HeldWorker(const Walle &walle, int report)
    : reports(std::make_shared<Reports>())
{
    reports->left = report;
    const auto hold = [reports = reports] {
        if (--reports->left != 0)
            return;
        reports->arrived.release();
        QCoreApplication::eventDispatcher()->wakeUp(); // a promptly() for stands() goes on at once
        reports->released.acquire();
    };
    const auto *worker = walle.findChild<FileCrusher *>();
    connections.append(QObject::connect(worker, &FileCrusher::finishOne, hold));
    connections.append(QObject::connect(worker, &FileCrusher::failedOne, hold));
    connections.append(QObject::connect(worker, &FileCrusher::stopped, hold));
}

HeldWorker::~HeldWorker()
{
    for (const QMetaObject::Connection &connection : qAsConst(connections))
        QObject::disconnect(connection);
    reports->released.release();
}

bool HeldWorker::stands() const
{
    return reports->arrived.available() > 0;
}

WalleHarness::WalleHarness()
    : controller(new Walle)
{
    connectControls();
    connectTable();
    connectReports();
    controller->start(QThread::InheritPriority);
}

WalleHarness::~WalleHarness()
{
    controller->shutDown();
}

template <class Reaction, class... Arguments>
void WalleHarness::hear(const char *name, void (Walle::*signal)(Arguments...),
                        Qt::ConnectionType type, Reaction reaction)
{
    // Ahead of the other, as slots are called in the order they were connected.
    connect(
        controller, signal, this,
        [this, name] {
            if (qstrcmp(awaitedEmission, name) == 0)
                emitted.release();
        },
        Qt::DirectConnection);
    connect(
        controller, signal, this,
        [this, name, reaction](Arguments... arguments) {
            if (!reaction(arguments...))
                return;
            records.append({name, {QVariant::fromValue(arguments)...}});
            if (onSignal)
                onSignal(records.last());
        },
        type);
}

void WalleHarness::connectControls()
{
    const auto show = [this](auto Controls::*control) {
        return [this, control](auto value) {
            shown.*control = value;
            return true;
        };
    };
    hear("setSelectAllCheckBoxEnabled", &Walle::setSelectAllCheckBoxEnabled, Qt::AutoConnection,
         show(&Controls::selectAllEnabled));
    hear("setSelectAllCheckBoxState", &Walle::setSelectAllCheckBoxState, Qt::AutoConnection,
         show(&Controls::selectAllTicked));
    hear("setRemoveButtonEnabled", &Walle::setRemoveButtonEnabled, Qt::AutoConnection,
         show(&Controls::removeEnabled));
    hear("setCrushButtonEnabled", &Walle::setCrushButtonEnabled, Qt::AutoConnection,
         show(&Controls::crushEnabled));
    hear("setCrushStarted", &Walle::setCrushStarted, Qt::AutoConnection, show(&Controls::runState));
}

void WalleHarness::connectTable()
{
    hear("addRowToMainTable", &Walle::addRowToMainTable, Qt::BlockingQueuedConnection,
         [this](const QString &fullName) {
             table.append({fullName});
             return true;
         });
    hear("removeRowFromMainTable", &Walle::removeRowFromMainTable, Qt::AutoConnection,
         [this](int row) {
             if (hasRow("removeRowFromMainTable", row))
                 table.removeAt(row);
             return true;
         });
    hear("setTableItemCheckBoxState", &Walle::setTableItemCheckBoxState, Qt::AutoConnection,
         [this](int row, bool state) {
             if (hasRow("setTableItemCheckBoxState", row))
                 table[row].checked = state;
             return true;
         });
    hear("setTableRowHeight", &Walle::setTableRowHeight, Qt::AutoConnection,
         [this](int row, int percent) {
             if (hasRow("setTableRowHeight", row))
                 table[row].percent = percent;
             return true;
         });
}

void WalleHarness::connectReports()
{
    const auto nothing = [](const auto &...) { return true; };
    hear("addRowToHistoryTable", &Walle::addRowToHistoryTable, Qt::BlockingQueuedConnection,
         nothing);
    hear("removeRowFromHistoryTable", &Walle::removeRowFromHistoryTable,
         Qt::BlockingQueuedConnection, nothing);
    hear("finishOne", &Walle::finishOne, Qt::AutoConnection, nothing);
    hear("finishAll", &Walle::finishAll, Qt::AutoConnection, nothing);
    hear("clipboardSetText", &Walle::clipboardSetText, Qt::BlockingQueuedConnection,
         [this](const QString &text) {
             if (copies == 0) {
                 --barriers;
                 return false;
             }
             --copies;
             clipboardText = text;
             return true;
         });
    hear("setHistoryButtonEnabled", &Walle::setHistoryButtonEnabled, Qt::BlockingQueuedConnection,
         nothing);
    hear("alertDialog", &Walle::alertDialog, Qt::BlockingQueuedConnection, nothing);
    hear("showResultDialog", &Walle::showResultDialog, Qt::AutoConnection,
         [this](uint, uint, uint) {
             ++results;
             return true;
         });
}

bool WalleHarness::hasRow(const char *signal, int row)
{
    if (row >= 0 && row < table.size())
        return true;
    rowFaults.append(QStringLiteral("%1(%2) with %3 rows")
                         .arg(QLatin1String(signal))
                         .arg(row)
                         .arg(table.size()));
    return false;
}

void WalleHarness::choose(const QStringList &names) const
{
    controller->addChosenFiles(names);
    post(CommandAddChosen);
}

void WalleHarness::drop(const QList<QUrl> &urls) const
{
    controller->addDroppedUrls(urls);
    post(CommandAddDropped);
}

void WalleHarness::dropFiles(const QStringList &paths) const
{
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls.append(QUrl::fromLocalFile(path));
    drop(urls);
}

void WalleHarness::click(int row) const
{
    controller->postCellToggle(CellToggle{row, !table.at(row).checked, table.at(row).path});
    post(CommandToggleRow);
}

void WalleHarness::copyHistory()
{
    ++copies;
    post(CommandCopyHistory);
}

bool WalleHarness::performed()
{
    ++barriers;
    post(CommandCopyHistory);
    return promptly([this] { return barriers == 0; });
}

bool WalleHarness::emittedUnheard(const char *signal, const std::function<void()> &request,
                                  int milliseconds)
{
    const int heard = count(signal);
    emitted.acquire(emitted.available());
    awaitedEmission = signal;
    request();
    const bool done = emitted.tryAcquire(1, milliseconds);
    awaitedEmission = nullptr;
    return done && count(signal) == heard;
}

SignalRecords WalleHarness::answerTo(const std::function<void()> &request)
{
    takeLog();
    request();
    if (!performed())
        qFatal("the controller does not answer");
    return takeLog();
}

bool WalleHarness::admitted(const QStringList &paths)
{
    choose(paths);
    const bool done = performed();
    takeLog();
    return done;
}

bool WalleHarness::finished()
{
    if (!promptly([this] { return results > 0; }))
        return false;
    --results;
    return true;
}

SignalRecords WalleHarness::log(const QByteArrayList &names) const
{
    SignalRecords chosen;
    for (const SignalRecord &record : records) {
        if (names.contains(record.name))
            chosen.append(record);
    }
    return chosen;
}

SignalRecords WalleHarness::takeLog()
{
    return std::exchange(records, {});
}

QStringList WalleHarness::paths() const
{
    QStringList all;
    for (const Row &row : table)
        all.append(row.path);
    return all;
}

QStringList WalleHarness::checkedPaths() const
{
    QStringList checked;
    for (const Row &row : table) {
        if (row.checked)
            checked.append(row.path);
    }
    return checked;
}

/// The rows that the controller names in @p signal when asked for @p request.
QVector<int> WalleHarness::rowsAnsweringTo(const std::function<void()> &request, const char *signal)
{
    QVector<int> rows;
    const SignalRecords answer = answerTo(request);
    for (const SignalRecord &record : answer) {
        if (record.name == signal)
            rows.append(record.arguments.first().toInt());
    }
    return rows;
}

QString WalleHarness::differenceFromJobList()
{
    performed();
    QVector<int> unchecked;
    for (int row = 0; row < table.size(); ++row) {
        if (!table.at(row).checked)
            unchecked.append(row);
    }
    const char *tick = "setTableItemCheckBoxState";
    if (rowsAnsweringTo([this] { post(CommandCheckAll); }, tick) != unchecked)
        return QStringLiteral("other rows are ticked in the list");
    for (int row = 0; row < table.size(); ++row) {
        if (rowsAnsweringTo([this, row] { click(row); }, tick) != QVector<int>{row})
            return QStringLiteral("%1 is in another row of the list").arg(table.at(row).path);
    }
    const int shownRows = table.size();
    post(CommandCheckAll);
    const QVector<int> removals =
        rowsAnsweringTo([this] { post(CommandRemoveChecked); }, "removeRowFromMainTable");
    if (removals != QVector<int>(shownRows, 0))
        return QStringLiteral("the list has %1 rows, the table %2")
            .arg(removals.size())
            .arg(shownRows);
    return QString();
}

} // namespace testsupport
