// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The form of an entry, what happens to the file when one is appended, which removals are recorded,
// and clearing the record.

#include "controller/historyfile.h"
#include "controller/homedirectory.h"
#include "engine/filecrusher.h"
#include "suites.h"
#include "systemcalls.h"
#include "walleharness.h"

#include <QAbstractEventDispatcher>
#include <QDateTime>

#include <cerrno>
#include <filesystem>
#include <thread>

#include <dlfcn.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

using testsupport::CallFate;
using testsupport::CallHook;
using testsupport::CallKind;
using testsupport::entryExists;
using testsupport::OrdinaryUser;
using testsupport::SignalRecords;
using testsupport::SystemCall;
using testsupport::WalleTest;

constexpr uid_t nobodyKnown = 54321;

/// Says of a user without an entry what the C library says; nss_wrapper says that it failed.
int getpwuid_r(uid_t id, passwd *entry, char *buffer, size_t size, passwd **found)
{
    static const auto next =
        reinterpret_cast<decltype(&getpwuid_r)>(::dlsym(RTLD_NEXT, "getpwuid_r"));
    *found = nullptr;
    return id == nobodyKnown ? 0 : next(id, entry, buffer, size, found);
}

class TestHistory : public WalleTest
{
    Q_OBJECT

private slots:
    void entryIsTimeNameAndAbsoluteFolder();
    void historyIsMadeForItsOwnerAloneAndClosed();
    void entryIsAppendedAndNothingElseChanged();
    void onlyAFileToReadAndWriteGetsAnEntry();
    void fullDiskLeavesTheFileAsItWas_data();
    void fullDiskLeavesTheFileAsItWas();
    void fifoInItsPlaceGetsNothing();

    void historyLiesInTheHomeOfTheUserDatabase();
    void userWithoutAnEntryHasNoHome();
    void shreddedFileIsRecordedWithTimeNameAndFolder();
    void emptyPathAndOneThatStillExistsAreNotRecorded();
    void folderInPlaceOfTheHistoryStaysAndShreddingGoesOn();
    void homeThatCannotBeWrittenIsSilent();
    void clearingRemovesTheFileAndSaysNothing();
    void historyThatCannotBeWrittenIsNotCleared();
    void whatWasReportedBeforeTheWindowWentIsRecorded();

private:
    void append(const char *entry) const { historyfile::append(home.historyFile(), entry); }
    void setMode(fs::perms mode) const { fs::permissions(home.historyFile().toStdString(), mode); }
    fs::perms mode() const { return fs::status(home.historyFile().toStdString()).permissions(); }
    void shred(const QString &path)
    {
        QVERIFY(admitted({path}));
        answerToRun();
    }

    const fs::perms readable = fs::perms::owner_read;
    const fs::perms writable = fs::perms::owner_write;
};

void TestHistory::entryIsTimeNameAndAbsoluteFolder()
{
    const auto compare = [](const QByteArray &path, const QByteArray &name,
                            const QByteArray &folder) {
        const QDateTime time(QDate(2024, 1, 2), QTime(3, 4, 5));
        QCOMPARE(historyfile::entryFor(QString::fromUtf8(path), time),
                 "2024-01-02 03:04:05\n" + name + '\n' + folder + '\n');
    };
    compare("/home/u/a.txt", "a.txt", "/home/u");
    compare("/", "", "/");
    compare("/a", "a", "/");
    compare("//a", "a", "/");
    compare("/a/", "", "/a");
    compare("/a//b", "b", "/a");
    compare("/a/./b", "b", "/a");
    compare("/a/../b", "b", "/");
    compare("a/b", "b", QDir::currentPath().toUtf8() + "/a");
    compare("/x\ny/a\nb\n\nc", "a␤b␤␤c", "/x␤y");
    compare("/h/a\r\nb", "a\r␤b", "/h");
    for (const char *name : {"a b  c", "'a' \"b\" `c`", "100%s %n %1", "粉碎记录.txt",
                             "🗑️.txt", "a\tb", "a\rb\u2028c\u2029d\u0085e\vf\fg"})
        compare(QByteArray("/h/") + name, name, "/h");
}

/// A deleted history that somebody holds open would still take its space on the disk.
void TestHistory::historyIsMadeForItsOwnerAloneAndClosed()
{
    const mode_t maskBefore = ::umask(0); // so the mode is the one that is asked for
    append("one\n");
    ::umask(maskBefore);
    QVERIFY(mode() == (readable | writable));
    QCOMPARE(home.history(), QByteArray("one\n"));
    std::error_code gone;
    for (const auto &descriptor : fs::directory_iterator("/proc/self/fd"))
        QVERIFY(fs::read_symlink(descriptor, gone) != home.historyFile().toStdString());
}

void TestHistory::entryIsAppendedAndNothingElseChanged()
{
    const QByteArray notUtf8("\xff\xfe\x80\n");
    const fs::perms wide = readable | writable | fs::perms::group_read | fs::perms::others_read;
    home.writeHistory(notUtf8);
    setMode(wide);
    append("one\n");
    append("two\n");
    QCOMPARE(home.history(), notUtf8 + "one\ntwo\n");
    QVERIFY(mode() == wide);
}

void TestHistory::onlyAFileToReadAndWriteGetsAnEntry()
{
    home.writeHistory("");
    OrdinaryUser::give(home.historyFile());
    const OrdinaryUser user;
    append("two\n");
    setMode(writable);
    append("three\n");
    setMode(readable);
    append("four\n");
    setMode(readable | writable);
    append("five\n");
    QCOMPARE(home.history(), QByteArray("two\nfive\n"));
}

void TestHistory::fullDiskLeavesTheFileAsItWas_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<int>("error");
    QTest::newRow("no room: the write fails") << QByteArray("one\n") << ENOSPC;
    QTest::newRow("some room: the write comes short") << QByteArray("one\n") << 0;
    QTest::newRow("new file") << QByteArray() << 0;
}

void TestHistory::fullDiskLeavesTheFileAsItWas()
{
    QFETCH(QByteArray, before);
    QFETCH(int, error);
    home.writeHistory(before);
    {
        const CallHook hook([error](const SystemCall &call) {
            return call.kind == CallKind::Write ? CallFate{error, error == 0} : CallFate();
        });
        append("two\n");
    }
    QCOMPARE(home.history(), before);
    append("three\n");
    QCOMPARE(home.history(), before + "three\n");
}

/// An entry in a fifo would be lost once somebody reads it.
void TestHistory::fifoInItsPlaceGetsNothing()
{
    const QString fifo = tree->makeFifo("fifo");
    // Open while the entry comes, so that what is written stays in the fifo.
    const int reader = ::open(QFile::encodeName(fifo).constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    QVERIFY(reader >= 0);
    historyfile::append(fifo, "one\n");
    char byte = 0;
    const ssize_t count = ::read(reader, &byte, 1);
    ::close(reader);
    QCOMPARE(count, ssize_t{-1});
}

void TestHistory::historyLiesInTheHomeOfTheUserDatabase()
{
    qputenv("HOME", "/nonexistent");
    QCOMPARE(Walle::historyFilePath(), home.path() + QStringLiteral("/.fileshredderEx.dat"));
    QCOMPARE(homeDirectoryOf(OrdinaryUser::id()), home.path());
}

void TestHistory::userWithoutAnEntryHasNoHome()
{
    QCOMPARE(homeDirectoryOf(nobodyKnown), QString());
}

void TestHistory::shreddedFileIsRecordedWithTimeNameAndFolder()
{
    const QString form = QStringLiteral("yyyy-MM-dd HH:mm:ss");
    const QString before = QDateTime::currentDateTime().toString(form);
    shred(make("a.txt"));
    const QString after = QDateTime::currentDateTime().toString(form);

    const QByteArrayList lines = home.historyLines();
    QCOMPARE(lines.size(), 3);
    const QString time = QString::fromUtf8(lines.first());
    QVERIFY(before <= time && time <= after);
    QCOMPARE(time.size(), form.size());
    QCOMPARE(lines.at(1), QByteArray("a.txt"));
    QCOMPARE(lines.at(2), tree->path().toUtf8());
}

void TestHistory::emptyPathAndOneThatStillExistsAreNotRecorded()
{
    const QString file = make("file");
    walle->addToHistoryWalle(QString());
    walle->addToHistoryWalle(file);
    QVERIFY(!entryExists(home.historyFile()));
    QVERIFY(QFile::remove(file));
    walle->addToHistoryWalle(file);
    QCOMPARE(home.historyLines().size(), 3);
}

void TestHistory::folderInPlaceOfTheHistoryStaysAndShreddingGoesOn()
{
    QVERIFY(QDir().mkdir(home.historyFile()));
    const QString file = make("file");
    shred(file);
    QVERIFY(!entryExists(file));
    answerTo({CommandClearHistory});
    QVERIFY(QFileInfo(home.historyFile()).isDir() && QDir(home.historyFile()).isEmpty());
}

void TestHistory::homeThatCannotBeWrittenIsSilent()
{
    const std::string folder = home.path().toStdString();
    fs::permissions(folder, readable | fs::perms::owner_exec);
    SignalRecords answer;
    {
        const OrdinaryUser user;
        answer = answerTo([&] { walle->addToHistoryWalle(tree->path("removed")); });
    }
    fs::permissions(folder, fs::perms::owner_all);
    QCOMPARE(answer, SignalRecords());
    QVERIFY(!entryExists(home.historyFile()));
}

void TestHistory::clearingRemovesTheFileAndSaysNothing()
{
    home.writeHistory("one\ntwo\nthree\n");
    // The second finds none.
    QCOMPARE(answerTo({CommandClearHistory, CommandClearHistory}), SignalRecords());
    QVERIFY(!entryExists(home.historyFile()));
}

void TestHistory::historyThatCannotBeWrittenIsNotCleared()
{
    home.writeHistory("one\ntwo\nthree\n");
    OrdinaryUser::give(home.historyFile());
    setMode(readable);
    {
        const OrdinaryUser user;
        answerTo({CommandClearHistory});
    }
    QCOMPARE(home.history(), QByteArray("one\ntwo\nthree\n"));
}

/// The report is in the event queue, the worker waits, and the event loop has ended.
void TestHistory::whatWasReportedBeforeTheWindowWentIsRecorded()
{
    const QString removed = tree->path("removed");
    QCoreApplication::processEvents();
    std::thread reporter([this, removed] { emit worker->addToHistory(removed); });
    while (!QAbstractEventDispatcher::instance()->hasPendingEvents())
        std::this_thread::yield();
    walle->shutDown();
    const QByteArrayList lines = home.historyLines();
    QCoreApplication::processEvents();
    reporter.join();
    QCOMPARE(lines.value(1), QByteArray("removed"));
}

TEST_SUITE(history, TestHistory)
#include "history.moc"
