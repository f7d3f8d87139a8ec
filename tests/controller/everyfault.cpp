// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Any one of the calls about files that a whole run makes fails, in whatever thread. The program
// goes on, the run ends with its result, the counts and the rows that are left agree, and what the
// history held before it still holds. FILESHREDDER_FAULTS says how many of the calls are tried;
// they are spread over the run. A program that is killed at any one of the calls leaves whole
// entries behind; this program does that as its own child.

#include "inventory.h"
#include "suites.h"
#include "systemcalls.h"
#include "walleharness.h"

#include <QProcess>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>

using testsupport::CallFate;
using testsupport::CallHook;
using testsupport::CallKind;
using testsupport::entryExists;
using testsupport::inventoryOf;
using testsupport::OrdinaryUser;
using testsupport::SystemCall;
using testsupport::TemporaryTree;
using testsupport::WalleHarness;
using testsupport::WalleTest;

namespace
{

constexpr const char *childOption = "--shred";
constexpr int fewFaults = 30;
constexpr int fileSize = 5000;
constexpr std::array<CallFate, 7> fates{
    CallFate{EIO, false},   CallFate{ENOSPC, false}, CallFate{EACCES, false}, CallFate{0, true},
    CallFate{EINTR, false}, CallFate{EROFS, false},  CallFate{EMFILE, false}};

/// In the child: shreds the folder argv[2] and is killed right before the call argv[3] of the run.
int shredAndDie(int &argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const int fatal = std::atoi(argv[3]);
    WalleHarness user;
    user.startController();
    bool done = user.admitted({QString::fromUtf8(argv[2])});
    {
        std::atomic<int> calls{0};
        const CallHook hook([&](const SystemCall &) {
            if (calls++ == fatal)
                ::raise(SIGKILL);
            return CallFate();
        });
        user.post(CommandStartCrush);
        done = user.finished() && done;
    }
    user.leaveController();
    return done ? EXIT_SUCCESS : EXIT_FAILURE;
}

void becomeChild(int argc, char **argv)
{
    if (argc == 4 && qstrcmp(argv[1], childOption) == 0)
        std::exit(shredAndDie(argc, argv));
}

} // namespace

class TestEveryFault : public WalleTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void runAmongFaults();
    void historyAmongFaults();
    void historyThatCannotBeReadEndsItsLoad();
    void killBeforeAnyCallLeavesWholeEntries();

private:
    void makeTree();
    int runWithFault(int number, CallFate fate);
    int historyWithFault(int number, CallFate fate);
    int callsOf(int number, CallFate fate, const std::function<bool()> &session);
    void checkResult(const QStringList &chosen) const;
    void checkHistory() const;

    std::unique_ptr<OrdinaryUser> user;
    std::unique_ptr<TemporaryTree> outside; ///< what a link leads to
    const QByteArray oldHistory{"2024-01-02 03:04:05\nold\n/home\n"};
    QStringList victims;
};

/// Without a home the history would lie in the root folder, where an ordinary user cannot write.
void TestEveryFault::init()
{
    user = std::make_unique<OrdinaryUser>();
    WalleTest::init();
    outside = std::make_unique<TemporaryTree>();
    outside->makeFile("file", fileSize);
}

void TestEveryFault::cleanup()
{
    WalleTest::cleanup();
    outside.reset();
    user.reset();
}

void TestEveryFault::makeTree()
{
    tree = std::make_unique<TemporaryTree>();
    victims = QStringList{
        make("top/sub/file", fileSize), tree->makeLink("top/link", outside->path("file")),
        tree->path("top/sub"),          tree->path("top"),
        make("lone", fileSize),
    };
    home.forgetHistory();
    home.writeHistory(oldHistory);
}

void TestEveryFault::runAmongFaults()
{
    makeTree();
    const QStringList before = inventoryOf(outside->path());
    const int calls = runWithFault(-1, CallFate());
    QVERIFY(calls > 0);
    const int wanted = qEnvironmentVariableIntValue("FILESHREDDER_FAULTS");
    const int tries = wanted > 0 ? wanted : fewFaults;
    for (int index = 0; index < tries; ++index) {
        const int number = static_cast<int>(qint64{index} * calls / std::min(tries, calls)) % calls;
        // Every call gets another fate in each round.
        const auto fate = static_cast<std::size_t>(index + index / calls) % fates.size();
        runWithFault(number, fates.at(fate));
        QCOMPARE(inventoryOf(outside->path()), before);
        QVERIFY2(!QTest::currentTestFailed(),
                 qPrintable(QStringLiteral("call %1, fate %2").arg(number).arg(fate)));
    }
    qInfo("%d runs; a run makes %d calls", tries, calls);
}

/// Does @p session while its call @p number meets @p fate. Returns the calls.
int TestEveryFault::callsOf(int number, CallFate fate, const std::function<bool()> &session)
{
    std::atomic<int> calls{0};
    const CallHook hook([&](const SystemCall &) { return calls++ == number ? fate : CallFate(); });
    if (!session())
        QTest::qFail("it does not end", __FILE__, __LINE__);
    return calls;
}

/// Chooses and shreds a folder and a file.
int TestEveryFault::runWithFault(int number, CallFate fate)
{
    makeTree();
    const QStringList chosen{victims.at(3), victims.at(4)};
    const int calls = callsOf(number, fate, [&] {
        admitted(chosen);
        post(CommandStartCrush);
        return finished();
    });
    checkResult(chosen);
    checkHistory();
    answerTo({CommandCheckAll, CommandRemoveChecked});
    return calls;
}

void TestEveryFault::checkResult(const QStringList &chosen) const
{
    const auto reports = log({"showResultDialog"});
    QCOMPARE(reports.size(), 1);
    QCOMPARE(reports.first().arguments.at(2).toInt(), paths().size());
    for (const QString &path : chosen)
        QVERIFY(entryExists(path) || !paths().contains(path));
}

/// Whole entries of what is gone, of which one may be missing.
void TestEveryFault::checkHistory() const
{
    static const QRegularExpression time(
        QStringLiteral("^\\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}:\\d{2}$"));
    QVERIFY(home.history().startsWith(oldHistory) && home.history().endsWith('\n'));
    const QByteArrayList lines = home.historyLines();
    QCOMPARE(lines.size() % 3, 0);
    int recorded = 0;
    for (int first = 3; first < lines.size(); first += 3, ++recorded) {
        QVERIFY(time.match(QString::fromUtf8(lines.at(first))).hasMatch());
        QVERIFY(
            victims.contains(QString::fromUtf8(lines.at(first + 2) + '/' + lines.at(first + 1))));
    }
    const auto gone = std::count_if(victims.cbegin(), victims.cend(),
                                    [](const QString &path) { return !entryExists(path); });
    QVERIFY(recorded <= gone && recorded >= gone - 1);
    QVERIFY(!entryExists(QStringLiteral("/.fileshredderEx.dat")));
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

/// Loads and clears the history.
int TestEveryFault::historyWithFault(int number, CallFate fate)
{
    home.forgetHistory();
    home.writeHistory(oldHistory);
    const int calls = callsOf(number, fate, [this] {
        post(CommandLoadHistory);
        post(CommandClearHistory);
        return performed();
    });
    // All or nothing of what is there, and it is still there or all gone.
    const int rows = count("addRowToHistoryTable");
    if (rows > 1 || (number < 0 && rows != 1))
        QTest::qFail("other rows than the history has", __FILE__, __LINE__);
    const QByteArray history = home.history();
    if (!history.isEmpty() && history != oldHistory)
        QTest::qFail("another history than before", __FILE__, __LINE__);
    takeLog();
    return calls;
}

void TestEveryFault::historyThatCannotBeReadEndsItsLoad()
{
    home.writeHistory(oldHistory);
    std::atomic<int> reads{0};
    const CallHook hook([&](const SystemCall &call) {
        return call.kind == CallKind::Read && ++reads > 0 ? CallFate{EIO, false} : CallFate();
    });
    post(CommandLoadHistory);
    PROMPTLY_VERIFY(reads > 0);
    QVERIFY(performed());
    QCOMPARE(count("addRowToHistoryTable"), 0);
}

void TestEveryFault::killBeforeAnyCallLeavesWholeEntries()
{
    user.reset(); // a child of two user ids gets no sandboxed home
    int kills = 0;
    QProcess child;
    do {
        makeTree();
        child.start(QCoreApplication::applicationFilePath(),
                    {QStringLiteral("everyfault"), QLatin1String(childOption), victims.at(3),
                     QString::number(kills)});
        QVERIFY(child.waitForFinished(testsupport::patience));
        checkHistory();
        QVERIFY2(!QTest::currentTestFailed(), qPrintable(QStringLiteral("call %1").arg(kills)));
        QVERIFY(testsupport::isAsMade(victims.last(), fileSize));
    } while (child.exitStatus() == QProcess::CrashExit && ++kills > 0);
    QCOMPARE(child.exitCode(), EXIT_SUCCESS);
    QCOMPARE(home.historyLines().size(), 5 * 3);
    QVERIFY(kills > 0);
    qInfo("%d kills", kills);
}

TEST_SUITE_PREPARED_BY(everyfault, TestEveryFault, becomeChild)
#include "everyfault.moc"
