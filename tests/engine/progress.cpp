// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "engine/shredprogress.h"
#include "suites.h"

#include <QtTest>

using namespace shredprogress;

namespace
{

constexpr quint64 twoTo31 = quint64{1} << 31;
constexpr quint64 twoTo32 = quint64{1} << 32;

} // namespace

class TestShredProgress : public QObject
{
    Q_OBJECT

private slots:
    void loneFilePercent_data();
    void loneFilePercent();
    void loneFilePercentNeverGoesDown();
    void treePercent_data();
    void treePercent();
    void percentInFileCountsTheBlocksStillToCome_data();
    void percentInFileCountsTheBlocksStillToCome();
    void stepIsComparedAsSigned32Bit_data();
    void stepIsComparedAsSigned32Bit();
};

void TestShredProgress::loneFilePercent_data()
{
    QTest::addColumn<quint64>("blocks");
    QTest::addColumn<quint64>("index");
    QTest::addColumn<int>("percent");
    const auto row = [](const char *name, quint64 blocks, quint64 index, int percent) {
        QTest::newRow(name) << blocks << index << percent;
    };
    row("only block", 1, 0, 100);
    row("first of two", 2, 0, 50);
    row("first of three is rounded up", 3, 0, 34);
    row("second of three", 3, 1, 67);
    row("first of ten", 10, 0, 10);
    row("last of ten", 10, 9, 100);
    row("first of a thousand", 1000, 0, 1);
    row("ninth of a thousand", 1000, 9, 1);
    row("tenth of a thousand is rounded up", 1000, 10, 2);
    row("first of the most that 31 bits count", twoTo31 - 1, 0, 1);
    row("last of the most that 31 bits count", twoTo31 - 1, twoTo31 - 2, 100);
    row("a negative divisor is beyond every share", twoTo31, 0, 100);
    row("a divisor of minus one", twoTo32 - 1, 0, 100);
    row("a count that narrows to zero divides whole", twoTo32, 0, 1);
    row("last of a count that narrows to zero", twoTo32, twoTo32 - 1, 100);
    row("last of a count that narrows to one", twoTo32 + 1, twoTo32, 100);
    row("a narrowed divisor near the end", twoTo32 + 100, twoTo32 + 90, 91);
    row("a narrowed divisor far from the end", twoTo32 + 100, twoTo32 - 202, -201);
}

void TestShredProgress::loneFilePercent()
{
    QFETCH(quint64, blocks);
    QFETCH(quint64, index);
    QTEST(shredprogress::loneFilePercent(blocks, index), "percent");
}

void TestShredProgress::loneFilePercentNeverGoesDown()
{
    for (quint64 blocks = 1; blocks <= 300; ++blocks) {
        int last = 0;
        for (quint64 index = 0; index < blocks; ++index) {
            const int percent = shredprogress::loneFilePercent(blocks, index);
            QVERIFY(percent >= last && percent <= 100);
            last = percent;
        }
        QCOMPARE(last, 100);
    }
}

void TestShredProgress::treePercent_data()
{
    QTest::addColumn<quint64>("done");
    QTest::addColumn<quint64>("total");
    QTest::addColumn<quint64>("percent");
    QTest::newRow("nothing yet") << quint64{0} << quint64{7} << quint64{0};
    QTest::newRow("rounded down") << quint64{2} << quint64{3} << quint64{66};
    QTest::newRow("all") << quint64{7} << quint64{7} << quint64{100};
    QTest::newRow("tree that grew") << quint64{14} << quint64{7} << quint64{200};
    QTest::newRow("terabytes") << (twoTo32 << 9) << (twoTo32 << 10) << quint64{50};
}

void TestShredProgress::treePercent()
{
    QFETCH(quint64, done);
    QFETCH(quint64, total);
    QTEST(shredprogress::treePercent(done, total), "percent");
}

void TestShredProgress::percentInFileCountsTheBlocksStillToCome_data()
{
    QTest::addColumn<quint64>("done");
    QTest::addColumn<quint64>("total");
    QTest::addColumn<quint64>("blocks");
    QTest::addColumn<QList<quint64>>("percents");
    QTest::newRow("whole tree") << quint64{0} << quint64{5 * 4096} << quint64{5}
                                << QList<quint64>{80, 60, 40, 20, 0};
    QTest::newRow("second half") << quint64{2 * 4096} << quint64{4 * 4096} << quint64{2}
                                 << QList<quint64>{75, 50};
    QTest::newRow("single block") << quint64{4096} << quint64{3 * 4096} << quint64{1}
                                  << QList<quint64>{33};
    QTest::newRow("tail counts in the total only")
        << quint64{0} << quint64{2 * 4096 + 100} << quint64{2} << QList<quint64>{49, 0};
}

void TestShredProgress::percentInFileCountsTheBlocksStillToCome()
{
    QFETCH(quint64, done);
    QFETCH(quint64, total);
    QFETCH(quint64, blocks);
    QList<quint64> percents;
    for (quint64 index = 0; index < blocks; ++index)
        percents.append(treePercentInFile(done, total, blocks, index));
    QTEST(percents, "percents");
}

void TestShredProgress::stepIsComparedAsSigned32Bit_data()
{
    QTest::addColumn<quint64>("percent");
    QTest::addColumn<quint64>("last");
    QTest::addColumn<bool>("above");
    QTest::newRow("equal") << quint64{40} << quint64{40} << false;
    QTest::newRow("exactly the step") << quint64{45} << quint64{40} << false;
    QTest::newRow("one more than the step") << quint64{46} << quint64{40} << true;
    QTest::newRow("below") << quint64{30} << quint64{40} << false;
    QTest::newRow("difference of 31 bits") << twoTo31 - 1 << quint64{0} << true;
    QTest::newRow("difference that turns negative") << twoTo31 << quint64{0} << false;
    QTest::newRow("difference that turns zero") << twoTo32 << quint64{0} << false;
}

void TestShredProgress::stepIsComparedAsSigned32Bit()
{
    QFETCH(quint64, percent);
    QFETCH(quint64, last);
    QTEST(isStepAbove(percent, last, 5), "above");
}

TEST_SUITE(progress, TestShredProgress)
#include "progress.moc"
