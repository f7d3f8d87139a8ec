// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Instances are processes, so nearly every lock here is taken by a child process.

#include "app/instancelock.h"

#include "instance.h"
#include "inventory.h"
#include "literals.h"
#include "ordinaryuser.h"
#include "suites.h"
#include "systemcalls.h"
#include "temporarytree.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QtTest>

#include <cerrno>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace testsupport;

namespace
{

constexpr char lockName[] = "home/.fileshredder.pid";

/// Which lock keeps others from byte @p start of the file @p path.
struct flock lockOn(const QString &path, off_t start)
{
    struct flock question = {};
    question.l_type = F_RDLCK;
    question.l_whence = SEEK_SET;
    question.l_start = start;
    question.l_len = 1;
    const int fd = ::open(path.toUtf8().constData(), O_RDWR | O_CLOEXEC);
    if (::fcntl(fd, F_GETLK, &question) != 0)
        question.l_type = -1;
    ::close(fd);
    return question;
}

/// Locks as programs did before there were open file description locks.
int lockForThisProcess(int fd)
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return ::fcntl(fd, F_SETLK, &lock);
}

} // namespace

class TestInstanceLock : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { tree.reset(); }

    void fileHoldsThePidAlone();
    void furtherInstancesAreTurnedAwayAndChangeNothing();
    void lockCanBeHadAgainWhenItsHolderEnded();
    void filesOfTwoUsersDoNotExcludeEachOther();
    void newFileHasItsMode();
    void linkIsFollowed_data();
    void linkIsFollowed();
    void fifoIsNotWaitedFor();
    void fileThatCannotBeOpenedEndsTheProcess_data();
    void fileThatCannotBeOpenedEndsTheProcess();
    void refusedLockMeansAnotherInstanceOrEndsTheProcess_data();
    void refusedLockMeansAnotherInstanceOrEndsTheProcess();
    void lockCoversTheWholeFileHoweverItGrows();
    void lockOutlivesAnotherDescriptorOfTheFile();
    void lockAndOneOfAProcessExcludeEachOther();
    void oldKernelLocksForTheProcess();
    void lockWholeFileReturnsWhatTheSystemSays();

private:
    std::unique_ptr<TemporaryTree> tree;
    QString path;
};

void TestInstanceLock::init()
{
    tree = std::make_unique<TemporaryTree>();
    tree->makeFolder("home");
    path = tree->path(lockName);
}

void TestInstanceLock::fileHoldsThePidAlone()
{
    tree->makeFile(lockName, "longer old contents");
    const Instance instance(path);
    QCOMPARE(instance.lockResult(), instancelock::Acquired);
    QCOMPARE(TemporaryTree::contentsOf(path), QByteArray::number(instance.pid()));
}

void TestInstanceLock::furtherInstancesAreTurnedAwayAndChangeNothing()
{
    const Instance first(path);
    QCOMPARE(first.lockResult(), instancelock::Acquired);
    QVERIFY(first.keepsFileOpen());
    // The end of the second must not release the lock of the first.
    for (int further = 2; further <= 3; ++further) {
        Instance instance(path);
        QCOMPARE(instance.lockResult(), instancelock::HeldByAnother);
        QVERIFY(!instance.keepsFileOpen());
        QCOMPARE(instance.end(), 0);
        QCOMPARE(TemporaryTree::contentsOf(path), QByteArray::number(first.pid()));
    }
}

void TestInstanceLock::lockCanBeHadAgainWhenItsHolderEnded()
{
    Instance first(path);
    QCOMPARE(first.end(), 0);
    QCOMPARE(TemporaryTree::contentsOf(path), QByteArray::number(first.pid())); // stale, harmless
    const Instance second(path);
    QCOMPARE(second.lockResult(), instancelock::Acquired);
    QCOMPARE(TemporaryTree::contentsOf(path), QByteArray::number(second.pid()));
}

void TestInstanceLock::filesOfTwoUsersDoNotExcludeEachOther()
{
    const Instance one(path);
    const Instance other(tree->path("other.pid"));
    QCOMPARE(one.lockResult(), instancelock::Acquired);
    QCOMPARE(other.lockResult(), instancelock::Acquired);
}

void TestInstanceLock::newFileHasItsMode()
{
    for (const auto &[mask, mode] : {std::pair(0000U, 0644U), std::pair(0077U, 0600U)}) {
        init();
        const mode_t before = ::umask(mask);
        const Instance instance(path);
        ::umask(before);
        struct stat status = {};
        QCOMPARE(::stat(path.toUtf8().constData(), &status), 0);
        QCOMPARE(status.st_mode & 07777U, mode);
    }
}

void TestInstanceLock::linkIsFollowed_data()
{
    QTest::addColumn<bool>("exists");
    QTest::newRow("to a file") << true;
    QTest::newRow("dangling") << false;
}

/// The user put it there: the pid goes into what it leads to, and that file is what is locked.
void TestInstanceLock::linkIsFollowed()
{
    QFETCH(bool, exists);
    const QString target = tree->path("target");
    if (exists)
        tree->makeFile("target", 1000);
    tree->makeLink(lockName, target);
    const Instance instance(path);
    QCOMPARE(instance.lockResult(), instancelock::Acquired);
    QVERIFY(QFileInfo(path).isSymLink());
    QCOMPARE(TemporaryTree::contentsOf(target), QByteArray::number(instance.pid()));
    const Instance second(target);
    QCOMPARE(second.lockResult(), instancelock::HeldByAnother);
}

void TestInstanceLock::fifoIsNotWaitedFor()
{
    // A fifo takes the lock and the pid like a file.
    tree->makeFifo(lockName);
    const Instance first(path);
    QCOMPARE(first.lockResult(), instancelock::Acquired);
    const Instance second(path);
    QCOMPARE(second.lockResult(), instancelock::HeldByAnother);
}

void TestInstanceLock::fileThatCannotBeOpenedEndsTheProcess_data()
{
    QTest::addColumn<QString>("preparation");
    QTest::newRow("no folder") << "rmdir home"_s;
    QTest::newRow("a folder in its place") << "mkdir $file"_s;
    QTest::newRow("a link to a folder") << "ln -s ../elsewhere $file"_s;
    QTest::newRow("a link to itself") << "ln -s .fileshredder.pid $file"_s;
    QTest::newRow("a link into nowhere") << "ln -s nowhere/pid $file"_s;
    QTest::newRow("a link through a file") << "ln -s ../elsewhere/other/pid $file"_s;
    QTest::newRow("a file that may not be written") << "echo 12345 > $file; chmod 400 $file"_s;
    QTest::newRow("a folder that may not be written") << "chmod 500 home"_s;
}

void TestInstanceLock::fileThatCannotBeOpenedEndsTheProcess()
{
    QFETCH(QString, preparation);
    const OrdinaryUser user;
    const TemporaryTree place;
    const QString home = place.makeFolder("home");
    place.makeFile("elsewhere/other", "kept");
    QProcess shell;
    shell.setWorkingDirectory(place.path());
    shell.start("sh"_s, {"-ec"_s, "file=%1; %2"_s.arg(QLatin1String(lockName), preparation)});
    QVERIFY(shell.waitForFinished() && shell.exitCode() == 0);
    const QStringList before = inventoryOf(place.path());
    Instance instance(place.path(lockName));
    QCOMPARE(instance.lockResult(), -1);
    QCOMPARE(instance.end(), 1);
    QCOMPARE(inventoryOf(place.path()), before);
    QFile::setPermissions(home, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void TestInstanceLock::refusedLockMeansAnotherInstanceOrEndsTheProcess_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<int>("result");
    QTest::addColumn<int>("status");
    QTest::newRow("EAGAIN") << EAGAIN << instancelock::HeldByAnother << 0;
    QTest::newRow("EACCES") << EACCES << instancelock::HeldByAnother << 0;
    QTest::newRow("no locks left") << ENOLCK << -1 << 1;
    QTest::newRow("interrupted") << EINTR << -1 << 1;
    QTest::newRow("no such thing here") << EINVAL << -1 << 1;
}

void TestInstanceLock::refusedLockMeansAnotherInstanceOrEndsTheProcess()
{
    QFETCH(int, error);
    const CallHook refused(
        [&](const SystemCall &call) { return CallFate{call.kind == CallKind::Lock ? error : 0}; });
    Instance instance(path);
    QTEST(instance.lockResult(), "result");
    QTEST(instance.end(), "status");
    QCOMPARE(TemporaryTree::contentsOf(path), QByteArray());
}

void TestInstanceLock::lockCoversTheWholeFileHoweverItGrows()
{
    const Instance instance(path);
    for (const off_t start : {off_t{0}, off_t{1}, off_t{1} << 40}) {
        const struct flock held = lockOn(path, start);
        QCOMPARE(held.l_type, static_cast<short>(F_WRLCK));
        QCOMPARE(held.l_start, off_t{0});
        QCOMPARE(held.l_len, off_t{0});
    }
}

/// File dialogs open and close every file of a folder to find its icon.
void TestInstanceLock::lockOutlivesAnotherDescriptorOfTheFile()
{
    const QByteArray file = tree->makeFile(lockName, 0).toUtf8();
    const int locked = ::open(file.constData(), O_RDWR | O_CLOEXEC);
    QCOMPARE(instancelock::lockWholeFile(locked), 0);
    ::close(::open(file.constData(), O_RDONLY | O_CLOEXEC));
    const Instance other(path);
    ::close(locked);
    QCOMPARE(other.lockResult(), instancelock::HeldByAnother);
}

void TestInstanceLock::lockAndOneOfAProcessExcludeEachOther()
{
    const QByteArray file = tree->makeFile(lockName, 0).toUtf8();
    const int fd = ::open(file.constData(), O_RDWR | O_CLOEXEC);
    {
        const Instance instance(path);
        QCOMPARE(instance.lockResult(), instancelock::Acquired);
        QCOMPARE(lockForThisProcess(fd), -1);
        QVERIFY(errno == EAGAIN || errno == EACCES);
    }
    QCOMPARE(lockForThisProcess(fd), 0);
    const Instance instance(path);
    ::close(fd);
    QCOMPARE(instance.lockResult(), instancelock::HeldByAnother);
}

void TestInstanceLock::oldKernelLocksForTheProcess()
{
    const CallHook oldKernel([](const SystemCall &call) {
        const bool isUnknown = call.kind == CallKind::Lock && call.flags == F_OFD_SETLK;
        return CallFate{isUnknown ? EINVAL : 0};
    });
    const Instance instance(path);
    QCOMPARE(instance.lockResult(), instancelock::Acquired);
    const struct flock held = lockOn(path, 0);
    QCOMPARE(held.l_type, static_cast<short>(F_WRLCK));
    QCOMPARE(held.l_pid, instance.pid());
    QCOMPARE(held.l_len, off_t{0});
    const Instance second(path);
    QCOMPARE(second.lockResult(), instancelock::HeldByAnother);
}

void TestInstanceLock::lockWholeFileReturnsWhatTheSystemSays()
{
    QCOMPARE(instancelock::lockWholeFile(-1), -1);
    QCOMPARE(errno, EBADF);
    const Instance holder(path);
    const int fd = ::open(path.toUtf8().constData(), O_RDWR | O_CLOEXEC);
    QCOMPARE(instancelock::lockWholeFile(fd), -1);
    QVERIFY(errno == EAGAIN || errno == EACCES);
    ::close(fd);
}

TEST_SUITE(instancelock, TestInstanceLock)
#include "instancelock.moc"
