// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// When the new bytes are sent to the disk, seen from below: the test keeps account of where the
// bytes of each removed file are, as the kernel does. That they then stand on the disk, medium.cpp
// reads there.

#include "engine/pendingwrites.h"
#include "engine/writewindow.h"

#include "enginetest.h"

#include <cerrno>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/vfs.h>

using namespace testsupport;

/// How far the bytes of a file are that was removed and is still open.
enum class Bytes { InMemory, OnTheirWay, OnTheDisk };

/// The kernel's calls on the way to a disk. The answers of fstatfs and fstat say what kind of disk,
/// whatever the test runs on.
class WatchedDisk
{
public:
    QHash<QString, int> failures; ///< the error number of a call
    int failingDuplications = 0;
    long fileSystem = EXT4_SUPER_MAGIC;
    QSet<ino_t> onAnotherDrive;

    QMap<ino_t, Bytes> held; ///< files that were removed and are still open
    int mostHeld = 0;
    QSet<ino_t> removed;
    ino_t lastRemoved = 0;
    QList<ino_t> synced; ///< by fdatasync
    QStringList windows; ///< what was written out of files before their removal
    QStringList wrong;

    void expectNothingHeld(const char *when)
    {
        if (!held.isEmpty())
            wrong.append(QStringLiteral("files are open ") + QLatin1String(when));
    }

private:
    CallFate fateOf(const SystemCall &call);
    void follow(const SystemCall &call, ino_t inode);
    void followRange(const SystemCall &call, ino_t inode);
    void changeAnswer(const SystemCall &call, void *answer) const;

    const CallHook hook{
        [this](const SystemCall &call) { return fateOf(call); },
        [this](const SystemCall &call, void *answer) { changeAnswer(call, answer); }};
};

CallFate WatchedDisk::fateOf(const SystemCall &call)
{
    if (call.is("fcntl") && call.flags == F_DUPFD_CLOEXEC && failingDuplications-- > 0)
        return CallFate{EMFILE};
    struct stat status = {};
    const int result = call.path != nullptr
                           ? ::fstatat(call.file, call.path, &status, AT_SYMLINK_NOFOLLOW)
                           : ::fstat(call.file, &status);
    const bool hasBytes = result == 0 && S_ISREG(status.st_mode) && status.st_size > 0;
    follow(call, hasBytes ? status.st_ino : 0);
    return CallFate{failures.value(QLatin1String(call.name))};
}

void WatchedDisk::follow(const SystemCall &call, ino_t inode)
{
    if (call.kind == CallKind::RemoveFolder) {
        // Network file systems keep a removed file that is still open under a hidden name there.
        expectNothingHeld("when a folder goes");
    } else if (call.kind == CallKind::Remove && inode != 0) {
        held[inode] = fileSystem == TMPFS_MAGIC ? Bytes::OnTheDisk : Bytes::InMemory;
        mostHeld = qMax(mostHeld, held.size());
        removed.insert(inode);
        lastRemoved = inode;
    } else if (call.is("close") && held.contains(inode)) {
        if (held.take(inode) != Bytes::OnTheDisk)
            wrong.append(QStringLiteral("closed with bytes in memory"));
    } else if (call.is("sync_file_range")) {
        followRange(call, inode);
    } else if (call.is("fdatasync") && held.contains(inode)) {
        held[inode] = Bytes::OnTheDisk;
        synced.append(inode);
    } else if (call.kind == CallKind::WriteOut
               || (call.kind == CallKind::Open && (call.flags & (O_SYNC | O_DSYNC)) != 0)) {
        wrong.append(QLatin1String(call.name) + QStringLiteral(" before the name went"));
    }
}

void WatchedDisk::followRange(const SystemCall &call, ino_t inode)
{
    constexpr long long window = WriteWindow::windowSize;
    const bool isWait = (call.flags & SYNC_FILE_RANGE_WAIT_AFTER) != 0;
    if (inode != 0 && !held.contains(inode) && call.length == window)
        windows.append(QStringLiteral("%1 at %2")
                           .arg(isWait ? QStringLiteral("wait") : QStringLiteral("start"))
                           .arg(static_cast<double>(call.offset) / window));
    else if (!held.contains(inode) || call.offset != 0 || call.length != 0)
        wrong.append(QStringLiteral("written out: neither a window nor a removed file"));
    else if (!isWait)
        held[inode] = Bytes::OnTheirWay;
    else if (held[inode] != Bytes::OnTheirWay)
        wrong.append(QStringLiteral("waited for what was not begun"));
    else if (fileSystem == EXT4_SUPER_MAGIC && !failures.contains(QLatin1String(call.name)))
        held[inode] = Bytes::OnTheDisk; // others say so and have written nothing
}

void WatchedDisk::changeAnswer(const SystemCall &call, void *answer) const
{
    if (call.is("fstatfs")) {
        static_cast<struct statfs *>(answer)->f_type = fileSystem;
    } else if (call.is("fstat")) {
        auto *const status = static_cast<struct stat *>(answer);
        status->st_dev += onAnotherDrive.contains(status->st_ino) ? 1U : 0U;
    }
}

static ino_t inodeOf(const QString &path)
{
    struct stat status = {};
    ::stat(path.toUtf8().constData(), &status);
    return status.st_ino;
}

class TestDurability : public EngineTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void everyFileIsWrittenOutAfterItsNameWentAndBeforeTheVerdict_data();
    void everyFileIsWrittenOutAfterItsNameWentAndBeforeTheVerdict();
    void largeFileIsWrittenOutWindowByWindow();
    void fileThatKeepsANameIsWrittenOut();
    void lastFileOfAPathIsSyncedOnce();
    void everyFileIsSyncedWhereRangesAreNotWritten_data();
    void everyFileIsSyncedWhereRangesAreNotWritten();
    void nothingIsWrittenOutInMemory();
    void everyDriveIsAskedToEmptyItsCache();
    void littleIsKeptOpenAtOnce_data();
    void littleIsKeptOpenAtOnce();
    void fewDescriptorsAreShared();
    void stoppedFolderIsWrittenOutBeforeStoppedIsTold();
    void withoutDescriptorsOlderFilesAreWaitedForFirst();

private:
    QSet<ino_t> makeFiles(const char *folder, int count, qint64 size) const;
    qint64 shredTop() { return shredFolder(top()); }
    void checkWrittenOut(const QSet<ino_t> &inodes) const;

    std::unique_ptr<WatchedDisk> disk;
};

void TestDurability::init()
{
    EngineTest::init();
    disk = std::make_unique<WatchedDisk>();
    log->onRecord = [this](const SignalRecord &record) {
        if (record.name == "finishOne" || record.name == "failedOne" || record.name == "stopped")
            disk->expectNothingHeld("at the verdict");
    };
}

void TestDurability::cleanup()
{
    disk.reset();
    EngineTest::cleanup();
}

/// The files @p inodes, and no other, lost their names, were written out and closed for good.
void TestDurability::checkWrittenOut(const QSet<ino_t> &inodes) const
{
    QCOMPARE(disk->wrong, QStringList());
    QVERIFY(disk->held.isEmpty() && !inodes.isEmpty());
    QCOMPARE(disk->removed, inodes);
}

QSet<ino_t> TestDurability::makeFiles(const char *folder, int count, qint64 size) const
{
    QSet<ino_t> inodes;
    for (int number = 0; number < count; ++number)
        inodes.insert(inodeOf(tree->makeFile(
            QStringLiteral("%1/file%2").arg(QLatin1String(folder)).arg(number), size)));
    return inodes;
}

void TestDurability::everyFileIsWrittenOutAfterItsNameWentAndBeforeTheVerdict_data()
{
    QTest::addColumn<QString>("victim");
    QTest::newRow("folder") << "top";
    QTest::newRow("file") << "top/file0";
}

void TestDurability::everyFileIsWrittenOutAfterItsNameWentAndBeforeTheVerdict()
{
    QFETCH(QString, victim);
    QSet<ino_t> inodes = makeFiles("top", 100, 4096) | makeFiles("top/sub/deep", 100, 5000);
    makeFiles("top/empty", 10, 0);
    const QString path = tree->path(victim);
    if (QFileInfo(path).isFile())
        inodes = {inodeOf(path)};
    QVERIFY(workOn({path}).contains(success(path)));
    checkWrittenOut(inodes);
    QCOMPARE(disk->windows, QStringList());
}

/// Otherwise gigabytes would wait in memory when the last percent is told.
void TestDurability::largeFileIsWrittenOutWindowByWindow()
{
    const QString file = tree->makeFile("lone", 3 * WriteWindow::windowSize + 5);
    const ino_t inode = inodeOf(file);
    QVERIFY(shredFile(file) > 0);
    checkWrittenOut({inode});
    // A window is waited for while the next one is under way.
    QCOMPARE(disk->windows.join(QStringLiteral(", ")),
             QStringLiteral("start at 0, start at 1, wait at 0, start at 2, wait at 1"));
}

void TestDurability::fileThatKeepsANameIsWrittenOut()
{
    const QString second = tree->makeHardLink("second", tree->makeFile("top/other", 5000));
    QCOMPARE(shredTop(), qint64{0});
    checkWrittenOut({inodeOf(second)});
    const QString lone = tree->makeFile("lone", 5000);
    const QString inTree = tree->makeFile("top/file", 5000);
    disk->failures = {{QStringLiteral("unlinkat"), EPERM}};
    QCOMPARE(shredFile(lone), CrushResult::RemoveFailed);
    QCOMPARE(shredTop(), CrushResult::DirectoryFailed);
    checkWrittenOut({inodeOf(second), inodeOf(lone), inodeOf(inTree)});
}

/// So that the drive's own cache is asked to empty, once.
void TestDurability::lastFileOfAPathIsSyncedOnce()
{
    const QSet<ino_t> inodes = makeFiles("top", 150, 100);
    QCOMPARE(shredTop(), qint64{0});
    checkWrittenOut(inodes);
    QCOMPARE(disk->synced, QList<ino_t>{disk->lastRemoved});
}

void TestDurability::everyFileIsSyncedWhereRangesAreNotWritten_data()
{
    QTest::addColumn<qint64>("kind");
    QTest::addColumn<int>("error");
    QTest::newRow("the kernel does not know them") << qint64{EXT4_SUPER_MAGIC} << ENOSYS;
    // These answer sync_file_range with success.
    QTest::newRow("overlay") << qint64{OVERLAYFS_SUPER_MAGIC} << 0;
    QTest::newRow("FUSE") << qint64{0x65735546} << 0; // not named in older linux/magic.h
}

void TestDurability::everyFileIsSyncedWhereRangesAreNotWritten()
{
    QFETCH(qint64, kind);
    QFETCH(int, error);
    disk->fileSystem = static_cast<long>(kind);
    if (error != 0)
        disk->failures = {{QStringLiteral("sync_file_range"), error}};
    const QSet<ino_t> inodes = makeFiles("top", 100, 100);
    QCOMPARE(shredTop(), qint64{0});
    checkWrittenOut(inodes);
    QCOMPARE(disk->synced.size(), inodes.size());
}

void TestDurability::nothingIsWrittenOutInMemory()
{
    disk->fileSystem = TMPFS_MAGIC;
    const QSet<ino_t> inodes = makeFiles("top", 10, 100);
    QCOMPARE(shredTop(), qint64{0});
    checkWrittenOut(inodes); // a range that is begun would have to be waited for
    QCOMPARE(disk->synced, QList<ino_t>());
}

/// A tree may hold a mounted folder, and so lie on two drives.
void TestDurability::everyDriveIsAskedToEmptyItsCache()
{
    const QSet<ino_t> here = makeFiles("top", 10, 100);
    disk->onAnotherDrive = makeFiles("top/mounted", 10, 100);
    QCOMPARE(shredTop(), qint64{0});
    QCOMPARE(disk->synced.size(), 2);
    QVERIFY(here.contains(disk->synced.first())
            && disk->onAnotherDrive.contains(disk->synced.last()));
}

void TestDurability::littleIsKeptOpenAtOnce_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<int>("most");
    QTest::newRow("few files") << 300 << qint64{100} << static_cast<int>(PendingWrites::maxFiles);
    QTest::newRow("few bytes") << 20 << static_cast<qint64>(PendingWrites::maxBytes / 4) << 4;
}

void TestDurability::littleIsKeptOpenAtOnce()
{
    QFETCH(int, count);
    QFETCH(qint64, size);
    QFETCH(int, most);
    const QSet<ino_t> inodes = makeFiles("top", count, size);
    QCOMPARE(shredTop(), qint64{0});
    checkWrittenOut(inodes);
    QVERIFY(disk->mostHeld > 1 && disk->mostHeld <= most + 1);
}

/// The window and the desktop's libraries need descriptors too.
void TestDurability::fewDescriptorsAreShared()
{
    struct rlimit before = {};
    QCOMPARE(::getrlimit(RLIMIT_NOFILE, &before), 0);
    struct rlimit few = before;
    few.rlim_cur = 64;
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &few), 0);
    FileCrusher frugal;
    makeFiles("top/one/two", 100, 100);
    const qint64 result = frugal.shredDirectory(top().toUtf8().constData());
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &before), 0);
    QCOMPARE(result, qint64{0});
    QVERIFY(disk->mostHeld > 0 && disk->mostHeld <= 64 / 8 + 1);
}

void TestDurability::stoppedFolderIsWrittenOutBeforeStoppedIsTold()
{
    makeFiles("top", 30, 100);
    log->onRecord = [this, check = log->onRecord](const SignalRecord &record) {
        check(record);
        if (record.name == "addToHistory" && log->count("addToHistory") == 10)
            crusher->requestStop(true);
    };
    QVERIFY(workOn({top()}).contains({"stopped"}));
    QCOMPARE(disk->removed.size(), 10);
    checkWrittenOut(disk->removed);
}

void TestDurability::withoutDescriptorsOlderFilesAreWaitedForFirst()
{
    const QSet<ino_t> inodes = makeFiles("top", 10, 100);
    log->onRecord = [this](const SignalRecord &) {
        disk->failingDuplications = log->count("addToHistory") == 5 ? 1 : 0;
    };
    QCOMPARE(shredTop(), qint64{0});
    checkWrittenOut(inodes);
    // Once for the files waited for, once at the end.
    QCOMPARE(disk->synced.size(), 2);
}

TEST_SUITE(durability, TestDurability)
#include "durability.moc"
