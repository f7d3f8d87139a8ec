// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Somebody swaps files, folders, links and fifos under a run, over and over. What
// is chosen may survive that or not; what lies elsewhere is not touched, and no
// run ever waits for ever. FILESHREDDER_SWAPS says how many swaps each kind of
// mischief is given. An ordinary user does all of it, so that an engine gone wrong
// could not reach far.

#include "engine/filecrusher.h"

#include "hostileneighbour.h"
#include "inventory.h"
#include "ordinaryuser.h"
#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QDir>
#include <QtTest>

#include <memory>

using testsupport::entryExists;
using testsupport::exchangeNames;
using testsupport::HostileNeighbour;
using testsupport::inventoryOf;
using testsupport::OrdinaryUser;
using testsupport::SignalLog;
using testsupport::SignalRecord;
using testsupport::TemporaryTree;

namespace
{

constexpr int fewSwaps = 600;
/// On a busy machine many swaps may fall into one run; there are at least as many runs as this.
constexpr int swapsPerRun = 30;
constexpr int files = 6;
constexpr int fileSize = 5000;

int wantedSwaps()
{
    return qEnvironmentVariableIsSet("FILESHREDDER_SWAPS")
               ? qEnvironmentVariableIntValue("FILESHREDDER_SWAPS")
               : fewSwaps;
}

bool goesOn(const HostileNeighbour &neighbour, int run)
{
    return neighbour.successes() < wantedSwaps() || run < wantedSwaps() / swapsPerRun;
}

QString numbered(const char *name, int number)
{
    return QLatin1String(name) + QString::number(number);
}

/// Names swapped with each other in turn, relative to the tree.
using Swaps = QList<QPair<QString, QString>>;

} // namespace

Q_DECLARE_METATYPE(Swaps)

class TestFileCrusherNeighbours : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { user.reset(); }
    void init();
    void cleanup();

    void folderIsWalkedAmongSwaps_data();
    void folderIsWalkedAmongSwaps();
    void emptyFilesAreRemovedAmongSwaps();
    void loneFileIsShreddedAmongSwaps_data();
    void loneFileIsShreddedAmongSwaps();
    void folderMovedAwayIsNotFollowedUpwards();
    void renamedParentHidesNothing();

private:
    void makeOutside();
    void makeVictims(qint64 size) const;
    void makeDecoys(qint64 size) const;
    void makeLoneOnes() const;
    void removeLeftovers() const;
    QStringList outside() const;
    HostileNeighbour::Mischief swapping(const Swaps &swaps) const;
    qint64 shredFolder(const QString &path)
    {
        return crusher->shredDirectory(path.toUtf8().constData());
    }
    qint64 shredFile(const QString &path) { return crusher->shredFile(path.toUtf8().constData()); }

    std::unique_ptr<OrdinaryUser> user;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<FileCrusher> crusher;
    int allSwaps = 0;
    int allRuns = 0;
};

void TestFileCrusherNeighbours::initTestCase()
{
    user = std::make_unique<OrdinaryUser>();
}

void TestFileCrusherNeighbours::init()
{
    tree = std::make_unique<TemporaryTree>();
    crusher = std::make_unique<FileCrusher>();
    makeOutside();
}

void TestFileCrusherNeighbours::cleanup()
{
    crusher.reset();
    tree.reset();
    qInfo("%d swaps during %d runs so far", allSwaps, allRuns);
}

/// What every link of the neighbour leads to: the same names and sizes as inside.
void TestFileCrusherNeighbours::makeOutside()
{
    for (int number = 0; number < files; ++number) {
        for (const char *folder : {"outside/", "outside/sub/", "outside/sub/deep/"})
            tree->makeFile(QLatin1String(folder) + numbered("file", number), fileSize);
        tree->makeFile(numbered("outside/empty", number), 0);
    }
    tree->makeFile(QStringLiteral("outside/lone"), fileSize);
    tree->makeFolder(QStringLiteral("outside/hollow"));
    tree->makeFile(QStringLiteral("parent/sibling"), fileSize);
}

void TestFileCrusherNeighbours::makeVictims(qint64 size) const
{
    for (int number = 0; number < files; ++number) {
        for (const char *folder : {"", "sub/", "sub/deep/"})
            tree->makeFile(QLatin1String("parent/top/") + QLatin1String(folder)
                               + numbered("file", number),
                           size);
    }
}

/// What the neighbour puts in place of the victims.
void TestFileCrusherNeighbours::makeDecoys(qint64 size) const
{
    const QString outside = tree->path(QStringLiteral("outside"));
    for (int number = 0; number < files; ++number) {
        const QString file = QLatin1Char('/') + numbered("file", number);
        tree->makeLink(numbered("spare/link", number), outside + file);
        tree->makeFifo(numbered("spare/fifo", number));
        tree->makeFile(numbered("spare/plain", number), size);
        // Folders whose entries have the names of the victims and lead outside.
        for (const char *folder : {"/sub", "/sub/deep"})
            tree->makeLink(QLatin1String("spare/links") + QLatin1String(folder) + file,
                           outside + QLatin1String(folder) + file);
        tree->makeLink(QStringLiteral("spare/links") + file, outside + file);
    }
    tree->makeLink(QStringLiteral("spare/outside"), outside);
    tree->makeLink(QStringLiteral("spare/outside-sub"), outside + QStringLiteral("/sub"));
    tree->makeLink(QStringLiteral("spare/parent/top"), outside);
    tree->makeFolder(QStringLiteral("spare/hollow"));
}

void TestFileCrusherNeighbours::makeLoneOnes() const
{
    const QString outside = tree->path(QStringLiteral("outside"));
    tree->makeFile(QStringLiteral("parent/lone"), fileSize);
    tree->makeFile(QStringLiteral("parent/empty"), 0);
    tree->makeLink(QStringLiteral("parent/link"), outside + QStringLiteral("/lone"));
    tree->makeLink(QStringLiteral("spare/link"), outside + QStringLiteral("/lone"));
    tree->makeLink(QStringLiteral("spare/link-to-empty"), outside + QStringLiteral("/empty0"));
    tree->makeLink(QStringLiteral("spare/link-to-folder"), outside);
    tree->makeLink(QStringLiteral("spare/parent/lone"), outside + QStringLiteral("/lone"));
    tree->makeFifo(QStringLiteral("spare/fifo"));
    tree->makeFile(QStringLiteral("spare/folder/file"), fileSize);
}

/// What a run and the neighbour have left of victims and decoys, wherever it is by now.
void TestFileCrusherNeighbours::removeLeftovers() const
{
    // The folder called "parent" may be the neighbour's now, and the sibling with the other one.
    if (!entryExists(tree->path(QStringLiteral("parent/sibling"))))
        QVERIFY(exchangeNames(tree->path(QStringLiteral("parent")).toUtf8(),
                              tree->path(QStringLiteral("spare/parent")).toUtf8()));
    for (const char *name : {"spare", "parent/top"}) {
        const QString path = tree->path(QLatin1String(name));
        if (!QFile::remove(path)) // a link, which removing a whole folder would follow
            QDir(path).removeRecursively();
    }
    for (const char *name : {"parent/lone", "parent/empty", "parent/link"}) {
        const QString path = tree->path(QLatin1String(name));
        if (!QFile::remove(path))
            QDir(path).removeRecursively();
    }
}

QStringList TestFileCrusherNeighbours::outside() const
{
    return inventoryOf(tree->path(QStringLiteral("outside")))
           + QStringList{QString::fromLatin1(
               TemporaryTree::contentsOf(tree->path(QStringLiteral("parent/sibling"))))};
}

HostileNeighbour::Mischief TestFileCrusherNeighbours::swapping(const Swaps &swaps) const
{
    QList<QPair<QByteArray, QByteArray>> paths;
    for (const auto &swap : swaps)
        paths.append({tree->path(swap.first).toUtf8(), tree->path(swap.second).toUtf8()});
    return [paths](int attempt) {
        const auto &swap = paths.at(attempt % paths.size());
        return exchangeNames(swap.first, swap.second);
    };
}

void TestFileCrusherNeighbours::folderIsWalkedAmongSwaps_data()
{
    QTest::addColumn<Swaps>("swaps");
    Swaps links;
    Swaps deepLinks;
    Swaps fifos;
    for (int number = 0; number < files; ++number) {
        const QString link = numbered("spare/link", number);
        links.append({numbered("parent/top/file", number), link});
        deepLinks.append({numbered("parent/top/sub/deep/file", number), link});
        fifos.append({numbered("parent/top/file", number), numbered("spare/fifo", number)});
    }
    QTest::newRow("files for links") << links;
    QTest::newRow("files deep down for links") << deepLinks;
    QTest::newRow("files for fifos") << fifos;
    QTest::newRow("folder for a link")
        << Swaps{{QStringLiteral("parent/top/sub"), QStringLiteral("spare/outside-sub")}};
    QTest::newRow("folder for a folder of links")
        << Swaps{{QStringLiteral("parent/top/sub"), QStringLiteral("spare/links/sub")}};
    QTest::newRow("folder for an empty one")
        << Swaps{{QStringLiteral("parent/top/sub/deep"), QStringLiteral("spare/hollow")}};
    QTest::newRow("folder for a file")
        << Swaps{{QStringLiteral("parent/top/sub/deep"), QStringLiteral("spare/plain0")}};
    QTest::newRow("top for a link")
        << Swaps{{QStringLiteral("parent/top"), QStringLiteral("spare/outside")}};
    QTest::newRow("top for a folder of links")
        << Swaps{{QStringLiteral("parent/top"), QStringLiteral("spare/links")}};
    QTest::newRow("parent for another with a link")
        << Swaps{{QStringLiteral("parent"), QStringLiteral("spare/parent")}};
    // No folder for a link among these: the neighbour would then reach outside by itself.
    QTest::newRow("everything at once")
        << links + deepLinks + fifos
               + Swaps{{QStringLiteral("parent/top/sub"), QStringLiteral("spare/links/sub")},
                       {QStringLiteral("parent/top"), QStringLiteral("spare/links")},
                       {QStringLiteral("parent/top/sub/deep"), QStringLiteral("spare/hollow")}};
}

void TestFileCrusherNeighbours::folderIsWalkedAmongSwaps()
{
    QFETCH(Swaps, swaps);
    const QStringList before = outside();
    const QString top = tree->path(QStringLiteral("parent/top"));
    HostileNeighbour neighbour(swapping(swaps));
    for (int run = 0; goesOn(neighbour, run); ++run) {
        makeVictims(fileSize);
        makeDecoys(fileSize);
        qint64 verdict = 1;
        neighbour.during([&] { verdict = shredFolder(top); });
        QVERIFY2(verdict == CrushResult::Success || verdict == CrushResult::DirectoryFailed
                     || verdict == CrushResult::NoSuchDirectory,
                 qPrintable(QString::number(verdict)));
        removeLeftovers();
        QCOMPARE(outside(), before);
        ++allRuns;
    }
    allSwaps += neighbour.successes();
}

void TestFileCrusherNeighbours::emptyFilesAreRemovedAmongSwaps()
{
    // Nothing is opened here, so all that a swap could reach is the removal.
    Swaps links;
    for (int number = 0; number < files; ++number)
        links.append({numbered("parent/top/file", number), numbered("spare/link", number)});
    const QStringList before = outside();
    HostileNeighbour neighbour(swapping(links));
    for (int run = 0; goesOn(neighbour, run); ++run) {
        makeVictims(0);
        makeDecoys(0);
        neighbour.during([&] { shredFolder(tree->path(QStringLiteral("parent/top"))); });
        removeLeftovers();
        QCOMPARE(outside(), before);
        ++allRuns;
    }
    allSwaps += neighbour.successes();
}

void TestFileCrusherNeighbours::loneFileIsShreddedAmongSwaps_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("swappedName");
    QTest::addColumn<QString>("decoy");
    const auto row = [](const char *what, const char *name, const char *decoy) {
        const QString path = QLatin1String("parent/") + QLatin1String(name);
        QTest::newRow(what) << path << path << QLatin1String("spare/") + QLatin1String(decoy);
    };
    row("file for a link", "lone", "link");
    row("file for a link to an empty one", "lone", "link-to-empty");
    row("file for a link to a folder", "lone", "link-to-folder");
    row("file for a fifo", "lone", "fifo");
    row("file for a folder", "lone", "folder");
    row("empty file for a link", "empty", "link");
    row("empty file for a folder", "empty", "folder");
    row("link for a link to a folder", "link", "link-to-folder");
    row("link for a folder", "link", "folder");
    QTest::newRow("parent for another with a link")
        << QStringLiteral("parent/lone") << QStringLiteral("parent")
        << QStringLiteral("spare/parent");
}

void TestFileCrusherNeighbours::loneFileIsShreddedAmongSwaps()
{
    QFETCH(QString, name);
    QFETCH(QString, swappedName);
    QFETCH(QString, decoy);
    const QStringList before = outside();
    const QString path = tree->path(name);
    HostileNeighbour neighbour(swapping({{swappedName, decoy}}));
    for (int run = 0; goesOn(neighbour, run); ++run) {
        makeLoneOnes();
        neighbour.during([&] { shredFile(path); });
        removeLeftovers();
        QCOMPARE(outside(), before);
        ++allRuns;
    }
    allSwaps += neighbour.successes();
}

void TestFileCrusherNeighbours::folderMovedAwayIsNotFollowedUpwards()
{
    // Whoever climbs back by ".." from a folder that was moved meanwhile arrives elsewhere.
    const QStringList before = outside();
    const QString kept = tree->makeFile(QStringLiteral("elsewhere/file0"), fileSize);
    const QByteArray inside = tree->path(QStringLiteral("parent/top/sub/deep")).toUtf8();
    const QByteArray away = tree->path(QStringLiteral("elsewhere/deep")).toUtf8();
    HostileNeighbour neighbour([&](int attempt) {
        return attempt % 2 == 0 ? ::rename(inside.constData(), away.constData()) == 0
                                : ::rename(away.constData(), inside.constData()) == 0;
    });
    for (int run = 0; goesOn(neighbour, run); ++run) {
        makeVictims(fileSize);
        neighbour.during([&] { shredFolder(tree->path(QStringLiteral("parent/top"))); });
        removeLeftovers();
        QDir(QString::fromUtf8(away)).removeRecursively();
        QCOMPARE(outside(), before);
        QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray(fileSize, 'x'));
        ++allRuns;
    }
    allSwaps += neighbour.successes();
}

void TestFileCrusherNeighbours::renamedParentHidesNothing()
{
    makeVictims(fileSize);
    const QString parent = tree->path(QStringLiteral("parent"));
    SignalLog log(crusher.get());
    const int before = testsupport::openDescriptors();
    log.onRecord = [&](const SignalRecord &) {
        QDir().rename(parent, tree->path(QStringLiteral("renamed")));
    };
    QCOMPARE(shredFolder(parent + QStringLiteral("/top")), CrushResult::Success);
    QVERIFY(!QFileInfo::exists(tree->path(QStringLiteral("renamed/top"))));
    QCOMPARE(testsupport::openDescriptors(), before);
}

TEST_SUITE(hostile_neighbours, TestFileCrusherNeighbours)
#include "hostile_neighbours.moc"
