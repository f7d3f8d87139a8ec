// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Whole runs, from dropping real files to reading the result.

#include "suites.h"
#include "windowtest.h"

#include <QtTest>

#include <algorithm>

using namespace testsupport;

class TestRun : public WindowTest
{
    Q_OBJECT

private slots:
    void confirmedFilesAndFoldersAreGone();
    void untickedRowsAreSpared();
    void failureIsReportedBesidesSuccess();
    void rowsCanBeAddedDuringARun();
    void stopBetweenFilesTellsTheUserWhatIsGone();
};

void TestRun::confirmedFilesAndFoldersAreGone()
{
    const QString kept = tree->makeFile("kept", 10);
    tree->makeFile("folder/inner/file", 5000);
    const QStringList paths = {tree->makeFile("一 百%.txt", 10000),
                               tree->makeFile("<b>x</b>", 0),
                               tree->makeFile("two\nlines", 10),
                               tree->makeFile("🗑️", 10),
                               tree->makeFile(QString(200, QLatin1Char('w')), 10),
                               tree->makeLink("link", kept),
                               tree->path("folder")};
    drop(paths);
    QVERIFY(!find("emptyPanel")->isVisible());
    QVERIFY(isTicked("selectAllCheckBox"));
    crush();
    QCOMPARE(rows(), QStringList());
    for (const QString &path : paths)
        QVERIFY2(!entryExists(path), qPrintable(path));
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray(10, 'x'));
    QCOMPARE(textOf("subtitleLabel"), headerText(7));
    QCOMPARE(reports(),
             QStringList(QStringLiteral("本次文件粉碎任务已经结束\n7 个文件(文件夹)已被成功粉碎")));
    QCOMPARE(textOf("crushButton"), idleText());
    for (const char *name : {"crushButton", "removeButton", "selectAllCheckBox"})
        QVERIFY2(!isEnabled(name), name);
    QVERIFY(!isTicked("selectAllCheckBox"));
    QVERIFY(!find("successPanel")->isVisible());
}

void TestRun::untickedRowsAreSpared()
{
    const QStringList files = dropFiles(3);
    clickTickBox(1);
    settle();
    crush();
    QCOMPARE(rows(), files.mid(1, 1));
    QCOMPARE(tickedRows(), QStringList());
    QVERIFY(!entryExists(files.at(0)));
    QCOMPARE(TemporaryTree::contentsOf(files.at(1)), QByteArray(10, 'x'));
    QVERIFY(!entryExists(files.at(2)));
    QCOMPARE(textOf("subtitleLabel"), headerText(2));
    // What is left can be ticked and goes with the next run, which tells its own count.
    pressRow(0);
    QVERIFY(isEnabled("crushButton"));
    crush();
    QVERIFY(!entryExists(files.at(1)));
    QCOMPARE(textOf("subtitleLabel"), headerText(1));
}

void TestRun::failureIsReportedBesidesSuccess()
{
    const QString failing = tree->makeFolder("failing");
    tree->makeFifo("failing/fifo");
    const QString file = makeFiles(1).constFirst();
    drop({failing, file});
    crush();
    QCOMPARE(reports(), QStringList(QStringLiteral("本次文件粉碎任务已经结束\n"
                                                   "1 个文件(文件夹)已被成功粉碎\n"
                                                   "1 个文件(文件夹)未能完成粉碎")));
    QVERIFY(entryExists(failing));
    QVERIFY(!entryExists(file));
    QCOMPARE(rows(), QStringList(failing));
    QCOMPARE(tickedRows(), QStringList());
    QVERIFY(!isTicked("selectAllCheckBox"));
    QVERIFY(!overlayOf(0)->isVisible());
    QCOMPARE(textOf("subtitleLabel"), headerText(1));
}

void TestRun::rowsCanBeAddedDuringARun()
{
    const QString folder = tree->path("folder");
    for (int file = 0; file < 500; ++file)
        tree->makeFile(QStringLiteral("folder/%1").arg(file), 100);
    const QString added = makeFiles(1).constFirst();
    drop({folder});
    beginCrush();
    PROMPTLY_COMPARE(textOf("crushButton"), runningText());
    letGo({added});
    PROMPTLY_COMPARE(dialogs->seen().size(), 2);
    PROMPTLY_VERIFY(dialogs->isDone());
    QVERIFY(!entryExists(folder));
    QVERIFY(!entryExists(added));
    QCOMPARE(textOf("subtitleLabel"), headerText(2));
}

void TestRun::stopBetweenFilesTellsTheUserWhatIsGone()
{
    constexpr int manyFiles = 100;
    const QStringList files = dropFiles(manyFiles);
    beginCrush();
    PROMPTLY_VERIFY(rows().size() < manyFiles);
    QCOMPARE(textOf("crushButton"), runningText());
    click("crushButton");
    PROMPTLY_COMPARE(dialogs->seen().size(), 2);
    PROMPTLY_VERIFY(dialogs->isDone());
    settle();
    settle(); // the report kept "uncheck all" from being performed
    QCOMPARE(textOf("crushButton"), idleText());
    const int gone = manyFiles - rows().size();
    QVERIFY(gone > 0 && gone < manyFiles);
    QVERIFY(reports().constLast().endsWith(
        QStringLiteral("\n%1 个文件(文件夹)已被成功粉碎").arg(gone)));
    QCOMPARE(textOf("subtitleLabel"), headerText(gone));
    QCOMPARE(int(std::count_if(files.cbegin(), files.cend(), entryExists)), rows().size());
    QCOMPARE(tickedRows(), QStringList());
    QVERIFY(!isEnabled("crushButton"));
}

TEST_SUITE(run, TestRun)
#include "run.moc"
