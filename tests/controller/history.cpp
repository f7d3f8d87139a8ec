// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Recording what was removed, and clearing the record.

#include "controller/homedirectory.h"
#include "engine/filecrusher.h"
#include "suites.h"
#include "walletest.h"

#include <QAbstractEventDispatcher>
#include <QDateTime>

#include <thread>

using testsupport::entryExists;
using testsupport::OrdinaryUser;
using testsupport::SignalRecords;
using testsupport::WalleTest;

class TestHistory : public WalleTest
{
    Q_OBJECT

private slots:
    void historyLiesInTheHomeOfTheUserDatabase();
    void userWithoutAnEntryHasNoHome();
    void shreddedFileIsRecordedWithTimeNameAndFolder();
    void everythingRemovedFromAFolderIsRecorded();
    void emptyPathAndOneThatStillExistsAreNotRecorded();
    void failedRowIsNotRecorded();
    void recordingSaysNothing();
    void unreadableHistoryIsLeftAloneAndShreddingGoesOn();
    void folderInPlaceOfTheHistoryStaysAndShreddingGoesOn();
    void homeThatCannotBeWrittenIsSilent();
    void clearingRemovesTheFileAndSaysNothing();
    void recordingGoesOnAfterClearing();
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

void TestHistory::everythingRemovedFromAFolderIsRecorded()
{
    make("folder/sub/file");
    shred(tree->path(QStringLiteral("folder")));
    const QByteArray top = tree->path().toUtf8();
    const QByteArrayList lines = home.historyLines();
    QCOMPARE(lines.size(), 9);
    QCOMPARE(lines.mid(1, 2), (QByteArrayList{"file", top + "/folder/sub"}));
    QCOMPARE(lines.mid(4, 2), (QByteArrayList{"sub", top + "/folder"}));
    QCOMPARE(lines.mid(7, 2), (QByteArrayList{"folder", top}));
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

void TestHistory::failedRowIsNotRecorded()
{
    shred(makeStubborn("folder"));
    QVERIFY(!entryExists(home.historyFile()));
}

void TestHistory::recordingSaysNothing()
{
    QCOMPARE(harness->answerTo([this] { record("/nonexistent/file"); }), SignalRecords());
    QCOMPARE(home.historyLines().mid(1), (QByteArrayList{"file", "/nonexistent"}));
}

void TestHistory::unreadableHistoryIsLeftAloneAndShreddingGoesOn()
{
    const QString file = make("file");
    OrdinaryUser::give(tree->path());
    OrdinaryUser::give(file);
    home.writeHistory("one\n");
    OrdinaryUser::give(home.historyFile());
    QVERIFY(QFile::setPermissions(home.historyFile(), QFile::WriteOwner));
    {
        const OrdinaryUser user;
        shred(file);
        QVERIFY(!entryExists(file));
    }
    QVERIFY(QFile::setPermissions(home.historyFile(), QFile::ReadOwner));
    QCOMPARE(home.history(), QByteArray("one\n"));
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
    const QFile::Permissions readable = QFile::ReadOwner | QFile::ExeOwner;
    QVERIFY(QFile::setPermissions(home.path(), readable));
    {
        const OrdinaryUser user;
        record("/nonexistent/file");
    }
    QVERIFY(QFile::setPermissions(home.path(), readable | QFile::WriteOwner));
    QVERIFY(!entryExists(home.historyFile()));
}

void TestHistory::clearingRemovesTheFileAndSaysNothing()
{
    home.writeHistory("one\ntwo\nthree\n");
    // The second finds none.
    QCOMPARE(answerTo({CommandClearHistory, CommandClearHistory}), SignalRecords());
    QVERIFY(!entryExists(home.historyFile()));
}

void TestHistory::recordingGoesOnAfterClearing()
{
    record("/nonexistent/one");
    answerTo({CommandClearHistory});
    record("/nonexistent/two");
    QCOMPARE(home.historyLines().mid(1), (QByteArrayList{"two", "/nonexistent"}));
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
    const QString removed = tree->path(QStringLiteral("removed"));
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
