// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// One regular file as a part of a folder that is being shredded.

#include "engine/filecrusher.h"

#include "expectedbytes.h"
#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QtTest>

#include <ctime>
#include <memory>

using testsupport::entryExists;
using testsupport::SignalLog;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;

namespace
{

constexpr qint64 block = 4096;

/// The reports of a file of @p size bytes: the blocks still to come rise more than five points
/// above the last report or are not mentioned; the end is always.
QList<int> reportedPercents(qint64 size, qint64 total, qint64 done)
{
    QList<int> percents;
    qint64 last = done * 100 / total;
    for (qint64 left = size / block - 1; left >= 0; --left) {
        const qint64 percent = (done + left * block) * 100 / total;
        if (percent - last > 5) {
            percents.append(static_cast<int>(percent));
            last = percent;
        }
    }
    percents.append(static_cast<int>((done + size) * 100 / total));
    return percents;
}

} // namespace

class TestFileCrusherTreeFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void nullPathIsRefused();
    void emptyTopDirectoryIsRefused();
    void missingPathIsNothingToDo();
    void fileOfAnEmptyTreeIsUnlinkedUnwritten();
    void emptyFileReportsTheShareDone();
    void progressCountsDownInsideTheFile_data();
    void progressCountsDownInsideTheFile();
    void progressFollowsTheShare_data();
    void progressFollowsTheShare();
    void bytesAreOverwrittenInPlace_data();
    void bytesAreOverwrittenInPlace();
    void pathIsReportedAsGiven();

private:
    qint64 shred(const QString &path, qint64 total, qint64 done)
    {
        return crusher->shredFileInDirectory(path.toUtf8().constData(), static_cast<quint64>(total),
                                             static_cast<quint64>(done), top);
    }
    SignalRecords expectedRecords(const QList<int> &percents, const QString &file) const;

    const QString top = QStringLiteral("/the queued/folder");
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<FileCrusher> crusher;
    std::unique_ptr<SignalLog> log;
};

void TestFileCrusherTreeFile::init()
{
    tree = std::make_unique<TemporaryTree>();
    crusher = std::make_unique<FileCrusher>();
    log = std::make_unique<SignalLog>(crusher.get());
}

void TestFileCrusherTreeFile::cleanup()
{
    log.reset();
    crusher.reset();
    tree.reset();
}

SignalRecords TestFileCrusherTreeFile::expectedRecords(const QList<int> &percents,
                                                       const QString &file) const
{
    SignalRecords records;
    for (const int percent : percents)
        records.append({"finishPercent", {top, percent}});
    records.append({"addToHistory", {file}});
    return records;
}

void TestFileCrusherTreeFile::nullPathIsRefused()
{
    QCOMPARE(crusher->shredFileInDirectory(nullptr, 100, 0, top), qint64{-1});
    QCOMPARE(crusher->shredFileInDirectory(nullptr, 100, 0, QString()), qint64{-1});
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherTreeFile::emptyTopDirectoryIsRefused()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 10);
    const QByteArray path = file.toUtf8();
    QCOMPARE(crusher->shredFileInDirectory(path.constData(), 10, 0, QString()), qint64{-4});
    QCOMPARE(crusher->shredFileInDirectory(path.constData(), 0, 0, QLatin1String("")), qint64{-4});
    QCOMPARE(crusher->shredFileInDirectory("/missing", 10, 0, QString()), qint64{-4});
    QVERIFY(entryExists(file));
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherTreeFile::missingPathIsNothingToDo()
{
    const QString missing = tree->path(QStringLiteral("missing"));
    QCOMPARE(shred(missing, 100, 0), qint64{0});
    QCOMPARE(shred(missing, 0, 0), qint64{0});
    const QString folder = tree->makeFolder(QStringLiteral("folder"));
    QCOMPARE(shred(folder, 0, 0), qint64{0});
    QVERIFY(!entryExists(folder));
    log->clear();
    // A dangling link does not exist, as a path is followed.
    const QString dangling = tree->makeLink(QStringLiteral("dangling"), missing);
    QCOMPARE(shred(dangling, 100, 0), qint64{0});
    QCOMPARE(shred(dangling, 0, 0), qint64{0});
    QVERIFY(entryExists(dangling));
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherTreeFile::fileOfAnEmptyTreeIsUnlinkedUnwritten()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 5000);
    const QString secondName = tree->makeHardLink(QStringLiteral("second name"), file);
    QCOMPARE(shred(tree->path(QStringLiteral("./file")), 0, 0), qint64{0});
    QVERIFY(!entryExists(file));
    QCOMPARE(TemporaryTree::contentsOf(secondName), QByteArray(5000, 'x'));
    // Unlike anywhere else the path is not reported as it was given but cleaned.
    QCOMPARE(log->records(), (SignalRecords{{"addToHistory", {QFileInfo(file).filePath()}}}));
}

void TestFileCrusherTreeFile::emptyFileReportsTheShareDone()
{
    const QString file = tree->makeFile(QStringLiteral("empty"), 0);
    QCOMPARE(shred(file, 200, 50), qint64{0});
    QVERIFY(!entryExists(file));
    QCOMPARE(log->records(), expectedRecords({25}, file));
}

void TestFileCrusherTreeFile::progressCountsDownInsideTheFile_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("total");
    QTest::addColumn<qint64>("done");
    QTest::addColumn<QList<int>>("expected");
    const auto row = [](const char *name, qint64 size, qint64 total, qint64 done,
                        const QList<int> &expected) {
        QTest::newRow(name) << size << total << done << expected;
    };
    row("only file", 10 * block, 10 * block, 0, {90, 100});
    row("only file without a whole block", block - 1, block - 1, 0, {100});
    row("only file of one block", block, block, 0, {100});
    row("second half", 10 * block, 20 * block, 10 * block, {95, 100});
    row("five points above are not reported", 6 * block, 100 * block, 0, {6});
    row("six points above are reported", 7 * block, 100 * block, 0, {6, 7});
    row("six points above what is done", 7 * block, 100 * block, 40 * block, {46, 47});
    row("share is rounded down", 1, 3, 1, {66});
    row("tree that grew while it was shredded", 10 * block, 5 * block, 5 * block, {280, 300});
}

void TestFileCrusherTreeFile::progressCountsDownInsideTheFile()
{
    QFETCH(qint64, size);
    QFETCH(qint64, total);
    QFETCH(qint64, done);
    QFETCH(QList<int>, expected);
    const QString file = tree->makeFile(QStringLiteral("file"), size);
    QCOMPARE(shred(file, total, done), size);
    QVERIFY(!entryExists(file));
    QCOMPARE(log->records(), expectedRecords(expected, file));
}

void TestFileCrusherTreeFile::progressFollowsTheShare_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("total");
    QTest::addColumn<qint64>("done");
    for (const qint64 size : {1, 4095, 4096, 4097, 40960, 123456, 1048576}) {
        for (const qint64 before : {0, 1, 5000, 1048576}) {
            for (const qint64 after : {0, 1, 99999}) {
                QTest::addRow("%lld of %lld after %lld", size, before + size + after, before)
                    << size << before + size + after << before;
            }
        }
    }
}

void TestFileCrusherTreeFile::progressFollowsTheShare()
{
    QFETCH(qint64, size);
    QFETCH(qint64, total);
    QFETCH(qint64, done);
    const QString file = tree->makeFile(QStringLiteral("file"), size);
    QCOMPARE(shred(file, total, done), size);
    QCOMPARE(log->records(), expectedRecords(reportedPercents(size, total, done), file));
}

void TestFileCrusherTreeFile::bytesAreOverwrittenInPlace_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {1, 4095, 4096, 4097, 40000})
        QTest::addRow("%d bytes", size) << size;
}

void TestFileCrusherTreeFile::bytesAreOverwrittenInPlace()
{
    QFETCH(int, size);
    const QString file = tree->makeFile(QStringLiteral("file"), size);
    const QString secondName = tree->makeHardLink(QStringLiteral("second name"), file);

    const std::time_t before = std::time(nullptr);
    QCOMPARE(shred(file, 100000, 0), qint64{size});
    const std::time_t after = std::time(nullptr);

    const QByteArray found = TemporaryTree::contentsOf(secondName);
    QCOMPARE(found.size(), size);
    QVERIFY(testsupport::wasOverwritten(found, before, after));
}

void TestFileCrusherTreeFile::pathIsReportedAsGiven()
{
    tree->makeFile(QStringLiteral("file"), 10);
    const QString path = tree->path(QStringLiteral(".//file"));
    QCOMPARE(shred(path, 10, 0), qint64{10});
    QCOMPARE(log->records(), expectedRecords({100}, path));
}

TEST_SUITE(treefile, TestFileCrusherTreeFile)
#include "treefile.moc"
