// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A stop request during the walk through a folder: it holds between any two
// entries, whatever is gone stays gone, and the request is left standing for
// the worker's loop.

#include "engine/filecrusher.h"

#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QtTest>

#include <memory>

using testsupport::entryExists;
using testsupport::SignalLog;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;

class TestFileCrusherStop : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void requestBeforeTheWalkLeavesEverything();
    void requestBeforeTheWalkLeavesAnEmptyFolder();
    void requestDuringTheWalkLeavesTheRest_data();
    void requestDuringTheWalkLeavesTheRest();
    void requestAfterALinkLeavesTheRest();
    void requestAfterTheLastEntryLeavesTheFolders();
    void requestInsideAFileHoldsAfterThatFile();
    void requestDuringTheRemovalOfFoldersComesTooLate();
    void requestTakenBackHoldsUpNothing();
    void requestIsLeftStanding();
    void requestGoesBeforeWhatCannotBeRemoved();

private:
    qint64 shred() { return crusher->shredDirectory(top.toUtf8().constData()); }
    void makeFiles();
    void stopAt(const char *signal, int count);

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<FileCrusher> crusher;
    std::unique_ptr<SignalLog> log;
    QString top;
    QStringList files; ///< the contents of the files makeFiles() made is ten times 'x'
};

void TestFileCrusherStop::init()
{
    tree = std::make_unique<TemporaryTree>();
    top = tree->makeFolder(QStringLiteral("top"));
    crusher = std::make_unique<FileCrusher>();
    log = std::make_unique<SignalLog>(crusher.get());
    files.clear();
}

void TestFileCrusherStop::cleanup()
{
    log.reset();
    crusher.reset();
    tree.reset();
}

/// Ten files in five folders, with an empty folder at the end of the walk.
void TestFileCrusherStop::makeFiles()
{
    for (const char *name : {"one", "two", "three", "a/four", "a/five", "b/six", "a/c/seven",
                             "a/c/eight", "b/d/nine", "b/d/ten"})
        files.append(tree->makeFile(QStringLiteral("top/") + QLatin1String(name), 10));
    tree->makeFolder(QStringLiteral("top/b/d/e/empty"));
}

/// Requests a stop as soon as @p signal is emitted for the time @p count.
void TestFileCrusherStop::stopAt(const char *signal, int count)
{
    log->onRecord = [this, signal, count](const SignalRecord &) {
        if (log->count(signal) == count)
            crusher->requestStop(true);
    };
}

void TestFileCrusherStop::requestBeforeTheWalkLeavesEverything()
{
    makeFiles();
    crusher->requestStop(true);
    QCOMPARE(shred(), qint64{255});
    QCOMPARE(log->records(), (SignalRecords{{"finishPercent", {top, 0}}}));
    for (const QString &file : qAsConst(files))
        QCOMPARE(TemporaryTree::contentsOf(file), QByteArray(10, 'x'));
}

void TestFileCrusherStop::requestBeforeTheWalkLeavesAnEmptyFolder()
{
    crusher->requestStop(true);
    QCOMPARE(shred(), qint64{255});
    QCOMPARE(log->records(), (SignalRecords{{"finishPercent", {top, 0}}}));
    QVERIFY(entryExists(top));
}

void TestFileCrusherStop::requestDuringTheWalkLeavesTheRest_data()
{
    QTest::addColumn<int>("shredded");
    for (int count = 1; count <= 9; ++count)
        QTest::addRow("after file %d", count) << count;
    QTest::newRow("after the last file") << 10;
}

void TestFileCrusherStop::requestDuringTheWalkLeavesTheRest()
{
    QFETCH(int, shredded);
    makeFiles();
    stopAt("addToHistory", shredded);
    QCOMPARE(shred(), qint64{255});

    SignalRecords expected;
    const QStringList gone = log->firstArguments("addToHistory");
    QCOMPARE(gone.size(), shredded);
    for (int index = 0; index < shredded; ++index) {
        expected.append({"finishPercent", {top, (index + 1) * 10}});
        expected.append({"addToHistory", {gone.at(index)}});
    }
    expected.append({"finishPercent", {top, 0}});
    QCOMPARE(log->records(), expected);

    for (const QString &file : qAsConst(files)) {
        QCOMPARE(entryExists(file), !gone.contains(file));
        if (!gone.contains(file))
            QCOMPARE(TemporaryTree::contentsOf(file), QByteArray(10, 'x'));
    }
    QVERIFY(entryExists(tree->path(QStringLiteral("top/b/d/e/empty"))));
    QVERIFY(entryExists(tree->path(QStringLiteral("top/a/c"))));
}

void TestFileCrusherStop::requestAfterALinkLeavesTheRest()
{
    const QString link = tree->makeLink(QStringLiteral("top/link"), QStringLiteral("nowhere"));
    const QString file = tree->makeFile(QStringLiteral("top/folder/file"), 10);
    stopAt("addToHistory", 1);
    QCOMPARE(shred(), qint64{255});
    QCOMPARE(log->records(),
             (SignalRecords{{"addToHistory", {link}}, {"finishPercent", {top, 0}}}));
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray(10, 'x'));
}

void TestFileCrusherStop::requestAfterTheLastEntryLeavesTheFolders()
{
    const QString file = tree->makeFile(QStringLiteral("top/folder/file"), 10);
    stopAt("addToHistory", 1);
    QCOMPARE(shred(), qint64{255});
    QCOMPARE(log->records(), (SignalRecords{{"finishPercent", {top, 100}},
                                            {"addToHistory", {file}},
                                            {"finishPercent", {top, 0}}}));
    QVERIFY(entryExists(QFileInfo(file).path()));
}

void TestFileCrusherStop::requestInsideAFileHoldsAfterThatFile()
{
    const QString first = tree->makeFile(QStringLiteral("top/first"), 50 * 4096);
    const QString second = tree->makeFile(QStringLiteral("top/folder/second"), 50 * 4096);
    stopAt("finishPercent", 1);
    QCOMPARE(shred(), qint64{255});
    QCOMPARE(log->records(), (SignalRecords{{"finishPercent", {top, 49}},
                                            {"finishPercent", {top, 50}},
                                            {"addToHistory", {first}},
                                            {"finishPercent", {top, 0}}}));
    QVERIFY(!entryExists(first));
    QCOMPARE(TemporaryTree::contentsOf(second), QByteArray(50 * 4096, 'x'));
}

void TestFileCrusherStop::requestDuringTheRemovalOfFoldersComesTooLate()
{
    const QString inner = tree->makeFolder(QStringLiteral("top/folder/inner"));
    stopAt("addToHistory", 1);
    QCOMPARE(shred(), qint64{0});
    QVERIFY(!entryExists(top));
    QCOMPARE(log->records(), (SignalRecords{{"addToHistory", {inner}},
                                            {"addToHistory", {QFileInfo(inner).path()}},
                                            {"finishPercent", {top, 100}},
                                            {"addToHistory", {top}}}));
}

void TestFileCrusherStop::requestTakenBackHoldsUpNothing()
{
    makeFiles();
    crusher->requestStop(true);
    crusher->requestStop(false);
    QCOMPARE(shred(), qint64{0});
    QVERIFY(!entryExists(top));
}

void TestFileCrusherStop::requestIsLeftStanding()
{
    makeFiles();
    stopAt("addToHistory", 4);
    QCOMPARE(shred(), qint64{255});
    log->clear();
    QCOMPARE(shred(), qint64{255});
    QCOMPARE(log->records(), (SignalRecords{{"finishPercent", {top, 0}}}));
    QCOMPARE(log->count("stopped"), 0);
}

void TestFileCrusherStop::requestGoesBeforeWhatCannotBeRemoved()
{
    tree->makeFolder(QStringLiteral("top/folder"));
    tree->makeFifo(QStringLiteral("top/folder/fifo"));
    const QString file = tree->makeFile(QStringLiteral("top/file"), 10);
    stopAt("addToHistory", 1);
    QCOMPARE(shred(), qint64{255});
    QVERIFY(!entryExists(file));
}

TEST_SUITE(stop, TestFileCrusherStop)
#include "stop.moc"
