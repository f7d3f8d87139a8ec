// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The worker and a plain model of it on the same random trees: results, signals in
// their order with their arguments, and what is left on the disk must be the same. A
// difference names its seed; one that was a defect once stays below with a name.

#include "engine/filecrusher.h"

#include "eventually.h"
#include "model/modelengine.h"
#include "model/randomtree.h"
#include "model/seeds.h"
#include "ordinaryuser.h"
#include "signallog.h"
#include "suites.h"

#include <QDeadlineTimer>
#include <QtTest>

#include <ctime>
#include <functional>

#include <unistd.h>

using testsupport::Dice;
using testsupport::ModelDisk;
using testsupport::ModelEngine;
using testsupport::RandomTree;
using testsupport::SignalLog;
using testsupport::SignalRecord;
using testsupport::SignalRecords;

namespace
{

constexpr int usualCases = 500; // of each of the two kinds
constexpr useconds_t shortPause = 50;
constexpr int deepest = 3;

/// What is asked of both, and when they are stopped: at this signal, 0 for never.
struct Plan {
    explicit Plan(quint32 seed)
        : dice(seed)
        , tree(dice)
    {
    }

    Dice dice;
    RandomTree tree;
    int stopAt = 0;
};

/// Knows the signal at which the plan stops the worker. The answer to a stop is none of those
/// that count: after it the worker may find its queue empty or not.
class Stopper
{
public:
    explicit Stopper(int signal)
        : countdown(signal)
    {
    }
    bool isNow(const SignalRecord &record) { return record.name != "stopped" && --countdown == 0; }

private:
    int countdown;
};

/// The same entry by another spelling; the worker must repeat it as it got it.
QString spelled(const QByteArray &path, bool isFolder, Dice &dice)
{
    const int slash = path.lastIndexOf('/');
    switch (dice.upTo(8)) {
    case 0:
        return QString::fromUtf8(path.left(slash) + "//" + path.mid(slash + 1));
    case 1:
        return QString::fromUtf8(path.left(slash) + "/." + path.mid(slash));
    case 2:
        return QString::fromUtf8(isFolder ? path + '/' : path);
    default:
        return QString::fromUtf8(path);
    }
}

/// Looks again and again: the worker takes microseconds here, and a wait of Qt's milliseconds.
bool soon(const std::function<bool()> &condition)
{
    const QDeadlineTimer deadline(testsupport::patience);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        ::usleep(shortPause);
    }
    return true;
}

} // namespace

class TestModelEngine : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void routinesAgreeWithTheModel();
    void workerAgreesWithTheModel();
    void seedsThatDisagreedOnceAgree_data();
    void seedsThatDisagreedOnceAgree();

private:
    static QString differenceInRoutine(quint32 seed);
    QString differenceInWorker(quint32 seed) const;
    SignalRecords heardFromWorker(const QStringList &paths, int stopAt, int expected) const;

    testsupport::OrdinaryUser user; ///< whatever goes wrong, it has no more rights than that
    FileCrusher *worker = nullptr;  ///< its thread ends with the process
};

void TestModelEngine::initTestCase()
{
    worker = new FileCrusher;
    worker->start();
}

/// One of the routines, called directly.
QString TestModelEngine::differenceInRoutine(quint32 seed)
{
    Plan plan(seed);
    Dice &dice = plan.dice;
    QByteArray path = plan.tree.makeEntry(deepest);
    if (dice.onceIn(2))
        path = plan.tree.makeFolder(deepest);
    if (dice.onceIn(20))
        path = plan.tree.freePath();
    ModelDisk disk(plan.tree.root());
    if (dice.onceIn(2))
        plan.tree.takePermissions(disk);
    if (dice.onceIn(3))
        plan.stopAt = 1 + dice.upTo(12);

    SignalRecords told;
    Stopper modelStopper(plan.stopAt);
    ModelEngine *hearing = nullptr;
    ModelEngine model(disk, [&](const SignalRecord &record) {
        told.append(record);
        if (modelStopper.isNow(record))
            hearing->stopRequested = true;
    });
    hearing = &model;

    FileCrusher crusher;
    SignalLog log(&crusher);
    Stopper stopper(plan.stopAt);
    log.onRecord = [&](const SignalRecord &record) {
        if (stopper.isNow(record))
            crusher.requestStop(true);
    };

    const QString name = spelled(path, disk.isDirectory(path) && !disk.isLink(path), dice);
    const QByteArray bytes = name.toUtf8();
    const QString top = QString::fromUtf8(plan.tree.root());
    const std::time_t first = std::time(nullptr);
    if (FileCrusher::directorySize(bytes.constData()) != model.directorySize(name)
        && !disk.isLink(bytes))
        return QStringLiteral("other size of %1").arg(name);
    qint64 expected = 0;
    qint64 found = 0;
    if (dice.onceIn(4) && disk.isFile(bytes) && !disk.isLink(bytes)) {
        const auto total = 250000 * static_cast<quint64>(dice.upTo(3));
        const auto done = static_cast<quint64>(dice.upTo(100000));
        expected = model.shredFileInDirectory(name, total, done, top);
        found = crusher.shredFileInDirectory(bytes.constData(), total, done, top);
    } else if (!disk.isLink(bytes) && (disk.isDirectory(bytes) || dice.onceIn(8))) {
        expected = model.shredDirectory(name);
        found = crusher.shredDirectory(bytes.constData());
    } else {
        expected = model.shredFile(name);
        found = crusher.shredFile(bytes.constData());
    }
    disk.restoreModes();
    if (expected != found)
        return QStringLiteral("%1 comes to %2, not %3").arg(name).arg(found).arg(expected);
    const QString inSignals = testsupport::differenceBetween(told, log.records());
    return inSignals.isEmpty() ? disk.differenceFromDisk(first, std::time(nullptr)) : inSignals;
}

/// Paths one after the other through the queue of the running thread.
QString TestModelEngine::differenceInWorker(quint32 seed) const
{
    Plan plan(seed);
    Dice &dice = plan.dice;
    QByteArrayList entries;
    for (int number = dice.upTo(4); number >= 0; --number)
        entries.append(plan.tree.makeEntry(deepest - 1));
    if (dice.onceIn(3))
        entries.append(plan.tree.freePath());
    ModelDisk disk(plan.tree.root());
    if (dice.onceIn(3))
        plan.tree.takePermissions(disk);
    if (dice.onceIn(2))
        plan.stopAt = 1 + dice.upTo(25);
    QStringList paths;
    for (const QByteArray &entry : qAsConst(entries)) {
        paths.append(spelled(entry, disk.isDirectory(entry) && !disk.isLink(entry), dice));
        if (dice.onceIn(8))
            paths.append(QString());
        if (dice.onceIn(8))
            paths.append(paths.first());
    }

    SignalRecords told;
    Stopper stopper(plan.stopAt);
    ModelEngine *hearing = nullptr;
    ModelEngine model(disk, [&](const SignalRecord &record) {
        told.append(record);
        if (stopper.isNow(record))
            hearing->stopRequested = true;
    });
    hearing = &model;
    for (const QString &path : qAsConst(paths))
        model.takeFromQueue(path);

    const std::time_t first = std::time(nullptr);
    const bool isStopped = told.contains({"stopped"}); // else the end comes before that signal
    const SignalRecords heard = heardFromWorker(paths, isStopped ? plan.stopAt : 0, told.size());
    disk.restoreModes();
    const QString inSignals = testsupport::differenceBetween(told, heard);
    return inSignals.isEmpty() ? disk.differenceFromDisk(first, std::time(nullptr)) : inSignals;
}

/// What the worker says about @p paths, and nothing said later: it has answered a stop by then.
SignalRecords TestModelEngine::heardFromWorker(const QStringList &paths, int stopAt,
                                               int expected) const
{
    SignalLog log(worker);
    Stopper stopper(stopAt);
    log.onRecord = [&](const SignalRecord &record) {
        if (stopper.isNow(record))
            worker->requestStop(true);
    };
    const QString last = QStringLiteral("/nowhere/behind everything");
    for (const QString &path : paths)
        worker->addPath(path);
    worker->addPath(last);
    const SignalRecord end("finishOne", {last});
    if (!soon([&] { return log.count() > expected && log.records().contains(end); }))
        return log.records();
    const int before = log.count("stopped");
    worker->requestStop(true);
    soon([&] { return log.count("stopped") > before; });
    SignalRecords heard = log.records();
    heard.removeLast();
    heard.removeOne(end);
    return heard;
}

void TestModelEngine::routinesAgreeWithTheModel()
{
    const QString found = testsupport::firstDifference(usualCases, differenceInRoutine);
    QVERIFY2(found.isEmpty(), qPrintable(found));
}

void TestModelEngine::workerAgreesWithTheModel()
{
    const QString found = testsupport::firstDifference(
        usualCases, [this](quint32 seed) { return differenceInWorker(seed); });
    QVERIFY2(found.isEmpty(), qPrintable(found));
}

void TestModelEngine::seedsThatDisagreedOnceAgree_data()
{
    QTest::addColumn<bool>("isRoutine");
    QTest::addColumn<quint32>("seed");
    QTest::newRow("folder whose name begins with a byte order mark") << true << quint32{3};
    QTest::newRow("byte order mark, in the queue") << false << quint32{2};
    QTest::newRow("empty folder that cannot be read") << true << quint32{174};
    QTest::newRow("empty folder that cannot be read, in the queue") << false << quint32{372};
    QTest::newRow("file of an empty tree, by a path with a detour") << true << quint32{261};
}

void TestModelEngine::seedsThatDisagreedOnceAgree()
{
    QFETCH(bool, isRoutine);
    QFETCH(quint32, seed);
    QCOMPARE(isRoutine ? differenceInRoutine(seed) : differenceInWorker(seed), QString());
}

TEST_SUITE(model, TestModelEngine)
#include "model.moc"
