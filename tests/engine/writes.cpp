// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// How a file is written and removed, seen from below: the calls that the engine
// makes to the C library come here first, where clocks jump and disks are full.

#include "engine/filecrusher.h"

#include "expectedbytes.h"
#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QtTest>

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

using testsupport::entryExists;
using testsupport::expectedBytes;
using testsupport::SignalLog;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;

namespace
{

constexpr std::time_t someSecond = 1700000000;

/// What happens to the calls; as it stands they are only noted.
struct Interception {
    QList<int> written; ///< bytes of each write
    std::optional<off_t> size;
    bool writeFails = false;
    bool removeFails = false;
    std::function<std::time_t()> clock;
    std::function<void(const QString &)> beforeRemove;
};

Interception &interception()
{
    static Interception theOne;
    return theOne;
}

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker chooses these names
extern "C" {
std::size_t __real_fwrite(const void *bytes, std::size_t size, std::size_t count, std::FILE *file);
int __real_fstat(int file, struct stat *status);
int __real_stat(const char *path, struct stat *status);
std::time_t __real_time(std::time_t *result);
int __real_unlinkat(int folder, const char *name, int flags);

std::size_t __wrap_fwrite(const void *bytes, std::size_t size, std::size_t count, std::FILE *file)
{
    interception().written.append(static_cast<int>(size * count));
    if (!interception().writeFails)
        return __real_fwrite(bytes, size, count, file);
    errno = ENOSPC;
    return 0;
}

int __wrap_unlinkat(int folder, const char *name, int flags)
{
    if (interception().beforeRemove)
        interception().beforeRemove(testsupport::pathOf(folder) + QLatin1Char('/')
                                    + QString::fromUtf8(name));
    if (!interception().removeFails)
        return __real_unlinkat(folder, name, flags);
    errno = EPERM;
    return -1;
}

int __wrap_fstat(int file, struct stat *status)
{
    const int result = __real_fstat(file, status);
    if (interception().size)
        status->st_size = *interception().size;
    return result;
}

int __wrap_stat(const char *path, struct stat *status)
{
    const int result = __real_stat(path, status);
    if (interception().size)
        status->st_size = *interception().size;
    return result;
}

std::time_t __wrap_time(std::time_t *result)
{
    return interception().clock ? interception().clock() : __real_time(result);
}
}
// NOLINTEND(bugprone-reserved-identifier)

class TestFileCrusherWrites : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void asManyBytesAreWrittenAsTheSizeSays();
    void fileIsWrittenAsBlocksAndATail();
    void everyBlockIsOfItsOwnSecond();
    void blocksOfOneSecondAreTheSame();
    void fileIsOverwrittenAndClosedBeforeItGoes();
    void failedWriteIsNotNoticed();
    void failedRemovalIsReportedAlone();

private:
    qint64 shredFile(const QString &path) { return crusher->shredFile(path.toUtf8().constData()); }
    qint64 shredInTree(const QString &path, quint64 total)
    {
        return crusher->shredFileInDirectory(path.toUtf8().constData(), total, 0, tree->path());
    }

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<FileCrusher> crusher;
    std::unique_ptr<SignalLog> log;
};

void TestFileCrusherWrites::init()
{
    tree = std::make_unique<TemporaryTree>();
    crusher = std::make_unique<FileCrusher>();
    log = std::make_unique<SignalLog>(crusher.get());
    interception() = Interception();
}

void TestFileCrusherWrites::cleanup()
{
    interception() = Interception();
    log.reset();
    crusher.reset();
    tree.reset();
}

void TestFileCrusherWrites::asManyBytesAreWrittenAsTheSizeSays()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 10);
    const QString secondName = tree->makeHardLink(QStringLiteral("second name"), file);
    interception().size = 5000;
    interception().clock = [] { return someSecond; };
    QCOMPARE(shredFile(file), qint64{5000});
    QCOMPARE(TemporaryTree::contentsOf(secondName), expectedBytes(5000, someSecond));
}

void TestFileCrusherWrites::fileIsWrittenAsBlocksAndATail()
{
    const QString one = tree->makeFile(QStringLiteral("one"), 10000);
    const QString two = tree->makeFile(QStringLiteral("two"), 8192);
    QCOMPARE(shredFile(one), qint64{10000});
    QCOMPARE(interception().written, (QList<int>{4096, 4096, 1808}));
    interception().written.clear();
    QCOMPARE(shredInTree(two, 8192), qint64{8192});
    QCOMPARE(interception().written, (QList<int>{4096, 4096, 0}));
}

void TestFileCrusherWrites::everyBlockIsOfItsOwnSecond()
{
    constexpr int blocks = 4;
    constexpr int tail = 123;
    QByteArray expected;
    for (int block = 0; block < blocks; ++block)
        expected += expectedBytes(4096, someSecond + block);
    expected += expectedBytes(tail, someSecond + blocks);

    for (const bool alone : {true, false}) {
        const QString file = tree->makeFile(QStringLiteral("file"), expected.size());
        const QString name = alone ? QStringLiteral("one") : QStringLiteral("other");
        const QString secondName = tree->makeHardLink(name, file);
        std::time_t next = someSecond;
        interception().clock = [&next] { return next++; };
        QCOMPARE(alone ? shredFile(file) : shredInTree(file, 100000), qint64{expected.size()});
        QCOMPARE(TemporaryTree::contentsOf(secondName), expected);
    }
}

void TestFileCrusherWrites::blocksOfOneSecondAreTheSame()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 3 * 4096);
    const QString secondName = tree->makeHardLink(QStringLiteral("second name"), file);
    interception().clock = [] { return someSecond; };
    QCOMPARE(shredFile(file), qint64{3 * 4096});
    QCOMPARE(TemporaryTree::contentsOf(secondName), expectedBytes(4096, someSecond).repeated(3));
}

void TestFileCrusherWrites::fileIsOverwrittenAndClosedBeforeItGoes()
{
    QList<QByteArray> found;
    interception().clock = [] { return someSecond; };
    interception().beforeRemove = [&found](const QString &path) {
        found.append(TemporaryTree::contentsOf(path));
    };
    shredFile(tree->makeFile(QStringLiteral("one"), 100));
    shredInTree(tree->makeFile(QStringLiteral("two"), 5000), 100000);
    QCOMPARE(found,
             (QList<QByteArray>{expectedBytes(100, someSecond), expectedBytes(5000, someSecond)}));
}

void TestFileCrusherWrites::failedWriteIsNotNoticed()
{
    const QString one = tree->makeFile(QStringLiteral("one"), 100);
    const QString two = tree->makeFile(QStringLiteral("two"), 100);
    interception().writeFails = true;
    QCOMPARE(shredFile(one), qint64{100});
    QCOMPARE(shredInTree(two, 100), qint64{100});
    QVERIFY(!entryExists(one));
    QVERIFY(!entryExists(two));
    QCOMPARE(log->records(), (SignalRecords{{"finishPercent", {one, 99}},
                                            {"addToHistory", {one}},
                                            {"finishPercent", {tree->path(), 100}},
                                            {"addToHistory", {two}}}));
}

void TestFileCrusherWrites::failedRemovalIsReportedAlone()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 100);
    const QString empty = tree->makeFile(QStringLiteral("empty"), 0);
    interception().removeFails = true;
    QCOMPARE(shredFile(empty), qint64{-7});
    QCOMPARE(shredInTree(empty, 100), qint64{-7});
    QCOMPARE(shredInTree(empty, 0), qint64{-7});
    QCOMPARE(shredInTree(file, 100), qint64{-7});
    QCOMPARE(log->records(), SignalRecords());
    QCOMPARE(shredFile(file), qint64{-7});
    QCOMPARE(log->records(), (SignalRecords{{"finishPercent", {file, 99}}}));
}

TEST_SUITE(writes, TestFileCrusherWrites)
#include "writes.moc"
