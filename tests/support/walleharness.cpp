// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "walleharness.h"

#include "engine/filecrusher.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QSemaphore>
#include <QUrl>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <utility>

namespace testsupport
{

struct WalleHarness::Gate {
    explicit Gate(int report)
        : reportsUntilClosed(report)
    {
    }

    std::atomic<int> reportsUntilClosed;
    std::atomic<bool> workerIsHeld{false};
    QSemaphore released;
};

void WalleHarness::startController()
{
    walle = new Walle;
    worker = walle->findChild<FileCrusher *>();
    // Before the window, for which the controller thread waits.
    emissions = std::make_unique<SignalLog>(walle);
    window = std::make_unique<SignalLog>(
        walle, Qt::AutoConnection,
        QByteArrayList{"addRowToMainTable", "addRowToHistoryTable", "removeRowFromHistoryTable",
                       "clipboardSetText", "setHistoryButtonEnabled", "alertDialog"});
    window->onRecord = [this](const SignalRecord &signal) { receive(signal); };
    records.clear();
    table.clear();
    unticked.clear();
    barriers = 0;
    copies = 0;
    walle->start(QThread::InheritPriority);
}

void WalleHarness::leaveController()
{
    releaseWorker();
    walle->shutDown();
    gate.reset();
    onSignal = nullptr;
}

void WalleHarness::receive(const SignalRecord &signal)
{
    const QVariant first = signal.arguments.value(0);
    const auto row = [&] {
        if (first.toInt() < 0 || first.toInt() >= table.size())
            qFatal("%s names no row of the table", signal.name.constData());
        return first.toInt();
    };
    if (signal.name == "clipboardSetText") {
        if (copies == 0) {
            --barriers;
            return;
        }
        --copies;
    } else if (signal.name == "addRowToMainTable") {
        table.append(first.toString());
    } else if (signal.name == "removeRowFromMainTable") {
        unticked.remove(table.takeAt(row()));
    } else if (signal.name == "setTableItemCheckBoxState") {
        if (signal.arguments.at(1).toBool())
            unticked.remove(table.at(row()));
        else
            unticked.insert(table.at(row()));
    } else if (signal.name == "setTableRowHeight") {
        row();
    }
    records.append(signal);
    if (onSignal)
        onSignal(signal);
}

void WalleHarness::post(int code)
{
    if (code == CommandCopyHistory)
        ++copies;
    walle->postCommand(code);
}

void WalleHarness::choose(const QStringList &names)
{
    walle->addChosenFiles(names);
    post(CommandAddChosen);
}

void WalleHarness::drop(const QList<QUrl> &urls)
{
    walle->addDroppedUrls(urls);
    post(CommandAddDropped);
}

void WalleHarness::dropFiles(const QStringList &paths)
{
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls.append(QUrl::fromLocalFile(path));
    drop(urls);
}

void WalleHarness::click(const QString &path)
{
    walle->postCellToggle(CellToggle{0, false, path});
    post(CommandToggleRow);
}

bool WalleHarness::performed()
{
    ++barriers;
    walle->postCommand(CommandCopyHistory);
    return promptly([this] { return barriers == 0; });
}

bool WalleHarness::finished()
{
    return promptly([this] { return count("showResultDialog") > 0; });
}

bool WalleHarness::admitted(const QStringList &paths)
{
    choose(paths);
    const bool done = performed();
    takeLog();
    return done;
}

SignalRecords WalleHarness::answerTo(const std::function<void()> &request)
{
    takeLog();
    request();
    if (!performed())
        qFatal("the controller does not answer");
    return takeLog();
}

SignalRecords WalleHarness::answerTo(const QList<int> &codes)
{
    return answerTo([&] {
        for (const int code : codes)
            post(code);
    });
}

SignalRecords WalleHarness::answerToClick(int row)
{
    return answerTo([&] { click(row); });
}

SignalRecords WalleHarness::answerToRun()
{
    return answerTo([this] {
        post(CommandStartCrush);
        if (!finished())
            qFatal("the run does not end");
    });
}

bool WalleHarness::emittedUnheard(const char *signal, const std::function<void()> &request,
                                  int milliseconds) const
{
    const int before = emissions->count(signal);
    request();
    const QDeadlineTimer deadline(milliseconds);
    while (emissions->count(signal) == before && !deadline.hasExpired())
        QThread::yieldCurrentThread();
    return emissions->count(signal) > before;
}

void WalleHarness::onNext(const char *name, const std::function<void()> &step)
{
    onSignal = [this, name, step](const SignalRecord &signal) {
        if (signal.name != name)
            return;
        const auto once = step; // the next line destroys this function
        onSignal = nullptr;
        once();
    };
}

SignalRecords WalleHarness::log(const QByteArrayList &names) const
{
    SignalRecords chosen;
    std::copy_if(records.cbegin(), records.cend(), std::back_inserter(chosen),
                 [&](const SignalRecord &record) { return names.contains(record.name); });
    return chosen;
}

SignalRecords WalleHarness::takeLog()
{
    emissions->clear();
    window->clear();
    return std::exchange(records, {});
}

QStringList WalleHarness::checkedPaths() const
{
    QStringList checked = table;
    for (const QString &path : unticked)
        checked.removeOne(path);
    return checked;
}

bool WalleHarness::holdWorkerAfter(int code, int report)
{
    gate = std::make_shared<Gate>(report);
    const auto pass = [gate = gate] {
        if (--gate->reportsUntilClosed != 0)
            return;
        gate->workerIsHeld = true;
        QCoreApplication::eventDispatcher()->wakeUp(); // promptly() looks again
        gate->released.acquire();
    };
    // Behind the controller's own connections.
    QObject::connect(worker, &FileCrusher::finishOne, pass);
    QObject::connect(worker, &FileCrusher::failedOne, pass);
    QObject::connect(worker, &FileCrusher::stopped, pass);
    post(code);
    return promptly([this] { return gate->workerIsHeld.load(); }) && performed();
}

void WalleHarness::releaseWorker()
{
    if (gate)
        gate->released.release();
}

void WalleTest::init()
{
    home.forgetHistory();
    tree = std::make_unique<TemporaryTree>();
    startController();
}

void WalleTest::cleanup()
{
    leaveController();
    tree.reset();
}

QStringList WalleTest::makeFiles(const char *prefix, int count) const
{
    QStringList paths;
    for (int number = 0; number < count; ++number)
        paths.append(tree->makeFile(QLatin1String(prefix) + QString::number(number), 3));
    return paths;
}

QString WalleTest::makeStubborn(const char *name) const
{
    return QFileInfo(tree->makeFifo(QLatin1String(name) + QStringLiteral("/fifo"))).path();
}

void WalleTest::becomeFifo(const QString &path) const
{
    QVERIFY(QFile::remove(path));
    tree->makeFifo(QFileInfo(path).fileName());
}

void WalleTest::becomeFile(const QString &path) const
{
    QVERIFY(QFile::remove(path));
    tree->makeFile(QFileInfo(path).fileName(), 10);
}

void WalleTest::addRows(int count)
{
    QVERIFY(admitted(makeFiles("row", count)));
    QCOMPARE(paths().size(), count);
}

void WalleTest::startRunThatStandsStill(int rows)
{
    addRows(rows);
    becomeFifo(paths().constFirst());
    QCOMPARE(answerTo({CommandStartCrush}), SignalRecords{running()});
}

SignalRecords WalleTest::answerToStop()
{
    return answerTo([this] {
        post(CommandStopCrush);
        performed();
        releaseWorker();
        promptly([this] { return log().contains(idle()); });
    });
}

void WalleTest::compareTableWithJobList()
{
    QVERIFY(performed());
    SignalRecords expected;
    const QStringList rows = paths();
    for (int row = 0; row < rows.size(); ++row) {
        if (!checkedPaths().contains(rows.at(row)))
            expected += ticked(row, true);
    }
    for (const bool on : {false, true}) {
        for (int row = 0; row < rows.size(); ++row)
            expected += ticked(row, on);
    }
    expected += SignalRecords(QVector<SignalRecord>(rows.size(), removed(0)).toList());
    takeLog();
    post(CommandCheckAll);
    for (const QString &path : rows)
        click(path);
    post(CommandCheckAll);
    post(CommandRemoveChecked);
    QVERIFY(performed());
    QCOMPARE(log({"setTableItemCheckBoxState", "removeRowFromMainTable"}), expected);
}

} // namespace testsupport
