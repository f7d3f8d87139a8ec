// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Any one of the calls about files that a whole run makes fails, in whatever thread, or all from
// there on. FILESHREDDER_FAULTS says how many of the calls are tried; they are spread over the run.

#include "inventory.h"
#include "suites.h"
#include "systemcalls.h"
#include "walleharness.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>

using testsupport::CallFate;
using testsupport::CallHook;
using testsupport::CallKind;
using testsupport::entryExists;
using testsupport::inventoryOf;
using testsupport::OrdinaryUser;
using testsupport::SystemCall;
using testsupport::TemporaryTree;
using testsupport::WalleTest;

namespace
{

constexpr int fewFaults = 30;
constexpr int fileSize = 5000;
constexpr std::array<CallFate, 7> fates{
    CallFate{EIO, false},   CallFate{ENOSPC, false}, CallFate{EACCES, false}, CallFate{0, true},
    CallFate{EINTR, false}, CallFate{EROFS, false},  CallFate{EMFILE, false}};

/// What becomes of the calls of a session, by their number.
using FateOf = std::function<CallFate(int call)>;

FateOf once(int number, CallFate fate)
{
    return [number, fate](int call) { return call == number ? fate : CallFate(); };
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
    /// Both do a session whose calls fare as @p fateOf says, check it and count its calls.
    int run(const FateOf &fateOf);
    int loadAndClear(const FateOf &fateOf);
    static int callsOf(const FateOf &fateOf, const std::function<bool()> &session);
    void checkRun() const;

    std::unique_ptr<OrdinaryUser> user;
    std::unique_ptr<TemporaryTree> outside; ///< what a link leads to
    const QByteArray oldHistory{"2024-01-02 03:04:05\nold\n/home\n"};
    QStringList victims; ///< the last two are chosen
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

/// The program goes on whatever fails.
int TestEveryFault::callsOf(const FateOf &fateOf, const std::function<bool()> &session)
{
    std::atomic<int> calls{0};
    const CallHook hook([&](const SystemCall &) { return fateOf(calls++); });
    if (!session())
        QTest::qFail("it does not end", __FILE__, __LINE__);
    return calls;
}

int TestEveryFault::run(const FateOf &fateOf)
{
    makeTree();
    const int calls = callsOf(fateOf, [this] {
        admitted(victims.mid(3));
        post(CommandStartCrush);
        return finished();
    });
    checkRun();
    answerTo({CommandCheckAll, CommandRemoveChecked});
    return calls;
}

/// The counts and the rows that are left agree, and the history holds what it held before and whole
/// entries of what is gone, of which one may be missing.
void TestEveryFault::checkRun() const
{
    static const QRegularExpression time(
        QStringLiteral("^\\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}:\\d{2}$"));
    QCOMPARE(count("showResultDialog"), 1);
    QCOMPARE(log({"showResultDialog"}).constFirst().arguments.at(2).toInt(), paths().size());
    const QStringList shreddable = victims.mid(3);
    for (const QString &path : shreddable)
        QVERIFY(entryExists(path) || !paths().contains(path));

    QVERIFY(home.history().startsWith(oldHistory) && home.history().endsWith('\n'));
    const QByteArrayList lines = home.historyLines();
    QCOMPARE(lines.size() % 3, 0);
    for (int first = 3; first < lines.size(); first += 3) {
        QVERIFY(time.match(QString::fromUtf8(lines.at(first))).hasMatch());
        QVERIFY(
            victims.contains(QString::fromUtf8(lines.at(first + 2) + '/' + lines.at(first + 1))));
    }
    const int recorded = lines.size() / 3 - 1;
    const auto gone = std::count_if(victims.cbegin(), victims.cend(),
                                    [](const QString &path) { return !entryExists(path); });
    QVERIFY(recorded <= gone && recorded >= gone - 1);
    QVERIFY(!entryExists(QStringLiteral("/.fileshredderEx.dat")));
}

void TestEveryFault::runAmongFaults()
{
    const QStringList before = inventoryOf(outside->path());
    const int calls = run(once(-1, CallFate()));
    QVERIFY(calls > 0);
    const int wanted = qEnvironmentVariableIntValue("FILESHREDDER_FAULTS");
    const int tries = wanted > 0 ? wanted : fewFaults;
    for (int index = 0; index < tries; ++index) {
        const int number = static_cast<int>(qint64{index} * calls / std::min(tries, calls)) % calls;
        // Every call gets another fate in each round.
        const auto fate = static_cast<std::size_t>(index + index / calls) % fates.size();
        run(once(number, fates.at(fate)));
        QCOMPARE(inventoryOf(outside->path()), before);
        QVERIFY2(!QTest::currentTestFailed(),
                 qPrintable(QStringLiteral("call %1, fate %2").arg(number).arg(fate)));
    }
    qInfo("%d runs; a run makes %d calls", tries, calls);
}

int TestEveryFault::loadAndClear(const FateOf &fateOf)
{
    home.forgetHistory();
    home.writeHistory(oldHistory);
    const int calls = callsOf(fateOf, [this] {
        post(CommandLoadHistory);
        post(CommandClearHistory);
        return performed();
    });
    // All or nothing of what is there, and it is still there or all gone.
    const QByteArray history = home.history();
    if (count("addRowToHistoryTable") > 1 || (!history.isEmpty() && history != oldHistory))
        QTest::qFail("another history than before", __FILE__, __LINE__);
    return calls;
}

void TestEveryFault::historyAmongFaults()
{
    const int calls = loadAndClear(once(-1, CallFate()));
    QCOMPARE(count("addRowToHistoryTable"), 1);
    for (int number = 0; number < calls; ++number) {
        for (const CallFate &fate : fates) {
            takeLog();
            loadAndClear(once(number, fate));
        }
    }
    qInfo("%d runs", calls * static_cast<int>(fates.size()));
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

/// To the disk, the calls of a program that was killed all fail from then on.
void TestEveryFault::killBeforeAnyCallLeavesWholeEntries()
{
    const testsupport::ShortPauses quickly;
    int kill = 0;
    int calls = 1;
    for (; kill < calls; ++kill) {
        calls = run([kill](int call) { return call < kill ? CallFate() : CallFate{EIO, false}; });
        QVERIFY2(!QTest::currentTestFailed(), qPrintable(QStringLiteral("call %1").arg(kill)));
    }
    QCOMPARE(home.historyLines().size(), (1 + victims.size()) * 3);
    qInfo("%d kills", kill);
}

TEST_SUITE(everyfault, TestEveryFault)
#include "everyfault.moc"
