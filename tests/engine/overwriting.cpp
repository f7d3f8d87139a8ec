// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The bytes that files are overwritten with, and what stands in a file when its name goes. Files
// are shredded by themselves and as parts of a folder.

#include "engine/blockfiller.h"

#include "enginetest.h"
#include "expectedbytes.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <thread>

#include <sys/stat.h>

using namespace testsupport;

namespace
{

constexpr std::time_t someSecond = 1700000000;
constexpr int blockSize = static_cast<int>(BlockFiller::blockSize);

} // namespace

class TestOverwriting : public EngineTest
{
    Q_OBJECT

private slots:
    void bytesAreTheSeededSequenceBackwards();
    void everySecondHasItsOwnBytes();
    void neighbourDrawingRandomNumbersDoesNotDisturb();

    void bytesAreOverwrittenInPlaceBeforeTheNameGoes_data();
    void bytesAreOverwrittenInPlaceBeforeTheNameGoes();
    void everyBlockIsOfItsOwnSecond_data() { aloneAndInATree(); }
    void everyBlockIsOfItsOwnSecond();
    void asManyBytesAreWrittenAsTheSizeSays();
    void failedWriteIsNotNoticed_data() { aloneAndInATree(); }
    void failedWriteIsNotNoticed();

private:
    static void aloneAndInATree();
    QByteArray filled(std::time_t second, int count = blockSize);
    qint64 shred(const QString &file);
};

void TestOverwriting::aloneAndInATree()
{
    QTest::addColumn<bool>("alone");
    QTest::newRow("alone") << true;
    QTest::newRow("in a tree") << false;
}

QByteArray TestOverwriting::filled(std::time_t second, int count)
{
    const ClockHook clock([second] { return second; });
    const QByteArray margin(16, '#');
    QByteArray bytes = margin + QByteArray(count, '\0') + margin;
    crusher->fillRandom(bytes.data() + margin.size(), static_cast<std::size_t>(count));
    return bytes.startsWith(margin) && bytes.endsWith(margin) ? bytes.mid(margin.size(), count)
                                                              : QByteArray("beyond the count");
}

qint64 TestOverwriting::shred(const QString &file)
{
    QFETCH(bool, alone);
    return alone ? shredFile(file) : shredInTree(file, 1000000);
}

void TestOverwriting::bytesAreTheSeededSequenceBackwards()
{
    // Also around 32 bits and before 1970.
    for (const std::time_t second :
         {std::time_t{0}, someSecond, std::time_t{0x7FFFFFFF}, std::time_t{0x80000000},
          std::time_t{0xFFFFFFFF}, std::time_t{0x100000000} + someSecond, std::time_t{-1}}) {
        // Nobody asks for more than a block, but the routine allows it.
        for (const int count : {0, 1, 2, 3, 4, 5, 414, 2459, blockSize, 2 * blockSize + 5}) {
            QByteArray expected(count, '\0');
            std::srand(static_cast<unsigned>(second));
            for (int index = count - 1; index >= 0; --index)
                expected[index] = static_cast<char>(std::rand() & 0xFF); // NOLINT: the promise
            QVERIFY2(filled(second, count) == expected,
                     qPrintable(QStringLiteral("%1 bytes at %2").arg(count).arg(second)));
        }
    }
}

void TestOverwriting::everySecondHasItsOwnBytes()
{
    // Clocks may also be put back.
    for (const std::time_t second : {someSecond, someSecond + 1, someSecond - 1, someSecond}) {
        for (const int count : {blockSize, blockSize, 100})
            QCOMPARE(filled(second, count), expectedBytes(count, second));
    }
}

void TestOverwriting::neighbourDrawingRandomNumbersDoesNotDisturb()
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
        filled(0); // another second: the next block is made anew
        same = filled(someSecond) == expected;
    }
    ended = true;
    neighbour.join();
    QVERIFY(same);
}

void TestOverwriting::bytesAreOverwrittenInPlaceBeforeTheNameGoes_data()
{
    QTest::addColumn<bool>("alone");
    QTest::addColumn<int>("size");
    for (const int size : {1, 255, 4095, 4096, 4097, 12288, 40000, 1048576}) {
        QTest::addRow("%d bytes alone", size) << true << size;
        QTest::addRow("%d bytes in a tree", size) << false << size;
    }
}

void TestOverwriting::bytesAreOverwrittenInPlaceBeforeTheNameGoes()
{
    QFETCH(int, size);
    const QString file = tree->makeFile("file", size);
    const QString secondName = tree->makeHardLink("second name", file);
    QByteArray found;
    const CallHook hook([&](const SystemCall &call) {
        if (call.kind == CallKind::Remove)
            found = TemporaryTree::contentsOf(file);
        return CallFate();
    });
    const std::time_t before = std::time(nullptr);
    QCOMPARE(shred(file), qint64{size});
    QCOMPARE(found.size(), size);
    QVERIFY(wasOverwritten(found, before, std::time(nullptr)));
    QCOMPARE(TemporaryTree::contentsOf(secondName), found);
}

void TestOverwriting::everyBlockIsOfItsOwnSecond()
{
    QByteArray expected;
    for (const int step : {0, 1, 1, 2}) // two blocks within the same second
        expected += expectedBytes(blockSize, someSecond + step);
    expected += expectedBytes(123, someSecond + 3);
    const QString file = tree->makeFile("file", expected.size());
    const QString secondName = tree->makeHardLink("second name", file);
    QList<std::time_t> seconds{0, 1, 1, 2, 3};
    const ClockHook clock([&seconds] { return someSecond + seconds.takeFirst(); });
    QCOMPARE(shred(file), qint64{expected.size()});
    QCOMPARE(TemporaryTree::contentsOf(secondName), expected);
}

void TestOverwriting::asManyBytesAreWrittenAsTheSizeSays()
{
    const QString file = tree->makeFile("file", 10);
    const QString secondName = tree->makeHardLink("second name", file);
    const ClockHook clock([] { return someSecond; });
    const CallHook hook(nullptr, [](const SystemCall &call, void *status) {
        if (call.is("stat"))
            static_cast<struct stat *>(status)->st_size = 5000;
    });
    QCOMPARE(shredFile(file), qint64{5000});
    QCOMPARE(TemporaryTree::contentsOf(secondName), expectedBytes(5000, someSecond));
}

void TestOverwriting::failedWriteIsNotNoticed()
{
    QFETCH(bool, alone);
    const QString file = tree->makeFile("file", 100);
    const CallHook hook(
        [](const SystemCall &call) { return CallFate{call.kind == CallKind::Write ? ENOSPC : 0}; });
    QCOMPARE(shred(file), qint64{100});
    QVERIFY(!entryExists(file));
    QCOMPARE(log->records(), (SignalRecords{alone ? progress(file, 99) : progress(tree->path(), 0),
                                            removal(file)}));
}

TEST_SUITE(overwriting, TestOverwriting)
#include "overwriting.moc"
