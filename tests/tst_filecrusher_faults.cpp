// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What no file system offers on demand: sizes that cannot be, writes that fail,
// clocks that jump, folders that vanish at the worst moment. The calls that the
// engine makes to the C library come here first.

#include "engine/filecrusher.h"

#include "expectedbytes.h"
#include "signallog.h"
#include "temporarytree.h"

#include <QtTest>

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>

#include <dirent.h>
#include <sys/stat.h>

using testsupport::entryExists;
using testsupport::expectedBytes;
using testsupport::SignalLog;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;

namespace
{

constexpr std::time_t someSecond = 1700000000;

/// What happens to the calls; as it stands they are only counted.
struct Interception {
    int opened = 0;
    QList<int> written; ///< bytes of each write
    bool statFails = false;
    std::optional<off_t> size;
    bool writeFails = false;
    bool removeFails = false;
    bool typesUnknown = false;
    std::function<std::time_t()> clock;
    std::function<void(const QString &)> beforeRemove;
    std::function<bool(const QString &)> opendirWorks; ///< called before the folder is opened
};

Interception interception;

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker chooses these names
extern "C" {
std::FILE *__real_fopen(const char *path, const char *mode);
std::size_t __real_fwrite(const void *bytes, std::size_t size, std::size_t count, std::FILE *file);
DIR *__real_opendir(const char *path);
dirent *__real_readdir(DIR *stream);
int __real_remove(const char *path);
int __real_stat(const char *path, struct stat *status);
std::time_t __real_time(std::time_t *result);

std::FILE *__wrap_fopen(const char *path, const char *mode)
{
    ++interception.opened;
    return __real_fopen(path, mode);
}

std::size_t __wrap_fwrite(const void *bytes, std::size_t size, std::size_t count, std::FILE *file)
{
    interception.written.append(static_cast<int>(size * count));
    if (!interception.writeFails)
        return __real_fwrite(bytes, size, count, file);
    errno = ENOSPC;
    return 0;
}

DIR *__wrap_opendir(const char *path)
{
    if (interception.opendirWorks && !interception.opendirWorks(QString::fromUtf8(path))) {
        errno = EMFILE;
        return nullptr;
    }
    return __real_opendir(path);
}

dirent *__wrap_readdir(DIR *stream)
{
    dirent *entry = __real_readdir(stream);
    if (entry != nullptr && interception.typesUnknown)
        entry->d_type = DT_UNKNOWN;
    return entry;
}

int __wrap_remove(const char *path)
{
    if (interception.beforeRemove)
        interception.beforeRemove(QString::fromUtf8(path));
    if (!interception.removeFails)
        return __real_remove(path);
    errno = EPERM;
    return -1;
}

int __wrap_stat(const char *path, struct stat *status)
{
    if (interception.statFails) {
        errno = EIO;
        return -1;
    }
    const int result = __real_stat(path, status);
    if (interception.size)
        status->st_size = *interception.size;
    return result;
}

std::time_t __wrap_time(std::time_t *result)
{
    return interception.clock ? interception.clock() : __real_time(result);
}
}
// NOLINTEND(bugprone-reserved-identifier)

class TestFileCrusherFaults : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void unusableSizeLeavesTheFile_data();
    void unusableSizeLeavesTheFile();
    void sizeZeroInATreeIsAccepted();
    void asManyBytesAreWrittenAsTheSizeSays();
    void fileIsWrittenAsBlocksAndATail();
    void everyBlockIsOfItsOwnSecond();
    void blocksOfOneSecondAreTheSame();
    void fileIsOverwrittenAndClosedBeforeItGoes();
    void failedWriteIsNotNoticed();
    void failedRemovalIsReportedAlone();
    void emptyFileIsNotOpened();
    void treeOfEmptyFilesIsNotOpened();
    void folderThatVanishesBeforeTheWalkIsMissing();
    void folderThatCannotBeReadKeepsItsContents();
    void fileThatVanishesDuringTheWalkIsPassedOver();
    void selfAndParentAreSkippedWhereTypesAreUnknown();

private:
    qint64 shredFile(const QString &path)
    {
        return crusher->shredFile(path.toUtf8().constData());
    }
    qint64 shredInTree(const QString &path, quint64 total)
    {
        return crusher->shredFileInDirectory(path.toUtf8().constData(), total, 0, tree->path());
    }
    qint64 shredFolder(const QString &path)
    {
        return crusher->shredDirectory(path.toUtf8().constData());
    }

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<FileCrusher> crusher;
    std::unique_ptr<SignalLog> log;
};

void TestFileCrusherFaults::init()
{
    tree = std::make_unique<TemporaryTree>();
    crusher = std::make_unique<FileCrusher>();
    log = std::make_unique<SignalLog>(crusher.get());
    interception = Interception();
}

void TestFileCrusherFaults::cleanup()
{
    interception = Interception();
    log.reset();
    crusher.reset();
    tree.reset();
}

void TestFileCrusherFaults::unusableSizeLeavesTheFile_data()
{
    QTest::addColumn<bool>("statFails");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("alone");
    QTest::newRow("cannot be asked") << true << qint64{0} << qint64{-3};
    QTest::newRow("minus one") << false << qint64{-1} << qint64{-3};
    QTest::newRow("minus two") << false << qint64{-2} << qint64{-6};
    QTest::newRow("least of all") << false << std::numeric_limits<qint64>::min() << qint64{-6};
    QTest::newRow("vanished bytes") << false << qint64{0} << qint64{-5};
}

void TestFileCrusherFaults::unusableSizeLeavesTheFile()
{
    QFETCH(bool, statFails);
    QFETCH(qint64, size);
    QFETCH(qint64, alone);
    const QString file = tree->makeFile(QStringLiteral("file"), 5000);
    interception.statFails = statFails;
    interception.size = size;
    QCOMPARE(FileCrusher::statSize(file.toUtf8().constData()), statFails ? qint64{-1} : size);
    QCOMPARE(shredFile(file), alone);
    if (statFails || size < 0)
        QCOMPARE(shredInTree(file, 5000), qint64{-3});
    QCOMPARE(log->records(), SignalRecords());
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray(5000, 'x'));
}

void TestFileCrusherFaults::sizeZeroInATreeIsAccepted()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 5000);
    interception.size = 0;
    QCOMPARE(shredInTree(file, 5000), qint64{0});
    QVERIFY(!entryExists(file));
    QCOMPARE(log->records(),
             (SignalRecords{{"finishPercent", {tree->path(), 0}}, {"addToHistory", {file}}}));
}

void TestFileCrusherFaults::asManyBytesAreWrittenAsTheSizeSays()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 10);
    const QString secondName = tree->makeHardLink(QStringLiteral("second name"), file);
    interception.size = 5000;
    interception.clock = [] { return someSecond; };
    QCOMPARE(shredFile(file), qint64{5000});
    QCOMPARE(TemporaryTree::contentsOf(secondName), expectedBytes(5000, someSecond));
}

void TestFileCrusherFaults::fileIsWrittenAsBlocksAndATail()
{
    const QString one = tree->makeFile(QStringLiteral("one"), 10000);
    const QString two = tree->makeFile(QStringLiteral("two"), 8192);
    QCOMPARE(shredFile(one), qint64{10000});
    QCOMPARE(interception.written, (QList<int>{4096, 4096, 1808}));
    interception.written.clear();
    QCOMPARE(shredInTree(two, 8192), qint64{8192});
    QCOMPARE(interception.written, (QList<int>{4096, 4096, 0}));
}

void TestFileCrusherFaults::everyBlockIsOfItsOwnSecond()
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
        interception.clock = [&next] { return next++; };
        QCOMPARE(alone ? shredFile(file) : shredInTree(file, 100000), qint64{expected.size()});
        QCOMPARE(TemporaryTree::contentsOf(secondName), expected);
    }
}

void TestFileCrusherFaults::blocksOfOneSecondAreTheSame()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 3 * 4096);
    const QString secondName = tree->makeHardLink(QStringLiteral("second name"), file);
    interception.clock = [] { return someSecond; };
    QCOMPARE(shredFile(file), qint64{3 * 4096});
    QCOMPARE(TemporaryTree::contentsOf(secondName), expectedBytes(4096, someSecond).repeated(3));
}

void TestFileCrusherFaults::fileIsOverwrittenAndClosedBeforeItGoes()
{
    QList<QByteArray> found;
    interception.clock = [] { return someSecond; };
    interception.beforeRemove = [&found](const QString &path) {
        found.append(TemporaryTree::contentsOf(path));
    };
    shredFile(tree->makeFile(QStringLiteral("one"), 100));
    shredInTree(tree->makeFile(QStringLiteral("two"), 5000), 100000);
    QCOMPARE(found, (QList<QByteArray>{expectedBytes(100, someSecond),
                                       expectedBytes(5000, someSecond)}));
}

void TestFileCrusherFaults::failedWriteIsNotNoticed()
{
    const QString one = tree->makeFile(QStringLiteral("one"), 100);
    const QString two = tree->makeFile(QStringLiteral("two"), 100);
    interception.writeFails = true;
    QCOMPARE(shredFile(one), qint64{100});
    QCOMPARE(shredInTree(two, 100), qint64{100});
    QVERIFY(!entryExists(one));
    QVERIFY(!entryExists(two));
    QCOMPARE(log->records(), (SignalRecords{{"finishPercent", {one, 99}},
                                            {"addToHistory", {one}},
                                            {"finishPercent", {tree->path(), 100}},
                                            {"addToHistory", {two}}}));
}

void TestFileCrusherFaults::failedRemovalIsReportedAlone()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 100);
    const QString empty = tree->makeFile(QStringLiteral("empty"), 0);
    interception.removeFails = true;
    QCOMPARE(shredFile(empty), qint64{-7});
    QCOMPARE(shredInTree(empty, 100), qint64{-7});
    QCOMPARE(shredInTree(empty, 0), qint64{-7});
    QCOMPARE(shredInTree(file, 100), qint64{-7});
    QCOMPARE(log->records(), SignalRecords());
    QCOMPARE(shredFile(file), qint64{-7});
    QCOMPARE(log->records(), (SignalRecords{{"finishPercent", {file, 99}}}));
}

void TestFileCrusherFaults::emptyFileIsNotOpened()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 0);
    QCOMPARE(shredFile(file), qint64{0});
    QVERIFY(!entryExists(file));
    QCOMPARE(interception.opened, 0);
}

void TestFileCrusherFaults::treeOfEmptyFilesIsNotOpened()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    tree->makeFile(QStringLiteral("top/one"), 0);
    tree->makeFile(QStringLiteral("top/folder/two"), 0);
    QCOMPARE(shredFolder(top), qint64{0});
    QVERIFY(!entryExists(top));
    QCOMPARE(interception.opened, 0);
}

void TestFileCrusherFaults::folderThatVanishesBeforeTheWalkIsMissing()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    interception.opendirWorks = [](const QString &path) { return QDir().rmdir(path); };
    QCOMPARE(shredFolder(top), qint64{-2});
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherFaults::folderThatCannotBeReadKeepsItsContents()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString kept = tree->makeFile(QStringLiteral("top/folder/kept"), 10);
    interception.opendirWorks = [&top](const QString &path) { return path == top; };
    QCOMPARE(shredFolder(top), qint64{-3});
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray(10, 'x'));
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherFaults::fileThatVanishesDuringTheWalkIsPassedOver()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString one = tree->makeFile(QStringLiteral("top/one"), 10);
    const QString other = tree->makeFile(QStringLiteral("top/other"), 10);
    const QString folder = tree->makeFolder(QStringLiteral("top/folder"));
    log->onRecord = [&](const SignalRecord &record) {
        if (record.name != "addToHistory")
            return;
        QFile::remove(record.arguments.first() == one ? other : one);
        QDir().rmdir(folder);
    };
    // The folder was listed as one, so that it is gone is a failure.
    QCOMPARE(shredFolder(top), qint64{-3});
    QCOMPARE(log->count(), 2);
    QCOMPARE(log->count("addToHistory"), 1);
    QVERIFY(!entryExists(one));
    QVERIFY(!entryExists(other));
}

void TestFileCrusherFaults::selfAndParentAreSkippedWhereTypesAreUnknown()
{
    const QString kept = tree->makeFile(QStringLiteral("kept"), 10);
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString file = tree->makeFile(QStringLiteral("top/folder/file"), 10);
    interception.typesUnknown = true;
    QCOMPARE(shredFolder(top), qint64{0});
    QVERIFY(!entryExists(top));
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray(10, 'x'));
    QCOMPARE(log->firstArguments("addToHistory"),
             (QStringList{file, QFileInfo(file).path(), top}));
}

QTEST_GUILESS_MAIN(TestFileCrusherFaults)
#include "tst_filecrusher_faults.moc"
