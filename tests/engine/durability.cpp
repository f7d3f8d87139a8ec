// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// When the new bytes are sent to the disk, seen from below: every file after its name went and
// before the verdict, and few are held open meanwhile. That the bytes then stand on the disk,
// medium.cpp reads there.

#include "engine/pendingwrites.h"
#include "engine/writewindow.h"

#include "enginetest.h"
#include "suites.h"
#include "systemcalls.h"

#include <QtTest>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/vfs.h>

using namespace testsupport;

namespace
{

enum class Step { Unlink, RemoveFolder, Start, Wait, DataSync, Forbidden, Close, Verdict };

/// A step with a regular file; for RemoveFolder, Forbidden and Verdict no file is told.
struct StepRecord {
    Step step;
    ino_t inode = 0;
    long long offset = 0;
    long long length = 0;
    bool hasName = false; ///< the file still had a name
};

bool isSync(Step step)
{
    return step == Step::Start || step == Step::Wait || step == Step::DataSync;
}

ino_t inodeOf(const QString &path)
{
    struct stat status = {};
    ::stat(path.toUtf8().constData(), &status);
    return status.st_ino;
}

} // namespace

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
    QList<ino_t> makeFiles(const char *folder, int count, qint64 size) const;
    qint64 shredTop() { return shredFolder(tree->path("top")); }
    void note(const SystemCall &call);
    void noteFile(Step step, const SystemCall &call);
    CallFate fateOf(const SystemCall &call);
    void changeAnswer(const SystemCall &call, void *answer) const;
    int indexOf(Step step, ino_t inode = 0, int from = 0) const;
    int countOf(Step step) const;
    int mostHeld() const;
    void checkWrittenOut(const QList<ino_t> &inodes) const;

    std::unique_ptr<CallHook> hook;
    QList<StepRecord> steps;
    QHash<QString, int> failures; ///< the error number of a call
    int failingDuplications = 0;
    int failDuplicationAfter = -1;      ///< removals
    int stopAfter = -1;                 ///< removals
    long fileSystem = EXT4_SUPER_MAGIC; ///< what fstatfs tells, whatever the test runs on
    QList<ino_t> onAnotherDrive;
};

void TestDurability::init()
{
    EngineTest::init();
    steps.clear();
    failures.clear();
    failingDuplications = 0;
    failDuplicationAfter = stopAfter = -1;
    fileSystem = EXT4_SUPER_MAGIC;
    onAnotherDrive.clear();
    log->onRecord = [this](const SignalRecord &record) {
        if (log->count("addToHistory") == stopAfter && record.name == "addToHistory")
            crusher->requestStop(true);
        failingDuplications = log->count("addToHistory") == failDuplicationAfter ? 1 : 0;
        if (record.name == "finishOne" || record.name == "failedOne" || record.name == "stopped")
            steps.append({Step::Verdict});
    };
    hook = std::make_unique<CallHook>(
        [this](const SystemCall &call) { return fateOf(call); },
        [this](const SystemCall &call, void *answer) { changeAnswer(call, answer); });
}

void TestDurability::cleanup()
{
    hook.reset();
    EngineTest::cleanup();
}

CallFate TestDurability::fateOf(const SystemCall &call)
{
    note(call);
    if (call.is("fcntl") && call.flags == F_DUPFD_CLOEXEC && failingDuplications-- > 0)
        return CallFate{EMFILE};
    return CallFate{failures.value(QLatin1String(call.name))};
}

void TestDurability::note(const SystemCall &call)
{
    if (call.kind == CallKind::Open && (call.flags & (O_SYNC | O_DSYNC)) != 0)
        steps.append({Step::Forbidden});
    else if (call.kind == CallKind::Remove)
        noteFile(Step::Unlink, call);
    else if (call.kind == CallKind::RemoveFolder)
        steps.append({Step::RemoveFolder});
    else if (call.is("close"))
        noteFile(Step::Close, call);
    else if (call.is("sync_file_range"))
        noteFile((call.flags & SYNC_FILE_RANGE_WAIT_AFTER) != 0 ? Step::Wait : Step::Start, call);
    else if (call.is("fdatasync"))
        noteFile(Step::DataSync, call);
    else if (call.kind == CallKind::WriteOut)
        steps.append({Step::Forbidden});
}

void TestDurability::noteFile(Step step, const SystemCall &call)
{
    struct stat status = {};
    const int result = call.path != nullptr
                           ? ::fstatat(call.file, call.path, &status, AT_SYMLINK_NOFOLLOW)
                           : ::fstat(call.file, &status);
    if (result == 0 && S_ISREG(status.st_mode))
        steps.append({step, status.st_ino, call.offset, call.length, status.st_nlink > 0});
}

void TestDurability::changeAnswer(const SystemCall &call, void *answer) const
{
    if (call.is("fstatfs")) {
        static_cast<struct statfs *>(answer)->f_type = fileSystem;
    } else if (call.is("fstat")) {
        auto *const status = static_cast<struct stat *>(answer);
        if (onAnotherDrive.contains(status->st_ino))
            ++status->st_dev;
    }
}

QList<ino_t> TestDurability::makeFiles(const char *folder, int count, qint64 size) const
{
    QList<ino_t> inodes;
    for (int number = 0; number < count; ++number)
        inodes.append(inodeOf(tree->makeFile(
            QStringLiteral("%1/file%2").arg(QLatin1String(folder)).arg(number), size)));
    return inodes;
}

/// The number of the first such step from @p from on, with @p inode unless that is 0; or -1.
int TestDurability::indexOf(Step step, ino_t inode, int from) const
{
    for (int index = from; index >= 0 && index < steps.size(); ++index) {
        const StepRecord &record = steps.at(index);
        if (record.step == step && (inode == 0 || record.inode == inode))
            return index;
    }
    return -1;
}

int TestDurability::countOf(Step step) const
{
    return static_cast<int>(
        std::count_if(steps.begin(), steps.end(),
                      [step](const StepRecord &record) { return record.step == step; }));
}

/// The most files that were open at once after their removal.
int TestDurability::mostHeld() const
{
    int held = 0;
    int most = 0;
    for (const StepRecord &record : steps) {
        if (record.step == Step::Unlink)
            most = qMax(most, ++held);
        else if (record.step == Step::Close && !record.hasName)
            --held;
    }
    return held == 0 ? most : -1;
}

/// Each file lost its name, then was written from its start to its end, then closed for good:
/// before the first folder goes, as network file systems keep what is open under a hidden name in
/// it.
void TestDurability::checkWrittenOut(const QList<ino_t> &inodes) const
{
    QVERIFY(!inodes.isEmpty());
    for (const ino_t inode : inodes) {
        const int removed = indexOf(Step::Unlink, inode);
        QVERIFY(removed >= 0);
        const int begun = indexOf(Step::Start, inode, removed);
        QVERIFY(begun > removed);
        QCOMPARE(steps.at(begun).offset, 0);
        QCOMPARE(steps.at(begun).length, 0);
        int written = indexOf(Step::Wait, inode, begun);
        if (written < 0)
            written = indexOf(Step::DataSync, inode, begun);
        QVERIFY(written > begun);
        QCOMPARE(steps.at(written).length, 0);
        const int closed = indexOf(Step::Close, inode, removed);
        QVERIFY(closed > written);
        const int verdict = indexOf(Step::Verdict);
        QVERIFY(verdict < 0 || verdict > closed);
        const int folderRemoved = indexOf(Step::RemoveFolder);
        QVERIFY(folderRemoved < 0 || folderRemoved > closed);
    }
}

void TestDurability::everyFileIsWrittenOutAfterItsNameWentAndBeforeTheVerdict_data()
{
    QTest::addColumn<QString>("victim");
    QTest::newRow("folder") << QStringLiteral("top");
    QTest::newRow("file") << QStringLiteral("top/file0");
}

void TestDurability::everyFileIsWrittenOutAfterItsNameWentAndBeforeTheVerdict()
{
    QFETCH(QString, victim);
    QList<ino_t> inodes = makeFiles("top", 100, 4096);
    const bool isFile = victim != QLatin1String("top");
    if (isFile)
        inodes = inodes.mid(0, 1);
    else
        inodes += makeFiles("top/sub/deep", 100, 5000);
    const QList<ino_t> empty = makeFiles("top/empty", 10, 0);
    workOn({tree->path(victim)});
    QVERIFY(indexOf(Step::Verdict) > 0);
    checkWrittenOut(inodes);
    QCOMPARE(countOf(Step::Forbidden), 0);
    for (const StepRecord &record : qAsConst(steps))
        QVERIFY(!isSync(record.step) || (!record.hasName && !empty.contains(record.inode)));
}

/// Otherwise gigabytes would wait in memory when the last percent is told.
void TestDurability::largeFileIsWrittenOutWindowByWindow()
{
    constexpr long long window = WriteWindow::windowSize;
    const QString file = tree->makeFile("lone", 3 * window + 5);
    const ino_t inode = inodeOf(file);
    QCOMPARE(shredFile(file), qint64{3 * window + 5});
    checkWrittenOut({inode});

    QList<long long> started;
    QList<long long> waitedFor;
    for (const StepRecord &record : qAsConst(steps)) {
        if (!record.hasName || !isSync(record.step))
            continue;
        QCOMPARE(record.length, window);
        (record.step == Step::Start ? started : waitedFor).append(record.offset);
        // A window is waited for while the next one is under way.
        QVERIFY(record.step == Step::Start || started.last() == record.offset + window);
    }
    QCOMPARE(started, (QList<long long>{0, window, 2 * window}));
    QCOMPARE(waitedFor, (QList<long long>{0, window}));
}

void TestDurability::fileThatKeepsANameIsWrittenOut()
{
    const QString second = tree->makeHardLink("second", tree->makeFile("top/other", 5000));
    QCOMPARE(shredTop(), qint64{0});
    checkWrittenOut({inodeOf(second)});
    steps.clear();
    const QString lone = tree->makeFile("lone", 5000);
    const QString inTree = tree->makeFile("top/file", 5000);
    failures = {{QStringLiteral("unlinkat"), EPERM}};
    QCOMPARE(shredFile(lone), CrushResult::RemoveFailed);
    QCOMPARE(shredTop(), CrushResult::DirectoryFailed);
    checkWrittenOut({inodeOf(lone), inodeOf(inTree)});
}

/// So that the drive's own cache is asked to empty, once.
void TestDurability::lastFileOfAPathIsSyncedOnce()
{
    makeFiles("top", 150, 100);
    QCOMPARE(shredTop(), qint64{0});
    QCOMPARE(countOf(Step::DataSync), 1);
    const int sync = indexOf(Step::DataSync);
    ino_t last = 0;
    for (const StepRecord &record : qAsConst(steps))
        last = record.step == Step::Unlink ? record.inode : last;
    QCOMPARE(steps.at(sync).inode, last);
    QCOMPARE(indexOf(Step::Wait, 0, sync), -1);
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
    fileSystem = static_cast<long>(kind);
    failures = {{QStringLiteral("sync_file_range"), error}};
    const QList<ino_t> inodes = makeFiles("top", 100, 100);
    QCOMPARE(shredTop(), qint64{0});
    for (const ino_t inode : inodes) {
        const int removed = indexOf(Step::Unlink, inode);
        const int sync = indexOf(Step::DataSync, inode);
        QVERIFY(sync > removed);
        QVERIFY(sync < indexOf(Step::Close, inode, removed));
    }
    QCOMPARE(countOf(Step::DataSync), 100);
}

void TestDurability::nothingIsWrittenOutInMemory()
{
    fileSystem = TMPFS_MAGIC;
    makeFiles("top", 10, 100);
    QCOMPARE(shredTop(), qint64{0});
    QVERIFY(std::none_of(steps.begin(), steps.end(),
                         [](const StepRecord &record) { return isSync(record.step); }));
}

/// A tree may hold a mounted folder, and so lie on two drives.
void TestDurability::everyDriveIsAskedToEmptyItsCache()
{
    const QList<ino_t> here = makeFiles("top", 10, 100);
    onAnotherDrive = makeFiles("top/mounted", 10, 100);
    QCOMPARE(shredTop(), qint64{0});
    QCOMPARE(countOf(Step::DataSync), 2);
    const int first = indexOf(Step::DataSync);
    QVERIFY(here.contains(steps.at(first).inode));
    QVERIFY(onAnotherDrive.contains(steps.at(indexOf(Step::DataSync, 0, first + 1)).inode));
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
    makeFiles("top", count, size);
    QCOMPARE(shredTop(), qint64{0});
    QVERIFY(mostHeld() > 1 && mostHeld() <= most + 1);
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
    const qint64 result = frugal.shredDirectory(tree->path("top").toUtf8().constData());
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &before), 0);
    QCOMPARE(result, qint64{0});
    QVERIFY(mostHeld() > 0 && mostHeld() <= 64 / 8 + 1);
}

void TestDurability::stoppedFolderIsWrittenOutBeforeStoppedIsTold()
{
    makeFiles("top", 30, 100);
    stopAfter = 10;
    QVERIFY(workOn({tree->path("top")}).contains({"stopped"}));
    QList<ino_t> removed;
    for (const StepRecord &record : qAsConst(steps)) {
        if (record.step == Step::Unlink)
            removed.append(record.inode);
    }
    QCOMPARE(removed.size(), 10);
    checkWrittenOut(removed);
}

void TestDurability::withoutDescriptorsOlderFilesAreWaitedForFirst()
{
    const QList<ino_t> inodes = makeFiles("top", 10, 100);
    failDuplicationAfter = 5;
    QCOMPARE(shredTop(), qint64{0});
    checkWrittenOut(inodes);
    // Once for the files waited for, once at the end.
    QCOMPARE(countOf(Step::DataSync), 2);
}

TEST_SUITE(durability, TestDurability)
#include "durability.moc"
