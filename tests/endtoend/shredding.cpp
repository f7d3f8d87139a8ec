// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What a run does to files, seen from outside the program: a second hard link
// keeps the blocks of a removed file, and shows what was written over them.

#include "endtoendtest.h"
#include "expectedbytes.h"
#include "suites.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <ctime>

using namespace testsupport;

class TestEndToEndShredding : public EndToEndTest
{
    Q_OBJECT

private slots:
    void confirmedFilesAreOverwrittenAndRemoved();
    void folderGoesWithEverythingInItButNotWhatItsLinksName();
    void cancelledQuestionTouchesNothing();
    void untickedFileSurvivesByteForByte();
    void reportLeavesNothingTicked();
    void historyFileHoldsThreeLinesPerRemovedItem();
    void stoppedRunLeavesTheRestAndCanBeRepeated();

private:
    /// Unticks row @p row, which is ticked; returns what its box looks like then.
    QImage untick(int row);
    bool runToItsReport();
};

void TestEndToEndShredding::confirmedFilesAreOverwrittenAndRemoved()
{
    // Blocks and a tail, a tail alone, and nothing to overwrite.
    const QString longFile = tree->makeFile(QStringLiteral("long"), 3 * 4096 + 17);
    const QString shortFile = tree->makeFile(QStringLiteral("short"), 100);
    const QString emptyFile = tree->makeFile(QStringLiteral("empty"), 0);
    const QString longBlocks = tree->makeHardLink(QStringLiteral("long-blocks"), longFile);
    const QString shortBlocks = tree->makeHardLink(QStringLiteral("short-blocks"), shortFile);
    QVERIFY(openWith({longFile, shortFile, emptyFile}));
    const std::time_t begin = std::time(nullptr);
    QVERIFY(runToItsReport());
    const std::time_t end = std::time(nullptr);
    QVERIFY(!entryExists(longFile) && !entryExists(shortFile) && !entryExists(emptyFile));
    QCOMPARE(QFileInfo(longBlocks).size(), 3 * 4096 + 17);
    QCOMPARE(QFileInfo(shortBlocks).size(), 100);
    QVERIFY(wasOverwritten(TemporaryTree::contentsOf(longBlocks), begin, end));
    QVERIFY(wasOverwritten(TemporaryTree::contentsOf(shortBlocks), begin, end));
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 0, patience);
    QVERIFY(shredder->hasChanged(mainwindow::subtitle));
}

void TestEndToEndShredding::folderGoesWithEverythingInItButNotWhatItsLinksName()
{
    const QString folder = tree->makeFolder(QStringLiteral("folder"));
    const QString inner = tree->makeFile(QStringLiteral("folder/deep/deeper/inner"), 5000);
    const QString innerBlocks = tree->makeHardLink(QStringLiteral("inner-blocks"), inner);
    const QString target = tree->makeFile(QStringLiteral("target"), 5000);
    const QString targetFolder = tree->makeFolder(QStringLiteral("target-folder"));
    const QString behindLink = tree->makeFile(QStringLiteral("target-folder/file"), 10);
    tree->makeLink(QStringLiteral("folder/to-file"), target);
    tree->makeLink(QStringLiteral("folder/to-folder"), targetFolder);
    tree->makeLink(QStringLiteral("folder/to-nothing"), tree->path(QStringLiteral("nothing")));
    QVERIFY(openWith({folder}));
    const std::time_t begin = std::time(nullptr);
    QVERIFY(runToItsReport());
    QVERIFY(!entryExists(folder));
    QVERIFY(wasOverwritten(TemporaryTree::contentsOf(innerBlocks), begin, std::time(nullptr)));
    QCOMPARE(TemporaryTree::contentsOf(target), QByteArray(5000, 'x'));
    QCOMPARE(TemporaryTree::contentsOf(behindLink), QByteArray(10, 'x'));
}

void TestEndToEndShredding::cancelledQuestionTouchesNothing()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 5000);
    QVERIFY(openWith({file}));
    for (const QRect &no : {dialog::questionCancel, dialog::closeButton}) {
        shredder->click(mainwindow::crushButton);
        QVERIFY(shredder->answerDialog(no));
    }
    // Requests are served in order: once the tick is gone, a run asked for before
    // it would have started.
    untick(0);
    QVERIFY(shredder->onlyMainWindowIsOpen());
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray(5000, 'x'));
    QVERIFY(user->historyLines().isEmpty());
}

void TestEndToEndShredding::untickedFileSurvivesByteForByte()
{
    const QString first = tree->makeFile(QStringLiteral("first"), 5000);
    const QString spared = tree->makeFile(QStringLiteral("spared"), 5000);
    const QString last = tree->makeFile(QStringLiteral("last"), 5000);
    QVERIFY(openWith({first, spared, last}));
    const QImage unticked = untick(1);
    QVERIFY(runToItsReport());
    QVERIFY(!entryExists(first) && !entryExists(last));
    QCOMPARE(TemporaryTree::contentsOf(spared), QByteArray(5000, 'x'));
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 1, patience);
    QCOMPARE(shredder->picture(mainwindow::rowTickBox(0)), unticked);
}

void TestEndToEndShredding::reportLeavesNothingTicked()
{
    // Shredding leaves a fifo alone, so its folder stays, and its row with it.
    const QString stubborn = tree->makeFolder(QStringLiteral("stubborn"));
    const QString fifo = tree->makeFifo(QStringLiteral("stubborn/fifo"));
    const QString gone = tree->makeFile(QStringLiteral("gone"), 10);
    QVERIFY(openWith({stubborn, gone}));
    const QImage ticked = shredder->picture(mainwindow::rowTickBox(0));
    const QImage unticked = untick(0);
    shredder->click(mainwindow::rowTickBox(0));
    shredder->rest();
    QTRY_COMPARE_WITH_TIMEOUT(shredder->picture(mainwindow::rowTickBox(0)), ticked, patience);
    QVERIFY(runToItsReport());
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 1, patience);
    QCOMPARE(shredder->picture(mainwindow::rowTickBox(0)), unticked);
    QVERIFY(!entryExists(gone) && entryExists(fifo));
    QTRY_VERIFY_WITH_TIMEOUT(!shredder->hasChanged(mainwindow::crushButton), patience);
}

void TestEndToEndShredding::historyFileHoldsThreeLinesPerRemovedItem()
{
    const QString file = tree->makeFile(QStringLiteral("信件 一.txt"), 10);
    const QString folder = tree->makeFolder(QStringLiteral("folder"));
    tree->makeFile(QStringLiteral("folder/inner"), 10);
    QVERIFY(openWith({file, folder}));
    const QDateTime begin = QDateTime::fromSecsSinceEpoch(std::time(nullptr));
    QVERIFY(runToItsReport());
    const QDateTime end = QDateTime::currentDateTime();
    const QStringList lines = user->historyLines();
    const QVector<QPair<QString, QString>> items{{QStringLiteral("信件 一.txt"), tree->path()},
                                                 {QStringLiteral("inner"), folder},
                                                 {QStringLiteral("folder"), tree->path()}};
    QCOMPARE(lines.size(), 3 * items.size());
    for (int i = 0; i < items.size(); ++i) {
        const QDateTime time =
            QDateTime::fromString(lines.at(3 * i), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        QVERIFY2(begin <= time && time <= end, qPrintable(lines.at(3 * i)));
        QCOMPARE(lines.at(3 * i + 1), items.at(i).first);
        QCOMPARE(lines.at(3 * i + 2), items.at(i).second);
    }
}

void TestEndToEndShredding::stoppedRunLeavesTheRestAndCanBeRepeated()
{
    constexpr int many = 8000;
    constexpr int size = 8192;
    const QString folder = tree->makeFolder(QStringLiteral("folder"));
    for (int i = 0; i < many; ++i)
        tree->makeFile(QStringLiteral("folder/%1").arg(i), size);
    const auto left = [&] { return QDir(folder).entryList(QDir::Files).size(); };
    QVERIFY(openWith({folder}));
    QTRY_VERIFY_WITH_TIMEOUT(shredder->hasChanged(mainwindow::crushButton), patience);
    const QImage idle = shredder->picture(mainwindow::crushButton);

    QVERIFY(shredder->startShredding());
    QTRY_VERIFY_WITH_TIMEOUT(left() < many, patience);
    QVERIFY(!samePixels(shredder->picture(mainwindow::crushButton), idle));
    shredder->click(mainwindow::crushButton);
    shredder->rest();
    QTRY_COMPARE_WITH_TIMEOUT(shredder->picture(mainwindow::crushButton), idle, patience);

    // No report, the row is still there, and whatever was not reached is whole.
    QVERIFY(shredder->onlyMainWindowIsOpen());
    QCOMPARE(shredder->rowsShown(), 1);
    const int survivors = left();
    QVERIFY2(survivors > 0, "the run was over before it could be stopped");
    const QStringList spared = QDir(folder).entryList(QDir::Files);
    for (const QString &name : spared) {
        QCOMPARE(TemporaryTree::contentsOf(folder + QLatin1Char('/') + name),
                 QByteArray(size, 'x'));
    }
    QCOMPARE(user->historyLines().size(), 3 * (many - survivors));

    QVERIFY(runToItsReport());
    QVERIFY(!entryExists(folder));
    QCOMPARE(user->historyLines().size(), 3 * (many + 1));
}

QImage TestEndToEndShredding::untick(int row)
{
    const QRect box = mainwindow::rowTickBox(row);
    const QImage ticked = shredder->picture(box);
    shredder->click(box);
    shredder->rest();
    if (!eventually([&] { return !samePixels(shredder->picture(box), ticked); }))
        qWarning("row %d stays ticked", row);
    return shredder->picture(box);
}

bool TestEndToEndShredding::runToItsReport()
{
    return shredder->startShredding() && shredder->answerDialog(dialog::reportOk);
}

TEST_SUITE(shredding, TestEndToEndShredding)
#include "shredding.moc"
