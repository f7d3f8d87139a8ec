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
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using testsupport::CallFate;
using testsupport::CallHook;
using testsupport::CallKind;
using testsupport::entryExists;
using testsupport::OrdinaryUser;
using testsupport::SignalRecords;
using testsupport::SystemCall;
using testsupport::WalleTest;

namespace
{

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    ::stat(QFile::encodeName(path).constData(), &status);
    return status.st_mode & ALLPERMS;
}

} // namespace

class TestHistory : public WalleTest
{
    Q_OBJECT

private slots:
    void entryIsTimeNameAndAbsoluteFolder_data();
    void entryIsTimeNameAndAbsoluteFolder();
    void historyIsMadeForItsOwnerAlone();
    void entryIsAppendedAndNothingElseChanged();
    void historyIsClosedAfterAnEntry();
    void onlyAFileToReadAndWriteGetsAnEntry();
    void fullDiskLeavesTheFileAsItWas_data();
    void fullDiskLeavesTheFileAsItWas();
    void fifoInItsPlaceGetsNothing();

    void historyLiesInTheHomeOfTheUserDatabase();
    void userWithoutAnEntryHasNoHome();
    void shreddedFileIsRecordedWithTimeNameAndFolder();
    void emptyPathAndOneThatStillExistsAreNotRecorded();
    void folderInPlaceOfTheHistoryStaysAndShreddingGoesOn();
    void clearingRemovesTheFileAndSaysNothing();
    void historyThatCannotBeWrittenIsNotCleared();
    void whatWasReportedBeforeTheWindowWentIsRecorded();

private:
    void shred(const QString &path);
    void record(const char *path) const
    {
        harness->walle().addToHistoryWalle(QString::fromUtf8(path));
    }
};

void TestHistory::shred(const QString &path)
{
    QVERIFY(harness->admitted({path}));
    answerToRun();
}

void TestHistory::entryIsTimeNameAndAbsoluteFolder_data()
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

void TestHistory::entryIsTimeNameAndAbsoluteFolder()
{
    QFETCH(QString, path);
    QFETCH(QString, name);
    QFETCH(QString, folder);
    const QDateTime time(QDate(2024, 1, 2), QTime(3, 4, 5));
    QCOMPARE(QString::fromUtf8(historyfile::entryFor(path, time)),
             QStringLiteral("2024-01-02 03:04:05\n") + name + QLatin1Char('\n') + folder
                 + QLatin1Char('\n'));
}

void TestHistory::historyIsMadeForItsOwnerAlone()
{
    const mode_t maskBefore = ::umask(0); // so the mode is the one that is asked for
    historyfile::append(home.historyFile(), "one\n");
    ::umask(maskBefore);
    QCOMPARE(modeOf(home.historyFile()), mode_t{S_IRUSR | S_IWUSR});
    QCOMPARE(home.history(), QByteArray("one\n"));
}

void TestHistory::entryIsAppendedAndNothingElseChanged()
{
    const QByteArray notUtf8("\xff\xfe\x80\n");
    home.writeHistory(notUtf8);
    const mode_t wide = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH;
    QCOMPARE(::chmod(QFile::encodeName(home.historyFile()).constData(), wide), 0);
    historyfile::append(home.historyFile(), "one\n");
    historyfile::append(home.historyFile(), "two\n");
    QCOMPARE(home.history(), notUtf8 + "one\ntwo\n");
    QCOMPARE(modeOf(home.historyFile()), wide);
}

/// A deleted history that somebody holds open still takes its space on the disk.
void TestHistory::historyIsClosedAfterAnEntry()
{
    historyfile::append(home.historyFile(), "one\n");
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    const QFileInfoList open = descriptors.entryInfoList(QDir::Files | QDir::System);
    for (const QFileInfo &descriptor : open)
        QVERIFY(descriptor.symLinkTarget() != home.historyFile());
}

void TestHistory::onlyAFileToReadAndWriteGetsAnEntry()
{
    home.writeHistory("");
    OrdinaryUser::give(home.historyFile());
    const OrdinaryUser user;
    historyfile::append(home.historyFile(), "two\n");
    QVERIFY(QFile::setPermissions(home.historyFile(), QFile::WriteOwner));
    historyfile::append(home.historyFile(), "three\n");
    QVERIFY(QFile::setPermissions(home.historyFile(), QFile::ReadOwner));
    historyfile::append(home.historyFile(), "four\n");
    QVERIFY(QFile::setPermissions(home.historyFile(), QFile::ReadOwner | QFile::WriteOwner));
    historyfile::append(home.historyFile(), "five\n");
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
        historyfile::append(home.historyFile(), "two\n");
    }
    QCOMPARE(home.history(), before);
    historyfile::append(home.historyFile(), "three\n");
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
    constexpr uid_t nobodyKnown = 54321;
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
    record("");
    harness->walle().addToHistoryWalle(file);
    QVERIFY(!entryExists(home.historyFile()));
    QVERIFY(QFile::remove(file));
    harness->walle().addToHistoryWalle(file);
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
    QVERIFY(QFile::setPermissions(home.historyFile(), QFile::ReadOwner));
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
    auto *worker = harness->walle().findChild<FileCrusher *>();
    QCoreApplication::processEvents();
    std::thread reporter([worker, removed] { emit worker->addToHistory(removed); });
    while (!QAbstractEventDispatcher::instance()->hasPendingEvents())
        std::this_thread::yield();
    harness->walle().shutDown();
    const QByteArrayList lines = home.historyLines();
    QCoreApplication::processEvents();
    reporter.join();
    QCOMPARE(lines.value(1), QByteArray("removed"));
}

TEST_SUITE(history, TestHistory)
#include "history.moc"
