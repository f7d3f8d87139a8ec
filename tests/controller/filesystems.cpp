// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// File systems that refuse: mounted read-only, full to the last byte, mounted in the
// middle of what is chosen; and files that are immutable. The program moves into a mount
// namespace of its own, where what it mounts is nobody else's; where the machine allows
// no such thing, the tests are skipped.

#include "engine/filecrusher.h"

#include "inventory.h"
#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QCoreApplication>
#include <QtTest>

#include <memory>

#include <fcntl.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

// Defines as macros what older C libraries enumerate in <sys/mount.h>, so it comes after that.
#include <linux/fs.h>

using testsupport::entryExists;
using testsupport::inventoryOf;
using testsupport::SignalLog;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;

namespace
{

bool hasOwnMounts = false;

bool write(const char *file, const QByteArray &text)
{
    QFile out(QString::fromLatin1(file));
    return out.open(QIODevice::WriteOnly) && out.write(text) == text.size();
}

/// Before any thread runs. An ordinary user becomes root of a namespace that only the test is in.
bool enterOwnMounts()
{
    const uid_t user = ::getuid();
    const gid_t group = ::getgid();
    if (::unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0)
        return false;
    if (user != 0) {
        write("/proc/self/setgroups", "deny");
        write("/proc/self/uid_map", "0 " + QByteArray::number(user) + " 1");
        write("/proc/self/gid_map", "0 " + QByteArray::number(group) + " 1");
    }
    return ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

/// A file system, in memory unless said otherwise, mounted over a folder for the life of the
/// object.
class Mount
{
public:
    Mount(const QString &folder, const char *options, const char *type = "tmpfs")
        : place(folder.toUtf8())
        , done(::mount(type, place.constData(), type, 0, options) == 0)
    {
    }
    ~Mount()
    {
        if (done)
            ::umount2(place.constData(), MNT_DETACH);
    }
    Mount(const Mount &) = delete;
    Mount &operator=(const Mount &) = delete;

    bool isDone() const { return done; }
    bool makeReadOnly() const
    {
        return ::mount("none", place.constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
    }

private:
    QByteArray place;
    bool done;
};

/// Makes a file immutable, or lets it change again.
bool setImmutable(const QString &path, bool immutable)
{
    const int file = ::open(path.toUtf8().constData(), O_RDONLY | O_CLOEXEC);
    int flags = 0;
    bool done = ::ioctl(file, FS_IOC_GETFLAGS, &flags) == 0;
    flags = immutable ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
    done = done && ::ioctl(file, FS_IOC_SETFLAGS, &flags) == 0;
    ::close(file);
    return done;
}

} // namespace

class TestFileSystems : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void nothingChangesWhereItIsReadOnly();
    void fileThatCannotBeOverwrittenForLackOfSpaceGoes();
    void mountedFolderIsEmptiedAndStays();
    void immutableFileStays();
    void folderWhoseInodeNumberDoesNotLastIsShredded();

private:
    qint64 shredFile(const QString &path) { return crusher->shredFile(path.toUtf8().constData()); }
    qint64 shredFolder(const QString &path)
    {
        return crusher->shredDirectory(path.toUtf8().constData());
    }

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<FileCrusher> crusher;
    std::unique_ptr<SignalLog> log;
    QString top;
};

void TestFileSystems::init()
{
    tree = std::make_unique<TemporaryTree>();
    top = tree->makeFolder(QStringLiteral("top"));
    crusher = std::make_unique<FileCrusher>();
    log = std::make_unique<SignalLog>(crusher.get());
}

void TestFileSystems::cleanup()
{
    log.reset();
    crusher.reset();
    tree.reset();
}

#define MOUNT_OR_SKIP(name, folder, options)                                                       \
    if (!hasOwnMounts)                                                                             \
        QSKIP("no mounts of one's own here");                                                      \
    const Mount name(folder, options);                                                             \
    QVERIFY(name.isDone())

void TestFileSystems::nothingChangesWhereItIsReadOnly()
{
    MOUNT_OR_SKIP(mount, top, "");
    const QString file = tree->makeFile(QStringLiteral("top/file"), 5000);
    const QString empty = tree->makeFile(QStringLiteral("top/empty"), 0);
    const QString folder = tree->makeFolder(QStringLiteral("top/folder"));
    const QString link = tree->makeLink(QStringLiteral("top/link"), QStringLiteral("file"));
    const QStringList before = inventoryOf(top);
    QVERIFY(mount.makeReadOnly());
    QCOMPARE(shredFile(file), qint64{CrushResult::OpenFailed});
    QCOMPARE(shredFile(empty), qint64{CrushResult::RemoveFailed});
    QCOMPARE(shredFile(link), qint64{CrushResult::LinkFailed});
    QCOMPARE(shredFolder(folder), qint64{CrushResult::DirectoryFailed});
    QCOMPARE(shredFolder(top), qint64{CrushResult::DirectoryFailed});
    QCOMPARE(inventoryOf(top), before);
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileSystems::fileThatCannotBeOverwrittenForLackOfSpaceGoes()
{
    MOUNT_OR_SKIP(mount, top, "size=64k");
    // A hole takes no space until it is written to.
    const QString file = tree->makeFile(QStringLiteral("top/file"), 0);
    QVERIFY(QFile::resize(file, 1000000));
    QCOMPARE(shredFile(file), qint64{1000000});
    QVERIFY(!entryExists(file));
    QCOMPARE(log->firstArguments("addToHistory"), QStringList{file});
}

void TestFileSystems::mountedFolderIsEmptiedAndStays()
{
    const QString mounted = tree->makeFolder(QStringLiteral("top/mounted"));
    MOUNT_OR_SKIP(mount, mounted, "");
    const QString inside = tree->makeFile(QStringLiteral("top/mounted/inside"), 5000);
    const QString beside = tree->makeFile(QStringLiteral("top/beside"), 5000);
    QCOMPARE(shredFolder(top), qint64{CrushResult::DirectoryFailed});
    QVERIFY(entryExists(mounted));
    QVERIFY(!entryExists(inside));
    QVERIFY(!entryExists(beside));
    QCOMPARE(log->count("addToHistory"), 2);
}

void TestFileSystems::immutableFileStays()
{
    const QString file = tree->makeFile(QStringLiteral("top/file"), 5000);
    const QString empty = tree->makeFile(QStringLiteral("top/empty"), 0);
    if (!setImmutable(file, true) || !setImmutable(empty, true))
        QSKIP("no immutable files here");
    const QStringList before = inventoryOf(top);
    const qint64 verdicts[] = {shredFile(file), shredFile(empty), shredFolder(top)};
    const QStringList after = inventoryOf(top);
    QVERIFY(setImmutable(file, false) && setImmutable(empty, false));
    QCOMPARE(verdicts[0], qint64{CrushResult::OpenFailed});
    QCOMPARE(verdicts[1], qint64{CrushResult::RemoveFailed});
    QCOMPARE(verdicts[2], qint64{CrushResult::DirectoryFailed});
    QCOMPARE(after, before);
    QCOMPARE(log->records(), SignalRecords());
}

/// FAT, network and FUSE file systems and overlays number a folder anew when the kernel had
/// forgotten it.
void TestFileSystems::folderWhoseInodeNumberDoesNotLastIsShredded()
{
    const QString layers = tree->makeFolder(QStringLiteral("layers"));
    const QString changes = tree->makeFolder(QStringLiteral("changes"));
    MOUNT_OR_SKIP(lower, layers, "");
    const Mount upper(changes, "");
    QVERIFY(upper.isDone());
    tree->makeFile(QStringLiteral("layers/file"), 100);
    tree->makeFile(QStringLiteral("layers/sub/deep/file"), 100);
    tree->makeFolder(QStringLiteral("changes/upper"));
    tree->makeFolder(QStringLiteral("changes/work"));
    const QByteArray options = "xino=off,lowerdir=" + layers.toUtf8() + ",upperdir="
                               + changes.toUtf8() + "/upper,workdir=" + changes.toUtf8() + "/work";
    const Mount mount(top, options.constData(), "overlay");
    if (!mount.isDone())
        QSKIP("no overlays here");

    const QByteArray sub = top.toUtf8() + "/sub";
    QSet<ino_t> numbers;
    const auto forget = [&] {
        struct stat status = {};
        if (::stat(sub.constData(), &status) == 0)
            numbers.insert(status.st_ino);
        write("/proc/sys/vm/drop_caches", "2");
    };
    forget();
    forget();
    if (numbers.size() < 2)
        QSKIP("the kernel keeps the numbers here");
    log->onRecord = [&](const SignalRecord &) { forget(); };
    // The mount itself stays.
    QCOMPARE(shredFolder(top), qint64{CrushResult::DirectoryFailed});
    QVERIFY(numbers.size() > 2);
    QVERIFY(QDir(top).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    QCOMPARE(log->firstArguments("addToHistory").size(), 4);
}

static void prepare(int, char **)
{
    hasOwnMounts = enterOwnMounts();
}

TEST_SUITE_PREPARED_BY(filesystems, TestFileSystems, prepare)

#include "filesystems.moc"
