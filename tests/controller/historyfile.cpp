// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/historyfile.h"
#include "ordinaryuser.h"
#include "suites.h"
#include "temporarytree.h"

#include <QDir>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using testsupport::OrdinaryUser;
using testsupport::TemporaryTree;

namespace
{

QDateTime someTime()
{
    return QDateTime(QDate(2024, 1, 2), QTime(3, 4, 5));
}

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

/// Gives its text and then only errors, as a file on a bad disk, which never comes to its end.
class BadDisk : public QIODevice
{
public:
    BadDisk(const QByteArray &text, std::atomic<bool> &endless)
        : rest(text)
        , tooMany(endless)
    {
        open(ReadOnly | Text);
    }
    bool atEnd() const override { return false; }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        constexpr int mostErrors = 1000;
        if (rest.isEmpty()) {
            tooMany = ++errors > mostErrors;
            return -1;
        }
        const int count = static_cast<int>(qMin<qint64>(maxSize, rest.size()));
        std::copy_n(rest.constData(), count, data);
        rest.remove(0, count);
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray rest;
    std::atomic<bool> &tooMany;
    int errors = 0;
};

} // namespace

class TestHistoryFile : public QObject
{
    Q_OBJECT

private slots:
    void init() { maskBefore = ::umask(0); } // what is made has the mode that was asked for
    void cleanup() { ::umask(maskBefore); }

    void entryIsTimeNameAndFolder();
    void entryOfAnUnusualPathIsItsNameAndAbsoluteFolder_data();
    void entryOfAnUnusualPathIsItsNameAndAbsoluteFolder();
    void entryHasThreeLinesWhateverTheNameHolds_data();
    void entryHasThreeLinesWhateverTheNameHolds();
    void folderWithLineBreaksStaysOnOneLine();
    void firstEntryMakesTheFile();
    void entriesAreAppended();
    void deletedHistoryIsMadeAnew();
    void replacedHistoryGetsTheNextEntry();
    void otherFileGetsItsOwnEntry();
    void historyThatMayNotBeReadAnyMoreGetsNothing();
    void historyIsClosedAfterAnEntry();
    void historyIsMadeForItsOwnerAlone();
    void historyThatExistsKeepsItsMode();
    void fullDiskLeavesTheFileAsItWas_data();
    void fullDiskLeavesTheFileAsItWas();
    void fullDiskLeavesANewFileEmpty();
    void folderInItsPlaceIsLeftAlone();
    void missingFolderIsSilent();
    void bytesThatAreNotUtf8AreKept();
    void onlyARegularFileIsLoaded();
    void onlyAFileToReadAndWriteIsLoaded();
    void fifoInItsPlaceGetsNothing();
    void readErrorEndsTheReading();
    void clipboardTextIsOneLineAnEntry();
    void clipboardTextLeavesOutAnIncompleteEntry_data();
    void clipboardTextLeavesOutAnIncompleteEntry();

private:
    mode_t maskBefore = 0;
};

void TestHistoryFile::entryIsTimeNameAndFolder()
{
    QCOMPARE(historyfile::entryFor(QStringLiteral("/home/u/a.txt"), someTime()),
             QByteArray("2024-01-02 03:04:05\na.txt\n/home/u\n"));
}

void TestHistoryFile::entryOfAnUnusualPathIsItsNameAndAbsoluteFolder_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("folder");
    const auto row = [](const QString &path, const QString &name, const QString &folder) {
        QTest::newRow(qPrintable(path)) << path << name << folder;
    };
    const QString here = QDir::currentPath();
    row(QStringLiteral("/"), QString(), QStringLiteral("/"));
    row(QStringLiteral("/a"), QStringLiteral("a"), QStringLiteral("/"));
    row(QStringLiteral("//a"), QStringLiteral("a"), QStringLiteral("/"));
    row(QStringLiteral("/a/"), QString(), QStringLiteral("/a"));
    row(QStringLiteral("/a//b"), QStringLiteral("b"), QStringLiteral("/a"));
    row(QStringLiteral("/a/./b"), QStringLiteral("b"), QStringLiteral("/a"));
    row(QStringLiteral("/a/../b"), QStringLiteral("b"), QStringLiteral("/"));
    row(QStringLiteral("a"), QStringLiteral("a"), here);
    row(QStringLiteral("a/b"), QStringLiteral("b"), here + QStringLiteral("/a"));
}

void TestHistoryFile::entryOfAnUnusualPathIsItsNameAndAbsoluteFolder()
{
    QFETCH(QString, path);
    QFETCH(QString, name);
    QFETCH(QString, folder);
    const QString lines = QStringLiteral("2024-01-02 03:04:05\n%1\n%2\n").arg(name, folder);
    QCOMPARE(QString::fromUtf8(historyfile::entryFor(path, someTime())), lines);
}

void TestHistoryFile::entryHasThreeLinesWhateverTheNameHolds_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("line");
    const auto plain = [](const char *title, const QString &name) {
        QTest::newRow(title) << name << name;
    };
    plain("blanks", QStringLiteral("a b  c"));
    plain("quotes", QStringLiteral("'a' \"b\" `c`"));
    plain("percent signs", QStringLiteral("100%s %n %1"));
    plain("Chinese", QStringLiteral("粉碎记录.txt"));
    plain("emoji", QStringLiteral("🗑️.txt"));
    plain("tab", QStringLiteral("a\tb"));
    plain("what some take for a line break", QStringLiteral("a\rb\u2028c\u2029d\u0085e\vf\fg"));
    QTest::newRow("line feeds") << QStringLiteral("a\nb\n\nc") << QStringLiteral("a␤b␤␤c");
    QTest::newRow("carriage return") << QStringLiteral("a\r\nb") << QStringLiteral("a\r␤b");
}

void TestHistoryFile::entryHasThreeLinesWhateverTheNameHolds()
{
    QFETCH(QString, name);
    QFETCH(QString, line);
    const QString path = QStringLiteral("/home/u/") + name;
    QCOMPARE(
        QString::fromUtf8(historyfile::entryFor(path, someTime())),
        QString(QStringLiteral("2024-01-02 03:04:05\n") + line + QStringLiteral("\n/home/u\n")));
}

void TestHistoryFile::folderWithLineBreaksStaysOnOneLine()
{
    QCOMPARE(historyfile::entryFor(QStringLiteral("/home/x\ny/a.txt"), someTime()),
             QByteArray("2024-01-02 03:04:05\na.txt\n/home/x␤y\n"));
}

void TestHistoryFile::firstEntryMakesTheFile()
{
    const TemporaryTree tree;
    historyfile::append(tree.path(QStringLiteral("history")), "one\n");
    QCOMPARE(TemporaryTree::contentsOf(tree.path(QStringLiteral("history"))), QByteArray("one\n"));
}

void TestHistoryFile::entriesAreAppended()
{
    const TemporaryTree tree;
    const QString file = tree.makeFile(QStringLiteral("history"), QByteArray("one\n"));
    historyfile::append(file, "two\n");
    historyfile::append(file, "three\n");
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray("one\ntwo\nthree\n"));
}

void TestHistoryFile::deletedHistoryIsMadeAnew()
{
    const TemporaryTree tree;
    const QString file = tree.path(QStringLiteral("history"));
    historyfile::append(file, "one\n");
    QVERIFY(QFile::remove(file));
    historyfile::append(file, "two\n");
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray("two\n"));
}

void TestHistoryFile::replacedHistoryGetsTheNextEntry()
{
    const TemporaryTree tree;
    const QString file = tree.path(QStringLiteral("history"));
    historyfile::append(file, "one\n");
    const QString kept = tree.path(QStringLiteral("kept"));
    QVERIFY(QFile::rename(file, kept));
    tree.makeFile(QStringLiteral("history"), QByteArray("other\n"));
    historyfile::append(file, "two\n");
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray("other\ntwo\n"));
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray("one\n"));
}

void TestHistoryFile::otherFileGetsItsOwnEntry()
{
    const TemporaryTree tree;
    const QString file = tree.path(QStringLiteral("history"));
    const QString other = tree.path(QStringLiteral("other"));
    historyfile::append(file, "one\n");
    historyfile::append(other, "two\n");
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray("one\n"));
    QCOMPARE(TemporaryTree::contentsOf(other), QByteArray("two\n"));
}

void TestHistoryFile::historyThatMayNotBeReadAnyMoreGetsNothing()
{
    const TemporaryTree tree;
    const QString file = tree.makeFile(QStringLiteral("history"), QByteArray("one\n"));
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
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray("one\ntwo\nfive\n"));
}

/// A deleted history that somebody holds open still takes its space on the disk.
void TestHistoryFile::historyIsClosedAfterAnEntry()
{
    const TemporaryTree tree;
    const QString file = tree.path(QStringLiteral("history"));
    historyfile::append(file, "one\n");
    QVERIFY(!openFiles().contains(file));
}

void TestHistoryFile::historyIsMadeForItsOwnerAlone()
{
    const TemporaryTree tree;
    const QString file = tree.path(QStringLiteral("history"));
    historyfile::append(file, "one\n");
    QCOMPARE(modeOf(file), mode_t{S_IRUSR | S_IWUSR});
}

void TestHistoryFile::historyThatExistsKeepsItsMode()
{
    const TemporaryTree tree;
    const QString file = tree.makeFile(QStringLiteral("history"), QByteArray("one\n"));
    const mode_t wide = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH;
    QCOMPARE(::chmod(QFile::encodeName(file).constData(), wide), 0);
    historyfile::append(file, "two\n");
    QCOMPARE(modeOf(file), wide);
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray("one\ntwo\n"));
}

void TestHistoryFile::fullDiskLeavesTheFileAsItWas_data()
{
    QTest::addColumn<int>("room");
    QTest::newRow("no room: the write fails") << 0;
    QTest::newRow("room for one byte: the write comes short") << 1;
    QTest::newRow("room for all but one byte") << 3;
}

void TestHistoryFile::fullDiskLeavesTheFileAsItWas()
{
    QFETCH(int, room);
    const TemporaryTree tree;
    const QByteArray before("one\n");
    const QString file = tree.makeFile(QStringLiteral("history"), before);
    {
        const FullDisk disk(static_cast<rlim_t>(before.size() + room));
        historyfile::append(file, "two\n");
    }
    QCOMPARE(TemporaryTree::contentsOf(file), before);
    historyfile::append(file, "three\n");
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray("one\nthree\n"));
}

void TestHistoryFile::fullDiskLeavesANewFileEmpty()
{
    const TemporaryTree tree;
    const QString file = tree.path(QStringLiteral("history"));
    {
        const FullDisk disk(2);
        historyfile::append(file, "one\n");
    }
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray());
}

void TestHistoryFile::folderInItsPlaceIsLeftAlone()
{
    const TemporaryTree tree;
    const QString folder = tree.makeFolder(QStringLiteral("history"));
    historyfile::append(folder, "one\n");
    QVERIFY(QFileInfo(folder).isDir());
    QVERIFY(QDir(folder).isEmpty());
}

void TestHistoryFile::missingFolderIsSilent()
{
    const TemporaryTree tree;
    historyfile::append(tree.path(QStringLiteral("none/history")), "one\n");
    QVERIFY(QDir(tree.path()).isEmpty());
}

void TestHistoryFile::bytesThatAreNotUtf8AreKept()
{
    const TemporaryTree tree;
    const QByteArray before("\xff\xfe\x80\n");
    const QString file = tree.makeFile(QStringLiteral("history"), before);
    historyfile::append(file, "one\n");
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray(before + "one\n"));
}

void TestHistoryFile::onlyARegularFileIsLoaded()
{
    const TemporaryTree tree;
    const std::atomic<bool> aborted{false};
    const QString file = tree.makeFile(QStringLiteral("file"), QByteArray("one\n"));
    QCOMPARE(historyfile::load(file, aborted), QStringList{QStringLiteral("one")});
    const QString missing = tree.path(QStringLiteral("missing"));
    QCOMPARE(historyfile::load(missing, aborted), QStringList());
    QVERIFY(!QFile::exists(missing));
    QCOMPARE(historyfile::load(tree.path(), aborted), QStringList());
    QCOMPARE(historyfile::load(tree.makeFifo(QStringLiteral("fifo")), aborted), QStringList());
}

void TestHistoryFile::onlyAFileToReadAndWriteIsLoaded()
{
    const TemporaryTree tree;
    const std::atomic<bool> aborted{false};
    const QString file = tree.makeFile(QStringLiteral("file"), QByteArray("one\n"));
    OrdinaryUser::give(tree.path());
    OrdinaryUser::give(file);
    const OrdinaryUser user;
    for (const QFile::Permissions permissions :
         {QFile::Permissions(), QFile::Permissions(QFile::ReadOwner),
          QFile::Permissions(QFile::WriteOwner)}) {
        QVERIFY(QFile::setPermissions(file, permissions));
        QCOMPARE(historyfile::load(file, aborted), QStringList());
    }
    QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
    QCOMPARE(historyfile::load(file, aborted), QStringList{QStringLiteral("one")});
}

/// An entry in a fifo would be lost once somebody reads it.
void TestHistoryFile::fifoInItsPlaceGetsNothing()
{
    const TemporaryTree tree;
    const QString fifo = tree.makeFifo(QStringLiteral("history"));
    // Open while the entry comes, so that what is written stays in the fifo.
    const int held = ::open(QFile::encodeName(fifo).constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    QVERIFY(held >= 0);
    historyfile::append(fifo, "one\n");
    char byte = 0;
    const ssize_t count = ::read(held, &byte, 1);
    ::close(held);
    QCOMPARE(count, ssize_t{-1});
}

void TestHistoryFile::readErrorEndsTheReading()
{
    std::atomic<bool> endless{false};
    BadDisk disk("one\n\n  two\nthr", endless);
    const QStringList lines = historyfile::linesOf(disk, endless);
    QVERIFY(!endless);
    QCOMPARE(lines, (QStringList{QStringLiteral("one"), QString(), QStringLiteral("two"),
                                 QStringLiteral("thr")}));
}

void TestHistoryFile::clipboardTextIsOneLineAnEntry()
{
    const QStringList lines{
        QStringLiteral("2024-01-02 03:04:05"),
        QStringLiteral("a.txt"),
        QStringLiteral("/home/u"),
        QStringLiteral("2024-01-02 03:04:06"),
        QStringLiteral("粉碎 🗑.txt"),
        QStringLiteral("/"),
    };
    QCOMPARE(historyfile::clipboardText(lines).toUtf8(),
             QByteArray("日期：2024-01-02 03:04:05\t已粉碎的文件或目录名：a.txt\t路径：/home/u\n"
                        "日期：2024-01-02 03:04:06\t已粉碎的文件或目录名：粉碎 "
                        "🗑.txt\t路径：/\n"));
}

void TestHistoryFile::clipboardTextLeavesOutAnIncompleteEntry_data()
{
    QTest::addColumn<int>("lines");
    QTest::addColumn<int>("entries");
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("one line") << 1 << 0;
    QTest::newRow("two lines") << 2 << 0;
    QTest::newRow("three lines") << 3 << 1;
    QTest::newRow("five lines") << 5 << 1;
    QTest::newRow("seven lines") << 7 << 2;
}

void TestHistoryFile::clipboardTextLeavesOutAnIncompleteEntry()
{
    QFETCH(int, lines);
    QFETCH(int, entries);
    QStringList list;
    for (int number = 0; number < lines; ++number)
        list.append(QString::number(number));
    QCOMPARE(historyfile::clipboardText(list).count(QLatin1Char('\n')), entries);
}

TEST_SUITE(historyfile, TestHistoryFile)
#include "historyfile.moc"
