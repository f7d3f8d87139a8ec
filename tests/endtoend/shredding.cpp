// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What a run does to files, seen from outside the program: a second hard link
// keeps the blocks of a removed file, and shows what was written over them.

#include "endtoendtest.h"
#include "expectedbytes.h"
#include "suites.h"

#include <QDateTime>
#include <QDir>
#include <QTest>

#include <ctime>

using namespace testsupport;

class TestEndToEndShredding : public EndToEndTest
{
    Q_OBJECT

private slots:
    void tickedFilesAreOverwrittenAndUntickedOnesSurvive();
    void folderGoesWithEverythingInItButNotWhatItsLinksName();
    void cancelledQuestionTouchesNothing();
    void historyFileHoldsThreeLinesPerRemovedItem();
    void stoppedRunLeavesTheRestAndCanBeRepeated();

private:
    bool runToItsReport();
};

void TestEndToEndShredding::tickedFilesAreOverwrittenAndUntickedOnesSurvive()
{
    // Blocks and a tail, a tail alone, and nothing to overwrite.
    const QString longFile = tree->makeFile(QStringLiteral("long"), 3 * 4096 + 17);
    const QString spared = tree->makeFile(QStringLiteral("spared"), 5000);
    const QString shortFile = tree->makeFile(QStringLiteral("short"), 100);
    const QString emptyFile = tree->makeFile(QStringLiteral("empty"), 0);
    const QString longBlocks = tree->makeHardLink(QStringLiteral("long-blocks"), longFile);
    const QString shortBlocks = tree->makeHardLink(QStringLiteral("short-blocks"), shortFile);
    QVERIFY(openWith({longFile, spared, shortFile, emptyFile}));
    const std::optional<QImage> unticked = shredder->untick(1);
    QVERIFY(unticked);
    const std::time_t begin = std::time(nullptr);
    QVERIFY(runToItsReport());
    const std::time_t end = std::time(nullptr);
    QVERIFY(!entryExists(longFile) && !entryExists(shortFile) && !entryExists(emptyFile));
    const QByteArray longNow = TemporaryTree::contentsOf(longBlocks);
    const QByteArray shortNow = TemporaryTree::contentsOf(shortBlocks);
    QCOMPARE(longNow.size(), 3 * 4096 + 17);
    QCOMPARE(shortNow.size(), 100);
    QVERIFY(wasOverwritten(longNow, begin, end) && wasOverwritten(shortNow, begin, end));
    QCOMPARE(TemporaryTree::contentsOf(spared), QByteArray(5000, 'x'));
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 1, patience);
    QCOMPARE(shredder->picture(mainwindow::rowTickBox(0)), *unticked);
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
    QVERIFY(shredder->untick(0));
    QVERIFY(shredder->onlyMainWindowIsOpen());
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray(5000, 'x'));
    QVERIFY(user->historyLines().isEmpty());
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
    QStringList namesAndFolders;
    const QStringList lines = user->historyLines();
    for (int i = 0; i < lines.size(); ++i) {
        const QDateTime time =
            QDateTime::fromString(lines.at(i), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        if (i % 3 != 0)
            namesAndFolders.append(lines.at(i));
        else
            QVERIFY2(begin <= time && time <= end, qPrintable(lines.at(i)));
    }
    QCOMPARE(namesAndFolders,
             QStringList({QStringLiteral("信件 一.txt"), tree->path(), QStringLiteral("inner"),
                          folder, QStringLiteral("folder"), tree->path()}));
}

void TestEndToEndShredding::stoppedRunLeavesTheRestAndCanBeRepeated()
{
    const QString folder = makeBusyFolder();
    const auto left = [&] { return QDir(folder).entryList(QDir::Files).size(); };
    QVERIFY(openWith({folder}));
    QTRY_VERIFY_WITH_TIMEOUT(shredder->hasChanged(mainwindow::crushButton), patience);
    const QImage idle = shredder->picture(mainwindow::crushButton);

    QVERIFY(shredder->startShredding());
    QTRY_VERIFY_WITH_TIMEOUT(left() < busyNames, patience);
    shredder->click(mainwindow::crushButton);
    shredder->rest();
    QTRY_COMPARE_WITH_TIMEOUT(shredder->picture(mainwindow::crushButton), idle, patience);

    // No report, the row is still there, and whatever was not reached is whole.
    QVERIFY(shredder->onlyMainWindowIsOpen());
    QCOMPARE(shredder->rowsShown(), 1);
    const int survivors = left();
    QVERIFY2(survivors > 0, "the run was over before it could be stopped");
    QVERIFY(spareFilesAreWhole());
    QCOMPARE(user->historyLines().size(), 3 * (busyNames - survivors));

    QVERIFY(runToItsReport());
    QVERIFY(!entryExists(folder));
    QCOMPARE(user->historyLines().size(), 3 * (busyNames + 1));
}

bool TestEndToEndShredding::runToItsReport()
{
    return shredder->startShredding() && shredder->answerDialog(dialog::reportOk);
}

TEST_SUITE(shredding, TestEndToEndShredding)
#include "shredding.moc"
