// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A restless user in front of the real window with many tiny files: drops, the file
// dialog, clicks, select all, removals, starts, stops and the history, in an order that
// is the same for the same seed. From time to time everything comes to rest, and then
// table, job list and disk must agree. All the while the window must move.
// FILESHREDDER_SOAK_SECONDS says how long it lasts, FILESHREDDER_SOAK_SEED what is done,
// and FILESHREDDER_SOAK_STANDSTILL which standstill of the window, in milliseconds, is too long:
// usually only one that never ends, as a busy machine may hold up anything.

#include "eventually.h"
#include "guiwatchdog.h"
#include "restlessuser.h"
#include "suites.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QSet>
#include <QtTest>

using testsupport::entryExists;
using testsupport::RestlessUser;
using testsupport::TemporaryTree;

namespace
{

constexpr int usualSeconds = 8;
constexpr int requestsARound = 60;

int fromEnvironment(const char *name, int usual)
{
    bool isSet = false;
    const int value = qEnvironmentVariableIntValue(name, &isSet);
    return isSet ? value : usual;
}

const int seed = fromEnvironment("FILESHREDDER_SOAK_SEED", 1);

} // namespace

class TestSoak : public RestlessUser
{
    Q_OBJECT

public:
    TestSoak()
        : RestlessUser(static_cast<quint32>(seed))
    {
    }

private slots:
    void restlessUserMeetsAgreement();

private:
    void checkFiles();
    void emptyTheList();
    void checkRows();
    void checkRun();
};

void TestSoak::restlessUserMeetsAgreement()
{
    const int seconds = fromEnvironment("FILESHREDDER_SOAK_SECONDS", usualSeconds);
    const testsupport::GuiWatchdog watchdog(
        fromEnvironment("FILESHREDDER_SOAK_STANDSTILL", testsupport::patience));
    int rounds = 0;
    QElapsedTimer clock;
    clock.start();
    for (; clock.elapsed() < seconds * 1000LL && !QTest::currentTestFailed(); ++rounds) {
        beginRound();
        for (int number = 0; number < requestsARound; ++number)
            doSomething();
        comeToRest();
        checkFiles();
        chance.onceIn(2) ? checkRows() : checkRun();
    }
    qInfo("seed %d: %d requests in %d rounds, longest standstill %d ms", seed, requests, rounds,
          watchdog.longest());
}

/// What is there was not touched, and what is gone the user had in the list.
void TestSoak::checkFiles()
{
    QCOMPARE(TemporaryTree::contentsOf(neverShown), QByteArray(5000, 'x'));
    for (const QString &file : qAsConst(shownFiles)) {
        if (QFileInfo(file).isFile()) {
            const QByteArray bytes = TemporaryTree::contentsOf(file);
            QCOMPARE(bytes, QByteArray(bytes.size(), 'x'));
        }
    }
    const QStringList rows = window->rows();
    for (const QString &row : rows)
        QVERIFY2(shownFiles.contains(row), qPrintable(row));
    QCOMPARE(rows.toSet().size(), rows.size());
}

/// Ticks every row and removes it.
void TestSoak::emptyTheList()
{
    mainWindow->selectAllEva(true);
    settle();
    QCOMPARE(window->tickedRows(), window->rows());
    mainWindow->removeSomeFilesEva();
    settle();
    QCOMPARE(window->rows(), QStringList());
}

/// Takes everything out and puts back what is left: the list refuses what it still holds.
void TestSoak::checkRows()
{
    emptyTheList();
    QStringList left;
    for (const QString &file : qAsConst(shownFiles)) {
        if (entryExists(file) && left.size() < mostRows)
            left.append(file);
    }
    const int reports = dialogs->seen().size();
    window->drop(left);
    settle();
    QCOMPARE(window->rows(), left);
    QCOMPARE(dialogs->seen().size(), reports);
    mainWindow->selectAllEva(false);
    settle();
    QCOMPARE(window->tickedRows(), QStringList());
    emptyTheList();
}

/// Shreds everything in the list to the end.
void TestSoak::checkRun()
{
    // A row that failed in a run that was stopped is drawn with a tick and has none.
    mainWindow->selectAllEva(true);
    settle();
    const QStringList rows = window->rows();
    QStringList failing;
    for (const QString &row : rows) {
        if (entryExists(row + QStringLiteral("/fifo")))
            failing.append(row);
    }
    if (!rows.isEmpty()) {
        const int reports = dialogs->seen().size();
        window->click("crushButton");
        PROMPTLY_COMPARE(dialogs->seen().size(), reports + 2);
        settle();
    }
    QCOMPARE(window->rows(), failing);
    QCOMPARE(window->tickedRows(), QStringList());
    for (const QString &row : rows)
        QCOMPARE(entryExists(row), failing.contains(row));
    emptyTheList();
}

TEST_SUITE(soak, TestSoak)
#include "soak.moc"
