// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Instances are processes, so nearly every lock here is taken by a child process.

#include "app/instancelock.h"

#include "instance.h"
#include "suites.h"
#include "temporarytree.h"

#include <QtTest>

#include <cerrno>
#include <cstdarg>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using testsupport::Instance;
using testsupport::TemporaryTree;

namespace
{

int lockError = 0;        ///< what locking fails with; 0 leaves it to the system
bool kernelIsOld = false; ///< it knows no open file description locks

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier, cert-dcl50-cpp): the linker chooses these names
extern "C" {
int __real_fcntl(int fd, int command, ...);

int __wrap_fcntl(int fd, int command, ...)
{
    std::va_list arguments;
    va_start(arguments, command);
    void *lock = va_arg(arguments, void *);
    va_end(arguments);
    const bool unknown = kernelIsOld && command == F_OFD_SETLK;
    const bool failing = lockError != 0 && (command == F_OFD_SETLK || command == F_SETLK);
    if (!unknown && !failing)
        return __real_fcntl(fd, command, lock);
    errno = unknown ? EINVAL : lockError;
    return -1;
}
}
// NOLINTEND(bugprone-reserved-identifier, cert-dcl50-cpp)

namespace
{

/// Who holds a lock that keeps others from byte @p start of @p fd.
struct flock holderOf(int fd, off_t start)
{
    struct flock question = {};
    question.l_type = F_RDLCK;
    question.l_whence = SEEK_SET;
    question.l_start = start;
    question.l_len = 1;
    if (::fcntl(fd, F_GETLK, &question) != 0)
        question.l_type = -1;
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
    void cleanup();

    void firstInstanceWritesItsPidWithoutANewline();
    void longerOldContentsAreCutOff();
    void secondInstanceIsTurnedAwayAndChangesNothing();
    void thirdInstanceIsTurnedAwayAfterTheSecondEnded();
    void lockCanBeHadAgainWhenItsHolderEnded();
    void filesOfTwoUsersDoNotExcludeEachOther();
    void newFileHasItsMode_data();
    void newFileHasItsMode();
    void pathThatCannotBeOpenedEndsTheProcess();
    void directoryInTheFilesPlaceEndsTheProcess();
    void bothErrorsOfAHeldLockMeanAnotherInstance_data();
    void bothErrorsOfAHeldLockMeanAnotherInstance();
    void anyOtherErrorEndsTheProcess_data();
    void anyOtherErrorEndsTheProcess();
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
    path = tree->path(QStringLiteral(".fileshredder.pid"));
    lockError = 0;
    kernelIsOld = false;
}

void TestInstanceLock::cleanup()
{
    lockError = 0;
    kernelIsOld = false;
    tree.reset();
}

void TestInstanceLock::firstInstanceWritesItsPidWithoutANewline()
{
    const Instance instance(path);
    QCOMPARE(instance.lockResult(), instancelock::Acquired);
    QCOMPARE(TemporaryTree::contentsOf(path), QByteArray::number(instance.pid()));
}

void TestInstanceLock::longerOldContentsAreCutOff()
{
    tree->makeFile(QStringLiteral(".fileshredder.pid"), QByteArray("4194304000 and more\n"));
    const Instance instance(path);
    QCOMPARE(instance.lockResult(), instancelock::Acquired);
    QCOMPARE(TemporaryTree::contentsOf(path), QByteArray::number(instance.pid()));
}

void TestInstanceLock::secondInstanceIsTurnedAwayAndChangesNothing()
{
    const Instance first(path);
    const Instance second(path);
    QCOMPARE(first.lockResult(), instancelock::Acquired);
    QCOMPARE(second.lockResult(), instancelock::HeldByAnother);
    QCOMPARE(TemporaryTree::contentsOf(path), QByteArray::number(first.pid()));
    QVERIFY(first.keepsFileOpen());
    QVERIFY(!second.keepsFileOpen());
}

void TestInstanceLock::thirdInstanceIsTurnedAwayAfterTheSecondEnded()
{
    const Instance first(path);
    Instance second(path);
    QCOMPARE(second.lockResult(), instancelock::HeldByAnother);
    QCOMPARE(second.end(), 0);
    const Instance third(path);
    QCOMPARE(third.lockResult(), instancelock::HeldByAnother);
    QCOMPARE(TemporaryTree::contentsOf(path), QByteArray::number(first.pid()));
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
    const QString otherPath = tree->path(QStringLiteral("other.pid"));
    const Instance one(path);
    const Instance other(otherPath);
    QCOMPARE(one.lockResult(), instancelock::Acquired);
    QCOMPARE(other.lockResult(), instancelock::Acquired);
    QCOMPARE(TemporaryTree::contentsOf(otherPath), QByteArray::number(other.pid()));
}

void TestInstanceLock::newFileHasItsMode_data()
{
    QTest::addColumn<uint>("mask");
    QTest::addColumn<uint>("mode");
    QTest::newRow("nothing masked") << 0U << 0644U;
    QTest::newRow("usual mask") << 0022U << 0644U;
    QTest::newRow("strict mask") << 0077U << 0600U;
}

void TestInstanceLock::newFileHasItsMode()
{
    QFETCH(uint, mask);
    QFETCH(uint, mode);
    const mode_t before = ::umask(mask);
    const Instance instance(path);
    ::umask(before);
    QCOMPARE(instance.lockResult(), instancelock::Acquired);
    struct stat status = {};
    QCOMPARE(::stat(path.toUtf8().constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777U, mode);
}

void TestInstanceLock::pathThatCannotBeOpenedEndsTheProcess()
{
    Instance instance(tree->path(QStringLiteral("no folder/pid")));
    QCOMPARE(instance.lockResult(), -1);
    QCOMPARE(instance.end(), 1);
}

void TestInstanceLock::directoryInTheFilesPlaceEndsTheProcess()
{
    tree->makeFolder(QStringLiteral(".fileshredder.pid"));
    Instance instance(path);
    QCOMPARE(instance.lockResult(), -1);
    QCOMPARE(instance.end(), 1);
}

void TestInstanceLock::bothErrorsOfAHeldLockMeanAnotherInstance_data()
{
    QTest::addColumn<int>("error");
    QTest::newRow("EAGAIN") << EAGAIN;
    QTest::newRow("EACCES") << EACCES;
}

void TestInstanceLock::bothErrorsOfAHeldLockMeanAnotherInstance()
{
    QFETCH(int, error);
    lockError = error;
    Instance instance(path);
    QCOMPARE(instance.lockResult(), instancelock::HeldByAnother);
    QCOMPARE(instance.end(), 0);
    QCOMPARE(TemporaryTree::contentsOf(path), QByteArray());
}

void TestInstanceLock::anyOtherErrorEndsTheProcess_data()
{
    QTest::addColumn<int>("error");
    QTest::newRow("no locks left") << ENOLCK;
    QTest::newRow("interrupted") << EINTR;
    QTest::newRow("no such thing here") << EINVAL;
}

void TestInstanceLock::anyOtherErrorEndsTheProcess()
{
    QFETCH(int, error);
    lockError = error;
    Instance instance(path);
    QCOMPARE(instance.lockResult(), -1);
    QCOMPARE(instance.end(), 1);
    QCOMPARE(TemporaryTree::contentsOf(path), QByteArray());
}

void TestInstanceLock::lockCoversTheWholeFileHoweverItGrows()
{
    const Instance instance(path);
    const int fd = ::open(path.toUtf8().constData(), O_RDWR | O_CLOEXEC);
    QVERIFY(fd >= 0);
    for (const off_t start : {off_t{0}, off_t{1}, off_t{1} << 40}) {
        const struct flock held = holderOf(fd, start);
        QCOMPARE(held.l_type, static_cast<short>(F_WRLCK));
        QCOMPARE(held.l_start, off_t{0});
        QCOMPARE(held.l_len, off_t{0});
    }
    ::close(fd);
}

/// File dialogs open and close every file of a folder to find its icon.
void TestInstanceLock::lockOutlivesAnotherDescriptorOfTheFile()
{
    const QByteArray file = tree->makeFile(QStringLiteral(".fileshredder.pid"), 0).toUtf8();
    const int locked = ::open(file.constData(), O_RDWR | O_CLOEXEC);
    QCOMPARE(instancelock::lockWholeFile(locked), 0);
    ::close(::open(file.constData(), O_RDONLY | O_CLOEXEC));
    const Instance other(path);
    ::close(locked);
    QCOMPARE(other.lockResult(), instancelock::HeldByAnother);
}

void TestInstanceLock::lockAndOneOfAProcessExcludeEachOther()
{
    const QByteArray file = tree->makeFile(QStringLiteral(".fileshredder.pid"), 0).toUtf8();
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
    kernelIsOld = true;
    const Instance instance(path);
    QCOMPARE(instance.lockResult(), instancelock::Acquired);
    const int fd = ::open(path.toUtf8().constData(), O_RDWR | O_CLOEXEC);
    const struct flock held = holderOf(fd, 0);
    ::close(fd);
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

    const QByteArray free = tree->makeFile(QStringLiteral("free"), 10).toUtf8();
    const int freeFile = ::open(free.constData(), O_RDWR | O_CLOEXEC);
    QCOMPARE(instancelock::lockWholeFile(freeFile), 0);
    ::close(freeFile);

    const Instance holder(path);
    const int heldFile = ::open(path.toUtf8().constData(), O_RDWR | O_CLOEXEC);
    QCOMPARE(instancelock::lockWholeFile(heldFile), -1);
    QVERIFY(errno == EAGAIN || errno == EACCES);
    ::close(heldFile);
}

TEST_SUITE(instancelock, TestInstanceLock)
#include "instancelock.moc"
