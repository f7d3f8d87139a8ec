// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A whole folder: what is found in it, in what order it goes, what is reported; links in it go,
// and whatever they point to stays as it is.

#include "enginetest.h"
#include "suites.h"
#include "systemcalls.h"

#include <QtTest>

#include <dirent.h>
#include <fcntl.h>

using namespace testsupport;

namespace
{

/// The names in @p folder in the order in which the system reads them.
QStringList namesIn(const QString &folder)
{
    QStringList names;
    DIR *stream = ::opendir(folder.toUtf8().constData());
    while (const dirent *entry = ::readdir(stream)) {
        const QString name = QString::fromUtf8(entry->d_name);
        if (name != QLatin1String(".") && name != QLatin1String(".."))
            names.append(name);
    }
    ::closedir(stream);
    return names;
}

quint64 sizeOf(const QString &path)
{
    return FileCrusher::directorySize(path.toUtf8().constData());
}

} // namespace

class TestDirectory : public EngineTest
{
    Q_OBJECT

private slots:
    void whatIsNoDirectoryIsRefused();
    void listingHasEverythingButSelfAndParent();
    void listingOfWhatIsNoDirectoryIsEmpty();
    void selfAndParentAreSkippedWhereTypesAreUnknown();
    void sizeCountsFilesAndTargetsOfLinks();
    void emptyDirectoryIsRemovedAndReported();
    void treeGoesBreadthFirstAndFoldersBackwards();
    void treeOfEmptyFilesGoesUnopened();
    void fifoIsLeftAloneAndTheFolderFails();
    void firstFolderThatStaysEndsTheRemoval();
    void folderIsReportedAsGiven();
    void relativeFolderIsReportedAsGiven();

    void linkIsUnlinkedAndItsTargetUntouched_data();
    void linkIsUnlinkedAndItsTargetUntouched();
    void sizeOfALinkTargetCountsButIsNeverDone();
    void linkIntoTheSameTreeIsJustUnlinked_data();
    void linkIntoTheSameTreeIsJustUnlinked();
    void linkBehindASlashIsRefusedUntouched();
};

void TestDirectory::whatIsNoDirectoryIsRefused()
{
    const QString file = tree->makeFile("file", 10);
    QCOMPARE(crusher->shredDirectory(nullptr), qint64{-1});
    QCOMPARE(FileCrusher::directorySize(nullptr), quint64{0});
    const QStringList paths{file, tree->path("missing"), QLatin1String("")};
    for (const QString &path : paths) {
        QCOMPARE(shredFolder(path), qint64{-3});
        QCOMPARE(sizeOf(path), quint64{0});
    }
    QVERIFY(isAsMade(file, 10));
    QCOMPARE(log->records(), SignalRecords());
}

void TestDirectory::listingHasEverythingButSelfAndParent()
{
    for (const char *name : {"file", ".hidden", "...", "..x", ".x."})
        tree->makeFile(name, 1);
    tree->makeFolder("folder");
    tree->makeFolder("...."); // a folder's name is compared whole
    tree->makeLink("link", "nowhere");
    tree->makeFifo("fifo");

    QStringList expected;
    const QStringList names = namesIn(tree->path());
    for (const QString &name : names)
        expected.append(tree->path(name));
    QCOMPARE(expected.size(), 9);
    QStringList found;
    const QList<QFileInfo> listed = FileCrusher::listDirectory(tree->path().toUtf8().constData());
    for (const QFileInfo &entry : listed)
        found.append(entry.filePath());
    QCOMPARE(found, expected);
}

void TestDirectory::listingOfWhatIsNoDirectoryIsEmpty()
{
    const QByteArray file = tree->makeFile("file", 10).toUtf8();
    const QByteArray missing = tree->path("missing").toUtf8();
    for (const char *path :
         {static_cast<const char *>(nullptr), file.constData(), missing.constData()})
        QCOMPARE(FileCrusher::listDirectory(path), QList<QFileInfo>());
}

void TestDirectory::selfAndParentAreSkippedWhereTypesAreUnknown()
{
    const QString kept = tree->makeFile("kept", 10);
    const QString file = tree->makeFile("top/folder/file", 10);
    const QString top = tree->path("top");
    const CallHook hook(nullptr, [](const SystemCall &call, void *entry) {
        if (call.is("readdir"))
            static_cast<dirent *>(entry)->d_type = DT_UNKNOWN;
    });
    // Asked first, so that a listing with ".." in it is never shredded.
    const QList<QFileInfo> entries = FileCrusher::listDirectory(top.toUtf8().constData());
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.first().fileName(), QStringLiteral("folder"));
    QCOMPARE(shredFolder(top), qint64{0});
    QVERIFY(isAsMade(kept, 10));
    QCOMPARE(log->firstArguments("addToHistory"), (QStringList{file, QFileInfo(file).path(), top}));
}

void TestDirectory::sizeCountsFilesAndTargetsOfLinks()
{
    const QString outside = tree->makeFile("outside/file", 70000);
    const QString top = tree->makeFolder("top");
    QCOMPARE(sizeOf(top), quint64{0});
    tree->makeFile("top/one", 1);
    tree->makeFile("top/a/b/c/ten", 10);
    tree->makeFile("top/a/empty", 0);
    QCOMPARE(sizeOf(top), quint64{11});
    tree->makeLink("top/a/link", outside);
    tree->makeLink("top/dangling", "nowhere");
    tree->makeFifo("top/fifo");
    QCOMPARE(sizeOf(top), quint64{70011});

    // A linked folder counts as the folder itself, without what is in it.
    const QString folder = QFileInfo(outside).path();
    const QString link = tree->makeLink("top/linked folder", folder);
    QCOMPARE(sizeOf(top), 70011 + static_cast<quint64>(QFileInfo(folder).size()));
    // Given by itself it is what it leads to.
    QCOMPARE(sizeOf(link), quint64{70000});
}

void TestDirectory::emptyDirectoryIsRemovedAndReported()
{
    const QString top = tree->makeFolder("top");
    QCOMPARE(shredFolder(top), qint64{0});
    QVERIFY(!entryExists(top));
    QCOMPARE(log->records(), (SignalRecords{progress(top, 100), removal(top)}));
}

/// That folders are read in the order of the system, model.cpp shows.
void TestDirectory::treeGoesBreadthFirstAndFoldersBackwards()
{
    for (const char *name :
         {"top/file", "top/a/file", "top/b/file", "top/a/c/file", "top/b/d/file"})
        tree->makeFile(name, 1000);
    const QString top = tree->path("top");
    QCOMPARE(shredFolder(top), qint64{0});
    const QStringList gone = log->firstArguments("addToHistory");
    QList<int> levels;
    for (const QString &path : gone)
        levels.append(path.count(QLatin1Char('/')) - top.count(QLatin1Char('/')));
    QCOMPARE(levels, (QList<int>{1, 2, 2, 3, 3, 2, 2, 1, 1, 0}));
    // The folder found last goes first.
    QCOMPARE(QFileInfo(gone.at(5)).path(), gone.at(7));
    QCOMPARE(gone.at(7) + QStringLiteral("/file"), gone.at(2));
}

void TestDirectory::treeOfEmptyFilesGoesUnopened()
{
    const QString one = tree->makeFile("top/one", 0);
    const QString two = tree->makeFile("top/folder/two", 0);
    const QString top = tree->path("top");
    int opened = 0;
    const CallHook hook([&](const SystemCall &call) {
        opened += call.kind == CallKind::Open && (call.flags & O_ACCMODE) != O_RDONLY ? 1 : 0;
        return CallFate();
    });
    QCOMPARE(shredFolder(top), qint64{0});
    QCOMPARE(opened, 0);
    QCOMPARE(log->records(),
             (SignalRecords{removal(one), removal(two), removal(tree->path("top/folder")),
                            progress(top, 100), removal(top)}));
}

void TestDirectory::fifoIsLeftAloneAndTheFolderFails()
{
    const QString fifo = tree->makeFifo("top/fifo");
    const QString file = tree->makeFile("top/file", 10);
    const QString top = tree->path("top");
    QCOMPARE(shredFolder(top), qint64{-3});
    QVERIFY(entryExists(fifo));
    QVERIFY(!entryExists(file));
    QCOMPARE(log->records(), (SignalRecords{progress(top, 100), removal(file)}));
}

void TestDirectory::firstFolderThatStaysEndsTheRemoval()
{
    const QString four = tree->makeFolder("top/one/two/three/four");
    const QString three = QFileInfo(four).path();
    const QString sibling = tree->makeFolder("top/empty"); // found before the one that stays
    tree->makeFifo("top/one/two/fifo");
    QCOMPARE(shredFolder(tree->path("top")), qint64{-3});
    QCOMPARE(log->records(), (SignalRecords{removal(four), removal(three)}));
    QVERIFY(!entryExists(three));
    QVERIFY(entryExists(tree->path("top/one/two")));
    QVERIFY(entryExists(sibling));
}

void TestDirectory::folderIsReportedAsGiven()
{
    const QString file = tree->makeFile("top/file", 10);
    const QString given = tree->path(".//top/");
    QCOMPARE(shredFolder(given), qint64{0});
    QVERIFY(!entryExists(tree->path("top")));
    QCOMPARE(log->records(), (SignalRecords{progress(given, 100), removal(file),
                                            progress(given, 100), removal(given)}));
}

void TestDirectory::relativeFolderIsReportedAsGiven()
{
    const QString file = tree->makeFile("top/folder/file", 10);
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(tree->path()));
    const qint64 result = shredFolder(QStringLiteral("top"));
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(result, qint64{0});
    QCOMPARE(log->firstArguments("addToHistory"),
             (QStringList{file, tree->path("top/folder"), QStringLiteral("top")}));
}

void TestDirectory::linkIsUnlinkedAndItsTargetUntouched_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("to a folder") << QStringLiteral("../outside");
    QTest::newRow("to a file") << QStringLiteral("../outside/deep/kept");
    QTest::newRow("to the folder above") << QStringLiteral("..");
    QTest::newRow("to the top") << QStringLiteral("../top");
    QTest::newRow("to itself") << QStringLiteral("link");
    QTest::newRow("dangling") << QStringLiteral("nowhere");
}

void TestDirectory::linkIsUnlinkedAndItsTargetUntouched()
{
    QFETCH(QString, target);
    const QString kept = tree->makeFile("outside/deep/kept", 5000);
    const QString link = tree->makeLink("top/link", target);
    const QString top = tree->path("top");
    QCOMPARE(shredFolder(top), qint64{0});
    QVERIFY(!entryExists(top));
    QVERIFY(isAsMade(kept, 5000));
    QCOMPARE(log->records(), (SignalRecords{removal(link), progress(top, 100), removal(top)}));
}

void TestDirectory::sizeOfALinkTargetCountsButIsNeverDone()
{
    const QString link = tree->makeLink("top/link", tree->makeFile("kept", 3000));
    const QString file = tree->makeFile("top/folder/file", 1000);
    const QString top = tree->path("top");
    QCOMPARE(shredFolder(top), qint64{0});
    QCOMPARE(log->records(),
             (SignalRecords{removal(link), progress(top, 25), removal(file),
                            removal(QFileInfo(file).path()), progress(top, 100), removal(top)}));
}

void TestDirectory::linkIntoTheSameTreeIsJustUnlinked_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("to a folder") << QStringLiteral("one/two");
    QTest::newRow("to a file") << QStringLiteral("one/two/file");
}

void TestDirectory::linkIntoTheSameTreeIsJustUnlinked()
{
    QFETCH(QString, target);
    const QString link = tree->makeLink("top/link", target);
    const QString file = tree->makeFile("top/one/two/file", 10);
    const QString secondName = tree->makeHardLink("second name", file);
    QCOMPARE(shredFolder(tree->path("top")), qint64{0});
    QCOMPARE(log->firstArguments("addToHistory"),
             (QStringList{link, file, tree->path("top/one/two"), tree->path("top/one"),
                          tree->path("top")}));
    QVERIFY(!isAsMade(secondName, 10));
}

void TestDirectory::linkBehindASlashIsRefusedUntouched()
{
    const QString kept = tree->makeFile("top/kept", 10);
    const QString link = tree->makeLink("link", tree->path("top"));
    for (const char *slashes : {"/", "///"})
        QCOMPARE(shredFolder(link + QLatin1String(slashes)), qint64{-3});
    QVERIFY(entryExists(link));
    QVERIFY(isAsMade(kept, 10));
    QCOMPARE(log->records(), SignalRecords());
}

TEST_SUITE(directory, TestDirectory)
#include "directory.moc"
