// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the tests of the engine share: each test function has a folder, a worker that is not
// started yet, and all that this worker says.

#pragma once

#include "engine/filecrusher.h"

#include "eventually.h"
#include "signallog.h"
#include "suites.h"
#include "systemcalls.h"
#include "temporarytree.h"

#include <QtTest>

#include <memory>

namespace testsupport
{

/// What is written at a time.
constexpr qint64 block = 4096;

inline SignalRecord progress(const QString &path, int percent)
{
    return {"finishPercent", {path, percent}};
}

inline SignalRecord removal(const QString &path)
{
    return {"addToHistory", {path}};
}

inline SignalRecord success(const QString &path)
{
    return {"finishOne", {path}};
}

inline SignalRecord failure(const QString &path)
{
    return {"failedOne", {path}};
}

class EngineTest : public QObject
{
    Q_OBJECT

protected slots:
    void init()
    {
        tree = std::make_unique<TemporaryTree>();
        crusher = new FileCrusher;
        log = std::make_unique<SignalLog>(crusher);
    }
    void cleanup()
    {
        log.reset();
        if (!crusher->isRunning())
            delete crusher;
        tree.reset();
    }

protected:
    QString top() const { return tree->path("top"); }

    // The routines, called directly.
    qint64 shredFile(const QString &path) { return crusher->shredFile(path.toUtf8().constData()); }
    qint64 shredFolder(const QString &path)
    {
        return crusher->shredDirectory(path.toUtf8().constData());
    }
    /// As one of the files of tree->path(), which holds @p total bytes, @p done of them gone.
    qint64 shredInTree(const QString &path, qint64 total, qint64 done = 0)
    {
        return crusher->shredFileInDirectory(path.toUtf8().constData(), static_cast<quint64>(total),
                                             static_cast<quint64>(done), tree->path());
    }

    void stopAtRemoval(int count)
    {
        log->onRecord = [this, count](const SignalRecord &record) {
            if (record.name == "addToHistory" && log->count("addToHistory") == count)
                crusher->requestStop(true);
        };
    }

    /// From now on this thread handles each signal of the worker while that waits.
    void startWorker()
    {
        const auto onRecord = log->onRecord;
        log = std::make_unique<SignalLog>(crusher, Qt::BlockingQueuedConnection);
        log->onRecord = onRecord;
        crusher->start(QThread::InheritPriority);
    }

    /// Lets the worker's thread do @p paths. Returns all that it says until it has done them and
    /// one behind them that does not exist.
    SignalRecords workOn(const QStringList &paths)
    {
        const ShortPauses quickly;
        const SignalRecord end = success(tree->path("nothing here"));
        log->clear();
        for (const QString &path : paths)
            crusher->addPath(path);
        crusher->addPath(tree->path("nothing here"));
        if (!crusher->isRunning())
            startWorker();
        if (!eventually([&] { return log->records().contains(end); }))
            QTest::qFail("the worker has not come to the end", __FILE__, __LINE__);
        SignalRecords records = log->records();
        records.removeOne(end);
        return records;
    }

    std::unique_ptr<TemporaryTree> tree;
    /// Deleted only when not started: a started worker lives until the process ends.
    FileCrusher *crusher = nullptr;
    std::unique_ptr<SignalLog> log;
};

} // namespace testsupport
