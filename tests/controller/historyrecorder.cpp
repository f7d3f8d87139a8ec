// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the recorder keeps from one entry to the next must never lead an entry
// anywhere but to the file that has the name at that moment.

#include "controller/historyrecorder.h"
#include "controller/historyentry.h"
#include "controller/historyfile.h"

#include "ordinaryuser.h"
#include "suites.h"
#include "temporarytree.h"

#include <QDateTime>
#include <QDir>
#include <QtTest>

#include <memory>

#include <sys/stat.h>

using testsupport::OrdinaryUser;
using testsupport::TemporaryTree;

namespace
{

QStringList openFiles()
{
    QStringList files;
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    const QStringList names = descriptors.entryList(QDir::Files | QDir::System);
    for (const QString &name : names)
        files.append(QFile::symLinkTarget(descriptors.filePath(name)));
    return files;
}

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    ::stat(QFile::encodeName(path).constData(), &status);
    return status.st_mode & ALLPERMS;
}

} // namespace

class TestHistoryRecorder : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { ::umask(maskBefore); }

    void entriesFollowEachOther();
    void deletedHistoryIsMadeAnew();
    void replacedHistoryGetsTheNextEntry();
    void otherFileGetsItsOwnEntry();
    void folderInItsPlaceGetsNothing();
    void historyThatMayNotBeReadAnyMoreGetsNothing();
    void entriesSayWhatEachOfThemWouldSayAlone();
    void releasedHistoryIsClosed();
    void historyIsMadeForItsOwnerAlone();
    void historyThatExistsKeepsItsMode();

private:
    QByteArray history() const { return TemporaryTree::contentsOf(file); }

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<HistoryRecorder> recorder;
    QString file;
    mode_t maskBefore = 0;
};

void TestHistoryRecorder::init()
{
    maskBefore = ::umask(0); // what is made has the mode that was asked for
    tree = std::make_unique<TemporaryTree>();
    recorder = std::make_unique<HistoryRecorder>();
    file = tree->path(QStringLiteral("history"));
    recorder->append(file, "one\n");
}

void TestHistoryRecorder::entriesFollowEachOther()
{
    recorder->append(file, "two\n");
    QCOMPARE(history(), QByteArray("one\ntwo\n"));
}

void TestHistoryRecorder::deletedHistoryIsMadeAnew()
{
    QVERIFY(QFile::remove(file));
    recorder->append(file, "two\n");
    QCOMPARE(history(), QByteArray("two\n"));
}

void TestHistoryRecorder::replacedHistoryGetsTheNextEntry()
{
    const QString kept = tree->path(QStringLiteral("kept"));
    QVERIFY(QFile::rename(file, kept));
    tree->makeFile(QStringLiteral("history"), QByteArray("other\n"));
    recorder->append(file, "two\n");
    QCOMPARE(history(), QByteArray("other\ntwo\n"));
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray("one\n"));
}

void TestHistoryRecorder::otherFileGetsItsOwnEntry()
{
    const QString other = tree->path(QStringLiteral("other"));
    recorder->append(other, "two\n");
    QCOMPARE(history(), QByteArray("one\n"));
    QCOMPARE(TemporaryTree::contentsOf(other), QByteArray("two\n"));
}

void TestHistoryRecorder::folderInItsPlaceGetsNothing()
{
    QVERIFY(QFile::remove(file));
    tree->makeFolder(QStringLiteral("history"));
    recorder->append(file, "two\n");
    QVERIFY(QDir(file).isEmpty());
}

void TestHistoryRecorder::historyThatMayNotBeReadAnyMoreGetsNothing()
{
    OrdinaryUser::give(tree->path());
    OrdinaryUser::give(file);
    const OrdinaryUser user;
    recorder->append(file, "two\n");
    QVERIFY(QFile::setPermissions(file, QFile::WriteOwner));
    recorder->append(file, "three\n");
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    recorder->append(file, "four\n");
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
    recorder->append(file, "five\n");
    QCOMPARE(history(), QByteArray("one\ntwo\nfive\n"));
}

void TestHistoryRecorder::entriesSayWhatEachOfThemWouldSayAlone()
{
    constexpr qint64 second = 1704164645;
    HistoryEntry entry;
    int number = 0;
    for (const char *path :
         {"/a/b", "/a/c", "/a/c/d", "/a/b",    "/",          "/a",         "//a",
          "/a/",  "/a/.", "/a/..",  "/a/../b", "/a/./b",     "/a//b",      "/a/./c",
          "a/b",  "a/c",  "a",      "",        "/粉碎/记录", "/粉碎/a\nb", "/a\nb/c"}) {
        const QString item = QString::fromUtf8(path);
        const qint64 now = second + number++ / 3; // some share a second
        QCOMPARE(entry.of(item, now),
                 historyfile::entryFor(item, QDateTime::fromSecsSinceEpoch(now)));
    }
}

/// A deleted history that somebody holds open still takes its space on the disk.
void TestHistoryRecorder::releasedHistoryIsClosed()
{
    QVERIFY(openFiles().contains(file));
    recorder->release();
    QVERIFY(!openFiles().contains(file));
}

void TestHistoryRecorder::historyIsMadeForItsOwnerAlone()
{
    QCOMPARE(modeOf(file), mode_t{S_IRUSR | S_IWUSR});
}

void TestHistoryRecorder::historyThatExistsKeepsItsMode()
{
    const mode_t wide = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH;
    QCOMPARE(::chmod(QFile::encodeName(file).constData(), wide), 0);
    recorder->release();
    recorder->append(file, "two\n");
    QCOMPARE(modeOf(file), wide);
    QCOMPARE(history(), QByteArray("one\ntwo\n"));
}

TEST_SUITE(historyrecorder, TestHistoryRecorder)
#include "historyrecorder.moc"
