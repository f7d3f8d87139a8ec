// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A program that is killed in the middle of a run leaves whole history entries behind,
// whichever call about a file it was about to make. The run happens in a second process,
// which is this program again.

#include "filecalls.h"
#include "suites.h"
#include "walletest.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>

#include <atomic>
#include <csignal>
#include <cstdlib>

using testsupport::CallFate;
using testsupport::entryExists;
using testsupport::FileCall;
using testsupport::FileCallWatch;
using testsupport::TemporaryTree;
using testsupport::WalleHarness;
using testsupport::WalleTest;

namespace
{

constexpr const char *childOption = "--shred";

/// Shreds @p folder and is killed right before the call @p fatal of the run, if there are so many.
int runChild(int &argc, char **argv, const QString &folder, int fatal)
{
    const QCoreApplication application(argc, argv);
    WalleHarness harness;
    if (!harness.admitted({folder}))
        return EXIT_FAILURE;
    std::atomic<int> calls{0};
    const FileCallWatch watch([&](FileCall) {
        if (calls++ == fatal)
            ::raise(SIGKILL);
        return CallFate();
    });
    harness.post(CommandStartCrush);
    return harness.finished() ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

class TestKill : public WalleTest
{
    Q_OBJECT

private slots:
    void killBeforeAnyCallLeavesWholeEntries();

private:
    void checkEntries(const QStringList &victims) const;
};

void TestKill::killBeforeAnyCallLeavesWholeEntries()
{
    const QString bystander = tree->makeFile(QStringLiteral("bystander"), QByteArray("kept"));
    int kills = 0;
    QProcess child;
    do {
        home.forgetHistory();
        const QStringList victims{make("folder/sub/a", 100), make("folder/b", 100),
                                  tree->path(QStringLiteral("folder/sub")),
                                  tree->path(QStringLiteral("folder"))};
        child.start(QCoreApplication::applicationFilePath(),
                    {QStringLiteral("kill"), QLatin1String(childOption), victims.last(),
                     QString::number(kills)});
        QVERIFY(child.waitForFinished(testsupport::patience));
        checkEntries(victims);
        QVERIFY2(!QTest::currentTestFailed(), qPrintable(QStringLiteral("call %1").arg(kills)));
    } while (child.exitStatus() == QProcess::CrashExit && ++kills > 0);
    QCOMPARE(child.exitCode(), EXIT_SUCCESS);
    QCOMPARE(home.historyLines().size(), 4 * 3);
    QCOMPARE(TemporaryTree::contentsOf(bystander), QByteArray("kept"));
    QVERIFY(kills > 0);
    qInfo("%d kills", kills);
}

void TestKill::checkEntries(const QStringList &victims) const
{
    static const QRegularExpression time(
        QStringLiteral("^\\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}:\\d{2}$"));
    const QByteArray history = home.history();
    QVERIFY(history.isEmpty() || history.endsWith('\n'));
    const QByteArrayList lines = home.historyLines();
    QCOMPARE(lines.size() % 3, 0);
    for (int first = 0; first < lines.size(); first += 3) {
        QVERIFY(time.match(QString::fromUtf8(lines.at(first))).hasMatch());
        const QString path = QString::fromUtf8(lines.at(first + 2) + '/' + lines.at(first + 1));
        QVERIFY(victims.contains(path) && !entryExists(path));
    }
    // The one that had just gone when the end came may be missing.
    const auto gone = std::count_if(victims.cbegin(), victims.cend(),
                                    [](const QString &path) { return !entryExists(path); });
    QVERIFY(gone - lines.size() / 3 <= 1);
}

static void becomeChild(int argc, char **argv)
{
    if (argc == 4 && qstrcmp(argv[1], childOption) == 0)
        std::exit(runChild(argc, argv, QString::fromUtf8(argv[2]), std::atoi(argv[3])));
}

TEST_SUITE_PREPARED_BY(kill, TestKill, becomeChild)
#include "kill.moc"
