// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The worker and a plain model of it on the same random trees: results, signals in their order
// with their arguments, and what is left on the disk must be the same. A difference names its
// seed.

#include "engine/filecrusher.h"

#include "eventually.h"
#include "model/modelengine.h"
#include "model/randomtree.h"
#include "model/seeds.h"
#include "ordinaryuser.h"
#include "suites.h"
#include "systemcalls.h"

#include <QtTest>

#include <ctime>

using namespace testsupport;

namespace
{

constexpr int usualCases = 500; // of each of the two kinds
constexpr int deepest = 3;

/// Calls @p stop at the signal numbered @p at, never for 0. The answer to a stop is none of those
/// that count: after it the worker may find its queue empty or not.
std::function<void(const SignalRecord &)> stopAt(int at, const std::function<void()> &stop)
{
    return [stop, countdown = at](const SignalRecord &record) mutable {
        if (record.name != "stopped" && --countdown == 0)
            stop();
    };
}

/// The model, and all that it says until it is stopped.
struct Twin {
    Twin(ModelDisk &disk, int stopSignal)
        : stopper(stopAt(stopSignal, [this] { engine.stopRequested = true; }))
        , engine(disk, [this](const SignalRecord &record) {
            told.append(record);
            stopper(record);
        })
    {
    }

    SignalRecords told;
    std::function<void(const SignalRecord &)> stopper;
    ModelEngine engine;
};

/// The same entry by another spelling; the worker must repeat it as it got it.
QString spelled(const QByteArray &path, const ModelDisk &disk, Dice &dice)
{
    const int slash = path.lastIndexOf('/');
    switch (dice.upTo(8)) {
    case 0:
        return QString::fromUtf8(path.left(slash) + "//" + path.mid(slash + 1));
    case 1:
        return QString::fromUtf8(path.left(slash) + "/." + path.mid(slash));
    case 2:
        return QString::fromUtf8(disk.isDirectory(path) && !disk.isLink(path) ? path + '/' : path);
    default:
        return QString::fromUtf8(path);
    }
}

/// One of the routines, called directly.
QString differenceInRoutine(quint32 seed)
{
    Dice dice(seed);
    RandomTree tree(dice);
    QByteArray path = tree.makeEntry(deepest);
    if (dice.onceIn(2))
        path = tree.makeFolder(deepest);
    if (dice.onceIn(20))
        path = tree.freePath();
    ModelDisk disk(tree.root());
    if (dice.onceIn(2))
        tree.takePermissions(disk);
    const int stopSignal = dice.onceIn(3) ? 1 + dice.upTo(12) : 0;

    Twin twin(disk, stopSignal);
    ModelEngine &model = twin.engine;
    FileCrusher crusher;
    SignalLog log(&crusher);
    log.onRecord = stopAt(stopSignal, [&crusher] { crusher.requestStop(true); });

    const QString name = spelled(path, disk, dice);
    const QByteArray bytes = name.toUtf8();
    const std::time_t first = std::time(nullptr);
    if (FileCrusher::directorySize(bytes.constData()) != model.directorySize(name)
        && !disk.isLink(bytes))
        return QStringLiteral("other size of %1").arg(name);
    qint64 expected = 0;
    qint64 found = 0;
    if (dice.onceIn(4) && disk.isFile(bytes) && !disk.isLink(bytes)) {
        const auto total = 250000 * static_cast<quint64>(dice.upTo(3));
        const auto done = static_cast<quint64>(dice.upTo(100000));
        const QString top = QString::fromUtf8(tree.root());
        expected = model.shredFileInDirectory(name, total, done, top);
        found = crusher.shredFileInDirectory(bytes.constData(), total, done, top);
    } else if (!disk.isLink(bytes) && (disk.isDirectory(bytes) || dice.onceIn(8))) {
        expected = model.shredDirectory(name);
        found = crusher.shredDirectory(bytes.constData());
    } else {
        expected = model.shredFile(name);
        found = crusher.shredFile(bytes.constData());
    }
    openToOwner(tree.root());
    if (expected != found)
        return QStringLiteral("%1 comes to %2, not %3").arg(name).arg(found).arg(expected);
    const QString inSignals = differenceBetween(twin.told, log.records());
    return inSignals.isEmpty() ? disk.differenceFromDisk(first, std::time(nullptr)) : inSignals;
}

/// What @p worker says about @p paths, and nothing said later: it has answered a stop by then.
SignalRecords heardFrom(FileCrusher &worker, const QStringList &paths, int stopSignal, int expected)
{
    SignalLog log(&worker, Qt::BlockingQueuedConnection);
    log.onRecord = stopAt(stopSignal, [&worker] { worker.requestStop(true); });
    const QString last = QStringLiteral("/nowhere/behind everything");
    for (const QString &path : paths)
        worker.addPath(path);
    worker.addPath(last);
    const SignalRecord end("finishOne", {last});
    if (!eventually([&] { return log.count() > expected && log.records().contains(end); }))
        return log.records();
    const int before = log.count("stopped");
    worker.requestStop(true);
    eventually([&] { return log.count("stopped") > before; });
    SignalRecords heard = log.records();
    heard.removeLast();
    heard.removeOne(end);
    return heard;
}

/// Paths one after the other through the queue of the running thread.
QString differenceInWorker(FileCrusher &worker, quint32 seed)
{
    Dice dice(seed);
    RandomTree tree(dice);
    QByteArrayList entries;
    for (int number = dice.upTo(4); number >= 0; --number)
        entries.append(tree.makeEntry(deepest - 1));
    if (dice.onceIn(3))
        entries.append(tree.freePath());
    ModelDisk disk(tree.root());
    if (dice.onceIn(3))
        tree.takePermissions(disk);
    const int stopSignal = dice.onceIn(2) ? 1 + dice.upTo(25) : 0;
    QStringList paths;
    for (const QByteArray &entry : qAsConst(entries)) {
        paths.append(spelled(entry, disk, dice));
        if (dice.onceIn(8))
            paths.append(QString());
        if (dice.onceIn(8))
            paths.append(paths.first());
    }

    Twin twin(disk, stopSignal);
    for (const QString &path : qAsConst(paths))
        twin.engine.takeFromQueue(path);

    const std::time_t first = std::time(nullptr);
    const bool isStopped = twin.told.contains({"stopped"}); // else the end comes before that signal
    const SignalRecords heard =
        heardFrom(worker, paths, isStopped ? stopSignal : 0, twin.told.size());
    openToOwner(tree.root());
    const QString inSignals = differenceBetween(twin.told, heard);
    return inSignals.isEmpty() ? disk.differenceFromDisk(first, std::time(nullptr)) : inSignals;
}

} // namespace

class TestModelEngine : public QObject
{
    Q_OBJECT

private slots:
    void routinesAgreeWithTheModel();
    void workerAgreesWithTheModel();

private:
    OrdinaryUser user; ///< whatever goes wrong, it has no more rights than that
    ShortPauses quickly;
};

void TestModelEngine::routinesAgreeWithTheModel()
{
    QCOMPARE(firstDifference(usualCases, differenceInRoutine), QString());
}

void TestModelEngine::workerAgreesWithTheModel()
{
    auto *worker = new FileCrusher; // its thread ends with the process
    worker->start();
    const auto difference = [worker](quint32 seed) { return differenceInWorker(*worker, seed); };
    QCOMPARE(firstDifference(usualCases, difference), QString());
}

TEST_SUITE(model, TestModelEngine)
#include "model.moc"
