// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/historyfile.h"
#include "suites.h"
#include "temporarytree.h"

#include <QtTest>

#include <algorithm>
#include <atomic>
#include <csignal>

#include <sys/resource.h>
#include <unistd.h>

using testsupport::TemporaryTree;

namespace
{

QDateTime someTime()
{
    return QDateTime(QDate(2024, 1, 2), QTime(3, 4, 5));
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
    void entryIsTimeNameAndFolder();
    void entryHasThreeLinesWhateverTheNameHolds_data();
    void entryHasThreeLinesWhateverTheNameHolds();
    void folderWithLineBreaksStaysOnOneLine();
    void firstEntryMakesTheFile();
    void entriesAreAppended();
    void fullDiskLeavesTheFileAsItWas_data();
    void fullDiskLeavesTheFileAsItWas();
    void fullDiskLeavesANewFileEmpty();
    void folderInItsPlaceIsLeftAlone();
    void missingFolderIsSilent();
    void bytesThatAreNotUtf8AreKept();
    void usableMeansARegularFileToReadAndWrite();
    void readErrorEndsTheReading();
    void clipboardTextIsOneLineAnEntry();
    void clipboardTextLeavesOutAnIncompleteEntry_data();
    void clipboardTextLeavesOutAnIncompleteEntry();
};

void TestHistoryFile::entryIsTimeNameAndFolder()
{
    QCOMPARE(historyfile::entryFor(QStringLiteral("/home/u/a.txt"), someTime()),
             QByteArray("2024-01-02 03:04:05\na.txt\n/home/u\n"));
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

void TestHistoryFile::usableMeansARegularFileToReadAndWrite()
{
    const TemporaryTree tree;
    QVERIFY(historyfile::isUsable(tree.makeFile(QStringLiteral("file"), 0)));
    QVERIFY(!historyfile::isUsable(tree.path(QStringLiteral("missing"))));
    QVERIFY(!historyfile::isUsable(tree.path()));
    QVERIFY(!historyfile::isUsable(tree.makeFifo(QStringLiteral("fifo"))));
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
