// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What no file system offers on demand: sizes that cannot be, and folders and files that
// vanish, cannot be read or are replaced at the worst moment. That any call may fail with any
// error is tried in everyfault.cpp.

#include "enginetest.h"

#include <cerrno>
#include <cstdio>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>

using namespace testsupport;

namespace
{

/// A hook for fdopendir: fails where @p works says no of the folder's path.
CallHook::Before readingWorks(const std::function<bool(const QString &)> &works)
{
    return [works](const SystemCall &call) {
        return CallFate{call.is("fdopendir") && !works(pathOf(call.file)) ? EMFILE : 0};
    };
}

} // namespace

class TestFaults : public EngineTest
{
    Q_OBJECT

private slots:
    void unusableSizeLeavesTheFile_data();
    void unusableSizeLeavesTheFile();
    void sizeZeroInATreeIsAccepted();
    void folderThatVanishesBeforeTheWalkIsMissing();
    void folderThatCouldNotBeSizedIsOverwrittenAllTheSame();
    void fileThatVanishesDuringTheWalkIsPassedOver();
    void fileReplacedDuringTheWalkIsTakenForWhatItIs_data();
    void fileReplacedDuringTheWalkIsTakenForWhatItIs();
    void whatIsInThePlaceAtTheLastMomentIsLeftAlone_data();
    void whatIsInThePlaceAtTheLastMomentIsLeftAlone();
    void folderThatVanishesDuringTheWalkIsAFailure();
    void folderThatMovesDuringTheRemovalIsAFailure();
};

void TestFaults::unusableSizeLeavesTheFile_data()
{
    QTest::addColumn<bool>("statFails");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<qint64>("alone");
    QTest::newRow("cannot be asked") << true << qint64{-1} << qint64{-3};
    QTest::newRow("minus one") << false << qint64{-1} << qint64{-3};
    QTest::newRow("minus two") << false << qint64{-2} << qint64{-6};
    QTest::newRow("least of all") << false << std::numeric_limits<qint64>::min() << qint64{-6};
    QTest::newRow("vanished bytes") << false << qint64{0} << qint64{-5};
}

void TestFaults::unusableSizeLeavesTheFile()
{
    QFETCH(bool, statFails);
    QFETCH(qint64, size);
    QFETCH(qint64, alone);
    const QString file = tree->makeFile("file", 5000);
    {
        const auto isAsked = [](const SystemCall &call) {
            return call.is("stat") || call.is("fstat");
        };
        const CallHook hook(
            [&](const SystemCall &call) { return CallFate{statFails && isAsked(call) ? EIO : 0}; },
            [&](const SystemCall &call, void *status) {
                if (isAsked(call))
                    static_cast<struct stat *>(status)->st_size = size;
            });
        QCOMPARE(FileCrusher::statSize(file.toUtf8().constData()), size);
        QCOMPARE(shredFile(file), alone);
        if (size < 0)
            QCOMPARE(shredInTree(file, 5000), qint64{-3});
    }
    QCOMPARE(log->records(), SignalRecords());
    QVERIFY(isAsMade(file, 5000));
}

void TestFaults::sizeZeroInATreeIsAccepted()
{
    const QString file = tree->makeFile("file", 5000);
    const CallHook hook(nullptr, [](const SystemCall &call, void *status) {
        if (call.is("fstat"))
            static_cast<struct stat *>(status)->st_size = 0;
    });
    QCOMPARE(shredInTree(file, 5000), qint64{0});
    QVERIFY(!entryExists(file));
    QCOMPARE(log->records(), (SignalRecords{progress(tree->path(), 0), removal(file)}));
}

void TestFaults::folderThatVanishesBeforeTheWalkIsMissing()
{
    tree->makeFolder("top");
    const CallHook hook(readingWorks([](const QString &path) { return QDir().rmdir(path); }));
    QCOMPARE(shredFolder(top()), qint64{-2});
    QCOMPARE(log->records(), SignalRecords());
}

void TestFaults::folderThatCouldNotBeSizedIsOverwrittenAllTheSame()
{
    const QString secondName = tree->makeHardLink("second name", tree->makeFile("top/file", 5000));
    int readings = 0;
    const CallHook hook(readingWorks([&](const QString &) { return ++readings > 1; }));
    QCOMPARE(shredFolder(top()), qint64{0});
    QVERIFY(!isAsMade(secondName, 5000));
}

void TestFaults::fileThatVanishesDuringTheWalkIsPassedOver()
{
    const QString one = tree->makeFile("top/one", 10);
    const QString other = tree->makeFile("top/other", 10);
    log->onRecord = [&](const SignalRecord &record) {
        if (record == removal(one) || record == removal(other))
            QFile::remove(record == removal(one) ? other : one);
    };
    QCOMPARE(shredFolder(top()), qint64{0});
    QCOMPARE(log->count("addToHistory"), 2);
}

void TestFaults::fileReplacedDuringTheWalkIsTakenForWhatItIs_data()
{
    QTest::addColumn<QString>("decoy");
    QTest::addColumn<qint64>("result");
    QTest::newRow("link") << "link" << qint64{0};
    QTest::newRow("folder") << "folder" << qint64{0};
    QTest::newRow("fifo") << "fifo" << qint64{-3};
}

/// Both files are listed before the first is shredded; what the listing says of the other no
/// longer holds when its turn comes.
void TestFaults::fileReplacedDuringTheWalkIsTakenForWhatItIs()
{
    QFETCH(QString, decoy);
    QFETCH(qint64, result);
    const QString one = tree->makeFile("top/one", 10);
    const QString other = tree->makeFile("top/other", 10);
    const QString outside = tree->makeFile("outside", 10);
    tree->makeFile("folder/inner", 10);
    tree->makeLink("link", outside);
    tree->makeFifo("fifo");
    QString replaced;
    log->onRecord = [&](const SignalRecord &record) {
        if (!replaced.isEmpty() || record.name != "addToHistory")
            return;
        replaced = record.arguments.first() == one ? other : one;
        QVERIFY(QFile::remove(replaced));
        QVERIFY(QFile::rename(tree->path(decoy), replaced));
    };
    QCOMPARE(shredFolder(top()), result);
    QCOMPARE(entryExists(replaced), result != 0);
    QVERIFY(isAsMade(outside, 10));
    QCOMPARE(log->records().contains(removal(replaced + QStringLiteral("/inner"))),
             decoy == QLatin1String("folder"));
}

void TestFaults::whatIsInThePlaceAtTheLastMomentIsLeftAlone_data()
{
    QTest::addColumn<QString>("victim");
    QTest::addColumn<QString>("decoy");
    QTest::addColumn<QString>("call"); // before which they change places
    QTest::addColumn<qint64>("result");
    const auto row = [](const char *name, const char *victim, const char *decoy, const char *call,
                        qint64 result) {
        QTest::newRow(name) << victim << decoy << call << result;
    };
    row("fifo for a file", "top/file", "fifo", "openat", -3);
    row("file for a link", "link", "other", "fstatat", -5);
    row("file for an opened one", "file", "other", "stat", -3);
}

void TestFaults::whatIsInThePlaceAtTheLastMomentIsLeftAlone()
{
    QFETCH(QString, victim);
    QFETCH(QString, decoy);
    QFETCH(QString, call);
    for (const char *file : {"top/file", "file"})
        tree->makeFile(file, 100);
    tree->makeLink("link", "nowhere");
    tree->makeFifo("fifo");
    tree->makeFile("other", 5000);
    const QString path = tree->path(victim);
    const CallHook hook([&](const SystemCall &made) {
        const bool isOfFolder = made.kind == CallKind::Open && (made.flags & O_ACCMODE) != O_RDWR;
        if (made.is(qPrintable(call)) && !isOfFolder)
            static_cast<void>(std::rename(qPrintable(tree->path(decoy)), qPrintable(path)));
        return CallFate();
    });
    QTEST(victim.startsWith(QLatin1String("top")) ? shredFolder(top()) : shredFile(path), "result");
    QVERIFY(QFileInfo(path).isFile() ? isAsMade(path, 5000) : entryExists(path));
    QCOMPARE(log->records(), SignalRecords());
}

void TestFaults::folderThatVanishesDuringTheWalkIsAFailure()
{
    const QString file = tree->makeFile("top/one/file", 10);
    const QString other = tree->makeFolder("top/other");
    log->onRecord = [&other](const SignalRecord &) { QDir().rmdir(other); };
    QCOMPARE(shredFolder(top()), qint64{-3});
    QVERIFY(!entryExists(file));
    QVERIFY(entryExists(top()));
}

void TestFaults::folderThatMovesDuringTheRemovalIsAFailure()
{
    const QString a = tree->makeFolder("top/a/inner");
    const QString b = tree->makeFolder("top/b/inner");
    log->onRecord = [&](const SignalRecord &record) {
        const QString other = record == removal(a) ? b : a;
        QDir().rename(QFileInfo(other).path(), tree->path("moved"));
    };
    QCOMPARE(shredFolder(top()), qint64{-3});
    QCOMPARE(log->count(), 1);
    QVERIFY(entryExists(tree->path("moved/inner")));
}

TEST_SUITE(faults, TestFaults)
#include "faults.moc"
