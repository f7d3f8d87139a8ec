// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A whole folder: what is found in it, in what order it goes, what is reported; links in it go,
// and whatever they point to stays as it is.

#include "enginetest.h"

#include <filesystem>

#include <dirent.h>

using namespace testsupport;

namespace
{

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
    void selfAndParentAreSkippedWhereTypesAreUnknown();
    void sizeCountsFilesAndTargetsOfLinks();
    void emptyDirectoryIsRemovedAndReported();
    void firstFolderThatStaysEndsTheRemoval();
    void relativeFolderIsReportedAsGiven();

    void linkIsUnlinkedAndItsTargetUntouched_data();
    void linkIsUnlinkedAndItsTargetUntouched();
    void linksIntoTheSameTreeAreJustUnlinked();
    void linkBehindASlashIsRefusedUntouched();
    void bothNamesOfAFileGo();
};

void TestDirectory::whatIsNoDirectoryIsRefused()
{
    const QString file = tree->makeFile("file", 10);
    QCOMPARE(crusher->shredDirectory(nullptr), qint64{-1});
    QCOMPARE(FileCrusher::directorySize(nullptr), quint64{0});
    QCOMPARE(FileCrusher::listDirectory(nullptr), QList<QFileInfo>());
    const QStringList paths{file, tree->path("missing"), QLatin1String("")};
    for (const QString &path : paths) {
        QCOMPARE(shredFolder(path), qint64{-3});
        QCOMPARE(sizeOf(path), quint64{0});
        QCOMPARE(FileCrusher::listDirectory(path.toUtf8().constData()), QList<QFileInfo>());
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

    QStringList expected; // in the order in which the system reads them
    for (const auto &entry : std::filesystem::directory_iterator(tree->path().toStdString()))
        expected.append(QString::fromStdString(entry.path()));
    QCOMPARE(expected.size(), 9);
    QStringList found;
    const QList<QFileInfo> listed = FileCrusher::listDirectory(tree->path().toUtf8().constData());
    for (const QFileInfo &entry : listed)
        found.append(entry.filePath());
    QCOMPARE(found, expected);
}

void TestDirectory::selfAndParentAreSkippedWhereTypesAreUnknown()
{
    const QString kept = tree->makeFile("kept", 10);
    const QString file = tree->makeFile("top/folder/file", 10);
    const CallHook hook(nullptr, [](const SystemCall &call, void *entry) {
        if (call.is("readdir"))
            static_cast<dirent *>(entry)->d_type = DT_UNKNOWN;
    });
    // Asked first, so that a listing with ".." in it is never shredded.
    const QList<QFileInfo> entries = FileCrusher::listDirectory(top().toUtf8().constData());
    QCOMPARE(entries, QList<QFileInfo>{QFileInfo(tree->path("top/folder"))});
    QCOMPARE(shredFolder(top()), qint64{0});
    QVERIFY(isAsMade(kept, 10));
    QCOMPARE(log->firstArguments("addToHistory"),
             (QStringList{file, QFileInfo(file).path(), top()}));
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
    // Given by itself it is what it leads to, with a slash behind it too.
    QCOMPARE(sizeOf(link), quint64{70000});
    QCOMPARE(sizeOf(link + QLatin1Char('/')), quint64{70000});
}

void TestDirectory::emptyDirectoryIsRemovedAndReported()
{
    const QString top = tree->makeFolder("top");
    QCOMPARE(shredFolder(top), qint64{0});
    QVERIFY(!entryExists(top));
    QCOMPARE(log->records(), (SignalRecords{progress(top, 100), removal(top)}));
}

void TestDirectory::firstFolderThatStaysEndsTheRemoval()
{
    const QString four = tree->makeFolder("top/one/two/three/four");
    const QString three = QFileInfo(four).path();
    const QString sibling = tree->makeFolder("top/empty"); // found before the one that stays
    tree->makeFifo("top/one/two/fifo");
    QCOMPARE(shredFolder(top()), qint64{-3});
    QCOMPARE(log->records(), (SignalRecords{removal(four), removal(three)}));
    QVERIFY(!entryExists(three));
    QVERIFY(entryExists(tree->path("top/one/two")));
    QVERIFY(entryExists(sibling));
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
    for (const char *target :
         {"../outside", "../outside/deep/kept", "..", "../top", "link", "nowhere"})
        QTest::newRow(target) << QString::fromLatin1(target);
}

void TestDirectory::linkIsUnlinkedAndItsTargetUntouched()
{
    QFETCH(QString, target);
    const QString kept = tree->makeFile("outside/deep/kept", 5000);
    const QString link = tree->makeLink("top/link", target);
    QCOMPARE(shredFolder(top()), qint64{0});
    QVERIFY(!entryExists(top()));
    QVERIFY(isAsMade(kept, 5000));
    QCOMPARE(log->records(), (SignalRecords{removal(link), progress(top(), 100), removal(top())}));
}

void TestDirectory::linksIntoTheSameTreeAreJustUnlinked()
{
    tree->makeLink("top/link to a folder", "one/two");
    tree->makeLink("top/link to a file", "one/two/file");
    const QString file = tree->makeFile("top/one/two/file", 10);
    const QString secondName = tree->makeHardLink("second name", file);
    QCOMPARE(shredFolder(top()), qint64{0});
    QCOMPARE(log->firstArguments("addToHistory").mid(2),
             (QStringList{file, tree->path("top/one/two"), tree->path("top/one"), top()}));
    QVERIFY(!isAsMade(secondName, 10));
}

void TestDirectory::linkBehindASlashIsRefusedUntouched()
{
    const QString kept = tree->makeFile("top/kept", 10);
    const QString link = tree->makeLink("link", tree->path("top"));
    const QStringList given{link + QLatin1String("/"), link + QLatin1String("///")};
    QCOMPARE(workOn(given), (SignalRecords{failure(given.first()), failure(given.last())}));
    QVERIFY(entryExists(link));
    QVERIFY(isAsMade(kept, 10));
}

void TestDirectory::bothNamesOfAFileGo()
{
    const QString one = tree->makeFile("top/one", 5000);
    const QString other = tree->makeHardLink("top/other", one);
    QCOMPARE(sizeOf(top()), quint64{10000});
    QCOMPARE(shredFolder(top()), qint64{0});
    // Half of the bytes each, whichever is found first.
    const bool oneIsFirst = log->records().value(1, {""}) == removal(one);
    QCOMPARE(log->records(), (SignalRecords{progress(top(), 50), removal(oneIsFirst ? one : other),
                                            progress(top(), 100), removal(oneIsFirst ? other : one),
                                            progress(top(), 100), removal(top())}));
}

TEST_SUITE(directory, TestDirectory)
#include "directory.moc"
