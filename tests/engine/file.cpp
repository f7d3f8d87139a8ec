// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What becomes of one file or link, given by itself or as one of a folder's.

#include "enginetest.h"

#include <fcntl.h>

using namespace testsupport;

class TestFile : public EngineTest
{
    Q_OBJECT

private slots:
    void nullPathAndFolderAreRefused();
    void missingPathIsNothingToDo();
    void emptyTopDirectoryIsRefused();
    void emptyFileOrTreeOfEmptyFilesGoesUnopened();
    void fileOfAnEmptyTreeIsUnlinkedUnwritten();
    void linkIsUnlinkedAndItsTargetSurvives();
    void statSizeFollowsLinks();
};

void TestFile::nullPathAndFolderAreRefused()
{
    QCOMPARE(shredFile(tree->path()), qint64{-4});
    QVERIFY(entryExists(tree->path()));
    QCOMPARE(crusher->shredFile(nullptr), qint64{-1});
    QCOMPARE(crusher->shredFileInDirectory(nullptr, 100, 0, tree->path()), qint64{-1});
    QCOMPARE(crusher->shredFileInDirectory(nullptr, 100, 0, QString()), qint64{-1});
    QCOMPARE(FileCrusher::statSize(nullptr), qint64{-1});
    QCOMPARE(log->records(), SignalRecords());
}

void TestFile::missingPathIsNothingToDo()
{
    // As a path is followed, a link to nothing is missing too, but not by itself.
    const QString dangling = tree->makeLink("dangling", "nowhere");
    QCOMPARE(shredInTree(dangling, 100), qint64{0});
    QCOMPARE(shredInTree(dangling, 0), qint64{0});
    QVERIFY(entryExists(dangling));
    const QString file = tree->makeFile("file", 10);
    for (const char *name : {"missing", "no folder/missing", "file/"}) {
        QCOMPARE(shredFile(tree->path(name)), qint64{0});
        QCOMPARE(shredInTree(tree->path(name), 100), qint64{0});
        QCOMPARE(shredInTree(tree->path(name), 0), qint64{0});
    }
    QVERIFY(isAsMade(file, 10));
    QCOMPARE(log->records(), SignalRecords());
}

void TestFile::emptyTopDirectoryIsRefused()
{
    const QString file = tree->makeFile("file", 10);
    const QByteArray path = file.toUtf8();
    QCOMPARE(crusher->shredFileInDirectory(path.constData(), 10, 0, QString()), qint64{-4});
    QCOMPARE(crusher->shredFileInDirectory(path.constData(), 0, 0, QLatin1String("")), qint64{-4});
    QCOMPARE(crusher->shredFileInDirectory("/missing", 10, 0, QString()), qint64{-4});
    QVERIFY(isAsMade(file, 10));
    QCOMPARE(log->records(), SignalRecords());
}

void TestFile::emptyFileOrTreeOfEmptyFilesGoesUnopened()
{
    const QString lone = tree->makeFile("lone", 0);
    const QString one = tree->makeFile("top/one", 0);
    const QString two = tree->makeFile("top/folder/two", 0);
    int opened = 0;
    const CallHook hook([&](const SystemCall &call) {
        opened += call.kind == CallKind::Open && (call.flags & O_ACCMODE) != O_RDONLY ? 1 : 0;
        return CallFate();
    });
    QCOMPARE(shredFile(lone), qint64{0});
    QCOMPARE(shredFolder(top()), qint64{0});
    QCOMPARE(opened, 0);
    QVERIFY(!entryExists(lone) && !entryExists(top()));
    QCOMPARE(log->records(), (SignalRecords{removal(lone), removal(one), removal(two),
                                            removal(tree->path("top/folder")), progress(top(), 100),
                                            removal(top())}));
}

void TestFile::fileOfAnEmptyTreeIsUnlinkedUnwritten()
{
    const QString file = tree->makeFile("file", 5000);
    const QString secondName = tree->makeHardLink("second name", file);
    QCOMPARE(shredInTree(tree->path("./file"), 0), qint64{0});
    QVERIFY(!entryExists(file));
    QVERIFY(isAsMade(secondName, 5000));
    // Unlike anywhere else the path is not reported as it was given but cleaned.
    QCOMPARE(log->records(), SignalRecords{removal(file)});
    const QString folder = tree->makeFolder("folder");
    QCOMPARE(shredInTree(folder, 0), qint64{0});
    QVERIFY(!entryExists(folder));
}

void TestFile::linkIsUnlinkedAndItsTargetSurvives()
{
    const QString ten = tree->makeFile("ten bytes", 10);
    const QString stopCode = tree->makeFile("255 bytes", 255);
    const QString inside = tree->makeFile("folder/inside", 10);
    const QString other = tree->makeLink("other link", "ten bytes");
    for (const char *target :
         {"ten bytes", "255 bytes", "folder", "other link", "nowhere", "link itself"}) {
        log->clear();
        const QString link = tree->makeLink("link itself", target);
        // The size is read after the link has gone, when nothing is left to have one.
        QCOMPARE(shredFile(link), qint64{0});
        QCOMPARE(log->records(), SignalRecords{removal(link)});
        QVERIFY(!entryExists(link) && entryExists(other));
        QVERIFY(isAsMade(ten, 10) && isAsMade(stopCode, 255) && isAsMade(inside, 10));
    }
}

void TestFile::statSizeFollowsLinks()
{
    const QString file = tree->makeFile("file", 4321);
    const QString link = tree->makeLink("link", file);
    const QString dangling = tree->makeLink("dangling", "nowhere");
    QCOMPARE(FileCrusher::statSize(file.toUtf8().constData()), qint64{4321});
    QCOMPARE(FileCrusher::statSize(link.toUtf8().constData()), qint64{4321});
    QCOMPARE(FileCrusher::statSize(dangling.toUtf8().constData()), qint64{-1});
}

TEST_SUITE(file, TestFile)
#include "file.moc"
