// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Any one of the calls about files that a whole run makes fails: admission, shredding,
// history, in whatever thread. The program goes on, the run ends with its result,
// the counts and the rows that are left agree, and what the history held before it still
// holds. FILESHREDDER_FAULTS says how many of the calls are tried; they are spread over the
// run. Without a home the history would lie in the root folder, so an ordinary user,
// who cannot write there, does all of it.

#include "filecalls.h"
#include "inventory.h"
#include "ordinaryuser.h"
#include "promptly.h"
#include "suites.h"
#include "walletest.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>

using testsupport::CallFate;
using testsupport::entryExists;
using testsupport::FileCall;
using testsupport::FileCallWatch;
using testsupport::inventoryOf;
using testsupport::OrdinaryUser;
using testsupport::TemporaryTree;
using testsupport::WalleTest;

namespace
{

constexpr int fewFaults = 30;
constexpr int fileSize = 5000;
constexpr std::array<CallFate, 7> fates{
    CallFate{EIO, false},   CallFate{ENOSPC, false}, CallFate{EACCES, false}, CallFate{0, true},
    CallFate{EINTR, false}, CallFate{EROFS, false},  CallFate{EMFILE, false}};

int wantedFaults()
{
    const int faults = qEnvironmentVariableIntValue("FILESHREDDER_FAULTS");
    return faults > 0 ? faults : fewFaults;
}

} // namespace

class TestEveryFault : public WalleTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase() { user.reset(); }

    void runAmongFaults();
    void historyAmongFaults();
    void historyThatCannotBeReadEndsItsLoad();

private:
    int sessionWithFault(int number, CallFate fate);
    int historyWithFault(int number, CallFate fate);
    void makeTree();
    void checkResult(const QStringList &chosen);
    void checkHistory();
    void removeRows();

    std::unique_ptr<OrdinaryUser> user;
    std::unique_ptr<TemporaryTree> outside; ///< what a link leads to
    const QByteArray oldHistory{"2024-01-02 03:04:05\nold\n/home\n"};
    QStringList victims;
};

void TestEveryFault::initTestCase()
{
    WalleTest::initTestCase();
    user = std::make_unique<OrdinaryUser>();
}

void TestEveryFault::makeTree()
{
    tree = std::make_unique<TemporaryTree>();
    victims = QStringList{
        tree->makeFile(QStringLiteral("top/sub/file"), fileSize),
        tree->makeLink(QStringLiteral("top/link"), outside->path(QStringLiteral("file"))),
        tree->path(QStringLiteral("top/sub")),
        tree->path(QStringLiteral("top")),
        tree->makeFile(QStringLiteral("lone"), fileSize),
    };
    home.forgetHistory();
    home.writeHistory(oldHistory);
}

void TestEveryFault::runAmongFaults()
{
    outside = std::make_unique<TemporaryTree>();
    outside->makeFile(QStringLiteral("file"), fileSize);
    const QStringList before = inventoryOf(outside->path());
    const int calls = sessionWithFault(-1, CallFate());
    QVERIFY(calls > 0);
    const int tries = wantedFaults();
    for (int index = 0; index < tries; ++index) {
        const int number = static_cast<int>(qint64{index} * calls / std::min(tries, calls)) % calls;
        // Every call gets another fate in each round.
        const auto fate = static_cast<std::size_t>(index + index / calls) % fates.size();
        sessionWithFault(number, fates.at(fate));
        QCOMPARE(inventoryOf(outside->path()), before);
        QVERIFY2(!QTest::currentTestFailed(),
                 qPrintable(QStringLiteral("call %1, fate %2").arg(number).arg(fate)));
    }
    qInfo("%d runs; a run makes %d calls", tries, calls);
}

/// Chooses and shreds a folder and a file while call @p number meets @p fate. Returns the calls.
int TestEveryFault::sessionWithFault(int number, CallFate fate)
{
    makeTree();
    const QStringList chosen{victims.at(3), victims.at(4)};
    std::atomic<int> calls{0};
    {
        const FileCallWatch watch([&](FileCall) { return calls++ == number ? fate : CallFate(); });
        harness->choose(chosen);
        harness->performed();
        harness->takeLog();
        harness->post(CommandStartCrush);
        if (!harness->finished())
            QTest::qFail("the run does not end", __FILE__, __LINE__);
    }
    checkResult(chosen);
    checkHistory();
    removeRows();
    return calls;
}

void TestEveryFault::checkResult(const QStringList &chosen)
{
    const QStringList left = harness->paths();
    const auto results = harness->log({"showResultDialog"});
    QCOMPARE(results.size(), 1);
    QCOMPARE(results.first().arguments.at(2).toInt(), left.size());
    for (const QString &path : chosen)
        QVERIFY(entryExists(path) || !left.contains(path));
}

void TestEveryFault::checkHistory()
{
    const QByteArray history = home.history();
    QVERIFY(history.startsWith(oldHistory));
    QVERIFY(history.endsWith('\n'));
    const QByteArrayList lines = home.historyLines();
    QCOMPARE(lines.size() % 3, 0);
    int recorded = 0;
    for (int first = 3; first < lines.size(); first += 3, ++recorded)
        QVERIFY(
            victims.contains(QString::fromUtf8(lines.at(first + 2) + '/' + lines.at(first + 1))));
    const auto gone = std::count_if(victims.cbegin(), victims.cend(),
                                    [](const QString &path) { return !entryExists(path); });
    // One fault loses one entry at most.
    QVERIFY(recorded <= gone && recorded >= gone - 1);
    QVERIFY(!entryExists(QStringLiteral("/.fileshredderEx.dat")));
}

void TestEveryFault::removeRows()
{
    answerTo({CommandCheckAll, CommandRemoveChecked});
    QCOMPARE(harness->paths(), QStringList());
}

void TestEveryFault::historyAmongFaults()
{
    const int calls = historyWithFault(-1, CallFate());
    for (int number = 0; number < calls; ++number) {
        for (const CallFate &fate : fates)
            historyWithFault(number, fate);
    }
    qInfo("%d runs", calls * static_cast<int>(fates.size()));
}

/// Loads and clears the history while call @p number meets @p fate. Returns the calls.
int TestEveryFault::historyWithFault(int number, CallFate fate)
{
    home.forgetHistory();
    home.writeHistory(oldHistory);
    std::atomic<int> calls{0};
    {
        const FileCallWatch watch([&](FileCall) { return calls++ == number ? fate : CallFate(); });
        harness->post(CommandLoadHistory);
        harness->post(CommandClearHistory);
        if (!harness->performed())
            QTest::qFail("the history is never loaded", __FILE__, __LINE__);
    }
    // All or nothing of what is there, and it is still there or all gone.
    const int rows = harness->count("addRowToHistoryTable");
    if (rows > 1 || (number < 0 && rows != 1))
        QTest::qFail("other rows than the history has", __FILE__, __LINE__);
    const QByteArray history = home.history();
    if (!history.isEmpty() && history != oldHistory)
        QTest::qFail("another history than before", __FILE__, __LINE__);
    harness->takeLog();
    return calls;
}

void TestEveryFault::historyThatCannotBeReadEndsItsLoad()
{
    home.writeHistory(oldHistory);
    std::atomic<int> reads{0};
    const FileCallWatch watch([&](FileCall call) {
        return call == FileCall::Read && ++reads > 0 ? CallFate{EIO, false} : CallFate();
    });
    harness->post(CommandLoadHistory);
    PROMPTLY_VERIFY(reads > 0);
    QVERIFY(harness->performed());
    QCOMPARE(harness->count("addRowToHistoryTable"), 0);
}

TEST_SUITE(everyfault, TestEveryFault)
#include "everyfault.moc"
