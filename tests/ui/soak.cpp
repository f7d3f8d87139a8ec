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
#include "promptly.h"
#include "restlessuser.h"
#include "suites.h"
#include "windowtesthome.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QSet>
#include <QtTest>

#include <memory>

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

} // namespace

class TestSoak : public QObject
{
    Q_OBJECT

private slots:
    void restlessUserMeetsAgreement();

private:
    void checkFiles();
    void emptyTheList();
    void checkRows();
    void checkRun();
    MainWindow &mainWindow() { return *user->window(); }

    std::unique_ptr<RestlessUser> user;
};

void TestSoak::restlessUserMeetsAgreement()
{
    const int seed = fromEnvironment("FILESHREDDER_SOAK_SEED", 1);
    const int seconds = fromEnvironment("FILESHREDDER_SOAK_SECONDS", usualSeconds);
    user = std::make_unique<RestlessUser>(static_cast<quint32>(seed));
    const testsupport::GuiWatchdog watchdog(
        fromEnvironment("FILESHREDDER_SOAK_STANDSTILL", testsupport::patience));
    int rounds = 0;
    QElapsedTimer clock;
    clock.start();
    for (; clock.elapsed() < seconds * 1000LL && !QTest::currentTestFailed(); ++rounds) {
        user->beginRound();
        for (int number = 0; number < requestsARound; ++number)
            user->doSomething();
        user->comeToRest();
        checkFiles();
        user->dice().onceIn(2) ? checkRows() : checkRun();
    }
    qInfo("seed %d: %d requests in %d rounds, longest standstill %d ms", seed, user->requests(),
          rounds, watchdog.longest());
    user.reset();
}

/// What is there was not touched, and what is gone the user had in the list.
void TestSoak::checkFiles()
{
    QCOMPARE(TemporaryTree::contentsOf(user->bystander()), QByteArray(5000, 'x'));
    for (const QString &file : user->files()) {
        if (QFileInfo(file).isFile()) {
            const QByteArray bytes = TemporaryTree::contentsOf(file);
            QCOMPARE(bytes, QByteArray(bytes.size(), 'x'));
        }
    }
    const QStringList rows = user->window().rows();
    for (const QString &row : rows)
        QVERIFY2(user->files().contains(row), qPrintable(row));
    QCOMPARE(rows.toSet().size(), rows.size());
}

/// Ticks every row and removes it.
void TestSoak::emptyTheList()
{
    mainWindow().selectAllEva(true);
    QVERIFY(user->window().settle());
    QCOMPARE(user->window().tickedRows(), user->window().rows());
    mainWindow().removeSomeFilesEva();
    QVERIFY(user->window().settle());
    QCOMPARE(user->window().rows(), QStringList());
}

/// Takes everything out and puts back what is left: the list refuses what it still holds.
void TestSoak::checkRows()
{
    emptyTheList();
    QStringList left;
    for (const QString &file : user->files()) {
        if (entryExists(file) && left.size() < RestlessUser::mostRows)
            left.append(file);
    }
    const int reports = user->dialogs().seen().size();
    user->window().drop(left);
    QVERIFY(user->window().settle());
    QCOMPARE(user->window().rows(), left);
    QCOMPARE(user->dialogs().seen().size(), reports);
    mainWindow().selectAllEva(false);
    QVERIFY(user->window().settle());
    QCOMPARE(user->window().tickedRows(), QStringList());
    emptyTheList();
}

/// Shreds everything in the list to the end.
void TestSoak::checkRun()
{
    // A row that failed in a run that was stopped is drawn with a tick and has none.
    mainWindow().selectAllEva(true);
    QVERIFY(user->window().settle());
    const QStringList rows = user->window().rows();
    QStringList failing;
    for (const QString &row : rows) {
        if (entryExists(row + QStringLiteral("/fifo")))
            failing.append(row);
    }
    if (!rows.isEmpty()) {
        const int reports = user->dialogs().seen().size();
        user->window().click("crushButton");
        PROMPTLY_COMPARE(user->dialogs().seen().size(), reports + 2);
        QVERIFY(user->window().settle());
    }
    QCOMPARE(user->window().rows(), failing);
    QCOMPARE(user->window().tickedRows(), QStringList());
    for (const QString &row : rows)
        QCOMPARE(entryExists(row), failing.contains(row));
    emptyTheList();
}

TEST_SUITE(soak, TestSoak)
#include "soak.moc"
