// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The bytes that files are overwritten with.

#include "engine/blockfiller.h"
#include "engine/filecrusher.h"

#include "expectedbytes.h"
#include "suites.h"
#include "systemcalls.h"

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

} // namespace

class TestBytes : public QObject
{
    Q_OBJECT

private slots:
    void blockIsTheSeededSequenceBackwards_data();
    void blockIsTheSeededSequenceBackwards();
    void everySecondHasItsOwnBytes();
    void everyCountIsTheSeededSequenceBackwards();
    void bytesAroundTheCountAreLeftAlone();
    void neighbourDrawingRandomNumbersDoesNotDisturb();
    void fillRandomFollowsTheClock();
};

void TestBytes::blockIsTheSeededSequenceBackwards_data()
{
    QTest::addColumn<qint64>("second");
    QTest::newRow("zero") << qint64{0};
    QTest::newRow("today") << qint64{someSecond};
    QTest::newRow("last of 31 bits") << qint64{0x7FFFFFFF};
    QTest::newRow("first of 32 bits") << qint64{0x80000000};
    QTest::newRow("last of 32 bits") << qint64{0xFFFFFFFF};
    QTest::newRow("beyond 32 bits") << qint64{0x100000000} + someSecond;
    QTest::newRow("before 1970") << qint64{-1};
}

void TestBytes::blockIsTheSeededSequenceBackwards()
{
    QFETCH(qint64, second);
    BlockFiller filler;
    QCOMPARE(filled(filler, second), expectedBytes(blockSize, second));
}

void TestBytes::everySecondHasItsOwnBytes()
{
    BlockFiller filler;
    const QByteArray first = filled(filler, someSecond);
    QCOMPARE(filled(filler, someSecond), first);
    QCOMPARE(filled(filler, someSecond, 100), first.right(100));
    // Clocks may also be put back.
    for (const std::time_t second : {someSecond + 1, someSecond - 1, std::time_t{0}}) {
        QCOMPARE(filled(filler, second), expectedBytes(blockSize, second));
        QVERIFY(filled(filler, second) != first);
    }
    QCOMPARE(filled(filler, someSecond), first);
}

void TestBytes::everyCountIsTheSeededSequenceBackwards()
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

void TestBytes::bytesAroundTheCountAreLeftAlone()
{
    BlockFiller filler;
    for (const int count : {0, 1000}) {
        const QByteArray margin(16, '#');
        QByteArray bytes = margin + QByteArray(count, '\0') + margin;
        filler.fill(bytes.data() + margin.size(), static_cast<std::size_t>(count), someSecond);
        QCOMPARE(bytes, margin + expectedBytes(count, someSecond) + margin);
    }
}

void TestBytes::neighbourDrawingRandomNumbersDoesNotDisturb()
{
    const QByteArray expected = expectedBytes(blockSize, someSecond);
    std::atomic<bool> started{false};
    std::atomic<bool> ended{false};
    std::thread neighbour([&] {
        while (!ended) {
            static_cast<void>(std::rand());
            started = true;
        }
    });
    while (!started)
        std::this_thread::yield();
    bool same = true;
    for (int round = 0; round < 200 && same; ++round) {
        BlockFiller filler;
        same = filled(filler, someSecond) == expected;
    }
    ended = true;
    neighbour.join();
    QVERIFY(same);
}

void TestBytes::fillRandomFollowsTheClock()
{
    FileCrusher crusher;
    QByteArray bytes(blockSize, '\0');
    for (std::time_t second = someSecond; second < someSecond + 3; ++second) {
        const testsupport::ClockHook clock([second] { return second; });
        crusher.fillRandom(bytes.data(), BlockFiller::blockSize);
        QCOMPARE(bytes, expectedBytes(blockSize, second));
    }
    const std::time_t before = std::time(nullptr);
    crusher.fillRandom(bytes.data(), BlockFiller::blockSize);
    QVERIFY(testsupport::wasOverwritten(bytes, before, std::time(nullptr)));
}

TEST_SUITE(bytes, TestBytes)
#include "bytes.moc"
