// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "enginetest.h"

#include "eventually.h"

namespace testsupport
{

void EngineTest::init()
{
    tree = std::make_unique<TemporaryTree>();
    crusher = new FileCrusher;
    log = std::make_unique<SignalLog>(crusher);
}

void EngineTest::cleanup()
{
    log.reset();
    if (!crusher->isRunning())
        delete crusher;
    tree.reset();
}

qint64 EngineTest::shredInTree(const QString &path, qint64 total, qint64 done)
{
    return crusher->shredFileInDirectory(path.toUtf8().constData(), static_cast<quint64>(total),
                                         static_cast<quint64>(done), tree->path());
}

void EngineTest::startWorker()
{
    const auto onRecord = log->onRecord;
    log = std::make_unique<SignalLog>(crusher, Qt::BlockingQueuedConnection);
    log->onRecord = onRecord;
    crusher->start(QThread::InheritPriority);
}

SignalRecords EngineTest::workOn(const QStringList &paths)
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

} // namespace testsupport
