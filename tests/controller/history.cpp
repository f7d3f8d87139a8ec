// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Recording what was removed, and clearing the record.

#include "controller/homedirectory.h"
#include "engine/filecrusher.h"
#include "sandboxhome.h"
#include "suites.h"
#include "temporarytree.h"
#include "walleharness.h"

#include <QAbstractEventDispatcher>
#include <QDateTime>
#include <QtTest>

#include <memory>
#include <thread>

using testsupport::entryExists;
using testsupport::OrdinaryUser;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;
using testsupport::WalleHarness;

class TestWalleHistory : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void init();
    void cleanup();
    void historyLiesInTheHomeOfTheUserDatabase();
    void userWithoutAnEntryHasNoHome();
    void shreddedFileIsRecordedWithTimeNameAndFolder();
    void everythingRemovedFromAFolderIsRecorded();
    void pathThatStillExistsIsNotRecorded();
    void emptyPathIsNotRecorded();
    void failedRowIsNotRecorded();
    void strangeNamesStayEntriesOfThreeLines();
    void recordingSaysNothing();
    void unreadableHistoryIsLeftAloneAndShreddingGoesOn();
    void folderInPlaceOfTheHistoryIsLeftAloneAndShreddingGoesOn();
    void homeThatCannotBeWrittenIsSilent();
    void clearingRemovesTheFileAndSaysNothing();
    void clearingWithoutAHistoryIsSilent();
    void historyThatCannotBeWrittenIsNotCleared();
    void folderInPlaceOfTheHistoryIsNotCleared();
    void recordingGoesOnAfterClearing();
    void whatWasReportedBeforeTheWindowWentIsRecorded();

private:
    void shred(const QStringList &paths);
    void clear();

    testsupport::SandboxHome home;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<WalleHarness> harness;
};

void TestWalleHistory::init()
{
    home.forgetHistory();
    tree = std::make_unique<TemporaryTree>();
    harness = std::make_unique<WalleHarness>();
}

void TestWalleHistory::cleanup()
{
    harness.reset();
    tree.reset();
}

void TestWalleHistory::shred(const QStringList &paths)
{
    QVERIFY(harness->admitted(paths));
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
}

void TestWalleHistory::clear()
{
    harness->takeLog();
    harness->post(CommandClearHistory);
    QVERIFY(harness->performed());
}

void TestWalleHistory::historyLiesInTheHomeOfTheUserDatabase()
{
    qputenv("HOME", "/nonexistent");
    QCOMPARE(Walle::historyFilePath(), home.path() + QStringLiteral("/.fileshredderEx.dat"));
    QCOMPARE(homeDirectoryOf(OrdinaryUser::id()), home.path());
}

void TestWalleHistory::userWithoutAnEntryHasNoHome()
{
    constexpr uid_t nobodyKnown = 54321;
    QCOMPARE(homeDirectoryOf(nobodyKnown), QString());
}

void TestWalleHistory::shreddedFileIsRecordedWithTimeNameAndFolder()
{
    const QString form = QStringLiteral("yyyy-MM-dd HH:mm:ss");
    const QString before = QDateTime::currentDateTime().toString(form);
    shred({tree->makeFile(QStringLiteral("a.txt"), 10)});
    const QString after = QDateTime::currentDateTime().toString(form);

    const QByteArrayList lines = home.historyLines();
    QCOMPARE(lines.size(), 3);
    const QString time = QString::fromUtf8(lines.first());
    QVERIFY(before <= time && time <= after);
    QCOMPARE(time.size(), form.size());
    QCOMPARE(lines.at(1), QByteArray("a.txt"));
    QCOMPARE(lines.at(2), tree->path().toUtf8());
}

void TestWalleHistory::everythingRemovedFromAFolderIsRecorded()
{
    tree->makeFile(QStringLiteral("folder/sub/file"), 10);
    shred({tree->path(QStringLiteral("folder"))});
    const QByteArray top = tree->path().toUtf8();
    const QByteArrayList lines = home.historyLines();
    QCOMPARE(lines.size(), 9);
    QCOMPARE(lines.mid(1, 2), (QByteArrayList{"file", top + "/folder/sub"}));
    QCOMPARE(lines.mid(4, 2), (QByteArrayList{"sub", top + "/folder"}));
    QCOMPARE(lines.mid(7, 2), (QByteArrayList{"folder", top}));
}

void TestWalleHistory::pathThatStillExistsIsNotRecorded()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 1);
    harness->walle().addToHistoryWalle(file);
    QVERIFY(!entryExists(home.historyFile()));
    QVERIFY(QFile::remove(file));
    harness->walle().addToHistoryWalle(file);
    QCOMPARE(home.historyLines().size(), 3);
}

void TestWalleHistory::emptyPathIsNotRecorded()
{
    harness->walle().addToHistoryWalle(QString());
    QVERIFY(!entryExists(home.historyFile()));
}

void TestWalleHistory::failedRowIsNotRecorded()
{
    tree->makeFolder(QStringLiteral("folder"));
    tree->makeFifo(QStringLiteral("folder/fifo"));
    shred({tree->path(QStringLiteral("folder"))});
    QVERIFY(!entryExists(home.historyFile()));
}

void TestWalleHistory::strangeNamesStayEntriesOfThreeLines()
{
    shred({
        tree->makeFile(QStringLiteral("two\nlines"), 1),
        tree->makeFile(QStringLiteral("x\ny/100%s \"粉碎\" 🗑"), 1),
    });
    const QByteArray top = tree->path().toUtf8();
    const QByteArrayList lines = home.historyLines();
    QCOMPARE(lines.size(), 6);
    QCOMPARE(lines.mid(1, 2), (QByteArrayList{"two␤lines", top}));
    QCOMPARE(lines.mid(4, 2), (QByteArrayList{"100%s \"粉碎\" 🗑", top + "/x␤y"}));
}

void TestWalleHistory::recordingSaysNothing()
{
    harness->walle().addToHistoryWalle(QStringLiteral("/nonexistent/file"));
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), SignalRecords());
    QCOMPARE(home.historyLines().size(), 3);
}

void TestWalleHistory::unreadableHistoryIsLeftAloneAndShreddingGoesOn()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 1);
    OrdinaryUser::give(tree->path());
    OrdinaryUser::give(file);
    home.writeHistory("one\n");
    OrdinaryUser::give(home.historyFile());
    QVERIFY(QFile::setPermissions(home.historyFile(), QFile::WriteOwner));
    {
        const OrdinaryUser user;
        shred({file});
        QVERIFY(!entryExists(file));
    }
    QVERIFY(QFile::setPermissions(home.historyFile(), QFile::ReadOwner));
    QCOMPARE(home.history(), QByteArray("one\n"));
}

void TestWalleHistory::folderInPlaceOfTheHistoryIsLeftAloneAndShreddingGoesOn()
{
    QVERIFY(QDir().mkdir(home.historyFile()));
    const QString file = tree->makeFile(QStringLiteral("file"), 1);
    shred({file});
    QVERIFY(!entryExists(file));
    QVERIFY(QDir(home.historyFile()).isEmpty());
}

void TestWalleHistory::homeThatCannotBeWrittenIsSilent()
{
    QVERIFY(QFile::setPermissions(home.path(), QFile::ReadOwner | QFile::ExeOwner));
    {
        const OrdinaryUser user;
        harness->walle().addToHistoryWalle(QStringLiteral("/nonexistent/file"));
    }
    QVERIFY(
        QFile::setPermissions(home.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(!entryExists(home.historyFile()));
}

void TestWalleHistory::clearingRemovesTheFileAndSaysNothing()
{
    home.writeHistory("one\ntwo\nthree\n");
    clear();
    QCOMPARE(harness->log(), SignalRecords());
    QVERIFY(!entryExists(home.historyFile()));
}

void TestWalleHistory::clearingWithoutAHistoryIsSilent()
{
    clear();
    QCOMPARE(harness->log(), SignalRecords());
    QVERIFY(!entryExists(home.historyFile()));
}

void TestWalleHistory::historyThatCannotBeWrittenIsNotCleared()
{
    home.writeHistory("one\ntwo\nthree\n");
    OrdinaryUser::give(home.historyFile());
    QVERIFY(QFile::setPermissions(home.historyFile(), QFile::ReadOwner));
    {
        const OrdinaryUser user;
        clear();
    }
    QCOMPARE(home.history(), QByteArray("one\ntwo\nthree\n"));
}

void TestWalleHistory::folderInPlaceOfTheHistoryIsNotCleared()
{
    QVERIFY(QDir().mkdir(home.historyFile()));
    clear();
    QVERIFY(QFileInfo(home.historyFile()).isDir());
}

void TestWalleHistory::recordingGoesOnAfterClearing()
{
    home.writeHistory("one\ntwo\nthree\n");
    clear();
    harness->walle().addToHistoryWalle(QStringLiteral("/nonexistent/file"));
    QCOMPARE(home.historyLines().mid(1), (QByteArrayList{"file", "/nonexistent"}));
}

/// The report is in the event queue, the worker waits, and the event loop has ended.
void TestWalleHistory::whatWasReportedBeforeTheWindowWentIsRecorded()
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

TEST_SUITE(history, TestWalleHistory)
#include "history.moc"
