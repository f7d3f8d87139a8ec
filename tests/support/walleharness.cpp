// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "walleharness.h"

#include "engine/filecrusher.h"
#include "promptly.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <QtTest>

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

/// As the main window connects.
static Qt::ConnectionType connectionOf(const QByteArray &signal)
{
    static const QByteArrayList blocking{"addRowToMainTable",         "addRowToHistoryTable",
                                         "removeRowFromHistoryTable", "clipboardSetText",
                                         "setHistoryButtonEnabled",   "alertDialog"};
    return blocking.contains(signal) ? Qt::BlockingQueuedConnection : Qt::AutoConnection;
}

WalleHarness::WalleHarness()
    : controller(new Walle)
    , emissions(controller)
    , window(controller, connectionOf)
{
    emissions.onRecord = [this](const SignalRecord &signal) {
        const char *const awaited = awaitedEmission;
        if (awaited != nullptr && signal.name == awaited)
            emitted.release();
    };
    window.onRecord = [this](const SignalRecord &signal) { receive(signal); };
    controller->start(QThread::InheritPriority);
}

WalleHarness::~WalleHarness()
{
    controller->shutDown();
}

void WalleHarness::receive(const SignalRecord &signal)
{
    static const QByteArrayList rowSignals{"removeRowFromMainTable", "setTableItemCheckBoxState",
                                           "setTableRowHeight"};
    const QVariant first = signal.arguments.value(0);
    if (signal.name == "clipboardSetText") {
        if (copies == 0) {
            --barriers;
            return;
        }
        --copies;
    } else if (signal.name == "addRowToMainTable") {
        table.append({first.toString()});
    } else if (signal.name == "setCrushStarted") {
        shownRunState = first.toInt();
    } else if (signal.name == "showResultDialog") {
        ++results;
    } else if (rowSignals.contains(signal.name)) {
        const int row = first.toInt();
        if (row < 0 || row >= table.size())
            QTest::qFail("a signal names no row of the table", __FILE__, __LINE__);
        else if (signal.name == "removeRowFromMainTable")
            table.removeAt(row);
        else if (signal.name == "setTableItemCheckBoxState")
            table[row].checked = signal.arguments.at(1).toBool();
    }
    records.append(signal);
    if (onSignal)
        onSignal(records.last());
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
    emissions.clear();
    window.clear();
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

void WalleTest::initTestCase()
{
    QVERIFY2(home.isInForce(), home.advice());
}

void WalleTest::init()
{
    home.forgetHistory();
    tree = std::make_unique<TemporaryTree>();
    harness = std::make_unique<WalleHarness>();
}

void WalleTest::cleanup()
{
    held.reset();
    harness.reset();
    tree.reset();
}

QString WalleTest::make(const char *name, qint64 size) const
{
    return tree->makeFile(QString::fromUtf8(name), size);
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
    tree->makeFolder(QLatin1String(name));
    tree->makeFifo(QLatin1String(name) + QStringLiteral("/fifo"));
    return tree->path(QLatin1String(name));
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
    QVERIFY(harness->admitted(makeFiles("row", count)));
    QCOMPARE(harness->rows().size(), count);
}

SignalRecords WalleTest::answerTo(const QList<int> &codes)
{
    return harness->answerTo([&] {
        for (const int code : codes)
            harness->post(code);
    });
}

SignalRecords WalleTest::answerToClick(int row)
{
    return harness->answerTo([&] { harness->click(row); });
}

SignalRecords WalleTest::answerToRun()
{
    return harness->answerTo([this] {
        harness->post(CommandStartCrush);
        if (!harness->finished())
            qFatal("the run does not end");
    });
}

SignalRecords WalleTest::runLog() const
{
    return harness->log({"setCrushStarted", "finishAll", "showResultDialog"});
}

void WalleTest::holdIdleWorker()
{
    held = std::make_unique<HeldWorker>(harness->walle());
    harness->post(CommandStopCrush);
    PROMPTLY_VERIFY(held->stands());
    QVERIFY(harness->performed());
    harness->takeLog();
}

void WalleTest::startAndHoldAt(int verdict)
{
    held = std::make_unique<HeldWorker>(harness->walle(), verdict);
    harness->post(CommandStartCrush);
    PROMPTLY_VERIFY(held->stands());
    QVERIFY(harness->performed());
    harness->takeLog();
}

void WalleTest::onNext(const char *name, const std::function<void()> &step)
{
    harness->onSignal = [this, name, step](const SignalRecord &signal) {
        if (signal.name != name)
            return;
        const auto once = step; // the next line destroys this function
        harness->onSignal = nullptr;
        once();
    };
}

} // namespace testsupport
