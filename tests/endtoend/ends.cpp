// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The program is ended in the middle of runs, in every way there is, at moments that
// chance picks. Each time it goes with the outcome that belongs to the way, leaves
// whole history entries for what is gone, touches nothing that was not chosen, and can
// be started again at once. FILESHREDDER_ENDS says how often each way is taken.

#include "endtoendtest.h"
#include "inventory.h"
#include "suites.h"

#include <QDir>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <csignal>

using namespace testsupport;

namespace
{

constexpr int files = 3000;
constexpr quint32 seed = 20261121;

int wantedEnds()
{
    constexpr int fewEnds = 2;
    const int ends = qEnvironmentVariableIntValue("FILESHREDDER_ENDS");
    return ends > 0 ? ends : fewEnds;
}

/// Ways to end the program besides signals, which are greater.
constexpr int closeButton = 0;
constexpr int lossOfDisplay = -1;

} // namespace

class TestEndToEndEnds : public EndToEndTest
{
    Q_OBJECT

private slots:
    void endDuringARun_data();
    void endDuringARun();
    void oneOfTwoStartsWins();

private:
    void end(int way) const;
    void checkHistory() const;

    QRandomGenerator random{seed};
};

void TestEndToEndEnds::endDuringARun_data()
{
    QTest::addColumn<int>("way");
    QTest::addColumn<QList<int>>("outcomes");
    QTest::newRow("kill") << SIGKILL << QList<int>{-SIGKILL};
    QTest::newRow("terminate") << SIGTERM << QList<int>{-SIGTERM};
    QTest::newRow("hang up") << SIGHUP << QList<int>{-SIGHUP};
    QTest::newRow("close the window") << closeButton << QList<int>{0};
    // When a session ends and takes the display away, Qt ends the program with status 1 as soon as
    // it reads that; a drawing that is just being sent meets a closed connection first.
    QTest::newRow("lose the display") << lossOfDisplay << QList<int>{1, -SIGPIPE};
}

void TestEndToEndEnds::endDuringARun()
{
    QFETCH(int, way);
    QFETCH(QList<int>, outcomes);
    int unfinished = 0;
    // All in one home: each start comes right after the end of the one before. Once in a while a
    // run is over before its end comes.
    for (int round = 0; round < wantedEnds() || unfinished == 0; ++round) {
        tree = std::make_unique<TemporaryTree>();
        shredder = std::make_unique<RunningShredder>(desktop, *user);
        QFile::remove(user->historyFile());
        const QString folder = makeBusyFolder(files);
        tree->makeFile("outside/folder/kept", 100);
        tree->makeLink("folder/link", tree->path("outside/folder"));
        const QStringList outside = inventoryOf(tree->path("outside"));

        QVERIFY(openWith({folder}));
        QVERIFY(shredder->startShredding());
        const int entries = random.bounded(files / 3);
        QVERIFY(eventually([&] { return user->history().count('\n') >= 3 * entries; }));
        end(way);
        const std::optional<int> outcome = shredder->waitForEnd();
        QVERIFY(outcome);
        QVERIFY2(outcomes.contains(*outcome), qPrintable(QString::number(*outcome)));
        checkHistory();
        QCOMPARE(inventoryOf(tree->path("outside")), outside);
        QVERIFY(QDir(user->home()).entryList({"core*"_s}, QDir::Files).isEmpty());
        QVERIFY2(!QTest::currentTestFailed(), qPrintable(QString::number(round)));
        unfinished += entryExists(folder) ? 1 : 0;
    }
    qInfo("%d ends, %d of them before the run was over", wantedEnds(), unfinished);
}

void TestEndToEndEnds::end(int way) const
{
    if (way == lossOfDisplay) {
        desktop.run("xdotool windowkill %1"_s, shredder->mainWindowId());
    } else if (way != closeButton) {
        ::kill(static_cast<pid_t>(shredder->processId()), way);
    } else {
        shredder->click(mainwindow::closeButton);
        eventually([this] { return !shredder->isRunning() || shredder->dialogIsOpen(); });
        // A run that was over by then has a report, behind which the window takes no click.
        if (shredder->isRunning() && shredder->answerDialog(dialog::reportOk))
            shredder->click(mainwindow::closeButton);
    }
}

void TestEndToEndEnds::checkHistory() const
{
    static const QRegularExpression time("^\\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}:\\d{2}$"_s);
    // A kill lets the kernel stop a write where a page of the file ends, in the middle of an entry.
    constexpr int page = 4096;
    const QByteArray history = user->history();
    if (!history.isEmpty() && history.size() % page == 0)
        return;
    const QString folder = tree->path("folder");
    QVERIFY(history.isEmpty() || history.endsWith('\n'));
    const QStringList lines = user->historyLines();
    QCOMPARE(lines.size() % 3, 0);
    // Without the link, whose target still exists, so it is recorded or not.
    int recorded = 0;
    for (int first = 0; first < lines.size(); first += 3) {
        QVERIFY2(time.match(lines.at(first)).hasMatch(), qPrintable(lines.at(first)));
        const bool isFolder = lines.at(first + 1) == QLatin1String("folder");
        QCOMPARE(lines.at(first + 2), isFolder ? tree->path() : folder);
        QVERIFY(!entryExists(lines.at(first + 2) + QLatin1Char('/') + lines.at(first + 1)));
        recorded += !isFolder && lines.at(first + 1) != QLatin1String("link") ? 1 : 0;
    }
    const int gone = files - QDir(folder).entryList(QDir::Files).size();
    QVERIFY2(gone - recorded <= 1, qPrintable(QString::number(gone - recorded)));
}

void TestEndToEndEnds::oneOfTwoStartsWins()
{
    for (int round = 0; round < wantedEnds(); ++round) {
        RunningShredder one(desktop, *user);
        RunningShredder other(desktop, *user);
        one.start();
        other.start();
        QVERIFY(eventually([&] { return one.isRunning() != other.isRunning(); }));
        RunningShredder &winner = one.isRunning() ? one : other;
        RunningShredder &loser = one.isRunning() ? other : one;
        QCOMPARE(loser.waitForEnd().value_or(-1), 0);
        const std::optional<WindowId> window = winner.waitForOtherWindow();
        QVERIFY(window);
        desktop.closeByWindowManager(*window);
        QCOMPARE(winner.waitForEnd().value_or(-1), 0);
    }
}

TEST_SUITE(ends, TestEndToEndEnds)
#include "ends.moc"
