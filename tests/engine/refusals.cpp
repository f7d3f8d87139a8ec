// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Files that the system does not let go: open refused, or removal refused. An ordinary user,
// which root becomes for a while, needs permissions.

#include "enginetest.h"
#include "ordinaryuser.h"
#include "suites.h"
#include "systemcalls.h"

#include <QtTest>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace testsupport;

namespace
{

void setMode(const QString &path, mode_t mode)
{
    QVERIFY(::chmod(path.toUtf8().constData(), mode) == 0);
}

/// Another process with a lease on a file, as file servers take it: the kernel asks for the lease
/// back when somebody opens the file, and the process gives it back a moment later.
class LeaseHolder
{
public:
    explicit LeaseHolder(const QString &path)
    {
        const QByteArray name = path.toUtf8();
        int ready[2] = {};
        if (::pipe(ready) != 0)
            qFatal("no pipe");
        child = ::fork();
        if (child == 0)
            hold(name.constData(), ready[1]);
        ::close(ready[1]);
        char answer = '-';
        holds = ::read(ready[0], &answer, 1) == 1 && answer == '+';
        ::close(ready[0]);
    }
    ~LeaseHolder()
    {
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
    }
    LeaseHolder(const LeaseHolder &) = delete;
    LeaseHolder &operator=(const LeaseHolder &) = delete;

    bool isHeld() const { return holds; }

private:
    [[noreturn]] static void hold(const char *path, int ready)
    {
        constexpr useconds_t moment = 100000; // microseconds
        sigset_t asked;
        sigemptyset(&asked);
        sigaddset(&asked, SIGIO);
        sigprocmask(SIG_BLOCK, &asked, nullptr);
        const int file = ::open(path, O_RDONLY | O_CLOEXEC);
        const bool held = ::fcntl(file, F_SETLEASE, F_RDLCK) == 0;
        static_cast<void>(::write(ready, held ? "+" : "-", 1));
        int signal = 0;
        sigwait(&asked, &signal);
        ::usleep(moment);
        ::fcntl(file, F_SETLEASE, F_UNLCK);
        ::_exit(0);
    }

    pid_t child = -1;
    bool holds = false;
};

} // namespace

class TestRefusals : public EngineTest
{
    Q_OBJECT

private slots:
    void readOnlyFileStays();
    void fileThatCannotBeOpenedStaysAndItsFolderIsFailed();
    void emptyFileNeedsNoPermissionOfItsOwn();
    void fileThatCannotBeRemovedIsAFailure();
    void linkThatCannotBeRemovedIsAFailure();
    void unreadableFolderIsNotWalked();
    void fileUnderALeaseIsWaitedFor_data();
    void fileUnderALeaseIsWaitedFor();

private:
    /// The folder "top", in which an ordinary user may do what @p mode says.
    QString makeTop(mode_t mode) const;
    /// Lets the test's cleanup remove what is left.
    void openTop() const { setMode(tree->path("top"), 0755); }
};

QString TestRefusals::makeTop(mode_t mode) const
{
    setMode(tree->path(), 0777);
    const QString top = tree->makeFolder("top");
    setMode(top, mode);
    return top;
}

void TestRefusals::readOnlyFileStays()
{
    const QString file = tree->makeFile("file", 5000);
    setMode(tree->path(), 0777);
    setMode(file, 0444);
    const OrdinaryUser user;
    QCOMPARE(shredFile(file), qint64{-2});
    QCOMPARE(shredInTree(file, 5000), qint64{-2});
    QVERIFY(isAsMade(file, 5000));
    QCOMPARE(log->records(), SignalRecords());
}

void TestRefusals::fileThatCannotBeOpenedStaysAndItsFolderIsFailed()
{
    const QString top = makeTop(0777);
    const QString file = tree->makeFile("top/file", 5000);
    const QString other = tree->makeFile("top/folder/other", 5000);
    setMode(tree->path("top/folder"), 0777);
    setMode(other, 0666);
    setMode(file, 0444);
    const OrdinaryUser user;
    // What failed counts nothing, so the other half of the bytes ends at 50.
    QCOMPARE(workOn({top}), (SignalRecords{progress(top, 50), removal(other),
                                           removal(tree->path("top/folder")), failure(top)}));
    QVERIFY(isAsMade(file, 5000));
}

void TestRefusals::emptyFileNeedsNoPermissionOfItsOwn()
{
    const QString top = makeTop(0777);
    const QString file = tree->makeFile("top/file", 0);
    setMode(file, 0);
    const OrdinaryUser user;
    QCOMPARE(shredFile(file), qint64{0});
    QVERIFY(!entryExists(file));
}

void TestRefusals::fileThatCannotBeRemovedIsAFailure()
{
    tree->makeFolder("top");
    const QString file = tree->makeFile("top/file", 5000);
    const QString empty = tree->makeFile("top/empty", 0);
    setMode(file, 0666);
    setMode(empty, 0666);
    makeTop(0555);
    {
        const OrdinaryUser user;
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
    openTop();
    QVERIFY(entryExists(empty));
    QCOMPARE(QFileInfo(file).size(), qint64{5000});
    QVERIFY(!isAsMade(file, 5000));
}

void TestRefusals::linkThatCannotBeRemovedIsAFailure()
{
    const QString link = tree->makeLink("top/link", "nowhere");
    const QString top = makeTop(0555);
    {
        const OrdinaryUser user;
        QCOMPARE(shredFile(link), qint64{-5});
        QCOMPARE(shredFolder(top), qint64{-3});
    }
    openTop();
    QVERIFY(entryExists(link));
    QCOMPARE(log->records(), SignalRecords());
}

void TestRefusals::unreadableFolderIsNotWalked()
{
    const QString file = tree->makeFile("top/file", 10);
    const QString top = makeTop(0333);
    {
        const OrdinaryUser user;
        QCOMPARE(FileCrusher::listDirectory(top.toUtf8().constData()), QList<QFileInfo>());
        QCOMPARE(FileCrusher::directorySize(top.toUtf8().constData()), quint64{0});
        QCOMPARE(shredFolder(top), qint64{-3});
    }
    openTop();
    QVERIFY(isAsMade(file, 10));
    QCOMPARE(log->records(), SignalRecords());
}

void TestRefusals::fileUnderALeaseIsWaitedFor_data()
{
    QTest::addColumn<bool>("alone");
    QTest::newRow("alone") << true;
    QTest::newRow("in a folder") << false;
}

void TestRefusals::fileUnderALeaseIsWaitedFor()
{
    QFETCH(bool, alone);
    const QString file = tree->makeFile("top/file", 5000);
    const LeaseHolder holder(file);
    if (!holder.isHeld())
        QSKIP("no leases on this file system");
    QCOMPARE(alone ? shredFile(file) : shredFolder(tree->path("top")), alone ? 5000 : 0);
    QVERIFY(!entryExists(file));
}

TEST_SUITE(refusals, TestRefusals)
#include "refusals.moc"
