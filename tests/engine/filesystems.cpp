// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// File systems that refuse: mounted read-only, full to the last byte, mounted in the middle of
// what is chosen; and files that are immutable.

#include "enginetest.h"
#include "inventory.h"
#include "loopimage.h"

#include <sys/stat.h>

using namespace testsupport;

class TestFileSystems : public EngineTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void nothingChangesWhereItIsReadOnly();
    void fileThatCannotBeOverwrittenForLackOfSpaceGoes();
    void mountedFolderIsEmptiedAndStays();
    void immutableFileStays();
    void folderWhoseInodeNumberDoesNotLastIsShredded();
};

void TestFileSystems::initTestCase()
{
    if (!hasOwnMounts())
        QSKIP("no mounts of one's own here");
}

void TestFileSystems::init()
{
    EngineTest::init();
    tree->makeFolder("top");
}

void TestFileSystems::nothingChangesWhereItIsReadOnly()
{
    const Mount mount(top());
    QVERIFY(mount.isDone());
    const QString file = tree->makeFile("top/file", 5000);
    const QString empty = tree->makeFile("top/empty", 0);
    const QString folder = tree->makeFolder("top/folder");
    const QString link = tree->makeLink("top/link", "file");
    const QStringList before = inventoryOf(top());
    QVERIFY(mount.makeReadOnly());
    QCOMPARE(shredFile(file), CrushResult::OpenFailed);
    QCOMPARE(shredFile(empty), CrushResult::RemoveFailed);
    QCOMPARE(shredFile(link), CrushResult::LinkFailed);
    QCOMPARE(shredFolder(folder), CrushResult::DirectoryFailed);
    QCOMPARE(shredFolder(top()), CrushResult::DirectoryFailed);
    QCOMPARE(inventoryOf(top()), before);
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileSystems::fileThatCannotBeOverwrittenForLackOfSpaceGoes()
{
    const Mount mount(top(), "size=64k");
    QVERIFY(mount.isDone());
    // A hole takes no space until it is written to.
    const QString file = tree->makeFile("top/file", 0);
    QVERIFY(QFile::resize(file, 1000000));
    QCOMPARE(shredFile(file), qint64{1000000});
    QVERIFY(!entryExists(file));
    QCOMPARE(log->firstArguments("addToHistory"), QStringList{file});
}

void TestFileSystems::mountedFolderIsEmptiedAndStays()
{
    const QString mounted = tree->makeFolder("top/mounted");
    const Mount mount(mounted);
    QVERIFY(mount.isDone());
    const QString inside = tree->makeFile("top/mounted/inside", 5000);
    const QString beside = tree->makeFile("top/beside", 5000);
    QCOMPARE(shredFolder(top()), CrushResult::DirectoryFailed);
    QVERIFY(entryExists(mounted) && !entryExists(inside) && !entryExists(beside));
    QCOMPARE(log->count("addToHistory"), 2);
}

void TestFileSystems::immutableFileStays()
{
    const QString file = tree->makeFile("top/file", 5000);
    const QString empty = tree->makeFile("top/empty", 0);
    if (!setImmutable(file, true) || !setImmutable(empty, true))
        QSKIP("no immutable files here");
    const QStringList before = inventoryOf(top());
    const QList<qint64> verdicts{shredFile(file), shredFile(empty), shredFolder(top())};
    const QStringList after = inventoryOf(top());
    QVERIFY(setImmutable(file, false) && setImmutable(empty, false));
    QCOMPARE(verdicts, (QList<qint64>{CrushResult::OpenFailed, CrushResult::RemoveFailed,
                                      CrushResult::DirectoryFailed}));
    QCOMPARE(after, before);
    QCOMPARE(log->records(), SignalRecords());
}

/// FAT, network and FUSE file systems and overlays number a folder anew when the kernel had
/// forgotten it.
void TestFileSystems::folderWhoseInodeNumberDoesNotLastIsShredded()
{
    const Mount lower(tree->makeFolder("layers"));
    const Mount upper(tree->makeFolder("changes"));
    QVERIFY(lower.isDone() && upper.isDone());
    for (const char *file : {"layers/file", "layers/sub/deep/file"})
        tree->makeFile(file, 100);
    for (const char *folder : {"changes/upper", "changes/work"})
        tree->makeFolder(folder);
    const QByteArray root = tree->path().toUtf8();
    const Mount mount(top(),
                      "xino=off,lowerdir=" + root + "/layers,upperdir=" + root
                          + "/changes/upper,workdir=" + root + "/changes/work",
                      "overlay");
    if (!mount.isDone())
        QSKIP("no overlays here");

    QSet<ino_t> numbers;
    const auto forget = [&] {
        struct stat status = {};
        if (::stat((root + "/top/sub").constData(), &status) == 0)
            numbers.insert(status.st_ino);
        QFile caches(QStringLiteral("/proc/sys/vm/drop_caches"));
        if (caches.open(QIODevice::WriteOnly))
            caches.write("2");
    };
    forget();
    forget();
    if (numbers.size() < 2)
        QSKIP("the kernel keeps the numbers here");
    log->onRecord = [&](const SignalRecord &) { forget(); };
    // The mount itself stays.
    QCOMPARE(shredFolder(top()), CrushResult::DirectoryFailed);
    QVERIFY(numbers.size() > 2);
    QVERIFY(QDir(top()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    QCOMPARE(log->count("addToHistory"), 4);
}

static void prepare(int, char **)
{
    enterOwnMounts();
}

TEST_SUITE_PREPARED_BY(filesystems, TestFileSystems, prepare)
#include "filesystems.moc"
