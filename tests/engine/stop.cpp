// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A stop request during the walk through a folder holds between any two entries; whatever is
// gone stays gone, and the request is left standing for the worker's loop, which answers it
// at the end of a pass.

#include "enginetest.h"

using namespace testsupport;

class TestStop : public EngineTest
{
    Q_OBJECT

private slots:
    void requestBeforeTheWalkLeavesEverything();
    void requestDuringTheWalkLeavesTheRest();
    void requestDuringTheRemovalOfFoldersComesTooLate();
    void requestTakenBackHoldsUpNothing();

    void stopOfAnIdleWorkerIsToldOnce();
    void stopInsideAFolderHasNoVerdict();
    void emptyPathsTakeNoPassOfTheirOwn();

private:
    QStringList makeFiles() const;
};

/// Ten files of 10 bytes in five folders, with an empty folder at the end of the walk.
QStringList TestStop::makeFiles() const
{
    QStringList files;
    for (const char *name :
         {"top/one", "top/two", "top/three", "top/a/four", "top/a/five", "top/b/six",
          "top/a/c/seven", "top/a/c/eight", "top/b/d/nine", "top/b/d/ten"})
        files.append(tree->makeFile(name, 10));
    tree->makeFolder("top/b/d/e/empty");
    return files;
}

void TestStop::requestBeforeTheWalkLeavesEverything()
{
    const QStringList files = makeFiles();
    const QString empty = tree->makeFolder("empty");
    crusher->requestStop(true);
    QCOMPARE(shredFolder(top()), qint64{255});
    QCOMPARE(shredFolder(empty), qint64{255});
    QCOMPARE(log->records(), (SignalRecords{progress(top(), 0), progress(empty, 0)}));
    QVERIFY(entryExists(empty));
    for (const QString &file : files)
        QVERIFY(isAsMade(file, 10));
}

/// That it does after any entry, model.cpp shows.
void TestStop::requestDuringTheWalkLeavesTheRest()
{
    const int shredded = 4;
    const QStringList files = makeFiles();
    stopAtRemoval(shredded);
    QCOMPARE(shredFolder(top()), qint64{255});

    SignalRecords expected;
    const QStringList gone = log->firstArguments("addToHistory");
    for (const QString &file : gone)
        expected << progress(top(), (expected.size() / 2 + 1) * 10) << removal(file);
    QCOMPARE(log->records(), expected << progress(top(), 0));
    QCOMPARE(gone.size(), shredded);
    for (const QString &file : files)
        QVERIFY(gone.contains(file) ? !entryExists(file) : isAsMade(file, 10));
    QVERIFY(entryExists(tree->path("top/b/d/e/empty")));
    QVERIFY(entryExists(tree->path("top/a/c")));
    // The request stands until the worker's loop answers it.
    log->clear();
    QCOMPARE(shredFolder(top()), qint64{255});
    QCOMPARE(log->records(), SignalRecords{progress(top(), 0)});
}

void TestStop::requestDuringTheRemovalOfFoldersComesTooLate()
{
    const QString inner = tree->makeFolder("top/folder/inner");
    stopAtRemoval(1);
    QCOMPARE(shredFolder(top()), qint64{0});
    QVERIFY(!entryExists(top()));
    QCOMPARE(log->records(), (SignalRecords{removal(inner), removal(tree->path("top/folder")),
                                            progress(top(), 100), removal(top())}));
}

void TestStop::requestTakenBackHoldsUpNothing()
{
    makeFiles();
    crusher->requestStop(true);
    crusher->requestStop(false);
    const SignalRecords records = workOn({top()});
    QCOMPARE(records.constLast(), success(top()));
    QVERIFY(!records.contains({"stopped"}));
}

void TestStop::stopOfAnIdleWorkerIsToldOnce()
{
    startWorker();
    crusher->requestStop(true);
    QTRY_COMPARE(log->count("stopped"), 1);
    QCOMPARE(workOn({}), SignalRecords());
}

void TestStop::stopInsideAFolderHasNoVerdict()
{
    const QString first = tree->makeFile("top/first", 10);
    const QString second = tree->makeFile("top/folder/second", 10);
    stopAtRemoval(1);
    QCOMPARE(workOn({top()}),
             (SignalRecords{progress(top(), 50), removal(first), progress(top(), 0), {"stopped"}}));
    QVERIFY(isAsMade(second, 10));
    // The request is cleared with the answer, so the folder can be queued again.
    log->onRecord = nullptr;
    QCOMPARE(workOn({top()}).constLast(), success(top()));
}

void TestStop::emptyPathsTakeNoPassOfTheirOwn()
{
    // Each pass ends with the stop check, so the path behind the empty ones is handled first.
    const QString path = tree->path("vanished");
    crusher->requestStop(true);
    crusher->requestStop(true); // which is still one stop
    QCOMPARE(workOn({QString(), QString(), QString(), path}),
             (SignalRecords{success(path), {"stopped"}}));
}

TEST_SUITE(stop, TestStop)
#include "stop.moc"
