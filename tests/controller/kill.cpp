// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A controller that is killed in the middle of a run leaves whole history entries
// behind. The run happens in a second process, which is this program again.

#include "controller/walle.h"
#include "sandboxhome.h"
#include "suites.h"
#include "temporarytree.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QtTest>

#include <memory>

using testsupport::entryExists;
using testsupport::TemporaryTree;

namespace
{

constexpr int files = 2000;
constexpr int kills = 50;
constexpr int patience = 60000; // milliseconds
constexpr quint32 seed = 20261120;

QString childOption()
{
    return QStringLiteral("--shred");
}

/// Shreds @p folder and then waits to be killed.
int runChild(int &argc, char **argv, const QString &folder)
{
    const QCoreApplication application(argc, argv);
    auto *walle = new Walle; // lives until the process ends, like every controller
    walle->start();
    walle->addChosenFiles({folder});
    walle->postCommand(CommandAddChosen);
    walle->postCommand(CommandStartCrush);
    return QCoreApplication::exec();
}

} // namespace

class TestWalleKill : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void killedRunLeavesWholeEntries_data();
    void killedRunLeavesWholeEntries();

private:
    QString makeVictims() const;
    void checkEntries(const QString &folder) const;

    testsupport::SandboxHome home;
    std::unique_ptr<TemporaryTree> tree;
};

/// How many entries there shall be, at least, when the run is killed.
void TestWalleKill::killedRunLeavesWholeEntries_data()
{
    QTest::addColumn<int>("entries");
    QRandomGenerator random(seed);
    for (int kill = 0; kill < kills; ++kill)
        QTest::addRow("kill %d", kill) << random.bounded(files - files / 10);
}

void TestWalleKill::killedRunLeavesWholeEntries()
{
    QFETCH(int, entries);
    tree = std::make_unique<TemporaryTree>();
    home.forgetHistory();
    const QString folder = makeVictims();
    const QString bystander = tree->makeFile(QStringLiteral("bystander"), QByteArray("kept"));

    QProcess child;
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("kill"), childOption(), folder});
    QTRY_VERIFY_WITH_TIMEOUT(home.history().count('\n') >= 3 * entries, patience);
    child.kill();
    QVERIFY(child.waitForFinished(patience));

    checkEntries(folder);
    QCOMPARE(TemporaryTree::contentsOf(bystander), QByteArray("kept"));
}

QString TestWalleKill::makeVictims() const
{
    for (int file = 0; file < files; ++file)
        tree->makeFile(QStringLiteral("folder/file-%1").arg(file), 100);
    return tree->path(QStringLiteral("folder"));
}

void TestWalleKill::checkEntries(const QString &folder) const
{
    static const QRegularExpression time(
        QStringLiteral("^\\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}:\\d{2}$"));
    const QByteArray history = home.history();
    // A kill lets the kernel stop a write where a page of the file ends, in the middle of an entry.
    constexpr int page = 4096;
    if (!history.isEmpty() && history.size() % page == 0)
        return;
    QVERIFY(history.isEmpty() || history.endsWith('\n'));
    const QByteArrayList lines = home.historyLines();
    QCOMPARE(lines.size() % 3, 0);
    for (int first = 0; first < lines.size(); first += 3) {
        QVERIFY2(time.match(QString::fromUtf8(lines.at(first))).hasMatch(),
                 lines.at(first).constData());
        // The folder's own entry comes last, where the run was quicker than the kill.
        const bool isFolder = lines.at(first + 1) == "folder";
        QCOMPARE(lines.at(first + 2), (isFolder ? tree->path() : folder).toUtf8());
        QVERIFY(!entryExists(QString::fromUtf8(lines.at(first + 2) + '/' + lines.at(first + 1))));
    }
    // The one that had just gone when the end came may be missing.
    const int gone = files - QDir(folder).entryList(QDir::Files).size();
    QVERIFY2(gone - lines.size() / 3 <= 1, qPrintable(QString::number(gone)));
}

static void becomeChild(int argc, char **argv)
{
    if (argc == 3 && QString::fromUtf8(argv[1]) == childOption())
        std::exit(runChild(argc, argv, QString::fromUtf8(argv[2])));
}

TEST_SUITE_PREPARED_BY(kill, TestWalleKill, becomeChild)

#include "kill.moc"
