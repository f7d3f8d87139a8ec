// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The form of an entry, and what happens to the file when one is appended.

#include "controller/historyfile.h"
#include "ordinaryuser.h"
#include "suites.h"
#include "temporarytree.h"

#include <QDir>
#include <QtTest>

#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using testsupport::OrdinaryUser;
using testsupport::TemporaryTree;

namespace
{

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    ::stat(QFile::encodeName(path).constData(), &status);
    return status.st_mode & ALLPERMS;
}

/// While it exists no file can grow beyond @p bytes: a write across the limit comes short, one
/// behind it fails, as on a full disk.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
        : handlerBefore(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &limitBefore);
        const rlimit limit{bytes, limitBefore.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk()
    {
        ::setrlimit(RLIMIT_FSIZE, &limitBefore);
        std::signal(SIGXFSZ, handlerBefore);
    }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    rlimit limitBefore = {};
    void (*handlerBefore)(int);
};

} // namespace

class TestHistoryFile : public QObject
{
    Q_OBJECT

private slots:
    void init() { maskBefore = ::umask(0); } // what is made has the mode that was asked for
    void cleanup() { ::umask(maskBefore); }

    void entryIsTimeNameAndAbsoluteFolder_data();
    void entryIsTimeNameAndAbsoluteFolder();
    void historyIsMadeForItsOwnerAlone();
    void entryIsAppendedAndNothingElseChanged();
    void replacedHistoryGetsTheNextEntry();
    void historyIsClosedAfterAnEntry();
    void onlyAFileToReadAndWriteGetsAnEntry();
    void fullDiskLeavesTheFileAsItWas_data();
    void fullDiskLeavesTheFileAsItWas();
    void fifoInItsPlaceGetsNothing();

private:
    const TemporaryTree tree;
    const QString file = tree.path(QStringLiteral("history"));
    mode_t maskBefore = 0;
};

void TestHistoryFile::entryIsTimeNameAndAbsoluteFolder_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("folder");
    const QString here = QDir::currentPath();
    const auto row = [](const QByteArray &path, const char *name, const QByteArray &folder) {
        QTest::newRow(path.constData())
            << QString::fromUtf8(path) << QString::fromUtf8(name) << QString::fromUtf8(folder);
    };
    row("/home/u/a.txt", "a.txt", "/home/u");
    row("/", "", "/");
    row("/a", "a", "/");
    row("//a", "a", "/");
    row("/a/", "", "/a");
    row("/a//b", "b", "/a");
    row("/a/./b", "b", "/a");
    row("/a/../b", "b", "/");
    row("a/b", "b", here.toUtf8() + "/a");
    row("/x\ny/a\nb\n\nc", "a␤b␤␤c", "/x␤y");
    row("/h/a\r\nb", "a\r␤b", "/h");
    for (const char *name : {"a b  c", "'a' \"b\" `c`", "100%s %n %1", "粉碎记录.txt",
                             "🗑️.txt", "a\tb", "a\rb\u2028c\u2029d\u0085e\vf\fg"})
        row(QByteArray("/h/") + name, name, "/h");
}

void TestHistoryFile::entryIsTimeNameAndAbsoluteFolder()
{
    QFETCH(QString, path);
    QFETCH(QString, name);
    QFETCH(QString, folder);
    const QDateTime time(QDate(2024, 1, 2), QTime(3, 4, 5));
    QCOMPARE(QString::fromUtf8(historyfile::entryFor(path, time)),
             QStringLiteral("2024-01-02 03:04:05\n") + name + QLatin1Char('\n') + folder
                 + QLatin1Char('\n'));
}

void TestHistoryFile::historyIsMadeForItsOwnerAlone()
{
    QFile::remove(file);
    historyfile::append(file, "one\n");
    QCOMPARE(modeOf(file), mode_t{S_IRUSR | S_IWUSR});
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray("one\n"));
}

void TestHistoryFile::entryIsAppendedAndNothingElseChanged()
{
    const QByteArray notUtf8("\xff\xfe\x80\n");
    tree.makeFile(QStringLiteral("history"), notUtf8);
    const mode_t wide = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH;
    QCOMPARE(::chmod(QFile::encodeName(file).constData(), wide), 0);
    historyfile::append(file, "one\n");
    historyfile::append(file, "two\n");
    QCOMPARE(TemporaryTree::contentsOf(file), notUtf8 + "one\ntwo\n");
    QCOMPARE(modeOf(file), wide);
}

void TestHistoryFile::replacedHistoryGetsTheNextEntry()
{
    tree.makeFile(QStringLiteral("history"), QByteArray());
    historyfile::append(file, "one\n");
    const QString kept = tree.path(QStringLiteral("kept"));
    QVERIFY(QFile::rename(file, kept));
    tree.makeFile(QStringLiteral("history"), QByteArray("other\n"));
    historyfile::append(file, "two\n");
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray("other\ntwo\n"));
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray("one\n"));
}

/// A deleted history that somebody holds open still takes its space on the disk.
void TestHistoryFile::historyIsClosedAfterAnEntry()
{
    historyfile::append(file, "one\n");
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    const QFileInfoList open = descriptors.entryInfoList(QDir::Files | QDir::System);
    for (const QFileInfo &descriptor : open)
        QVERIFY(descriptor.symLinkTarget() != file);
}

void TestHistoryFile::onlyAFileToReadAndWriteGetsAnEntry()
{
    tree.makeFile(QStringLiteral("history"), QByteArray());
    OrdinaryUser::give(tree.path());
    OrdinaryUser::give(file);
    const OrdinaryUser user;
    historyfile::append(file, "two\n");
    QVERIFY(QFile::setPermissions(file, QFile::WriteOwner));
    historyfile::append(file, "three\n");
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner));
    historyfile::append(file, "four\n");
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
    historyfile::append(file, "five\n");
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray("two\nfive\n"));
}

void TestHistoryFile::fullDiskLeavesTheFileAsItWas_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<int>("room");
    QTest::newRow("no room: the write fails") << QByteArray("one\n") << 0;
    QTest::newRow("room for one byte: the write comes short") << QByteArray("one\n") << 1;
    QTest::newRow("room for all but one byte") << QByteArray("one\n") << 3;
    QTest::newRow("new file") << QByteArray() << 2;
}

void TestHistoryFile::fullDiskLeavesTheFileAsItWas()
{
    QFETCH(QByteArray, before);
    QFETCH(int, room);
    tree.makeFile(QStringLiteral("history"), before);
    {
        const FullDisk disk(static_cast<rlim_t>(before.size() + room));
        historyfile::append(file, "two\n");
    }
    QCOMPARE(TemporaryTree::contentsOf(file), before);
    historyfile::append(file, "three\n");
    QCOMPARE(TemporaryTree::contentsOf(file), before + "three\n");
}

/// An entry in a fifo would be lost once somebody reads it.
void TestHistoryFile::fifoInItsPlaceGetsNothing()
{
    const QString fifo = tree.makeFifo(QStringLiteral("fifo"));
    // Open while the entry comes, so that what is written stays in the fifo.
    const int held = ::open(QFile::encodeName(fifo).constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    QVERIFY(held >= 0);
    historyfile::append(fifo, "one\n");
    char byte = 0;
    const ssize_t count = ::read(held, &byte, 1);
    ::close(held);
    QCOMPARE(count, ssize_t{-1});
}

TEST_SUITE(historyfile, TestHistoryFile)
#include "historyfile.moc"
