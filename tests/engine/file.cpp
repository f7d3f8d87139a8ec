// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A file or link given by itself.

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

constexpr int megabyte = 1024 * 1024;

/// The reports of a file of @p blocks whole blocks: steps of two points, then always 99.
QList<int> reportedPercents(qint64 blocks)
{
    QList<int> percents;
    int last = 0;
    for (qint64 left = blocks - 1; left >= 0; --left) {
        const int percent = 100 - static_cast<int>(left * 100 / blocks);
        if (percent - last >= 2) {
            percents.append(percent);
            last = percent;
        }
    }
    percents.append(99);
    return percents;
}

} // namespace

class TestFileCrusherFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void nullPathIsRefused();
    void missingPathIsNothingToDo();
    void directoryIsRefused();
    void emptyFileIsUnlinkedWithoutProgress();
    void fileBelowOneBlockReportsNinetyNineOnce_data();
    void fileBelowOneBlockReportsNinetyNineOnce();
    void progressGoesInStepsOfTwo_data();
    void progressGoesInStepsOfTwo();
    void progressOfManyBlocksFollowsTheShare_data();
    void progressOfManyBlocksFollowsTheShare();
    void bytesAreOverwrittenInPlace_data();
    void bytesAreOverwrittenInPlace();
    void linkIsUnlinkedAndItsTargetSurvives_data();
    void linkIsUnlinkedAndItsTargetSurvives();
    void pathIsReportedAsGiven();
    void stopRequestDoesNotHoldUpAFile();
    void statSizeFollowsLinks();
    void statSizeOfNothingIsMinusOne();

private:
    qint64 shred(const QString &path) { return crusher->shredFile(path.toUtf8().constData()); }
    QList<int> percents() const;

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<FileCrusher> crusher;
    std::unique_ptr<SignalLog> log;
};

void TestFileCrusherFile::init()
{
    tree = std::make_unique<TemporaryTree>();
    crusher = std::make_unique<FileCrusher>();
    log = std::make_unique<SignalLog>(crusher.get());
}

void TestFileCrusherFile::cleanup()
{
    log.reset();
    crusher.reset();
    tree.reset();
}

QList<int> TestFileCrusherFile::percents() const
{
    QList<int> values;
    const QList<QVariantList> reports = log->argumentsOf("finishPercent");
    for (const QVariantList &report : reports)
        values.append(report.at(1).toInt());
    return values;
}

void TestFileCrusherFile::nullPathIsRefused()
{
    QCOMPARE(crusher->shredFile(nullptr), qint64{-1});
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherFile::missingPathIsNothingToDo()
{
    QCOMPARE(shred(tree->path(QStringLiteral("missing"))), qint64{0});
    QCOMPARE(shred(tree->path(QStringLiteral("no folder/missing"))), qint64{0});
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherFile::directoryIsRefused()
{
    const QString folder = tree->makeFolder(QStringLiteral("folder"));
    QCOMPARE(shred(folder), qint64{-4});
    QVERIFY(entryExists(folder));
    QCOMPARE(log->records(), SignalRecords());
}

void TestFileCrusherFile::emptyFileIsUnlinkedWithoutProgress()
{
    const QString file = tree->makeFile(QStringLiteral("empty"), 0);
    QCOMPARE(shred(file), qint64{0});
    QVERIFY(!entryExists(file));
    QCOMPARE(log->records(), (SignalRecords{{"addToHistory", {file}}}));
}

void TestFileCrusherFile::fileBelowOneBlockReportsNinetyNineOnce_data()
{
    QTest::addColumn<qint64>("size");
    for (const qint64 size : {1, 2, 255, 4095})
        QTest::addRow("%d bytes", static_cast<int>(size)) << size;
}

void TestFileCrusherFile::fileBelowOneBlockReportsNinetyNineOnce()
{
    QFETCH(qint64, size);
    const QString file = tree->makeFile(QStringLiteral("small"), size);
    QCOMPARE(shred(file), size);
    QVERIFY(!entryExists(file));
    QCOMPARE(log->records(),
             (SignalRecords{{"finishPercent", {file, 99}}, {"addToHistory", {file}}}));
}

void TestFileCrusherFile::progressGoesInStepsOfTwo_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QList<int>>("expected");
    const auto row = [](qint64 size, const QList<int> &expected) {
        QTest::addRow("%d bytes", static_cast<int>(size)) << size << expected;
    };
    row(4096, {100, 99});
    row(4097, {100, 99});
    row(8191, {100, 99});
    row(8192, {50, 100, 99});
    row(3 * 4096, {34, 67, 100, 99});
    row(40960, {10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 99});
}

void TestFileCrusherFile::progressGoesInStepsOfTwo()
{
    QFETCH(qint64, size);
    QFETCH(QList<int>, expected);
    const QString file = tree->makeFile(QStringLiteral("file"), size);
    QCOMPARE(shred(file), size);

    SignalRecords records;
    for (const int percent : qAsConst(expected))
        records.append({"finishPercent", {file, percent}});
    records.append({"addToHistory", {file}});
    QCOMPARE(log->records(), records);
}

void TestFileCrusherFile::progressOfManyBlocksFollowsTheShare_data()
{
    QTest::addColumn<qint64>("size");
    for (const int size :
         {49 * 4096, 50 * 4096, 51 * 4096, 99 * 4096, 100 * 4096, 101 * 4096 + 1, 150 * 4096,
          199 * 4096, megabyte - 1, megabyte, megabyte + 1, 5 * megabyte})
        QTest::addRow("%d bytes", size) << qint64{size};
}

void TestFileCrusherFile::progressOfManyBlocksFollowsTheShare()
{
    QFETCH(qint64, size);
    const QString file = tree->makeFile(QStringLiteral("file"), size);
    QCOMPARE(shred(file), size);
    QCOMPARE(percents(), reportedPercents(size / 4096));
}

void TestFileCrusherFile::bytesAreOverwrittenInPlace_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {1, 255, 4095, 4096, 4097, 12288, 40000, megabyte})
        QTest::addRow("%d bytes", size) << size;
}

void TestFileCrusherFile::bytesAreOverwrittenInPlace()
{
    QFETCH(int, size);
    const QString file = tree->makeFile(QStringLiteral("file"), size);
    const QString secondName = tree->makeHardLink(QStringLiteral("second name"), file);

    const std::time_t before = std::time(nullptr);
    QCOMPARE(shred(file), qint64{size});
    const std::time_t after = std::time(nullptr);

    const QByteArray found = TemporaryTree::contentsOf(secondName);
    QCOMPARE(found.size(), size);
    QVERIFY(testsupport::wasOverwritten(found, before, after));
}

void TestFileCrusherFile::linkIsUnlinkedAndItsTargetSurvives_data()
{
    QTest::addColumn<QString>("target");
    QTest::newRow("to a file") << QStringLiteral("ten bytes");
    QTest::newRow("to a file of 255 bytes") << QStringLiteral("255 bytes");
    QTest::newRow("to a folder") << QStringLiteral("folder");
    QTest::newRow("to another link") << QStringLiteral("other link");
    QTest::newRow("dangling") << QStringLiteral("nowhere");
    QTest::newRow("to itself") << QStringLiteral("link");
}

void TestFileCrusherFile::linkIsUnlinkedAndItsTargetSurvives()
{
    QFETCH(QString, target);
    const QString ten = tree->makeFile(QStringLiteral("ten bytes"), 10);
    const QString stopCode = tree->makeFile(QStringLiteral("255 bytes"), 255);
    const QString inside = tree->makeFile(QStringLiteral("folder/inside"), 10);
    const QString other = tree->makeLink(QStringLiteral("other link"), QStringLiteral("ten bytes"));
    const QString link = tree->makeLink(QStringLiteral("link"), target);

    // The size is read after the link has gone, when nothing is left to have one.
    QCOMPARE(shred(link), qint64{0});
    QCOMPARE(log->records(), (SignalRecords{{"addToHistory", {link}}}));
    QVERIFY(!entryExists(link));
    QCOMPARE(TemporaryTree::contentsOf(ten), QByteArray(10, 'x'));
    QCOMPARE(TemporaryTree::contentsOf(stopCode), QByteArray(255, 'x'));
    QCOMPARE(TemporaryTree::contentsOf(inside), QByteArray(10, 'x'));
    QVERIFY(entryExists(other));
}

void TestFileCrusherFile::pathIsReportedAsGiven()
{
    tree->makeFile(QStringLiteral("folder/file"), 10);
    const QString path = tree->path(QStringLiteral("./folder//../folder/file"));
    QCOMPARE(shred(path), qint64{10});
    QCOMPARE(log->records(),
             (SignalRecords{{"finishPercent", {path, 99}}, {"addToHistory", {path}}}));
}

void TestFileCrusherFile::stopRequestDoesNotHoldUpAFile()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 40960);
    crusher->requestStop(true);
    QCOMPARE(shred(file), qint64{40960});
    QVERIFY(!entryExists(file));
    QCOMPARE(percents(), reportedPercents(10));
}

void TestFileCrusherFile::statSizeFollowsLinks()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 4321);
    const QString link = tree->makeLink(QStringLiteral("link"), file);
    QCOMPARE(FileCrusher::statSize(file.toUtf8().constData()), qint64{4321});
    QCOMPARE(FileCrusher::statSize(link.toUtf8().constData()), qint64{4321});
}

void TestFileCrusherFile::statSizeOfNothingIsMinusOne()
{
    const QString missing = tree->path(QStringLiteral("missing"));
    const QString dangling = tree->makeLink(QStringLiteral("dangling"), missing);
    QCOMPARE(FileCrusher::statSize(nullptr), qint64{-1});
    QCOMPARE(FileCrusher::statSize(missing.toUtf8().constData()), qint64{-1});
    QCOMPARE(FileCrusher::statSize(dangling.toUtf8().constData()), qint64{-1});
}

TEST_SUITE(file, TestFileCrusherFile)
#include "file.moc"
