// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Sizes around and beyond 32 bits, where verdicts and the share done are read
// off the low half. The files are sparse and what the engine writes goes
// nowhere, so neither time nor disk is needed.

#include "engine/filecrusher.h"

#include "eventually.h"
#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QtTest>

#include <cstdio>
#include <memory>

using testsupport::entryExists;
using testsupport::SignalLog;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;

namespace
{

constexpr qint64 gigabyte = 1024 * 1024 * 1024;
constexpr qint64 block = 4096;

} // namespace

// NOLINTNEXTLINE(bugprone-reserved-identifier): the linker chooses the name
extern "C" std::size_t __wrap_fwrite(const void *, std::size_t, std::size_t count, std::FILE *)
{
    return count;
}

class TestFileCrusherHugeFiles : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void resultIsTheWholeSize();
    void verdictIsReadOffTheLowHalf_data();
    void verdictIsReadOffTheLowHalf();
    void linkToAHugeFileIsFinished();
    void shareDoneIsKeptInTheLowHalf_data();
    void shareDoneIsKeptInTheLowHalf();

private:
    QString makeSparseFile(const QString &name, qint64 size) const;
    QStringList verdictsOf(const QString &path);

    std::unique_ptr<TemporaryTree> tree;
    /// Deleted only when not started: a started worker lives until the process ends.
    FileCrusher *crusher = nullptr;
    std::unique_ptr<SignalLog> log;
};

void TestFileCrusherHugeFiles::init()
{
    tree = std::make_unique<TemporaryTree>();
    crusher = new FileCrusher;
    log = std::make_unique<SignalLog>(crusher);
}

void TestFileCrusherHugeFiles::cleanup()
{
    log.reset();
    if (!crusher->isRunning())
        delete crusher;
    tree.reset();
}

/// Empty when the file system has no files of that size.
QString TestFileCrusherHugeFiles::makeSparseFile(const QString &name, qint64 size) const
{
    const QString path = tree->makeFile(name, 0);
    return QFile::resize(path, size) ? path : QString();
}

/// The verdicts while @p path and a vanished path behind it are handled, but that of the latter.
QStringList TestFileCrusherHugeFiles::verdictsOf(const QString &path)
{
    const QString marker = tree->path(QStringLiteral("vanished"));
    crusher->addPath(path);
    crusher->addPath(marker);
    crusher->start(QThread::InheritPriority);
    if (!testsupport::eventually([&] { return log->firstArguments("finishOne").contains(marker); }))
        return {QStringLiteral("none in time")};
    QStringList verdicts;
    const testsupport::SignalRecords records = log->records();
    for (const testsupport::SignalRecord &record : records) {
        if (record.name == "finishOne" || record.name == "failedOne")
            verdicts.append(QString::fromLatin1(record.name));
    }
    verdicts.removeLast();
    return verdicts;
}

void TestFileCrusherHugeFiles::resultIsTheWholeSize()
{
    const qint64 size = 5 * gigabyte + 1;
    const QString file = makeSparseFile(QStringLiteral("file"), size);
    if (file.isEmpty())
        QSKIP("this file system has no huge files");
    QCOMPARE(crusher->shredFile(file.toUtf8().constData()), size);
    QVERIFY(!entryExists(file));

    SignalRecords expected;
    for (int percent = 2; percent <= 100; percent += 2)
        expected.append({"finishPercent", {file, percent}});
    expected.append({"finishPercent", {file, 99}});
    expected.append({"addToHistory", {file}});
    QCOMPARE(log->records(), expected);
}

void TestFileCrusherHugeFiles::verdictIsReadOffTheLowHalf_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QStringList>("verdicts");
    const QStringList finished{QStringLiteral("finishOne")};
    const QStringList failed{QStringLiteral("failedOne")};
    QTest::newRow("below 2 GiB") << 2 * gigabyte - 1 << finished;
    QTest::newRow("2 GiB") << 2 * gigabyte << failed;
    QTest::newRow("below 4 GiB") << 4 * gigabyte - 1 << failed;
    QTest::newRow("4 GiB") << 4 * gigabyte << finished;
    QTest::newRow("stop code above 4 GiB") << 4 * gigabyte + 255 << QStringList();
}

void TestFileCrusherHugeFiles::verdictIsReadOffTheLowHalf()
{
    QFETCH(qint64, size);
    const QString file = makeSparseFile(QStringLiteral("file"), size);
    if (file.isEmpty())
        QSKIP("this file system has no huge files");
    QTEST(verdictsOf(file), "verdicts");
    QVERIFY(!entryExists(file));
    QCOMPARE(log->firstArguments("addToHistory"), QStringList{file});
}

void TestFileCrusherHugeFiles::linkToAHugeFileIsFinished()
{
    const QString file = makeSparseFile(QStringLiteral("file"), 2 * gigabyte);
    if (file.isEmpty())
        QSKIP("this file system has no huge files");
    const QString link = tree->makeLink(QStringLiteral("link"), file);
    QCOMPARE(verdictsOf(link), QStringList{QStringLiteral("finishOne")});
    QVERIFY(!entryExists(link));
    QCOMPARE(QFileInfo(file).size(), 2 * gigabyte);
}

void TestFileCrusherHugeFiles::shareDoneIsKeptInTheLowHalf_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("counted");
    QTest::newRow("below 2 GiB") << 2 * gigabyte - block << 2 * gigabyte - block;
    QTest::newRow("a negative half counts nothing") << 2 * gigabyte << qint64{0};
    QTest::newRow("an empty half counts nothing") << 4 * gigabyte << qint64{0};
    QTest::newRow("the rest of a division") << 5 * gigabyte << gigabyte;
}

void TestFileCrusherHugeFiles::shareDoneIsKeptInTheLowHalf()
{
    QFETCH(qint64, size);
    QFETCH(qint64, counted);
    const QString huge = makeSparseFile(QStringLiteral("top/huge"), size);
    if (huge.isEmpty())
        QSKIP("this file system has no huge files");
    const QString small = tree->makeFile(QStringLiteral("top/folder/small"), 1);
    const QString top = tree->path(QStringLiteral("top"));
    const int share = static_cast<int>((counted + 1) * 100 / (size + 1));

    QCOMPARE(crusher->shredDirectory(top.toUtf8().constData()), qint64{0});
    QCOMPARE(log->records(), (SignalRecords{{"finishPercent", {top, 99}},
                                            {"finishPercent", {top, 99}},
                                            {"addToHistory", {huge}},
                                            {"finishPercent", {top, share}},
                                            {"addToHistory", {small}},
                                            {"addToHistory", {QFileInfo(small).path()}},
                                            {"finishPercent", {top, 100}},
                                            {"addToHistory", {top}}}));
}

TEST_SUITE(hugefiles, TestFileCrusherHugeFiles)
#include "hugefiles.moc"
