// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the user does while a run goes on, many times over and at a fast pace:
// window, controller and worker must neither wait for each other for ever nor
// lose the agreement between table and job list.

#include "engine/filecrusher.h"
#include "suites.h"
#include "systemcalls.h"
#include "walleharness.h"

#include <algorithm>
#include <chrono>

using testsupport::entryExists;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::WalleTest;

class TestRaces : public WalleTest
{
    Q_OBJECT

private slots:
    void filesDroppedOntoARunNeverFreezeIt();
    void clickDuringARunHitsWhatWasClicked();
    void everyStopOfARunOfFilesEndsInOneReport();

private:
    static QStringList survivorsOf(QStringList paths);

    const testsupport::ShortPauses quickly;
};

QStringList TestRaces::survivorsOf(QStringList paths)
{
    const auto isGone = [](const QString &path) { return !entryExists(path); };
    paths.erase(std::remove_if(paths.begin(), paths.end(), isGone), paths.end());
    return paths;
}

void TestRaces::filesDroppedOntoARunNeverFreezeIt()
{
    constexpr int rounds = 12;
    constexpr int filesADrop = 10;
    for (int round = 0; round < rounds; ++round) {
        const QStringList first = makeFiles("first", 100);
        const QStringList dropped = makeFiles("dropped", 100);
        QVERIFY(admitted(first));
        for (int row = 0; row < first.size(); row += 10)
            answerToClick(row);
        post(CommandStartCrush);
        for (int from = 0; from < dropped.size(); from += filesADrop)
            dropFiles(dropped.mid(from, filesADrop));
        QVERIFY(finished());
        QVERIFY(performed());

        QCOMPARE(paths(), survivorsOf(first) + survivorsOf(dropped));
        QCOMPARE(survivorsOf(first).size(), 10);
        const int destroyed = first.size() + dropped.size() - paths().size();
        QCOMPARE(log({"showResultDialog"}), SignalRecords{result(destroyed, 0)});
        compareTableWithJobList();
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
        QSet<QString> inTime;
        QSet<QString> tooLate;
        QVERIFY(admitted(files));
        onSignal = [&](const SignalRecord &signal) {
            const QStringList rows = paths();
            const int row = signal.arguments.value(0).toInt();
            if (signal.name == "removeRowFromMainTable") {
                const QString further = rows.value(row + distance);
                if (rows.size() % everyFewRows != 0 || further.isEmpty()
                    || clicked.contains(further))
                    return;
                clicked.insert(further);
                // The worker is some rows further when the controller gets to the click.
                for (int commands = 0; commands < distance / 2; ++commands)
                    post(nothing);
                click(further);
            } else if (signal.name == "setTableItemCheckBoxState") {
                const QStringList checked = checkedPaths();
                const bool wasInHand = checked.isEmpty() || rows.indexOf(checked.first()) > row;
                (wasInHand ? tooLate : inTime).insert(rows.at(row));
            }
        };
        post(CommandStartCrush);
        PROMPTLY_VERIFY(checkedPaths().isEmpty());
        onSignal = nullptr;
        answerTo({CommandUncheckAll});
        // The worker gets to this one behind whatever it still holds; nobody has a row for it.
        const QString last = make("last");
        worker->addPath(last);
        PROMPTLY_VERIFY(!entryExists(last));
        answerToStop();

        QVERIFY(clicked.contains(inTime) && clicked.contains(tooLate));
        const QStringList survivors = survivorsOf(files);
        for (const QString &path : survivors)
            QVERIFY2(clicked.contains(path), "a file survived that was not clicked");
        for (const QString &path : qAsConst(inTime))
            QVERIFY2(survivors.contains(path), "a file was destroyed that was unticked");
        spared += inTime.size();
        compareTableWithJobList();
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
        post(CommandStartCrush);
        const QDeadlineTimer end(std::chrono::microseconds(round * stepOfPauses));
        while (!end.hasExpired())
            QCoreApplication::processEvents();
        post(CommandStopCrush);
        QVERIFY(performed());
        PROMPTLY_VERIFY(log({"setCrushStarted"}).constLast() == idle());
        QVERIFY(performed());

        const int left = paths().size();
        QCOMPARE(log({"finishAll", "showResultDialog"}),
                 (SignalRecords{all(files - left), result(files - left, 0)}));
        spared += left > 0 ? 1 : 0;
        answerTo({CommandRemoveChecked});
        QCOMPARE(paths().size(), 0);
    }
    if (spared == 0)
        QSKIP("no stop came in time on this machine");
}

TEST_SUITE(races, TestRaces)
#include "races.moc"
