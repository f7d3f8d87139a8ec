// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The program is ended in the middle of runs, in every way there is, at moments that
// chance picks. Each time it goes with the outcome that belongs to the way, leaves
// whole history entries for what is gone, touches nothing that was not chosen, and can
// be started again at once. FILESHREDDER_ENDS says how often each way is taken.

#include "drivenshredder.h"
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

constexpr int fewEnds = 2;
constexpr int files = 3000;
constexpr quint32 seed = 20261121;

int wantedEnds()
{
    const int ends = qEnvironmentVariableIntValue("FILESHREDDER_ENDS");
    return ends > 0 ? ends : fewEnds;
}

enum class Way { Signal, CloseWindow, LoseDisplay };

} // namespace

Q_DECLARE_METATYPE(Way)

class TestEndToEndEnds : public EndToEndTest
{
    Q_OBJECT

private slots:
    void endDuringARun_data();
    void endDuringARun();
    void oneOfTwoStartsWins();

private:
    void makeFiles();
    void end(DrivenShredder &shredder, Way way, int signal) const;
    void checkHistory() const;
    QByteArray history() const;

    QRandomGenerator random{seed};
};

void TestEndToEndEnds::endDuringARun_data()
{
    QTest::addColumn<Way>("way");
    QTest::addColumn<int>("signal");
    QTest::addColumn<QList<int>>("outcomes");
    QTest::newRow("kill") << Way::Signal << SIGKILL << QList<int>{-SIGKILL};
    QTest::newRow("terminate") << Way::Signal << SIGTERM << QList<int>{-SIGTERM};
    QTest::newRow("hang up") << Way::Signal << SIGHUP << QList<int>{-SIGHUP};
    QTest::newRow("close the window") << Way::CloseWindow << 0 << QList<int>{0};
    // When a session ends and takes the display away, Qt ends the program with status 1 as soon as
    // it reads that; a drawing that is just being sent meets a closed connection first.
    QTest::newRow("lose the display") << Way::LoseDisplay << 0 << QList<int>{1, -SIGPIPE};
}

void TestEndToEndEnds::endDuringARun()
{
    QFETCH(Way, way);
    QFETCH(int, signal);
    QFETCH(QList<int>, outcomes);
    const QProcessEnvironment display =
        way == Way::LoseDisplay ? desktop.environment() : QProcessEnvironment();
    int unfinished = 0;
    // All in one home: each start comes right after the end of the one before.
    for (int round = 0; round < wantedEnds(); ++round) {
        makeFiles();
        const QStringList before = inventoryOf(tree->path(QStringLiteral("outside")));
        DrivenShredder driven(*user);
        driven.start(tree->path(QStringLiteral("folder")), display);
        QVERIFY(driven.waitUntilShown());
        const int entries = random.bounded(files / 2);
        QVERIFY(eventually([&] { return history().count('\n') >= 3 * entries; }));
        end(driven, way, signal);
        QVERIFY(driven.waitForEnd());
        QVERIFY2(outcomes.contains(driven.outcome()),
                 qPrintable(QString::number(driven.outcome())));
        checkHistory();
        QCOMPARE(inventoryOf(tree->path(QStringLiteral("outside"))), before);
        QVERIFY(QDir(user->home()).entryList({QStringLiteral("core*")}, QDir::Files).isEmpty());
        QVERIFY2(!QTest::currentTestFailed(), qPrintable(QString::number(round)));
        unfinished += QDir(tree->path(QStringLiteral("folder"))).exists() ? 1 : 0;
    }
    qInfo("%d ends, %d of them before the run was over", wantedEnds(), unfinished);
}

void TestEndToEndEnds::makeFiles()
{
    tree = std::make_unique<TemporaryTree>();
    QFile::remove(user->historyFile());
    makeBusyFolder(files);
    tree->makeFile(QStringLiteral("outside/folder/kept"), 100);
    tree->makeLink(QStringLiteral("folder/link"), tree->path(QStringLiteral("outside/folder")));
}

void TestEndToEndEnds::end(DrivenShredder &driven, Way way, int signal) const
{
    if (way == Way::Signal)
        driven.sendSignal(signal);
    else if (way == Way::CloseWindow)
        driven.closeWindow();
    else
        desktop.takeDisplayFrom(driven.windowNumber());
}

QByteArray TestEndToEndEnds::history() const
{
    QFile file(user->historyFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestEndToEndEnds::checkHistory() const
{
    static const QRegularExpression time(
        QStringLiteral("^\\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}:\\d{2}$"));
    // A kill lets the kernel stop a write where a page of the file ends, in the middle of an entry.
    constexpr int page = 4096;
    if (!history().isEmpty() && history().size() % page == 0)
        return;
    const QString folder = tree->path(QStringLiteral("folder"));
    QVERIFY(history().isEmpty() || history().endsWith('\n'));
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
        DrivenShredder one(*user);
        DrivenShredder other(*user);
        one.start();
        other.start();
        const bool oneShown = one.waitUntilShown();
        const bool otherShown = other.waitUntilShown();
        QCOMPARE(int(oneShown) + int(otherShown), 1);
        DrivenShredder &winner = oneShown ? one : other;
        DrivenShredder &loser = oneShown ? other : one;
        QVERIFY(loser.waitForEnd());
        QCOMPARE(loser.outcome(), 0);
        QVERIFY(!winner.hasEnded());
        winner.closeWindow();
        QVERIFY(winner.waitForEnd());
        QCOMPARE(winner.outcome(), 0);
    }
}

TEST_SUITE(ends, TestEndToEndEnds)
#include "ends.moc"
