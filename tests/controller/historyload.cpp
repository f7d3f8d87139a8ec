// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Loading the history into its window, breaking that off, and copying it.

#include "controller/historyfile.h"
#include "suites.h"
#include "systemcalls.h"
#include "walleharness.h"

#include <QBuffer>

#include <cerrno>

#include <fcntl.h>

using testsupport::CallFate;
using testsupport::CallHook;
using testsupport::CallKind;
using testsupport::OrdinaryUser;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::SystemCall;
using testsupport::WalleTest;

class TestHistoryLoad : public WalleTest
{
    Q_OBJECT

private slots:
    void historyWithoutLinesOnlyBegins_data();
    void historyWithoutLinesOnlyBegins();
    void historyThatCanOnlyBeAppendedToIsRead();
    void threeLinesGiveOneRowAndTheRestIsIgnored_data();
    void threeLinesGiveOneRowAndTheRestIsIgnored();
    void abortEndsTheRowsAndStillCompletes();
    void abortWhileReadingGivesNoRows();
    void abortEndsTheReading();
    void abortBeforeALoadHasNoEffectOnIt();
    void entriesRecordedDuringALoadComeWithTheNext();
    void copyBeforeAnyLoadIsEmpty();
    void copyGivesTheWholeEntriesLastLoaded();

private:
    static SignalRecord row(const char *time, const char *name, const char *folder)
    {
        return {"addRowToHistoryTable",
                {QString::fromUtf8(time), QString::fromUtf8(name), QString::fromUtf8(folder)}};
    }
    const SignalRecord begun{"setHistoryButtonEnabled", {false, LoadPhase::Begun}};
    const SignalRecord rowsComing{"setHistoryButtonEnabled", {true, LoadPhase::RowsComing}};
    const SignalRecord complete{"setHistoryButtonEnabled", {true, LoadPhase::Complete}};
    /// That many lines "0", "1" ...
    static QByteArray lines(int count)
    {
        QByteArray text;
        for (int number = 0; number < count; ++number)
            text += QByteArray::number(number) + '\n';
        return text;
    }
    SignalRecords load() { return answerTo({CommandLoadHistory}); }
    QString copied()
    {
        return answerTo({CommandCopyHistory}).constFirst().arguments.first().toString();
    }
};

void TestHistoryLoad::historyWithoutLinesOnlyBegins_data()
{
    QTest::addColumn<QByteArray>("kind");
    for (const char *kind : {"missing", "empty", "folder", "fifo", "read only", "write only"})
        QTest::newRow(kind) << QByteArray(kind);
}

void TestHistoryLoad::historyWithoutLinesOnlyBegins()
{
    QFETCH(QByteArray, kind);
    const QString file = home.historyFile();
    if (kind == "folder")
        QVERIFY(QDir().mkdir(file));
    else if (kind == "fifo")
        QVERIFY(QFile::rename(tree->makeFifo("fifo"), file));
    else if (kind != "missing")
        home.writeHistory(kind == "empty" ? QByteArray() : lines(3));
    if (kind != "missing")
        OrdinaryUser::give(file);
    if (kind.endsWith("only"))
        QFile::setPermissions(file, kind == "read only" ? QFile::ReadOwner : QFile::WriteOwner);
    const OrdinaryUser user;
    QCOMPARE(load(), SignalRecords{begun});
    QCOMPARE(QFile::exists(file), kind != "missing");
}

/// As with the attribute for that, which not every file system has.
void TestHistoryLoad::historyThatCanOnlyBeAppendedToIsRead()
{
    home.writeHistory(lines(3));
    const CallHook hook([](const SystemCall &call) {
        const bool isPermitted =
            (call.flags & O_ACCMODE) == O_RDONLY || (call.flags & O_APPEND) != 0;
        return call.kind == CallKind::Open && !isPermitted ? CallFate{EPERM, false} : CallFate();
    });
    QCOMPARE(load().size(), 4);
}

void TestHistoryLoad::threeLinesGiveOneRowAndTheRestIsIgnored_data()
{
    QTest::addColumn<QByteArray>("history");
    QTest::addColumn<SignalRecords>("rows");
    const SignalRecords two{row("0", "1", "2"), row("3", "4", "5")};
    for (const int count : {1, 2, 3, 5, 6, 7})
        QTest::addRow("%d lines", count) << lines(count) << SignalRecords(two.mid(0, count / 3));
    QTest::newRow("as written") << QByteArray("2024-01-02 03:04:05\n粉碎.txt\n/home/u\n")
                                << SignalRecords{row("2024-01-02 03:04:05", "粉碎.txt", "/home/u")};
    QTest::newRow("blanks around, last line without an end")
        << QByteArray("  time \r\n\tname\t\n folder")
        << SignalRecords{row("time", "name", "folder")};
    QTest::newRow("empty lines count") << QByteArray("\n\n\ntime\n\nfolder\n")
                                       << SignalRecords{row("", "", ""), row("time", "", "folder")};
    QTest::newRow("no UTF-8") << QByteArray("time\na\xff"
                                            "b\nfolder\n")
                              << SignalRecords{row("time", "a\uFFFDb", "folder")};
}

void TestHistoryLoad::threeLinesGiveOneRowAndTheRestIsIgnored()
{
    QFETCH(QByteArray, history);
    QFETCH(SignalRecords, rows);
    home.writeHistory(history);
    QCOMPARE(load(), SignalRecords({begun, rowsComing}) + rows + SignalRecords({complete}));
    // The clipboard gets the same entries.
    QCOMPARE(copied().count(QLatin1Char('\n')), rows.size());
}

void TestHistoryLoad::abortEndsTheRowsAndStillCompletes()
{
    home.writeHistory(lines(15));
    for (const int rows : {0, 1, 3, 5}) {
        onSignal = [this, rows](const SignalRecord &signal) {
            if (signal != begun && count("addRowToHistoryTable") == rows)
                walle->abortHistoryLoad();
        };
        const SignalRecords log = load();
        QCOMPARE(log.size(), rows + 3);
        QCOMPARE(log.mid(0, 2), (SignalRecords{begun, rowsComing}));
        QCOMPARE(log.last(), complete);
    }
}

/// Whether a first line is read before the abort is seen is left open; a row is not.
void TestHistoryLoad::abortWhileReadingGivesNoRows()
{
    home.writeHistory(lines(6));
    onNext("setHistoryButtonEnabled", [this] { walle->abortHistoryLoad(); });
    const SignalRecords log = load();
    QVERIFY(log == SignalRecords{begun} || log == (SignalRecords{begun, rowsComing, complete}));
}

void TestHistoryLoad::abortEndsTheReading()
{
    QByteArray history = lines(6);
    QBuffer device(&history);
    QVERIFY(device.open(QIODevice::ReadOnly));
    QCOMPARE(historyfile::linesOf(device, true), QStringList());
    QCOMPARE(historyfile::linesOf(device, false).size(), 6);
}

void TestHistoryLoad::abortBeforeALoadHasNoEffectOnIt()
{
    home.writeHistory(lines(3));
    walle->abortHistoryLoad();
    QCOMPARE(load().size(), 4);
}

void TestHistoryLoad::entriesRecordedDuringALoadComeWithTheNext()
{
    home.writeHistory(lines(6));
    onNext("addRowToHistoryTable",
           [this] { walle->addToHistoryWalle(QStringLiteral("/nonexistent/file")); });
    QCOMPARE(load().size(), 3 + 2);
    QCOMPARE(load().size(), 3 + 3);
}

void TestHistoryLoad::copyBeforeAnyLoadIsEmpty()
{
    home.writeHistory(lines(3));
    QCOMPARE(answerTo({CommandCopyHistory}), (SignalRecords{{"clipboardSetText", {QString()}}}));
}

void TestHistoryLoad::copyGivesTheWholeEntriesLastLoaded()
{
    home.writeHistory("2024-01-02 03:04:05\na.txt\n/home/u\n"
                      "2024-01-02 03:04:06\n粉碎 🗑.txt\n/\nrest\n");
    load();
    QCOMPARE(copied().toUtf8(),
             QByteArray("日期：2024-01-02 03:04:05\t已粉碎的文件或目录名：a.txt\t路径：/home/u\n"
                        "日期：2024-01-02 03:04:06\t已粉碎的文件或目录名：粉碎 "
                        "🗑.txt\t路径：/\n"));
}

TEST_SUITE(historyload, TestHistoryLoad)
#include "historyload.moc"
