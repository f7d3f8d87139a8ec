// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// When the new bytes are sent to the disk, seen from below: the calls that the engine
// makes to the C library come here first, each with the file it is about. That the
// bytes then stand on the disk, tst_medium.cpp reads there.

#include "engine/filecrusher.h"
#include "engine/pendingwrites.h"
#include "engine/writewindow.h"

#include "eventually.h"
#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QtTest>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <functional>
#include <memory>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

using testsupport::entryExists;
using testsupport::SignalLog;
using testsupport::SignalRecord;
using testsupport::TemporaryTree;

namespace
{

enum class Call { Unlink, RemoveFolder, Start, Wait, DataSync, ForbiddenSync, Close, Verdict };

/// A call about a file; for Verdict it is the signal instead.
struct CallRecord {
    Call call;
    ino_t inode;
    off_t offset;
    off_t length;
    bool hasName; ///< the file still had a name
};

struct Interception {
    QList<CallRecord> calls;
    int syncFileRangeError = 0;
    int dataSyncError = 0;
    int failingDuplications = 0;
    bool removalFails = false;
    int opensThatWriteThrough = 0;
    long fileSystem = EXT4_SUPER_MAGIC; ///< what fstatfs tells, whatever the test runs on
    std::function<dev_t(ino_t)> deviceOf;
};

Interception &interception()
{
    static Interception theOne;
    return theOne;
}

extern "C" int __real_fstat(int file, struct stat *status); // NOLINT: the linker's name

void note(Call call, int file, off_t offset = 0, off_t length = 0)
{
    struct stat status = {};
    if (__real_fstat(file, &status) == 0 && S_ISREG(status.st_mode))
        interception().calls.append(
            CallRecord{call, status.st_ino, offset, length, status.st_nlink > 0});
}

int failed(int error)
{
    errno = error;
    return -1;
}

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker chooses these names
extern "C" {
int __real_openat(int folder, const char *name, int flags, ...);
int __real_unlinkat(int folder, const char *name, int flags);
int __real_sync_file_range(int file, off_t offset, off_t length, unsigned flags);
int __real_fdatasync(int file);
int __real_close(int file);
int __real_fcntl(int file, int command, ...);

int __wrap_openat(int folder, const char *name, int flags, ...)
{
    if ((flags & (O_SYNC | O_DSYNC)) != 0)
        ++interception().opensThatWriteThrough;
    return __real_openat(folder, name, flags);
}

int __wrap_unlinkat(int folder, const char *name, int flags)
{
    struct stat status = {};
    if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0)
        interception().calls.append(
            CallRecord{(flags & AT_REMOVEDIR) != 0 ? Call::RemoveFolder : Call::Unlink,
                       status.st_ino, 0, 0, true});
    if (interception().removalFails)
        return failed(EPERM);
    return __real_unlinkat(folder, name, flags);
}

int __wrap_sync_file_range(int file, off_t offset, off_t length, unsigned flags)
{
    note((flags & SYNC_FILE_RANGE_WAIT_AFTER) != 0 ? Call::Wait : Call::Start, file, offset,
         length);
    if (interception().syncFileRangeError != 0)
        return failed(interception().syncFileRangeError);
    return __real_sync_file_range(file, offset, length, flags);
}

int __wrap_fdatasync(int file)
{
    note(Call::DataSync, file);
    if (interception().dataSyncError != 0)
        return failed(interception().dataSyncError);
    return __real_fdatasync(file);
}

int __wrap_fstat(int file, struct stat *status)
{
    const int result = __real_fstat(file, status);
    if (result == 0 && interception().deviceOf)
        status->st_dev = interception().deviceOf(status->st_ino);
    return result;
}

int __wrap_fstatfs(int, struct statfs *status)
{
    *status = {};
    status->f_type = interception().fileSystem;
    return 0;
}

int __wrap_fsync(int file)
{
    note(Call::ForbiddenSync, file);
    return 0;
}

int __wrap_syncfs(int file)
{
    note(Call::ForbiddenSync, file);
    return 0;
}

void __wrap_sync()
{
    interception().calls.append(CallRecord{Call::ForbiddenSync, 0, 0, 0, true});
}

int __wrap_close(int file)
{
    note(Call::Close, file);
    return __real_close(file);
}

int __wrap_fcntl(int file, int command, ...)
{
    std::va_list rest;
    va_start(rest, command);
    const int argument = va_arg(rest, int);
    va_end(rest);
    if (command == F_DUPFD_CLOEXEC && interception().failingDuplications-- > 0)
        return failed(EMFILE);
    return __real_fcntl(file, command, argument);
}
}
// NOLINTEND(bugprone-reserved-identifier)

class TestFileCrusherWriteOut : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void everyFileIsWrittenOutAfterItsNameWentAndBeforeTheVerdict();
    void loneFileIsWrittenOutBeforeItsVerdict();
    void nothingIsSyncedBeforeItsNameGoes();
    void largeFileIsWrittenOutWindowByWindow();
    void emptyFilesAreNotWrittenOut();
    void fileWithASecondNameIsWrittenOut();
    void fileWhoseRemovalFailsIsWrittenOut();
    void lastFileOfAPathIsSyncedOnce();
    void everyFileIsSyncedWhereRangesAreUnknown();
    void everyFileIsSyncedWhereRangesDoNothing();
    void nothingIsWrittenOutInMemory();
    void everyDriveIsAskedToEmptyItsCache();
    void fewFilesAreKeptOpenAtOnce();
    void fewDescriptorsAreShared();
    void fewBytesAreKeptOpenAtOnce();
    void nothingIsHeldWhenTheFirstFolderGoes();
    void stoppedFolderIsWrittenOutBeforeStoppedIsTold();
    void failedWriteOutIsNotNoticed();
    void withoutDescriptorsOlderFilesAreWaitedForFirst();

private:
    ino_t inodeOf(const QString &path) const;
    QList<ino_t> makeFiles(const QString &folder, int count, qint64 size) const;
    void runWorker(const QString &path, const char *lastSignal);
    int indexOf(Call call, ino_t inode = 0, int from = 0) const;
    int countOf(Call call, ino_t inode = 0) const;
    static int mostHeld();
    void checkWrittenOut(ino_t inode) const;
    void checkAllWrittenOut(const QList<ino_t> &inodes) const;

    std::unique_ptr<TemporaryTree> tree;
    /// Deleted only when not started: a started worker lives until the process ends.
    FileCrusher *crusher = nullptr;
    std::unique_ptr<SignalLog> log;
};

void TestFileCrusherWriteOut::init()
{
    interception() = Interception();
    tree = std::make_unique<TemporaryTree>();
    crusher = new FileCrusher;
    log = std::make_unique<SignalLog>(crusher);
    log->onRecord = [](const SignalRecord &record) {
        if (record.name == "finishOne" || record.name == "failedOne" || record.name == "stopped")
            interception().calls.append(CallRecord{Call::Verdict, 0, 0, 0, false});
    };
}

void TestFileCrusherWriteOut::cleanup()
{
    interception() = Interception();
    log.reset();
    if (!crusher->isRunning())
        delete crusher;
    tree.reset();
}

ino_t TestFileCrusherWriteOut::inodeOf(const QString &path) const
{
    struct stat status = {};
    ::stat(path.toUtf8().constData(), &status);
    return status.st_ino;
}

QList<ino_t> TestFileCrusherWriteOut::makeFiles(const QString &folder, int count, qint64 size) const
{
    QList<ino_t> inodes;
    for (int number = 0; number < count; ++number)
        inodes.append(
            inodeOf(tree->makeFile(folder + QStringLiteral("/file%1").arg(number), size)));
    return inodes;
}

void TestFileCrusherWriteOut::runWorker(const QString &path, const char *lastSignal)
{
    crusher->addPath(path);
    crusher->start(QThread::InheritPriority);
    QVERIFY(testsupport::eventually([&] { return log->count(lastSignal) > 0; }));
}

/// The number of the first such call from @p from on, about @p inode unless that is 0; or -1.
int TestFileCrusherWriteOut::indexOf(Call call, ino_t inode, int from) const
{
    for (int index = from; index >= 0 && index < interception().calls.size(); ++index) {
        const CallRecord &record = interception().calls.at(index);
        if (record.call == call && (inode == 0 || record.inode == inode))
            return index;
    }
    return -1;
}

int TestFileCrusherWriteOut::countOf(Call call, ino_t inode) const
{
    int count = 0;
    for (int index = indexOf(call, inode); index >= 0; index = indexOf(call, inode, index + 1))
        ++count;
    return count;
}

/// The most files that were open at once after their removal.
int TestFileCrusherWriteOut::mostHeld()
{
    int held = 0;
    int most = 0;
    for (const CallRecord &record : qAsConst(interception().calls)) {
        if (record.call == Call::Unlink)
            most = qMax(most, ++held);
        else if (record.call == Call::Close && !record.hasName)
            --held;
    }
    return held == 0 ? most : -1;
}

/// The file lost its name, then was written from its start to its end, then closed for good.
void TestFileCrusherWriteOut::checkWrittenOut(ino_t inode) const
{
    const int removed = indexOf(Call::Unlink, inode);
    QVERIFY(removed >= 0);
    const int begun = indexOf(Call::Start, inode, removed);
    QVERIFY(begun > removed);
    QCOMPARE(interception().calls.at(begun).offset, off_t{0});
    QCOMPARE(interception().calls.at(begun).length, off_t{0});
    int written = indexOf(Call::Wait, inode, begun);
    if (written < 0)
        written = indexOf(Call::DataSync, inode, begun);
    QVERIFY(written > begun);
    QCOMPARE(interception().calls.at(written).length, off_t{0});
    const int closed = indexOf(Call::Close, inode, removed);
    QVERIFY(closed > written);
    const int verdict = indexOf(Call::Verdict);
    QVERIFY(verdict < 0 || verdict > closed);
}

void TestFileCrusherWriteOut::checkAllWrittenOut(const QList<ino_t> &inodes) const
{
    for (const ino_t inode : inodes) {
        checkWrittenOut(inode);
        if (QTest::currentTestFailed())
            return;
    }
}

void TestFileCrusherWriteOut::everyFileIsWrittenOutAfterItsNameWentAndBeforeTheVerdict()
{
    QList<ino_t> inodes = makeFiles(QStringLiteral("top"), 100, 4096);
    inodes += makeFiles(QStringLiteral("top/sub/deep"), 100, 5000);
    runWorker(tree->path(QStringLiteral("top")), "finishOne");
    QVERIFY(indexOf(Call::Verdict) > 0);
    checkAllWrittenOut(inodes);
}

void TestFileCrusherWriteOut::loneFileIsWrittenOutBeforeItsVerdict()
{
    const QString file = tree->makeFile(QStringLiteral("lone"), 5000);
    const ino_t inode = inodeOf(file);
    runWorker(file, "finishOne");
    checkWrittenOut(inode);
    QCOMPARE(countOf(Call::DataSync, inode), 1);
}

void TestFileCrusherWriteOut::nothingIsSyncedBeforeItsNameGoes()
{
    makeFiles(QStringLiteral("top"), 100, 10000);
    crusher->shredDirectory(tree->path(QStringLiteral("top")).toUtf8().constData());
    QCOMPARE(countOf(Call::ForbiddenSync), 0);
    QCOMPARE(interception().opensThatWriteThrough, 0);
    for (const CallRecord &record : qAsConst(interception().calls)) {
        if (record.call == Call::Start || record.call == Call::Wait
            || record.call == Call::DataSync)
            QVERIFY(!record.hasName);
    }
}

/// Otherwise gigabytes would wait in memory when the last percent is told.
void TestFileCrusherWriteOut::largeFileIsWrittenOutWindowByWindow()
{
    constexpr off_t window = WriteWindow::windowSize;
    const QString file = tree->makeFile(QStringLiteral("lone"), 3 * window + 5);
    const ino_t inode = inodeOf(file);
    QCOMPARE(crusher->shredFile(file.toUtf8().constData()), qint64{3 * window + 5});
    checkWrittenOut(inode);

    QList<off_t> started;
    QList<off_t> waitedFor;
    for (const CallRecord &record : qAsConst(interception().calls)) {
        if (!record.hasName || record.call == Call::Unlink || record.call == Call::Close)
            continue;
        QVERIFY(record.call == Call::Start || record.call == Call::Wait);
        QCOMPARE(record.length, window);
        (record.call == Call::Start ? started : waitedFor).append(record.offset);
        // A window is waited for while the next one is under way.
        QVERIFY(record.call == Call::Start || started.last() == record.offset + window);
    }
    QCOMPARE(started, (QList<off_t>{0, window, 2 * window}));
    QCOMPARE(waitedFor, (QList<off_t>{0, window}));
}

void TestFileCrusherWriteOut::emptyFilesAreNotWrittenOut()
{
    QList<ino_t> inodes = makeFiles(QStringLiteral("top"), 10, 0);
    makeFiles(QStringLiteral("top/sub"), 1, 100);
    QCOMPARE(crusher->shredDirectory(tree->path(QStringLiteral("top")).toUtf8().constData()),
             qint64{0});
    for (const ino_t inode : qAsConst(inodes)) {
        QVERIFY(indexOf(Call::Unlink, inode) >= 0);
        QCOMPARE(indexOf(Call::Start, inode), -1);
        QCOMPARE(indexOf(Call::Wait, inode), -1);
        QCOMPARE(indexOf(Call::DataSync, inode), -1);
    }
}

void TestFileCrusherWriteOut::fileWithASecondNameIsWrittenOut()
{
    const QString file = tree->makeFile(QStringLiteral("top/file"), 5000);
    const QString second = tree->makeHardLink(QStringLiteral("second"), file);
    crusher->shredDirectory(tree->path(QStringLiteral("top")).toUtf8().constData());
    checkWrittenOut(inodeOf(second));
}

void TestFileCrusherWriteOut::fileWhoseRemovalFailsIsWrittenOut()
{
    const QString lone = tree->makeFile(QStringLiteral("lone"), 5000);
    const QString inTree = tree->makeFile(QStringLiteral("top/file"), 5000);
    interception().removalFails = true;
    QCOMPARE(crusher->shredFile(lone.toUtf8().constData()), CrushResult::RemoveFailed);
    checkWrittenOut(inodeOf(lone));
    QCOMPARE(crusher->shredDirectory(tree->path(QStringLiteral("top")).toUtf8().constData()),
             CrushResult::DirectoryFailed);
    checkWrittenOut(inodeOf(inTree));
}

/// So that the drive's own cache is asked to empty, once.
void TestFileCrusherWriteOut::lastFileOfAPathIsSyncedOnce()
{
    makeFiles(QStringLiteral("top"), 150, 100);
    crusher->shredDirectory(tree->path(QStringLiteral("top")).toUtf8().constData());
    QCOMPARE(countOf(Call::DataSync), 1);
    int lastUnlink = -1;
    for (int index = indexOf(Call::Unlink); index >= 0; index = indexOf(Call::Unlink, 0, index + 1))
        lastUnlink = index;
    const int sync = indexOf(Call::DataSync);
    QCOMPARE(interception().calls.at(sync).inode, interception().calls.at(lastUnlink).inode);
    QCOMPARE(indexOf(Call::Wait, 0, sync), -1);
}

void TestFileCrusherWriteOut::everyFileIsSyncedWhereRangesAreUnknown()
{
    const QList<ino_t> inodes = makeFiles(QStringLiteral("top"), 100, 100);
    interception().syncFileRangeError = ENOSYS;
    crusher->shredDirectory(tree->path(QStringLiteral("top")).toUtf8().constData());
    for (const ino_t inode : inodes) {
        const int sync = indexOf(Call::DataSync, inode);
        QVERIFY(sync > indexOf(Call::Unlink, inode));
        QVERIFY(sync < indexOf(Call::Close, inode, indexOf(Call::Unlink, inode)));
        QCOMPARE(countOf(Call::DataSync, inode), 1);
    }
}

/// Overlays, FUSE and network file systems answer sync_file_range with success.
void TestFileCrusherWriteOut::everyFileIsSyncedWhereRangesDoNothing()
{
    for (const long fileSystem : {long{OVERLAYFS_SUPER_MAGIC}, long{FUSE_SUPER_MAGIC}}) {
        interception() = Interception();
        interception().fileSystem = fileSystem;
        const QList<ino_t> inodes = makeFiles(QStringLiteral("top"), 100, 100);
        crusher->shredDirectory(tree->path(QStringLiteral("top")).toUtf8().constData());
        for (const ino_t inode : inodes) {
            const int sync = indexOf(Call::DataSync, inode);
            QVERIFY(sync > indexOf(Call::Unlink, inode));
            QVERIFY(sync < indexOf(Call::Close, inode, indexOf(Call::Unlink, inode)));
        }
        QCOMPARE(countOf(Call::DataSync), 100);
    }
}

void TestFileCrusherWriteOut::nothingIsWrittenOutInMemory()
{
    interception().fileSystem = TMPFS_MAGIC;
    makeFiles(QStringLiteral("top"), 10, 100);
    crusher->shredDirectory(tree->path(QStringLiteral("top")).toUtf8().constData());
    QCOMPARE(countOf(Call::Start) + countOf(Call::Wait) + countOf(Call::DataSync), 0);
}

/// A tree may hold a mounted folder, and so lie on two drives.
void TestFileCrusherWriteOut::everyDriveIsAskedToEmptyItsCache()
{
    const QList<ino_t> here = makeFiles(QStringLiteral("top"), 10, 100);
    const QList<ino_t> there = makeFiles(QStringLiteral("top/mounted"), 10, 100);
    interception().deviceOf = [&](ino_t inode) { return there.contains(inode) ? 2 : 1; };
    crusher->shredDirectory(tree->path(QStringLiteral("top")).toUtf8().constData());
    QCOMPARE(countOf(Call::DataSync), 2);
    const ino_t first = interception().calls.at(indexOf(Call::DataSync)).inode;
    QVERIFY(here.contains(first));
    const int next = indexOf(Call::DataSync, 0, indexOf(Call::DataSync) + 1);
    QVERIFY(there.contains(interception().calls.at(next).inode));
}

void TestFileCrusherWriteOut::fewFilesAreKeptOpenAtOnce()
{
    makeFiles(QStringLiteral("top"), 300, 100);
    crusher->shredDirectory(tree->path(QStringLiteral("top")).toUtf8().constData());
    const int most = mostHeld();
    QVERIFY(most > 1);
    QVERIFY(most <= static_cast<int>(PendingWrites::maxFiles) + 1);
}

/// The window and the desktop's libraries need descriptors too.
void TestFileCrusherWriteOut::fewDescriptorsAreShared()
{
    struct rlimit before = {};
    QCOMPARE(::getrlimit(RLIMIT_NOFILE, &before), 0);
    struct rlimit few = before;
    few.rlim_cur = 64;
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &few), 0);
    FileCrusher frugal;
    makeFiles(QStringLiteral("top/one/two"), 100, 100);
    const qint64 result =
        frugal.shredDirectory(tree->path(QStringLiteral("top")).toUtf8().constData());
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &before), 0);
    QCOMPARE(result, qint64{0});
    QVERIFY(mostHeld() <= 64 / 8 + 1);
}

void TestFileCrusherWriteOut::fewBytesAreKeptOpenAtOnce()
{
    constexpr qint64 size = PendingWrites::maxBytes / 4;
    makeFiles(QStringLiteral("top"), 20, size);
    crusher->shredDirectory(tree->path(QStringLiteral("top")).toUtf8().constData());
    const int most = mostHeld();
    QVERIFY(most > 1);
    QVERIFY(most <= 5);
}

/// Network and FUSE file systems keep what is open under a hidden name in its folder.
void TestFileCrusherWriteOut::nothingIsHeldWhenTheFirstFolderGoes()
{
    const QList<ino_t> inodes = makeFiles(QStringLiteral("top/sub"), 30, 100);
    crusher->shredDirectory(tree->path(QStringLiteral("top")).toUtf8().constData());
    const int firstFolder = indexOf(Call::RemoveFolder);
    for (const ino_t inode : inodes) {
        const int closed = indexOf(Call::Close, inode, indexOf(Call::Unlink, inode));
        QVERIFY(closed >= 0);
        QVERIFY(closed < firstFolder);
    }
}

void TestFileCrusherWriteOut::stoppedFolderIsWrittenOutBeforeStoppedIsTold()
{
    const QList<ino_t> inodes = makeFiles(QStringLiteral("top"), 30, 100);
    const auto noteVerdict = log->onRecord;
    log->onRecord = [&](const SignalRecord &record) {
        if (log->count("addToHistory") == 10)
            crusher->requestStop(true);
        noteVerdict(record);
    };
    runWorker(tree->path(QStringLiteral("top")), "stopped");
    QCOMPARE(log->count("finishOne"), 0);
    QCOMPARE(countOf(Call::Unlink), 10);
    QList<ino_t> removed = inodes;
    removed.erase(std::remove_if(removed.begin(), removed.end(),
                                 [this](ino_t inode) { return indexOf(Call::Unlink, inode) < 0; }),
                  removed.end());
    checkAllWrittenOut(removed);
}

void TestFileCrusherWriteOut::failedWriteOutIsNotNoticed()
{
    const QString file = tree->makeFile(QStringLiteral("top/file"), 5000);
    interception().syncFileRangeError = EIO;
    interception().dataSyncError = EIO;
    runWorker(tree->path(QStringLiteral("top")), "finishOne");
    QVERIFY(!entryExists(file));
    QCOMPARE(log->count("failedOne"), 0);
}

void TestFileCrusherWriteOut::withoutDescriptorsOlderFilesAreWaitedForFirst()
{
    const QList<ino_t> inodes = makeFiles(QStringLiteral("top"), 10, 100);
    log->onRecord = [this](const SignalRecord &) {
        interception().failingDuplications = log->count("addToHistory") == 5 ? 1 : 0;
    };
    QCOMPARE(crusher->shredDirectory(tree->path(QStringLiteral("top")).toUtf8().constData()),
             qint64{0});
    checkAllWrittenOut(inodes);
    // Once for the files waited for, once at the end.
    QCOMPARE(countOf(Call::DataSync), 2);
}

TEST_SUITE(writeout, TestFileCrusherWriteOut)
#include "writeout.moc"
