// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Somebody exchanges two names right before any call that the worker makes to the system: what lies
// elsewhere is never touched, and no run waits for ever. An ordinary user does all of it, so that
// an engine gone wrong could not reach far.

#include "enginetest.h"
#include "inventory.h"
#include "ordinaryuser.h"

#include <algorithm>
#include <cstdio>

#include <fcntl.h>

using namespace testsupport;

namespace
{

constexpr int victimSize = 700;
constexpr int never = -1;

/// Whether the names are swapped, so many calls after the moment.
using Swap = bool (*)(int callsSince);

/// For one call, for good, and back and forth. All at every moment take a while, so they take turns
/// unless FILESHREDDER_SWAPS is set.
QList<Swap> swapsAt(int moment)
{
    const QList<Swap> all{
        [](int callsSince) { return callsSince == 0; },
        [](int callsSince) { return callsSince >= 0; },
        [](int callsSince) { return callsSince >= 0 && callsSince % 2 == 0; },
    };
    return qEnvironmentVariableIsSet("FILESHREDDER_SWAPS") ? all : all.mid((moment + 1) % 3, 1);
}

} // namespace

class TestHostileNeighbours : public EngineTest
{
    Q_OBJECT

private slots:
    void swapBeforeAnyCallReachesNothingOutside_data();
    void swapBeforeAnyCallReachesNothingOutside();
    void folderMovedAwayIsNotFollowedUpwards_data();
    void folderMovedAwayIsNotFollowedUpwards();
    void renamedParentHidesNothing();

private:
    void makeOutside(qint64 size);
    void makeTree(qint64 size);
    int shredAmong(const QString &victim, const std::function<void(int)> &mischief);

    OrdinaryUser user;
    std::unique_ptr<TemporaryTree> outside;
};

void TestHostileNeighbours::swapBeforeAnyCallReachesNothingOutside_data()
{
    QTest::addColumn<QString>("victim");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QString>("swapped");
    QTest::addColumn<QString>("decoy");
    const auto row = [](const char *name, const char *victim, qint64 size, const char *swapped,
                        const char *decoy) {
        QTest::newRow(name) << victim << size << swapped << decoy;
    };
    row("file for a link", "top", victimSize, "top/file", "link");
    row("empty file for a link", "top", 0, "top/file", "link");
    row("file for a fifo", "top", victimSize, "top/file", "fifo");
    row("file for a folder", "top", victimSize, "top/file", "folder");
    row("link for a file", "top", victimSize, "top/link", "plain");
    row("link for a link to a folder", "top", victimSize, "top/link", "link to folder");
    row("link for a folder", "top", victimSize, "top/link", "folder");
    row("file deep down for a link", "top", victimSize, "top/sub/deep/file", "link");
    row("folder for a link", "top", victimSize, "top/sub", "link to sub");
    row("folder for a file", "top", victimSize, "top/sub", "plain");
    row("folder of empty files for a link", "top", 0, "top/sub", "link to sub");
    row("folder for a folder of links", "top", victimSize, "top/sub", "links");
    row("folder deep down for a link", "top", victimSize, "top/sub/deep", "link to deep");
    row("folder deep down for an empty one", "top", victimSize, "top/sub/deep", "hollow");
    row("top for a link", "top", victimSize, "top", "link to folder");
    row("empty top for a link", "empty top", 0, "empty top", "link to hollow");
    row("top for a folder of links", "top", victimSize, "top", "links");
    row("lone file for a link", "lone", victimSize, "lone", "link");
    row("lone file for a link to an empty one", "lone", victimSize, "lone", "link to empty");
    row("lone empty file for a link", "lone", 0, "lone", "link");
    row("lone empty file for a folder", "lone", 0, "lone", "folder");
    row("lone file for a fifo", "lone", victimSize, "lone", "fifo");
    row("lone file for a folder", "lone", victimSize, "lone", "folder");
    row("lone link for a file", "lone link", victimSize, "lone link", "plain");
    row("lone link for a link to a folder", "lone link", victimSize, "lone link", "link to folder");
    row("lone link for a folder", "lone link", victimSize, "lone link", "folder");
    row("parent of a lone file", "parent/lone", victimSize, "parent", "links");
    row("parent of a folder", "parent/top", victimSize, "parent", "links");
}

void TestHostileNeighbours::swapBeforeAnyCallReachesNothingOutside()
{
    QFETCH(QString, victim);
    QFETCH(qint64, size);
    QFETCH(QString, swapped);
    QFETCH(QString, decoy);
    makeOutside(size);
    const QStringList before = inventoryOf(outside->path());
    // The first run is without a swap; one that a swap cut short says nothing about the number.
    int calls = 0;
    for (int moment = never; moment < calls; ++moment) {
        const QList<Swap> swaps = swapsAt(moment);
        for (const Swap swap : swaps) {
            makeTree(size);
            const QByteArray one = tree->path(swapped).toUtf8();
            const QByteArray other = tree->path(QStringLiteral("decoys/") + decoy).toUtf8();
            bool areSwapped = false;
            const auto exchange = [&](int call) {
                const bool wanted = moment != never && swap(call - moment);
                // In one step: neither is missing for a moment.
                if (wanted != areSwapped)
                    ::renameat2(AT_FDCWD, one.constData(), AT_FDCWD, other.constData(),
                                RENAME_EXCHANGE);
                areSwapped = wanted;
            };
            calls = std::max(calls, shredAmong(tree->path(victim), exchange));
            const QStringList after = inventoryOf(outside->path());
            if (after != before)
                qInfo("swapped before call %d of %d", moment, calls);
            QCOMPARE(after, before);
        }
    }
}

void TestHostileNeighbours::folderMovedAwayIsNotFollowedUpwards_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"top/sub", "top/sub/deep"})
        QTest::newRow(name) << name;
}

/// Whoever climbs back by ".." from a folder that was moved meanwhile arrives elsewhere.
void TestHostileNeighbours::folderMovedAwayIsNotFollowedUpwards()
{
    QFETCH(QString, name);
    makeOutside(victimSize);
    int calls = 0;
    for (int moment = never; moment < calls; ++moment) {
        makeTree(victimSize);
        log->clear();
        const QString away = outside->path("moved");
        const QStringList before = inventoryOf(outside->path("top"));
        const int made = shredAmong(tree->path("top"), [&](int call) {
            if (call == moment)
                QDir().rename(tree->path(name), away);
        });
        calls = std::max(calls, made);
        QCOMPARE(inventoryOf(outside->path("top")), before);
        QVERIFY(isAsMade(outside->path("file"), victimSize));
        // What was not removed is not reported.
        const QStringList gone = log->firstArguments("addToHistory");
        for (const QString &path : gone)
            QVERIFY(!entryExists(QString(path).replace(tree->path(name), away)));
        QDir(away).removeRecursively();
    }
}

void TestHostileNeighbours::renamedParentHidesNothing()
{
    tree->makeFile("parent/top/sub/file", victimSize);
    const int before = openDescriptors();
    log->onRecord = [&](const SignalRecord &) {
        QDir().rename(tree->path("parent"), tree->path("renamed"));
    };
    QCOMPARE(shredFolder(tree->path("parent/top")), CrushResult::Success);
    QVERIFY(entryExists(tree->path("renamed")));
    QVERIFY(!entryExists(tree->path("renamed/top")));
    QCOMPARE(openDescriptors(), before);
}

/// What the links lead to: the same names and sizes as what is chosen.
void TestHostileNeighbours::makeOutside(qint64 size)
{
    outside = std::make_unique<TemporaryTree>();
    for (const char *file : {"file", "deep/file", "lone", "top/file"})
        outside->makeFile(file, size);
    outside->makeFile("empty", 0);
    outside->makeFolder("hollow");
}

/// What is chosen, and the decoys.
void TestHostileNeighbours::makeTree(qint64 size)
{
    tree = std::make_unique<TemporaryTree>();
    for (const char *file : {"top/file", "top/sub/file", "top/sub/deep/file", "lone", "parent/lone",
                             "parent/top/file", "decoys/plain", "decoys/folder/file"})
        tree->makeFile(file, size);
    for (const char *folder : {"empty top", "decoys/hollow"})
        tree->makeFolder(folder);
    for (const char *link : {"top/link", "lone link", "decoys/link", "decoys/links/file"})
        tree->makeLink(link, outside->path("file"));
    for (const char *name : {"lone", "top", "deep"})
        tree->makeLink(QStringLiteral("decoys/links/") + QLatin1String(name), outside->path(name));
    for (const char *name : {"empty", "hollow", "deep"})
        tree->makeLink(QStringLiteral("decoys/link to ") + QLatin1String(name),
                       outside->path(name));
    for (const char *link : {"decoys/link to folder", "decoys/link to sub", "decoys/links/sub"})
        tree->makeLink(link, outside->path());
    tree->makeFifo("decoys/fifo");
}

/// Shreds @p victim as the worker would, with @p mischief before each call, which gets its number.
/// Returns the number of calls.
int TestHostileNeighbours::shredAmong(const QString &victim,
                                      const std::function<void(int)> &mischief)
{
    int calls = 0;
    const bool isFolder = QFileInfo(victim).isDir() && !QFileInfo(victim).isSymLink();
    const CallHook hook([&](const SystemCall &) {
        mischief(calls++);
        return CallFate();
    });
    isFolder ? shredFolder(victim) : shredFile(victim);
    return calls;
}

TEST_SUITE(hostile_neighbours, TestHostileNeighbours)
#include "hostile_neighbours.moc"
