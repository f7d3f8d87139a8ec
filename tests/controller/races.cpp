// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the user does while a run goes on, many times over and at a fast pace:
// window, controller and worker must neither wait for each other for ever nor
// lose the agreement between table and job list.

#include "engine/filecrusher.h"
#include "promptly.h"
#include "suites.h"
#include "systemcalls.h"
#include "walleharness.h"

#include <chrono>

using testsupport::entryExists;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::WalleHarness;
using testsupport::WalleTest;

class TestRaces : public WalleTest
{
    Q_OBJECT

private slots:
    void filesDroppedOntoARunNeverFreezeIt();
    void clickDuringARunHitsWhatWasClicked();
    void everyStopOfARunOfFilesEndsInOneReport();

private:
    /// Stops the run and waits until neither controller nor worker has anything left to do.
    void settle();
    static QStringList survivorsOf(const QStringList &paths);

    const testsupport::ShortPauses quickly;
};

void TestRaces::settle()
{
    answerTo({CommandUncheckAll});
    // The worker gets to this one behind whatever it still holds; nobody has a row for it.
    const QString last = make("last");
    harness->walle().findChild<FileCrusher *>()->addPath(last);
    PROMPTLY_VERIFY(!entryExists(last));
    harness->takeLog();
    harness->post(CommandStopCrush);
    PROMPTLY_VERIFY(harness->log().contains(idle()));
    QVERIFY(harness->performed());
}

QStringList TestRaces::survivorsOf(const QStringList &paths)
{
    QStringList survivors;
    for (const QString &path : paths) {
        if (entryExists(path))
            survivors.append(path);
    }
    return survivors;
}

void TestRaces::filesDroppedOntoARunNeverFreezeIt()
{
    constexpr int rounds = 12;
    constexpr int filesADrop = 10;
    for (int round = 0; round < rounds; ++round) {
        const QStringList first = makeFiles("first", 100);
        const QStringList dropped = makeFiles("dropped", 100);
        QVERIFY(harness->admitted(first));
        for (int row = 0; row < first.size(); row += 10)
            harness->click(row);
        QVERIFY(harness->performed());
        harness->takeLog();
        harness->post(CommandStartCrush);
        for (int from = 0; from < dropped.size(); from += filesADrop)
            harness->dropFiles(dropped.mid(from, filesADrop));
        QVERIFY(harness->finished());
        QVERIFY(harness->performed());

        QCOMPARE(harness->paths(), survivorsOf(first) + survivorsOf(dropped));
        QCOMPARE(survivorsOf(first).size(), 10);
        const int destroyed = first.size() + dropped.size() - harness->rows().size();
        QCOMPARE(harness->log({"showResultDialog"}), SignalRecords{result(destroyed, 0)});
        QCOMPARE(harness->differenceFromJobList(), QString());
    }
}

/// Every few rows that go, one further down is clicked where the window shows it. A click that
/// comes too late, when the worker has the row in hand, spares nothing; any other does.
void TestRaces::clickDuringARunHitsWhatWasClicked()
{
    constexpr int rounds = 10;
    constexpr int everyFewRows = 8;
    constexpr int distance = 20;
    constexpr int nothing = -1;
    int spared = 0;
    for (int round = 0; round < rounds; ++round) {
        const QStringList files = makeFiles("file", 100);
        QSet<QString> clicked;
        QSet<QString> unticked;
        QSet<QString> tooLate;
        QVERIFY(harness->admitted(files));
        harness->onSignal = [&](const SignalRecord &signal) {
            const QVector<WalleHarness::Row> &rows = harness->rows();
            if (signal.name == "removeRowFromMainTable") {
                const int row = signal.arguments.first().toInt() + distance;
                if (rows.size() % everyFewRows == 0 && row < rows.size()
                    && !clicked.contains(rows.at(row).path)) {
                    clicked.insert(rows.at(row).path);
                    // The worker is some rows further when the controller gets to the click.
                    for (int commands = 0; commands < distance / 2; ++commands)
                        harness->post(nothing);
                    harness->click(row);
                }
            } else if (signal.name == "setTableItemCheckBoxState") {
                const int row = signal.arguments.first().toInt();
                const QString path = rows.at(row).path;
                const QStringList checkedAbove = harness->checkedPaths();
                const bool wasInHand =
                    checkedAbove.isEmpty() || harness->paths().indexOf(checkedAbove.first()) > row;
                (wasInHand ? tooLate : unticked).insert(path);
            }
        };
        harness->takeLog();
        harness->post(CommandStartCrush);
        PROMPTLY_VERIFY(harness->checkedPaths().isEmpty());
        harness->onSignal = nullptr;
        settle();

        QVERIFY(clicked.contains(unticked) && clicked.contains(tooLate));
        const QStringList survivors = survivorsOf(files);
        for (const QString &path : survivors)
            QVERIFY2(clicked.contains(path), "a file survived that was not clicked");
        for (const QString &path : qAsConst(unticked))
            QVERIFY2(survivors.contains(path), "a file was destroyed that was unticked");
        spared += unticked.size();
        QCOMPARE(harness->differenceFromJobList(), QString());
        for (const QString &path : survivors)
            QFile::remove(path);
    }
    if (spared == 0)
        QSKIP("no click came in time on this machine");
}

/// Whenever it comes: before the worker has taken the path, while it has it in hand, or while the
/// verdict is on its way. What the report counts is what is gone.
void TestRaces::everyStopOfARunOfFilesEndsInOneReport()
{
    constexpr int rounds = 60;
    constexpr int files = 20;
    constexpr int stepOfPauses = 50; // microseconds
    int spared = 0;
    for (int round = 0; round < rounds; ++round) {
        addRows(files);
        harness->post(CommandStartCrush);
        const QDeadlineTimer end(std::chrono::microseconds(round * stepOfPauses));
        while (!end.hasExpired())
            QCoreApplication::processEvents();
        harness->post(CommandStopCrush);
        QVERIFY(harness->performed());
        PROMPTLY_COMPARE(harness->runState(), RunState::Idle);
        QVERIFY(harness->performed());

        const int left = harness->rows().size();
        QCOMPARE(harness->log({"finishAll", "showResultDialog"}),
                 (SignalRecords{all(files - left), result(files - left, 0)}));
        spared += left > 0 ? 1 : 0;
        answerTo({CommandRemoveChecked});
        QCOMPARE(harness->rows().size(), 0);
    }
    if (spared == 0)
        QSKIP("no stop came in time on this machine");
}

TEST_SUITE(races, TestRaces)
#include "races.moc"
