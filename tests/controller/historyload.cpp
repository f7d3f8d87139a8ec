// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Loading the history into its window, breaking that off, and copying it.

#include "sandboxhome.h"
#include "suites.h"
#include "walleharness.h"

#include <QtTest>

#include <memory>

using testsupport::OrdinaryUser;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::WalleHarness;

namespace
{

SignalRecord begun()
{
    return {"setHistoryButtonEnabled", {false, LoadPhase::Begun}};
}

SignalRecord rowsComing()
{
    return {"setHistoryButtonEnabled", {true, LoadPhase::RowsComing}};
}

SignalRecord complete()
{
    return {"setHistoryButtonEnabled", {true, LoadPhase::Complete}};
}

SignalRecord row(const char *time, const char *name, const char *folder)
{
    return {"addRowToHistoryTable",
            {QString::fromUtf8(time), QString::fromUtf8(name), QString::fromUtf8(folder)}};
}

/// @p count lines that say which they are.
QByteArray numberedLines(int count)
{
    QByteArray text;
    for (int number = 0; number < count; ++number)
        text += "line " + QByteArray::number(number) + "\n";
    return text;
}

} // namespace

class TestWalleHistoryLoad : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void init();
    void cleanup() { harness.reset(); }
    void missingHistoryOnlyBegins();
    void emptyHistoryOnlyBegins();
    void oneOrTwoLinesGiveNoRow_data();
    void oneOrTwoLinesGiveNoRow();
    void threeLinesGiveOneRow();
    void seventhLineIsIgnored();
    void linesAreTrimmed();
    void emptyLinesCount();
    void invalidUtf8IsShownAsWellAsPossible();
    void unreadableHistoryOnlyBegins();
    void folderInItsPlaceOnlyBegins();
    void abortEndsTheRowsAndStillCompletes_data();
    void abortEndsTheRowsAndStillCompletes();
    void abortBeforeTheFirstRowStillCompletes();
    void abortWhileReadingGivesNoRows();
    void abortBeforeALoadHasNoEffectOnIt();
    void twoOpeningsInARowLoadTwice();
    void entriesRecordedDuringALoadComeWithTheNext();
    void clearingDuringALoadLetsItComplete();
    void copyBeforeAnyLoadIsEmpty();
    void copyGivesTheEntriesLastLoaded();
    void copyKeepsWhatWasClearedUntilTheNextLoad();

private:
    SignalRecords load();
    void onRow(int number, const std::function<void()> &step);

    testsupport::SandboxHome home;
    std::unique_ptr<WalleHarness> harness;
};

void TestWalleHistoryLoad::init()
{
    home.forgetHistory();
    harness = std::make_unique<WalleHarness>();
}

SignalRecords TestWalleHistoryLoad::load()
{
    harness->post(CommandLoadHistory);
    if (!harness->performed())
        qFatal("the controller does not answer");
    return harness->takeLog();
}

/// Does @p step in the window's slot for the @p number th row, while the controller waits.
void TestWalleHistoryLoad::onRow(int number, const std::function<void()> &step)
{
    harness->onSignal = [this, number, step](const SignalRecord &signal) {
        if (signal.name == "addRowToHistoryTable"
            && harness->count("addRowToHistoryTable") == number)
            step();
    };
}

void TestWalleHistoryLoad::missingHistoryOnlyBegins()
{
    QCOMPARE(load(), SignalRecords{begun()});
}

void TestWalleHistoryLoad::emptyHistoryOnlyBegins()
{
    home.writeHistory("");
    QCOMPARE(load(), SignalRecords{begun()});
}

void TestWalleHistoryLoad::oneOrTwoLinesGiveNoRow_data()
{
    QTest::addColumn<int>("lines");
    QTest::newRow("one line") << 1;
    QTest::newRow("two lines") << 2;
}

void TestWalleHistoryLoad::oneOrTwoLinesGiveNoRow()
{
    QFETCH(int, lines);
    home.writeHistory(numberedLines(lines));
    QCOMPARE(load(), (SignalRecords{begun(), rowsComing(), complete()}));
}

void TestWalleHistoryLoad::threeLinesGiveOneRow()
{
    home.writeHistory("2024-01-02 03:04:05\n粉碎.txt\n/home/u\n");
    QCOMPARE(load(),
             (SignalRecords{begun(), rowsComing(),
                            row("2024-01-02 03:04:05", "粉碎.txt", "/home/u"), complete()}));
}

void TestWalleHistoryLoad::seventhLineIsIgnored()
{
    home.writeHistory(numberedLines(7));
    QCOMPARE(load(), (SignalRecords{begun(), rowsComing(), row("line 0", "line 1", "line 2"),
                                    row("line 3", "line 4", "line 5"), complete()}));
}

void TestWalleHistoryLoad::linesAreTrimmed()
{
    home.writeHistory("  time \r\n\tname\t\n folder"); // and the last needs no end
    QCOMPARE(load(),
             (SignalRecords{begun(), rowsComing(), row("time", "name", "folder"), complete()}));
}

void TestWalleHistoryLoad::emptyLinesCount()
{
    home.writeHistory("\n\n\ntime\n\nfolder\n");
    QCOMPARE(load(), (SignalRecords{begun(), rowsComing(), row("", "", ""),
                                    row("time", "", "folder"), complete()}));
}

void TestWalleHistoryLoad::invalidUtf8IsShownAsWellAsPossible()
{
    home.writeHistory("time\na\xff"
                      "b\nfolder\n");
    QCOMPARE(load(),
             (SignalRecords{begun(), rowsComing(), row("time", "a\uFFFDb", "folder"), complete()}));
}

void TestWalleHistoryLoad::unreadableHistoryOnlyBegins()
{
    home.writeHistory(numberedLines(3));
    OrdinaryUser::give(home.historyFile());
    for (const QFile::Permissions permissions : {QFile::ReadOwner, QFile::WriteOwner}) {
        QVERIFY(QFile::setPermissions(home.historyFile(), permissions));
        const OrdinaryUser user;
        QCOMPARE(load(), SignalRecords{begun()});
    }
}

void TestWalleHistoryLoad::folderInItsPlaceOnlyBegins()
{
    QVERIFY(QDir().mkdir(home.historyFile()));
    QCOMPARE(load(), SignalRecords{begun()});
}

void TestWalleHistoryLoad::abortEndsTheRowsAndStillCompletes_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("at the first entry") << 1;
    QTest::newRow("at a middle entry") << 3;
    QTest::newRow("at the last entry") << 5;
}

void TestWalleHistoryLoad::abortEndsTheRowsAndStillCompletes()
{
    QFETCH(int, number);
    home.writeHistory(numberedLines(15));
    onRow(number, [this] { harness->walle().abortHistoryLoad(); });
    const SignalRecords log = load();
    QCOMPARE(log.size(), number + 3);
    QCOMPARE(log.mid(0, 2), (SignalRecords{begun(), rowsComing()}));
    QCOMPARE(log.last(), complete());
}

void TestWalleHistoryLoad::abortBeforeTheFirstRowStillCompletes()
{
    home.writeHistory(numberedLines(6));
    harness->onSignal = [this](const SignalRecord &signal) {
        if (signal == rowsComing())
            harness->walle().abortHistoryLoad();
    };
    QCOMPARE(load(), (SignalRecords{begun(), rowsComing(), complete()}));
}

/// Whether a first line is read before the abort is seen is left open; a row is not.
void TestWalleHistoryLoad::abortWhileReadingGivesNoRows()
{
    home.writeHistory(numberedLines(6));
    harness->onSignal = [this](const SignalRecord &signal) {
        if (signal == begun())
            harness->walle().abortHistoryLoad();
    };
    const SignalRecords log = load();
    QVERIFY(log == SignalRecords{begun()}
            || log == (SignalRecords{begun(), rowsComing(), complete()}));
}

void TestWalleHistoryLoad::abortBeforeALoadHasNoEffectOnIt()
{
    home.writeHistory(numberedLines(3));
    harness->walle().abortHistoryLoad();
    QCOMPARE(load().size(), 4);
}

void TestWalleHistoryLoad::twoOpeningsInARowLoadTwice()
{
    home.writeHistory(numberedLines(6));
    harness->post(CommandLoadHistory);
    QCOMPARE(load(), (SignalRecords{
                         begun(),
                         rowsComing(),
                         row("line 0", "line 1", "line 2"),
                         row("line 3", "line 4", "line 5"),
                         complete(),
                         begun(),
                         rowsComing(),
                         row("line 0", "line 1", "line 2"),
                         row("line 3", "line 4", "line 5"),
                         complete(),
                     }));
}

void TestWalleHistoryLoad::entriesRecordedDuringALoadComeWithTheNext()
{
    home.writeHistory(numberedLines(6));
    onRow(1, [this] { harness->walle().addToHistoryWalle(QStringLiteral("/nonexistent/file")); });
    QCOMPARE(load().size(), 3 + 2);
    harness->onSignal = nullptr;
    QCOMPARE(load().size(), 3 + 3);
}

void TestWalleHistoryLoad::clearingDuringALoadLetsItComplete()
{
    home.writeHistory(numberedLines(9));
    onRow(2, [this] { harness->post(CommandClearHistory); });
    QCOMPARE(load().size(), 3 + 3);
    harness->onSignal = nullptr;
    QVERIFY(harness->performed());
    QVERIFY(!QFile::exists(home.historyFile()));
    QCOMPARE(load(), SignalRecords{begun()});
}

void TestWalleHistoryLoad::copyBeforeAnyLoadIsEmpty()
{
    home.writeHistory(numberedLines(3));
    harness->copyHistory();
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), (SignalRecords{{"clipboardSetText", {QString()}}}));
}

void TestWalleHistoryLoad::copyGivesTheEntriesLastLoaded()
{
    home.writeHistory("2024-01-02 03:04:05\na.txt\n/home/u\n"
                      "2024-01-02 03:04:06\n粉碎 🗑.txt\n/\nrest\n");
    load();
    harness->copyHistory();
    QVERIFY(harness->performed());
    QCOMPARE(harness->count("clipboardSetText"), 1);
    QCOMPARE(harness->clipboard().toUtf8(),
             QByteArray("日期：2024-01-02 03:04:05\t已粉碎的文件或目录名：a.txt\t路径：/home/u\n"
                        "日期：2024-01-02 03:04:06\t已粉碎的文件或目录名：粉碎 "
                        "🗑.txt\t路径：/\n"));
}

void TestWalleHistoryLoad::copyKeepsWhatWasClearedUntilTheNextLoad()
{
    home.writeHistory(numberedLines(3));
    load();
    harness->post(CommandClearHistory);
    harness->copyHistory();
    QVERIFY(harness->performed());
    QVERIFY(!harness->clipboard().isEmpty());
    load();
    harness->copyHistory();
    QVERIFY(harness->performed());
    QVERIFY(harness->clipboard().isEmpty());
}

TEST_SUITE(historyload, TestWalleHistoryLoad)
#include "historyload.moc"
