// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What no file system offers on demand: sizes that cannot be, folders that
// vanish at the worst moment or have no types. The calls that the engine makes
// to the C library come here first.

#include "engine/filecrusher.h"

#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QtTest>

#include <cerrno>
#include <cstdio>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

using testsupport::entryExists;
using testsupport::SignalLog;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;

namespace
{

/// What happens to the calls; as it stands they are only counted.
struct Interception {
    int openedForWriting = 0;
    bool statFails = false;
    std::optional<off_t> size;
    int failingOpens = 0; ///< for writing
    bool typesUnknown = false;
    std::function<bool(const QString &)> readingWorks; ///< called before a folder is read
};

Interception &interception()
{
    static Interception theOne;
    return theOne;
}

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker chooses these names
extern "C" {
DIR *__real_fdopendir(int folder);
int __real_fstat(int file, struct stat *status);
int __real_openat(int folder, const char *name, int flags, ...);
dirent *__real_readdir(DIR *stream);
int __real_stat(const char *path, struct stat *status);

int __wrap_openat(int folder, const char *name, int flags, ...)
{
    if ((flags & O_ACCMODE) != O_RDONLY) {
        ++interception().openedForWriting;
        if (interception().failingOpens-- > 0) {
            errno = EMFILE;
            return -1;
        }
    }
    return __real_openat(folder, name, flags);
}

DIR *__wrap_fdopendir(int folder)
{
    if (interception().readingWorks && !interception().readingWorks(testsupport::pathOf(folder))) {
        errno = EMFILE;
        return nullptr;
    }
    return __real_fdopendir(folder);
}

int __wrap_fstat(int file, struct stat *status)
{
    const int result = __real_fstat(file, status);
    if (interception().size)
        status->st_size = *interception().size;
    return result;
}

dirent *__wrap_readdir(DIR *stream)
{
    dirent *entry = __real_readdir(stream);
    if (entry != nullptr && interception().typesUnknown)
        entry->d_type = DT_UNKNOWN;
    return entry;
}

int __wrap_stat(const char *path, struct stat *status)
{
    if (interception().statFails) {
        errno = EIO;
        return -1;
    }
    const int result = __real_stat(path, status);
    if (interception().size)
        status->st_size = *interception().size;
    return result;
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
    void emptyFileIsNotOpened();
    void treeOfEmptyFilesIsNotOpened();
    void folderThatVanishesBeforeTheWalkIsMissing();
    void folderThatCannotBeReadKeepsItsContents();
    void folderThatCouldNotBeSizedIsOverwrittenAllTheSame();
    void fileThatVanishesDuringTheWalkIsPassedOver();
    void fileReplacedDuringTheWalkIsTakenForWhatItIs_data();
    void fileReplacedDuringTheWalkIsTakenForWhatItIs();
    void fileThatCannotBeOpenedOnceStays();
    void folderThatVanishesDuringTheWalkIsAFailure();
    void selfAndParentAreSkippedWhereTypesAreUnknown();

private:
    qint64 shredFile(const QString &path) { return crusher->shredFile(path.toUtf8().constData()); }
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
    interception() = Interception();
}

void TestFileCrusherFaults::cleanup()
{
    interception() = Interception();
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
    interception().statFails = statFails;
    interception().size = size;
    QCOMPARE(FileCrusher::statSize(file.toUtf8().constData()), statFails ? qint64{-1} : size);
    QCOMPARE(shredFile(file), alone);
    // In a tree the size is the open file's.
    if (!statFails && size < 0)
        QCOMPARE(shredInTree(file, 5000), qint64{-3});
    QCOMPARE(log->records(), SignalRecords());
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray(5000, 'x'));
}

void TestFileCrusherFaults::sizeZeroInATreeIsAccepted()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 5000);
    interception().size = 0;
    QCOMPARE(shredInTree(file, 5000), qint64{0});
    QVERIFY(!entryExists(file));
    QCOMPARE(log->records(),
             (SignalRecords{{"finishPercent", {tree->path(), 0}}, {"addToHistory", {file}}}));
}

void TestFileCrusherFaults::emptyFileIsNotOpened()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 0);
    QCOMPARE(shredFile(file), qint64{0});
    QVERIFY(!entryExists(file));
    QCOMPARE(interception().openedForWriting, 0);
}

void TestFileCrusherFaults::treeOfEmptyFilesIsNotOpened()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    tree->makeFile(QStringLiteral("top/one"), 0);
    tree->makeFile(QStringLiteral("top/folder/two"), 0);
    QCOMPARE(shredFolder(top), qint64{0});
    QVERIFY(!entryExists(top));
    QCOMPARE(interception().openedForWriting, 0);
}

void TestFileCrusherFaults::folderThatVanishesBeforeTheWalkIsMissing()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    interception().readingWorks = [](const QString &path) { return QDir().rmdir(path); };
    QCOMPARE(shredFolder(top), qint64{-2});
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherFaults::folderThatCannotBeReadKeepsItsContents()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString kept = tree->makeFile(QStringLiteral("top/folder/kept"), 10);
    interception().readingWorks = [&top](const QString &path) { return path == top; };
    QCOMPARE(shredFolder(top), qint64{-3});
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray(10, 'x'));
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherFaults::folderThatCouldNotBeSizedIsOverwrittenAllTheSame()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString file = tree->makeFile(QStringLiteral("top/file"), 5000);
    const QString secondName = tree->makeHardLink(QStringLiteral("second name"), file);
    bool first = true;
    interception().readingWorks = [&first](const QString &) {
        return !std::exchange(first, false);
    };
    QCOMPARE(shredFolder(top), qint64{0});
    QVERIFY(!entryExists(top));
    QVERIFY(TemporaryTree::contentsOf(secondName) != QByteArray(5000, 'x'));
}

void TestFileCrusherFaults::fileThatVanishesDuringTheWalkIsPassedOver()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString one = tree->makeFile(QStringLiteral("top/one"), 10);
    const QString other = tree->makeFile(QStringLiteral("top/other"), 10);
    log->onRecord = [&](const SignalRecord &record) {
        if (record == SignalRecord("addToHistory", {one}))
            QFile::remove(other);
        else if (record == SignalRecord("addToHistory", {other}))
            QFile::remove(one);
    };
    QCOMPARE(shredFolder(top), qint64{0});
    QCOMPARE(log->count("addToHistory"), 2);
}

void TestFileCrusherFaults::fileReplacedDuringTheWalkIsTakenForWhatItIs_data()
{
    QTest::addColumn<QString>("decoy");
    QTest::addColumn<qint64>("result");
    QTest::newRow("link") << QStringLiteral("link") << qint64{0};
    QTest::newRow("folder") << QStringLiteral("folder") << qint64{0};
    QTest::newRow("fifo") << QStringLiteral("fifo") << qint64{-3};
}

/// Both files are listed before the first is shredded; what the listing says of the other no
/// longer holds when its turn comes.
void TestFileCrusherFaults::fileReplacedDuringTheWalkIsTakenForWhatItIs()
{
    QFETCH(QString, decoy);
    QFETCH(qint64, result);
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString one = tree->makeFile(QStringLiteral("top/one"), 10);
    const QString other = tree->makeFile(QStringLiteral("top/other"), 10);
    const QString outside = tree->makeFile(QStringLiteral("outside"), 10);
    const QString inFolder = tree->makeFile(QStringLiteral("folder/inner"), 10);
    tree->makeLink(QStringLiteral("link"), outside);
    tree->makeFifo(QStringLiteral("fifo"));
    QString replaced;
    log->onRecord = [&](const SignalRecord &record) {
        if (!replaced.isEmpty() || record.name != "addToHistory")
            return;
        replaced = record.arguments.first() == one ? other : one;
        QVERIFY(QFile::remove(replaced));
        QVERIFY(QFile::rename(tree->path(decoy), replaced));
    };
    QCOMPARE(shredFolder(top), result);
    QCOMPARE(entryExists(replaced), result != 0);
    QCOMPARE(TemporaryTree::contentsOf(outside), QByteArray(10, 'x'));
    QCOMPARE(entryExists(inFolder), decoy != QLatin1String("folder"));
    QCOMPARE(log->records().contains(
                 SignalRecord("addToHistory", {replaced + QStringLiteral("/inner")})),
             decoy == QLatin1String("folder"));
}

void TestFileCrusherFaults::fileThatCannotBeOpenedOnceStays()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString file = tree->makeFile(QStringLiteral("top/file"), 10);
    interception().failingOpens = 1;
    QCOMPARE(shredFolder(top), qint64{-3});
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray(10, 'x'));
}

void TestFileCrusherFaults::folderThatVanishesDuringTheWalkIsAFailure()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString file = tree->makeFile(QStringLiteral("top/one/file"), 10);
    const QString other = tree->makeFolder(QStringLiteral("top/other"));
    log->onRecord = [&other](const SignalRecord &) { QDir().rmdir(other); };
    QCOMPARE(shredFolder(top), qint64{-3});
    QVERIFY(!entryExists(file));
    QVERIFY(entryExists(top));
}

void TestFileCrusherFaults::selfAndParentAreSkippedWhereTypesAreUnknown()
{
    const QString kept = tree->makeFile(QStringLiteral("kept"), 10);
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString file = tree->makeFile(QStringLiteral("top/folder/file"), 10);
    interception().typesUnknown = true;
    // Asked first, so that a listing with ".." in it is never shredded.
    const QList<QFileInfo> entries = FileCrusher::listDirectory(top.toUtf8().constData());
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.first().fileName(), QStringLiteral("folder"));
    QCOMPARE(shredFolder(top), qint64{0});
    QVERIFY(!entryExists(top));
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray(10, 'x'));
    QCOMPARE(log->firstArguments("addToHistory"), (QStringList{file, QFileInfo(file).path(), top}));
}

TEST_SUITE(faults, TestFileCrusherFaults)
#include "faults.moc"
