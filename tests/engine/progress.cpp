// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Which percentages are reported, of a lone file and of a folder. Sizes beyond 32 bits are in
// hugefiles.cpp; model.cpp compares all reports of random trees.

#include "engine/shredprogress.h"

#include "enginetest.h"

using namespace testsupport;

namespace
{

constexpr quint64 twoTo31 = quint64{1} << 31;
constexpr quint64 twoTo32 = quint64{1} << 32;

} // namespace

class TestProgress : public EngineTest
{
    Q_OBJECT

private slots:
    void loneFileReportsStepsOfTwo_data();
    void loneFileReportsStepsOfTwo();
    void fileOfAFolderCountsDown_data();
    void fileOfAFolderCountsDown();
    void loneFilePercentNarrowsTheBlocks();
    void treePercentCountsTerabytes();
    void stepIsComparedAsSigned32Bit();

private:
    void checkReports(const QString &path, const QString &file) const;
};

/// The percentages of the row were reported of @p path, then the removal of @p file.
void TestProgress::checkReports(const QString &path, const QString &file) const
{
    QFETCH(QList<int>, expected);
    SignalRecords records;
    for (const int percent : qAsConst(expected))
        records.append(progress(path, percent));
    QCOMPARE(log->records(), records << removal(file));
}

void TestProgress::loneFileReportsStepsOfTwo_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QList<int>>("expected");
    for (const int size : {1, 2, 255, 4095})
        QTest::addRow("only 99 below a block, %d bytes", size) << size << QList<int>{99};
    QTest::newRow("a block") << 4096 << QList<int>{100, 99};
    QTest::newRow("nearly two") << 8191 << QList<int>{100, 99};
    QTest::newRow("two") << 8192 << QList<int>{50, 100, 99};
    QTest::newRow("three") << 3 * 4096 << QList<int>{34, 67, 100, 99};
    QTest::newRow("ten") << 40960 << QList<int>{10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 99};
}

void TestProgress::loneFileReportsStepsOfTwo()
{
    QFETCH(int, size);
    const QString file = tree->makeFile("file", size);
    QCOMPARE(shredFile(file), qint64{size});
    QVERIFY(!entryExists(file));
    checkReports(file, file);
}

void TestProgress::fileOfAFolderCountsDown_data()
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

void TestProgress::fileOfAFolderCountsDown()
{
    QFETCH(qint64, size);
    QFETCH(qint64, total);
    QFETCH(qint64, done);
    const QString file = tree->makeFile("file", size);
    QCOMPARE(shredInTree(file, total, done), size);
    QVERIFY(!entryExists(file));
    checkReports(tree->path(), file);
}

void TestProgress::loneFilePercentNarrowsTheBlocks()
{
    const struct {
        const char *name;
        quint64 blocks;
        quint64 index;
        int percent;
    } rows[] = {
        {"ninth of a thousand", 1000, 9, 1},
        {"tenth of a thousand is rounded up", 1000, 10, 2},
        {"first of the most that 31 bits count", twoTo31 - 1, 0, 1},
        {"last of the most that 31 bits count", twoTo31 - 1, twoTo31 - 2, 100},
        {"a negative divisor is beyond every share", twoTo31, 0, 100},
        {"a divisor of minus one", twoTo32 - 1, 0, 100},
        {"a count that narrows to zero divides whole", twoTo32, 0, 1},
        {"last of a count that narrows to zero", twoTo32, twoTo32 - 1, 100},
        {"last of a count that narrows to one", twoTo32 + 1, twoTo32, 100},
        {"a narrowed divisor near the end", twoTo32 + 100, twoTo32 + 90, 91},
        {"a narrowed divisor far from the end", twoTo32 + 100, twoTo32 - 202, -201},
    };
    for (const auto &row : rows)
        QVERIFY2(shredprogress::loneFilePercent(row.blocks, row.index) == row.percent, row.name);
}

void TestProgress::treePercentCountsTerabytes()
{
    constexpr quint64 terabyte = quint64{1} << 40;
    QCOMPARE(shredprogress::treePercent(3 * terabyte, 4 * terabyte), quint64{75});
    QCOMPARE(shredprogress::treePercent(3 * terabyte - 1, 4 * terabyte), quint64{74});
}

void TestProgress::stepIsComparedAsSigned32Bit()
{
    using shredprogress::isStepAbove;
    QVERIFY(isStepAbove(46, 40, 5) && !isStepAbove(45, 40, 5) && !isStepAbove(30, 40, 5));
    QVERIFY(isStepAbove(twoTo31 - 1, 0, 5));
    QVERIFY(!isStepAbove(twoTo31, 0, 5)); // negative
    QVERIFY(!isStepAbove(twoTo32, 0, 5)); // zero
}

TEST_SUITE(progress, TestProgress)
#include "progress.moc"
