// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Two names are exchanged at the worst moment there is, and that is tried with
// every moment: right before each single call that the worker makes to the system,
// for good or with the names put back before the next call. What lies
// elsewhere is never touched. An ordinary user does all of it, so that an engine
// gone wrong could not reach far.

#include "engine/filecrusher.h"

#include "filecalls.h"
#include "hostileneighbour.h"
#include "inventory.h"
#include "ordinaryuser.h"
#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QtTest>

#include <algorithm>
#include <memory>

using testsupport::CallFate;
using testsupport::entryExists;
using testsupport::exchangeNames;
using testsupport::FileCall;
using testsupport::FileCallWatch;
using testsupport::inventoryOf;
using testsupport::OrdinaryUser;
using testsupport::SignalLog;
using testsupport::TemporaryTree;

namespace
{

constexpr int fileSize = 700;
constexpr int forGood = 1000000; // calls
constexpr int never = -1;

/// For how many calls the names stay swapped. Both kinds at every moment take a while, so they
/// take turns unless FILESHREDDER_SWAPS is set.
QList<int> durationsAt(int moment)
{
    if (qEnvironmentVariableIsSet("FILESHREDDER_SWAPS"))
        return {1, forGood};
    return {moment % 2 == 0 ? 1 : forGood};
}

} // namespace

class TestFileCrusherSwapped : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { user = std::make_unique<OrdinaryUser>(); }
    void cleanupTestCase() { user.reset(); }

    void swapBeforeAnyCallReachesNothingOutside_data();
    void swapBeforeAnyCallReachesNothingOutside();

private:
    void makeOutside(qint64 size);
    void makeTree(qint64 size);
    int shredSwapping(const QString &victim, int moment, int duration);

    std::unique_ptr<OrdinaryUser> user;
    std::unique_ptr<TemporaryTree> outside;
    std::unique_ptr<TemporaryTree> tree;
    QByteArray swappedPath;
    QByteArray decoyPath;
};

void TestFileCrusherSwapped::swapBeforeAnyCallReachesNothingOutside_data()
{
    QTest::addColumn<QString>("victim");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QString>("swapped");
    QTest::addColumn<QString>("decoy");
    const auto row = [](const char *what, const char *victim, qint64 size, const char *swapped,
                        const char *decoy) {
        QTest::newRow(what) << QString::fromLatin1(victim) << size << QString::fromLatin1(swapped)
                            << QString::fromLatin1(decoy);
    };
    row("file for a link", "top", fileSize, "top/file", "link");
    row("empty file for a link", "top", 0, "top/file", "link");
    row("file for a fifo", "top", fileSize, "top/file", "fifo");
    row("file for a folder", "top", fileSize, "top/file", "folder");
    row("link for a file", "top", fileSize, "top/link", "plain");
    row("link for a link to a folder", "top", fileSize, "top/link", "link to folder");
    row("link for a folder", "top", fileSize, "top/link", "folder");
    row("file deep down for a link", "top", fileSize, "top/sub/deep/file", "link");
    row("folder for a link", "top", fileSize, "top/sub", "link to sub");
    row("folder of empty files for a link", "top", 0, "top/sub", "link to sub");
    row("folder for a folder of links", "top", fileSize, "top/sub", "links");
    row("folder deep down for a link", "top", fileSize, "top/sub/deep", "link to deep");
    row("folder deep down for an empty one", "top", fileSize, "top/sub/deep", "hollow");
    row("top for a link", "top", fileSize, "top", "link to folder");
    row("empty top for a link", "empty top", 0, "empty top", "link to hollow");
    row("top for a folder of links", "top", fileSize, "top", "links");
    row("lone file for a link", "lone", fileSize, "lone", "link");
    row("lone file for a link to an empty one", "lone", fileSize, "lone", "link to empty");
    row("lone empty file for a link", "lone", 0, "lone", "link");
    row("lone file for a fifo", "lone", fileSize, "lone", "fifo");
    row("lone file for a folder", "lone", fileSize, "lone", "folder");
    row("lone link for a file", "lone link", fileSize, "lone link", "plain");
    row("lone link for a link to a folder", "lone link", fileSize, "lone link", "link to folder");
    row("lone link for a folder", "lone link", fileSize, "lone link", "folder");
    row("parent of a lone file", "parent/lone", fileSize, "parent", "links");
    row("parent of a folder", "parent/top", fileSize, "parent", "links");
}

void TestFileCrusherSwapped::swapBeforeAnyCallReachesNothingOutside()
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
        const QList<int> durations = durationsAt(moment);
        for (const int duration : durations) {
            makeTree(size);
            swappedPath = tree->path(swapped).toUtf8();
            decoyPath = tree->path(QStringLiteral("decoys/") + decoy).toUtf8();
            calls = std::max(calls, shredSwapping(tree->path(victim), moment, duration));
            const QStringList after = inventoryOf(outside->path());
            if (after != before)
                qInfo("swapped before call %d of %d for %d calls", moment, calls, duration);
            QCOMPARE(after, before);
        }
    }
}

/// What the links lead to: the same names and sizes as what is chosen.
void TestFileCrusherSwapped::makeOutside(qint64 size)
{
    outside = std::make_unique<TemporaryTree>();
    for (const char *file : {"file", "deep/file", "lone", "top/file"})
        outside->makeFile(QLatin1String(file), size);
    outside->makeFile(QStringLiteral("empty"), 0);
    outside->makeFolder(QStringLiteral("hollow"));
}

/// What is chosen, and the decoys.
void TestFileCrusherSwapped::makeTree(qint64 size)
{
    tree = std::make_unique<TemporaryTree>();
    for (const char *file : {"top/file", "top/sub/file", "top/sub/deep/file", "lone", "parent/lone",
                             "parent/top/file", "decoys/plain", "decoys/folder/file"})
        tree->makeFile(QLatin1String(file), size);
    for (const char *folder : {"empty top", "decoys/hollow"})
        tree->makeFolder(QLatin1String(folder));
    for (const char *link : {"top/link", "lone link", "decoys/link", "decoys/links/file"})
        tree->makeLink(QLatin1String(link), outside->path(QStringLiteral("file")));
    for (const char *name : {"lone", "top", "deep"})
        tree->makeLink(QStringLiteral("decoys/links/") + QLatin1String(name),
                       outside->path(QLatin1String(name)));
    for (const char *name : {"empty", "hollow", "deep"})
        tree->makeLink(QStringLiteral("decoys/link to ") + QLatin1String(name),
                       outside->path(QLatin1String(name)));
    for (const char *link : {"decoys/link to folder", "decoys/link to sub", "decoys/links/sub"})
        tree->makeLink(QLatin1String(link), outside->path());
    tree->makeFifo(QStringLiteral("decoys/fifo"));
}

/// Shreds @p victim, as the worker would, with the names swapped before the call numbered
/// @p moment and swapped back @p duration calls later. Returns the number of calls.
int TestFileCrusherSwapped::shredSwapping(const QString &victim, int moment, int duration)
{
    FileCrusher crusher;
    int calls = 0;
    const bool isFolder = QFileInfo(victim).isDir() && !QFileInfo(victim).isSymLink();
    const FileCallWatch watch([&](FileCall) {
        if (calls == moment || (moment != never && calls == moment + duration))
            exchangeNames(swappedPath, decoyPath);
        ++calls;
        return CallFate();
    });
    const QByteArray path = victim.toUtf8();
    isFolder ? crusher.shredDirectory(path.constData()) : crusher.shredFile(path.constData());
    return calls;
}

TEST_SUITE(swapped, TestFileCrusherSwapped)
#include "swapped.moc"
