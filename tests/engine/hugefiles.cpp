// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Sizes around and beyond 32 bits, where verdicts and the share done are read off the low
// half. The files are sparse and what is written goes nowhere, so neither time nor disk is
// needed.

#include "enginetest.h"

#include <fcntl.h>

using namespace testsupport;

namespace
{

constexpr qint64 gigabyte = 1024 * 1024 * 1024;

CallFate pretendToWrite(const SystemCall &call)
{
    return CallFate{0, false, call.is("fwrite") || call.is("sync_file_range")};
}

} // namespace

class TestHugeFiles : public EngineTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void resultIsTheWholeSize();
    void verdictIsReadOffTheLowHalf_data();
    void verdictIsReadOffTheLowHalf();
    void shareDoneIsKeptInTheLowHalf_data();
    void shareDoneIsKeptInTheLowHalf();
    void linkToAHugeFileGoesAndTheFileIsNotRead();

private:
    QString makeSparseFile(const char *name, qint64 size) const
    {
        const QString path = tree->makeFile(name, 0);
        return QFile::resize(path, size) ? path : QString();
    }
};

void TestHugeFiles::initTestCase()
{
    tree = std::make_unique<TemporaryTree>();
    if (makeSparseFile("file", 5 * gigabyte + 1).isEmpty())
        QSKIP("this file system has no huge files");
}

void TestHugeFiles::resultIsTheWholeSize()
{
    const qint64 size = 5 * gigabyte + 1;
    const QString file = makeSparseFile("file", size);
    const CallHook hook(pretendToWrite);
    QCOMPARE(shredFile(file), size);
    QVERIFY(!entryExists(file));

    SignalRecords expected;
    for (int percent = 2; percent <= 100; percent += 2)
        expected.append(progress(file, percent));
    expected << progress(file, 99) << removal(file);
    QCOMPARE(log->records(), expected);
}

void TestHugeFiles::verdictIsReadOffTheLowHalf_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QString>("verdict");
    QTest::newRow("below 2 GiB") << 2 * gigabyte - 1 << "finishOne";
    QTest::newRow("2 GiB") << 2 * gigabyte << "failedOne";
    QTest::newRow("below 4 GiB") << 4 * gigabyte - 1 << "failedOne";
    QTest::newRow("4 GiB") << 4 * gigabyte << "finishOne";
    QTest::newRow("stop code above 4 GiB") << 4 * gigabyte + 255 << "addToHistory";
}

void TestHugeFiles::verdictIsReadOffTheLowHalf()
{
    QFETCH(qint64, size);
    const QString file = makeSparseFile("file", size);
    const CallHook hook(pretendToWrite);
    const SignalRecords records = workOn({file});
    QTEST(QString::fromLatin1(records.constLast().name), "verdict");
    QVERIFY(!entryExists(file));
    QCOMPARE(records.count(removal(file)), 1);
}

void TestHugeFiles::shareDoneIsKeptInTheLowHalf_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("counted");
    QTest::newRow("below 2 GiB") << 2 * gigabyte - block << 2 * gigabyte - block;
    QTest::newRow("a negative half counts nothing") << 2 * gigabyte << qint64{0};
    QTest::newRow("an empty half counts nothing") << 4 * gigabyte << qint64{0};
    QTest::newRow("the rest of a division") << 5 * gigabyte << gigabyte;
}

void TestHugeFiles::shareDoneIsKeptInTheLowHalf()
{
    QFETCH(qint64, size);
    QFETCH(qint64, counted);
    const QString huge = makeSparseFile("top/huge", size);
    const QString small = tree->makeFile("top/folder/small", 1);
    const int share = static_cast<int>((counted + 1) * 100 / (size + 1));
    const CallHook hook(pretendToWrite);
    QCOMPARE(shredFolder(top()), qint64{0});
    QCOMPARE(log->records(), (SignalRecords{progress(top(), 99), progress(top(), 99), removal(huge),
                                            progress(top(), share), removal(small),
                                            removal(tree->path("top/folder")), progress(top(), 100),
                                            removal(top())}));
}

void TestHugeFiles::linkToAHugeFileGoesAndTheFileIsNotRead()
{
    const QString file = makeSparseFile("file", 2 * gigabyte);
    const QString link = tree->makeLink("link", file);
    bool isOpened = false;
    const CallHook hook([&](const SystemCall &call) {
        isOpened = isOpened || (call.kind == CallKind::Open && (call.flags & O_DIRECTORY) == 0);
        return CallFate();
    });
    QCOMPARE(workOn({link}), (SignalRecords{removal(link), success(link)}));
    QVERIFY(!isOpened);
    QCOMPARE(QFileInfo(file).size(), 2 * gigabyte);
}

TEST_SUITE(hugefiles, TestHugeFiles)
#include "hugefiles.moc"
