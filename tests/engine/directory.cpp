// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A whole folder: what is found in it, in what order it goes, what is reported.

#include "engine/filecrusher.h"

#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QtTest>

#include <memory>

#include <dirent.h>

using testsupport::entryExists;
using testsupport::SignalLog;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;

namespace
{

constexpr qint64 block = 4096;

/// The names in @p folder in the order in which the system reads them.
QStringList namesIn(const QString &folder)
{
    QStringList names;
    DIR *stream = ::opendir(folder.toUtf8().constData());
    while (const dirent *entry = ::readdir(stream)) {
        const QString name = QString::fromUtf8(entry->d_name);
        if (name != QLatin1String(".") && name != QLatin1String(".."))
            names.append(name);
    }
    ::closedir(stream);
    return names;
}

/// What shredding the tree @p top of regular files and folders has to report: breadth-first
/// through the files, then the folders backwards. Files are smaller than two blocks, so only
/// their ends are heard.
SignalRecords expectedRecords(const QString &top, qint64 total)
{
    SignalRecords records;
    QStringList folders{top};
    qint64 done = 0;
    for (int index = 0; index < folders.size(); ++index) {
        const QString folder = folders.at(index);
        const QStringList names = namesIn(folder);
        for (const QString &name : names) {
            const QString path = folder + QLatin1Char('/') + name;
            if (QFileInfo(path).isDir()) {
                folders.append(path);
                continue;
            }
            if (total > 0) {
                done += QFileInfo(path).size();
                records.append({"finishPercent", {top, static_cast<int>(done * 100 / total)}});
            }
            records.append({"addToHistory", {path}});
        }
    }
    for (int index = folders.size() - 1; index > 0; --index)
        records.append({"addToHistory", {folders.at(index)}});
    records.append({"finishPercent", {top, 100}});
    records.append({"addToHistory", {top}});
    return records;
}

} // namespace

class TestFileCrusherDirectory : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void nullPathIsRefused();
    void whatIsNoDirectoryIsRefused();
    void listingHasEverythingButSelfAndParent();
    void listingOfWhatIsNoDirectoryIsEmpty();
    void sizeCountsFilesAndTargetsOfLinks();
    void sizeOfWhatIsNoDirectoryIsZero();
    void emptyDirectoryIsRemovedAndReported();
    void treeGoesBreadthFirstAndFoldersBackwards();
    void largeFileReportsItsStart();
    void treeOfEmptyFilesIsRemovedWithoutFileProgress();
    void fifoIsLeftAloneAndTheFolderFails();
    void firstFolderThatStaysEndsTheRemoval();
    void folderIsReportedAsGiven();
    void relativeFolderIsReportedAsGiven();

private:
    qint64 shred(const QString &path) { return crusher->shredDirectory(path.toUtf8().constData()); }

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<FileCrusher> crusher;
    std::unique_ptr<SignalLog> log;
};

void TestFileCrusherDirectory::init()
{
    tree = std::make_unique<TemporaryTree>();
    crusher = std::make_unique<FileCrusher>();
    log = std::make_unique<SignalLog>(crusher.get());
}

void TestFileCrusherDirectory::cleanup()
{
    log.reset();
    crusher.reset();
    tree.reset();
}

void TestFileCrusherDirectory::nullPathIsRefused()
{
    QCOMPARE(crusher->shredDirectory(nullptr), qint64{-1});
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherDirectory::whatIsNoDirectoryIsRefused()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 10);
    QCOMPARE(shred(file), qint64{-3});
    QCOMPARE(shred(tree->path(QStringLiteral("missing"))), qint64{-3});
    QCOMPARE(shred(QLatin1String("")), qint64{-3});
    QVERIFY(entryExists(file));
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherDirectory::listingHasEverythingButSelfAndParent()
{
    const QStringList names{QStringLiteral("file"), QStringLiteral(".hidden"),
                            QStringLiteral("..."), QStringLiteral("..x"), QStringLiteral(".x.")};
    for (const QString &name : names)
        tree->makeFile(name, 1);
    tree->makeFolder(QStringLiteral("folder"));
    tree->makeFolder(QStringLiteral("....")); // a folder's name is compared whole
    tree->makeLink(QStringLiteral("link"), QStringLiteral("nowhere"));
    tree->makeFifo(QStringLiteral("fifo"));

    QStringList expected;
    const QStringList namesFound = namesIn(tree->path());
    for (const QString &name : namesFound)
        expected.append(tree->path(name));
    QCOMPARE(expected.size(), names.size() + 4);
    QStringList found;
    const QList<QFileInfo> listed = FileCrusher::listDirectory(tree->path().toUtf8().constData());
    for (const QFileInfo &entry : listed)
        found.append(entry.filePath());
    QCOMPARE(found, expected);
}

void TestFileCrusherDirectory::listingOfWhatIsNoDirectoryIsEmpty()
{
    const QByteArray file = tree->makeFile(QStringLiteral("file"), 10).toUtf8();
    const QByteArray missing = tree->path(QStringLiteral("missing")).toUtf8();
    QCOMPARE(FileCrusher::listDirectory(nullptr), QList<QFileInfo>());
    QCOMPARE(FileCrusher::listDirectory(file.constData()), QList<QFileInfo>());
    QCOMPARE(FileCrusher::listDirectory(missing.constData()), QList<QFileInfo>());
}

void TestFileCrusherDirectory::sizeCountsFilesAndTargetsOfLinks()
{
    const QString outside = tree->makeFile(QStringLiteral("outside/file"), 70000);
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const auto size = [&top] { return FileCrusher::directorySize(top.toUtf8().constData()); };
    QCOMPARE(size(), quint64{0});

    tree->makeFile(QStringLiteral("top/one"), 1);
    tree->makeFile(QStringLiteral("top/a/b/c/ten"), 10);
    tree->makeFile(QStringLiteral("top/a/empty"), 0);
    QCOMPARE(size(), quint64{11});
    tree->makeLink(QStringLiteral("top/a/link"), outside);
    QCOMPARE(size(), quint64{70011});
    tree->makeLink(QStringLiteral("top/dangling"), QStringLiteral("nowhere"));
    tree->makeFifo(QStringLiteral("top/fifo"));
    QCOMPARE(size(), quint64{70011});

    // A linked folder counts as the folder itself, without what is in it.
    const QString folder = QFileInfo(outside).path();
    tree->makeLink(QStringLiteral("top/linked folder"), folder);
    QCOMPARE(size(), 70011 + static_cast<quint64>(QFileInfo(folder).size()));
    // Given by itself it is what it leads to.
    const QByteArray link = tree->path(QStringLiteral("top/linked folder")).toUtf8();
    QCOMPARE(FileCrusher::directorySize(link.constData()), quint64{70000});
}

void TestFileCrusherDirectory::sizeOfWhatIsNoDirectoryIsZero()
{
    const QByteArray file = tree->makeFile(QStringLiteral("file"), 10).toUtf8();
    const QByteArray missing = tree->path(QStringLiteral("missing")).toUtf8();
    QCOMPARE(FileCrusher::directorySize(nullptr), quint64{0});
    QCOMPARE(FileCrusher::directorySize(file.constData()), quint64{0});
    QCOMPARE(FileCrusher::directorySize(missing.constData()), quint64{0});
}

void TestFileCrusherDirectory::emptyDirectoryIsRemovedAndReported()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    QCOMPARE(shred(top), qint64{0});
    QVERIFY(!entryExists(top));
    QCOMPARE(log->records(),
             (SignalRecords{{"finishPercent", {top, 100}}, {"addToHistory", {top}}}));
}

void TestFileCrusherDirectory::treeGoesBreadthFirstAndFoldersBackwards()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    qint64 total = 0;
    for (const char *folder : {"", "/a", "/b", "/a/c", "/a/d", "/b/e", "/a/c/f", "/b/empty"}) {
        const QString path = QStringLiteral("top") + QLatin1String(folder);
        tree->makeFolder(path);
        for (int number = 0; number < 4 && !path.endsWith(QLatin1String("empty")); ++number) {
            const qint64 size = number * 2000;
            tree->makeFile(path + QStringLiteral("/file") + QString::number(number), size);
            total += size;
        }
    }
    const SignalRecords expected = expectedRecords(top, total);

    QCOMPARE(shred(top), qint64{0});
    QVERIFY(!entryExists(top));
    QCOMPARE(log->records(), expected);
}

void TestFileCrusherDirectory::largeFileReportsItsStart()
{
    const QString first = tree->makeFile(QStringLiteral("top/first"), 30 * block);
    const QString second = tree->makeFile(QStringLiteral("top/folder/second"), 50 * block);
    const QString third = tree->makeFile(QStringLiteral("top/folder/deeper/third"), 20 * block);
    const QString top = tree->path(QStringLiteral("top"));
    QCOMPARE(shred(top), qint64{0});
    QCOMPARE(log->records(), (SignalRecords{{"finishPercent", {top, 29}},
                                            {"finishPercent", {top, 30}},
                                            {"addToHistory", {first}},
                                            {"finishPercent", {top, 79}},
                                            {"finishPercent", {top, 80}},
                                            {"addToHistory", {second}},
                                            {"finishPercent", {top, 99}},
                                            {"finishPercent", {top, 100}},
                                            {"addToHistory", {third}},
                                            {"addToHistory", {QFileInfo(third).path()}},
                                            {"addToHistory", {QFileInfo(second).path()}},
                                            {"finishPercent", {top, 100}},
                                            {"addToHistory", {top}}}));
}

void TestFileCrusherDirectory::treeOfEmptyFilesIsRemovedWithoutFileProgress()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    for (const char *name : {"top/one", "top/two", "top/folder/three", "top/folder/deep/four"})
        tree->makeFile(QLatin1String(name), 0);
    const SignalRecords expected = expectedRecords(top, 0);
    QCOMPARE(expected.size(), 8);

    QCOMPARE(shred(top), qint64{0});
    QVERIFY(!entryExists(top));
    QCOMPARE(log->records(), expected);
}

void TestFileCrusherDirectory::fifoIsLeftAloneAndTheFolderFails()
{
    const QString top = tree->makeFolder(QStringLiteral("top"));
    const QString fifo = tree->makeFifo(QStringLiteral("top/fifo"));
    const QString file = tree->makeFile(QStringLiteral("top/file"), 10);
    QCOMPARE(shred(top), qint64{-3});
    QVERIFY(entryExists(fifo));
    QVERIFY(!entryExists(file));
    QCOMPARE(log->records(),
             (SignalRecords{{"finishPercent", {top, 100}}, {"addToHistory", {file}}}));
}

void TestFileCrusherDirectory::firstFolderThatStaysEndsTheRemoval()
{
    const QString deepest = tree->makeFolder(QStringLiteral("top/one/two/three/four"));
    const QString top = tree->path(QStringLiteral("top"));
    tree->makeFifo(QStringLiteral("top/one/two/fifo"));
    const QString three = QFileInfo(deepest).path();
    QCOMPARE(shred(top), qint64{-3});
    QCOMPARE(log->records(),
             (SignalRecords{{"addToHistory", {deepest}}, {"addToHistory", {three}}}));
    QVERIFY(!entryExists(three));
    QVERIFY(entryExists(QFileInfo(three).path()));

    // A folder found earlier stays although it is empty by then.
    log->clear();
    tree->makeFolder(QStringLiteral("other/a/inner"));
    tree->makeFolder(QStringLiteral("other/b/inner"));
    const QStringList names = namesIn(tree->path(QStringLiteral("other")));
    tree->makeFifo(QStringLiteral("other/%1/inner/fifo").arg(names.last()));
    QCOMPARE(shred(tree->path(QStringLiteral("other"))), qint64{-3});
    QVERIFY(entryExists(tree->path(QStringLiteral("other/%1/inner").arg(names.first()))));
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherDirectory::folderIsReportedAsGiven()
{
    const QString file = tree->makeFile(QStringLiteral("top/file"), 10);
    const QString given = tree->path(QStringLiteral(".//top/"));
    QCOMPARE(shred(given), qint64{0});
    QVERIFY(!entryExists(tree->path(QStringLiteral("top"))));
    QCOMPARE(log->records(), (SignalRecords{{"finishPercent", {given, 100}},
                                            {"addToHistory", {file}},
                                            {"finishPercent", {given, 100}},
                                            {"addToHistory", {given}}}));
}

void TestFileCrusherDirectory::relativeFolderIsReportedAsGiven()
{
    const QString file = tree->makeFile(QStringLiteral("top/folder/file"), 10);
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(tree->path()));
    const qint64 result = shred(QStringLiteral("top"));
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(result, qint64{0});
    QCOMPARE(log->records(), (SignalRecords{{"finishPercent", {QStringLiteral("top"), 100}},
                                            {"addToHistory", {file}},
                                            {"addToHistory", {QFileInfo(file).path()}},
                                            {"finishPercent", {QStringLiteral("top"), 100}},
                                            {"addToHistory", {QStringLiteral("top")}}}));
}

TEST_SUITE(directory, TestFileCrusherDirectory)
#include "directory.moc"
