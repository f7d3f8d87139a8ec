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
    void folderGoesWithEverythingInItButNotWhatItsLinksName();
    void cancelledQuestionTouchesNothing();
    void historyFileHoldsThreeLinesPerRemovedItem();
    void stoppedRunLeavesTheRestAndCanBeRepeated();
};

void TestEndToEndShredding::folderGoesWithEverythingInItButNotWhatItsLinksName()
{
    const QString folder = tree->path("folder");
    const QString inner = tree->makeFile("folder/deep/deeper/inner", 5000);
    const QString innerBlocks = tree->makeHardLink("inner-blocks", inner);
    const QString target = tree->makeFile("target", 5000);
    const QString behindLink = tree->makeFile("target-folder/file", 10);
    tree->makeLink("folder/to-file", target);
    tree->makeLink("folder/to-folder", tree->path("target-folder"));
    tree->makeLink("folder/to-nothing", tree->path("nothing"));
    QVERIFY(openWith({folder}));
    const std::time_t begin = std::time(nullptr);
    QVERIFY(runToItsReport());
    QVERIFY(!entryExists(folder));
    QVERIFY(wasOverwritten(TemporaryTree::contentsOf(innerBlocks), begin, std::time(nullptr)));
    QVERIFY(isAsMade(target, 5000) && isAsMade(behindLink, 10));
}

void TestEndToEndShredding::cancelledQuestionTouchesNothing()
{
    const QString file = tree->makeFile("file", 5000);
    QVERIFY(openWith({file}));
    for (const QRect &no : {dialog::questionCancel, dialog::closeButton}) {
        QVERIFY(shredder->askToShred());
        QVERIFY(shredder->answerDialog(no));
    }
    QVERIFY(shredder->askToShred());
    QVERIFY(escape());
    // Requests are served in order: once the tick is gone, a run asked for before
    // it would have started.
    QVERIFY(shredder->untick(0));
    QVERIFY(shredder->onlyMainWindowIsOpen());
    QVERIFY(isAsMade(file, 5000));
    QVERIFY(user->historyLines().isEmpty());
}

void TestEndToEndShredding::historyFileHoldsThreeLinesPerRemovedItem()
{
    const QString file = tree->makeFile("信件 一.txt", 10);
    tree->makeFile("folder/inner", 10);
    const QString folder = tree->path("folder");
    QVERIFY(openWith({file, folder}));
    const QDateTime begin = QDateTime::fromSecsSinceEpoch(std::time(nullptr));
    QVERIFY(runToItsReport());
    const QDateTime end = QDateTime::currentDateTime();
    QStringList namesAndFolders;
    const QStringList lines = user->historyLines();
    for (int i = 0; i < lines.size(); ++i) {
        const QDateTime time = QDateTime::fromString(lines.at(i), "yyyy-MM-dd HH:mm:ss"_s);
        if (i % 3 != 0)
            namesAndFolders.append(lines.at(i));
        else
            QVERIFY2(begin <= time && time <= end, qPrintable(lines.at(i)));
    }
    QCOMPARE(namesAndFolders, QStringList({"信件 一.txt"_s, tree->path(), "inner"_s, folder,
                                           "folder"_s, tree->path()}));
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
    QTRY_COMPARE_WITH_TIMEOUT(shredder->picture(mainwindow::crushButton), idle, patience);

    // No report, the row is still there, and whatever was not reached is whole.
    QVERIFY(shredder->onlyMainWindowIsOpen());
    QCOMPARE(shredder->rowsShown(), 1);
    const int survivors = left();
    QVERIFY2(survivors > 0, "the run was over before it could be stopped");
    const QStringList spared = QDir(folder).entryList({"own-*"_s}, QDir::Files);
    for (const QString &name : spared)
        QVERIFY2(isAsMade(tree->path("folder/"_s + name), 8192), qPrintable(name));
    QCOMPARE(user->historyLines().size(), 3 * (busyNames - survivors));

    QVERIFY(runToItsReport());
    QVERIFY(!entryExists(folder));
    QCOMPARE(user->historyLines().size(), 3 * (busyNames + 1));
}

TEST_SUITE(shredding, TestEndToEndShredding)
#include "shredding.moc"
