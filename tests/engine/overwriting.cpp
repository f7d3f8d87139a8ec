// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What stands in a file when its name goes: each test shreds one file by itself and one as a
// part of a folder.

#include "enginetest.h"
#include "expectedbytes.h"
#include "suites.h"
#include "systemcalls.h"

#include <QtTest>

#include <cerrno>
#include <ctime>

#include <sys/stat.h>

using namespace testsupport;

namespace
{

constexpr std::time_t someSecond = 1700000000;

} // namespace

class TestOverwriting : public EngineTest
{
    Q_OBJECT

private slots:
    void bytesAreOverwrittenInPlace_data();
    void bytesAreOverwrittenInPlace();
    void everyBlockIsOfItsOwnSecond_data() { aloneAndInATree(); }
    void everyBlockIsOfItsOwnSecond();
    void blocksOfOneSecondAreTheSame();
    void asManyBytesAreWrittenAsTheSizeSays();
    void fileIsWrittenAsBlocksAndATail_data() { aloneAndInATree(); }
    void fileIsWrittenAsBlocksAndATail();
    void fileIsOverwrittenAndClosedBeforeItGoes_data() { aloneAndInATree(); }
    void fileIsOverwrittenAndClosedBeforeItGoes();
    void failedWriteIsNotNoticed_data() { aloneAndInATree(); }
    void failedWriteIsNotNoticed();

private:
    static void aloneAndInATree();
    qint64 shred(const QString &file);
};

void TestOverwriting::aloneAndInATree()
{
    QTest::addColumn<bool>("alone");
    QTest::newRow("alone") << true;
    QTest::newRow("in a tree") << false;
}

qint64 TestOverwriting::shred(const QString &file)
{
    QFETCH(bool, alone);
    return alone ? shredFile(file) : shredInTree(file, 1000000);
}

void TestOverwriting::bytesAreOverwrittenInPlace_data()
{
    QTest::addColumn<bool>("alone");
    QTest::addColumn<int>("size");
    for (const int size : {1, 255, 4095, 4096, 4097, 12288, 40000, 1048576}) {
        QTest::addRow("%d bytes alone", size) << true << size;
        QTest::addRow("%d bytes in a tree", size) << false << size;
    }
}

void TestOverwriting::bytesAreOverwrittenInPlace()
{
    QFETCH(int, size);
    const QString file = tree->makeFile("file", size);
    const QString secondName = tree->makeHardLink("second name", file);
    const std::time_t before = std::time(nullptr);
    QCOMPARE(shred(file), qint64{size});
    const QByteArray found = TemporaryTree::contentsOf(secondName);
    QCOMPARE(found.size(), size);
    QVERIFY(wasOverwritten(found, before, std::time(nullptr)));
}

void TestOverwriting::everyBlockIsOfItsOwnSecond()
{
    constexpr int blocks = 4;
    QByteArray expected;
    for (int block = 0; block < blocks; ++block)
        expected += expectedBytes(4096, someSecond + block);
    expected += expectedBytes(123, someSecond + blocks);

    const QString file = tree->makeFile("file", expected.size());
    const QString secondName = tree->makeHardLink("second name", file);
    std::time_t next = someSecond;
    const ClockHook clock([&next] { return next++; });
    QCOMPARE(shred(file), qint64{expected.size()});
    QCOMPARE(TemporaryTree::contentsOf(secondName), expected);
}

void TestOverwriting::blocksOfOneSecondAreTheSame()
{
    const QString file = tree->makeFile("file", 3 * 4096);
    const QString secondName = tree->makeHardLink("second name", file);
    const ClockHook clock([] { return someSecond; });
    QCOMPARE(shredFile(file), qint64{3 * 4096});
    QCOMPARE(TemporaryTree::contentsOf(secondName), expectedBytes(4096, someSecond).repeated(3));
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

void TestOverwriting::fileIsWrittenAsBlocksAndATail()
{
    QList<long long> written;
    const CallHook hook([&](const SystemCall &call) {
        if (call.is("fwrite"))
            written.append(call.length);
        return CallFate();
    });
    QCOMPARE(shred(tree->makeFile("one", 10000)), qint64{10000});
    QCOMPARE(shred(tree->makeFile("two", 8192)), qint64{8192});
    QCOMPARE(written, (QList<long long>{4096, 4096, 1808, 4096, 4096, 0}));
}

void TestOverwriting::fileIsOverwrittenAndClosedBeforeItGoes()
{
    const QString file = tree->makeFile("file", 5000);
    QByteArray found;
    const ClockHook clock([] { return someSecond; });
    const CallHook hook([&](const SystemCall &call) {
        if (call.kind == CallKind::Remove)
            found = TemporaryTree::contentsOf(file);
        return CallFate();
    });
    QCOMPARE(shred(file), qint64{5000});
    QCOMPARE(found, expectedBytes(5000, someSecond));
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
