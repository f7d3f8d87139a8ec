// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "engine/blockfiller.h"
#include "engine/filecrusher.h"

#include "expectedbytes.h"
#include "suites.h"

#include <QtTest>

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <thread>

using testsupport::expectedBytes;

namespace
{

constexpr std::time_t someSecond = 1700000000;
constexpr int blockSize = static_cast<int>(BlockFiller::blockSize);

QByteArray filled(BlockFiller &filler, std::time_t second, int count = blockSize)
{
    QByteArray bytes(count, '\0');
    filler.fill(bytes.data(), static_cast<std::size_t>(count), second);
    return bytes;
}

/// Draws from the random numbers of the whole process for as long as it lives.
class BusyNeighbour
{
public:
    BusyNeighbour()
    {
        while (!started)
            std::this_thread::yield();
    }
    ~BusyNeighbour()
    {
        ended = true;
        thread.join();
    }
    BusyNeighbour(const BusyNeighbour &) = delete;
    BusyNeighbour &operator=(const BusyNeighbour &) = delete;

private:
    void draw()
    {
        while (!ended) {
            static_cast<void>(std::rand());
            started = true;
        }
    }

    std::atomic<bool> started{false};
    std::atomic<bool> ended{false};
    std::thread thread{&BusyNeighbour::draw, this};
};

} // namespace

class TestBlockFiller : public QObject
{
    Q_OBJECT

private slots:
    void blockIsTheSeededSequenceBackwards_data();
    void blockIsTheSeededSequenceBackwards();
    void sameSecondRepeatsTheBytes();
    void anotherSecondChangesTheBytes();
    void secondMayGoBack();
    void everyCountIsTheSeededSequenceBackwards();
    void bytesAroundTheCountAreLeftAlone();
    void neighbourDrawingRandomNumbersDoesNotDisturb();
    void fillRandomUsesTheCurrentSecondForEveryCount();
    void fillRandomFollowsTheClock();
};

void TestBlockFiller::blockIsTheSeededSequenceBackwards_data()
{
    QTest::addColumn<qint64>("second");
    QTest::newRow("zero") << qint64{0};
    QTest::newRow("one") << qint64{1};
    QTest::newRow("today") << qint64{someSecond};
    QTest::newRow("last of 31 bits") << qint64{0x7FFFFFFF};
    QTest::newRow("first of 32 bits") << qint64{0x80000000};
    QTest::newRow("last of 32 bits") << qint64{0xFFFFFFFF};
    QTest::newRow("beyond 32 bits") << qint64{0x100000000} + someSecond;
    QTest::newRow("before 1970") << qint64{-1};
}

void TestBlockFiller::blockIsTheSeededSequenceBackwards()
{
    QFETCH(qint64, second);
    BlockFiller filler;
    QCOMPARE(filled(filler, second), expectedBytes(blockSize, second));
}

void TestBlockFiller::sameSecondRepeatsTheBytes()
{
    BlockFiller filler;
    const QByteArray first = filled(filler, someSecond);
    QCOMPARE(filled(filler, someSecond), first);
    QCOMPARE(filled(filler, someSecond, 100), first.right(100));
}

void TestBlockFiller::anotherSecondChangesTheBytes()
{
    BlockFiller filler;
    const QByteArray first = filled(filler, someSecond);
    for (std::time_t second = someSecond + 1; second < someSecond + 5; ++second) {
        const QByteArray next = filled(filler, second);
        QVERIFY(next != first);
        QCOMPARE(next, expectedBytes(blockSize, second));
    }
}

void TestBlockFiller::secondMayGoBack()
{
    BlockFiller filler;
    filled(filler, someSecond);
    QCOMPARE(filled(filler, someSecond - 1), expectedBytes(blockSize, someSecond - 1));
    QCOMPARE(filled(filler, 0), expectedBytes(blockSize, 0));
    QCOMPARE(filled(filler, someSecond), expectedBytes(blockSize, someSecond));
}

void TestBlockFiller::everyCountIsTheSeededSequenceBackwards()
{
    BlockFiller filler;
    for (int count = 0; count <= blockSize; ++count)
        QCOMPARE(filled(filler, someSecond, count), expectedBytes(count, someSecond));
    constexpr int beyond = 2 * blockSize + 5;
    QByteArray expected(beyond, '\0');
    std::srand(someSecond);
    for (int index = beyond - 1; index >= 0; --index)
        expected[index] = static_cast<char>(std::rand() & 0xFF); // NOLINT: the bytes are rand()'s
    QCOMPARE(filled(filler, someSecond, beyond), expected);
}

void TestBlockFiller::bytesAroundTheCountAreLeftAlone()
{
    constexpr int margin = 16;
    constexpr int count = 1000;
    BlockFiller filler;
    QByteArray bytes(margin + count + margin, '#');
    filler.fill(bytes.data() + margin, count, someSecond);
    QCOMPARE(bytes.left(margin), QByteArray(margin, '#'));
    QCOMPARE(bytes.mid(margin, count), expectedBytes(count, someSecond));
    QCOMPARE(bytes.right(margin), QByteArray(margin, '#'));

    bytes.fill('#');
    filler.fill(bytes.data(), 0, someSecond);
    QCOMPARE(bytes, QByteArray(bytes.size(), '#'));
}

void TestBlockFiller::neighbourDrawingRandomNumbersDoesNotDisturb()
{
    constexpr int rounds = 200;
    const QByteArray expected = expectedBytes(blockSize, someSecond);
    const BusyNeighbour neighbour;
    for (int round = 0; round < rounds; ++round) {
        BlockFiller filler;
        QCOMPARE(filled(filler, someSecond), expected);
    }
}

void TestBlockFiller::fillRandomUsesTheCurrentSecondForEveryCount()
{
    FileCrusher crusher;
    for (int count = 0; count <= blockSize; ++count) {
        QByteArray bytes(count, '\0');
        const std::time_t before = std::time(nullptr);
        crusher.fillRandom(bytes.data(), static_cast<std::size_t>(count));
        const std::time_t after = std::time(nullptr);
        QVERIFY2(testsupport::wasOverwritten(bytes, before, after),
                 qPrintable(QString::number(count)));
    }
}

void TestBlockFiller::fillRandomFollowsTheClock()
{
    FileCrusher crusher;
    QByteArray first(blockSize, '\0');
    crusher.fillRandom(first.data(), BlockFiller::blockSize);
    const std::time_t seen = std::time(nullptr);
    QTRY_VERIFY(std::time(nullptr) > seen);

    QByteArray next(blockSize, '\0');
    crusher.fillRandom(next.data(), BlockFiller::blockSize);
    QVERIFY(next != first);
    QVERIFY(testsupport::wasOverwritten(next, seen + 1, std::time(nullptr)));
}

TEST_SUITE(blockfiller, TestBlockFiller)
#include "blockfiller.moc"
