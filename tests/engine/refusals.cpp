// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Files that the system does not let go: open refused, or removal refused. An ordinary user,
// which root becomes for a while, needs permissions.

#include "enginetest.h"
#include "ordinaryuser.h"

#include <chrono>
#include <csignal>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>

using namespace testsupport;

namespace
{

void setMode(const QString &path, mode_t mode)
{
    QVERIFY(::chmod(path.toUtf8().constData(), mode) == 0);
}

} // namespace

class TestRefusals : public EngineTest
{
    Q_OBJECT

private slots:
    void init();

    void readOnlyFileStays();
    void fileThatCannotBeOpenedStaysAndItsFolderIsFailed();
    void entryThatCannotBeRemovedIsAFailure();
    void folderThatCannotBeReadHoldsNothing();
    void runningProgramStays();
    void fileUnderALeaseIsWaitedFor();
};

void TestRefusals::init()
{
    EngineTest::init();
    setMode(tree->path(), 0777);
}

void TestRefusals::readOnlyFileStays()
{
    const QString file = tree->makeFile("file", 5000);
    setMode(file, 0444);
    const OrdinaryUser user;
    QCOMPARE(shredFile(file), qint64{-2});
    QCOMPARE(shredInTree(file, 5000), qint64{-2});
    QVERIFY(isAsMade(file, 5000));
    QCOMPARE(log->records(), SignalRecords());
}

void TestRefusals::fileThatCannotBeOpenedStaysAndItsFolderIsFailed()
{
    const QString file = tree->makeFile("top/file", 5000);
    const QString folder = tree->makeFolder("top/folder");
    const QString other = tree->makeFile("top/folder/other", 5000);
    for (const QString &open : {top(), folder, other})
        setMode(open, 0777);
    setMode(file, 0444);
    const OrdinaryUser user;
    // What failed counts nothing, so the other half of the bytes ends at 50.
    QCOMPARE(workOn({top()}),
             (SignalRecords{progress(top(), 50), removal(other), removal(folder), failure(top())}));
    QVERIFY(isAsMade(file, 5000));
}

void TestRefusals::entryThatCannotBeRemovedIsAFailure()
{
    const QString link = tree->makeLink("top/link", "nowhere");
    const QString file = tree->makeFile("top/file", 5000);
    const QString empty = tree->makeFile("top/empty", 0);
    setMode(file, 0666);
    setMode(empty, 0666);
    setMode(top(), 0555);
    {
        const OrdinaryUser user;
        QCOMPARE(shredFile(link), qint64{-5});
        QCOMPARE(shredFile(empty), qint64{-7});
        QCOMPARE(shredInTree(empty, 0), qint64{-7});
        QCOMPARE(shredInTree(empty, 100), qint64{-7});
        QCOMPARE(log->records(), SignalRecords());
        QCOMPARE(shredFile(file), qint64{-7});
        QCOMPARE(log->records(), (SignalRecords{progress(file, 100), progress(file, 99)}));
        log->clear();
        // The share done is reported only once the file is gone.
        QCOMPARE(shredInTree(file, 100000), qint64{-7});
        QCOMPARE(log->records(), SignalRecords());
    }
    setMode(top(), 0755); // lets the test's cleanup remove it
    QVERIFY(entryExists(link) && entryExists(empty));
    QCOMPARE(QFileInfo(file).size(), qint64{5000});
    QVERIFY(!isAsMade(file, 5000));
}

void TestRefusals::folderThatCannotBeReadHoldsNothing()
{
    const QString file = tree->makeFile("top/file", 10);
    setMode(top(), 0333);
    {
        const OrdinaryUser user;
        QCOMPARE(FileCrusher::directorySize(top().toUtf8().constData()), quint64{0});
        QCOMPARE(FileCrusher::listDirectory(top().toUtf8().constData()), QList<QFileInfo>());
        QCOMPARE(shredFolder(top()), qint64{-3});
    }
    setMode(top(), 0755);
    QVERIFY(isAsMade(file, 10));
    QCOMPARE(log->records(), SignalRecords());
}

void TestRefusals::runningProgramStays()
{
    const QString program = tree->path("program");
    QVERIFY(QFile::copy(QStandardPaths::findExecutable(QStringLiteral("sleep")), program));
    setMode(program, 0777);
    const QByteArray before = TemporaryTree::contentsOf(program);
    QProcess running;
    running.start(program, {QStringLiteral("600")});
    QVERIFY(running.waitForStarted());
    QCOMPARE(shredFile(program), qint64{-2}); // ETXTBSY
    running.kill();
    QVERIFY(running.waitForFinished());
    QCOMPARE(TemporaryTree::contentsOf(program), before);
    QCOMPARE(log->records(), SignalRecords());
}

/// As file servers take it: the kernel asks for the lease back when somebody opens the file.
void TestRefusals::fileUnderALeaseIsWaitedFor()
{
    for (const bool alone : {true, false}) {
        const QString file = tree->makeFile("top/file", 5000);
        QFile leased(file);
        QVERIFY(leased.open(QIODevice::ReadOnly));
        static_cast<void>(std::signal(SIGIO, SIG_IGN)); // the way in which a lease is asked back
        if (::fcntl(leased.handle(), F_SETLEASE, F_RDLCK) != 0)
            QSKIP("no leases on this file system");
        std::thread holder([&leased] {
            using namespace std::chrono_literals;
            while (::fcntl(leased.handle(), F_GETLEASE) == F_RDLCK)
                std::this_thread::sleep_for(1ms);
            std::this_thread::sleep_for(100ms); // whoever does not wait has failed by then
            ::fcntl(leased.handle(), F_SETLEASE, F_UNLCK);
        });
        const qint64 result = alone ? shredFile(file) : shredFolder(top());
        holder.join();
        QCOMPARE(result, alone ? 5000 : 0);
        QVERIFY(!entryExists(file));
    }
}

TEST_SUITE(refusals, TestRefusals)
#include "refusals.moc"
