// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Whole runs, from dropping real files to reading the result.

#include "suites.h"
#include "widgets/zztablecell.h"
#include "windowtest.h"

#include <QDir>
#include <QTableWidget>
#include <QtTest>

#include <algorithm>

using testsupport::Answer;
using testsupport::entryExists;
using testsupport::idleText;
using testsupport::runningText;
using testsupport::TemporaryTree;
using testsupport::WindowTest;

namespace
{

/// The widths that the darkening of a row takes, one after the other.
class DarkeningWatch : public QObject
{
public:
    explicit DarkeningWatch(QWidget *overlay) { overlay->installEventFilter(this); }

    QList<int> widths;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Resize)
            widths.append(qobject_cast<QWidget *>(watched)->width());
        return QObject::eventFilter(watched, event);
    }
};

QString header(int count)
{
    return QStringLiteral("已成功粉碎%1个文件（文件夹）").arg(count);
}

} // namespace

class TestRun : public WindowTest
{
    Q_OBJECT

private slots:
    void confirmedFilesAndFoldersAreGone();
    void untickedRowsAreSpared();
    void failureIsReportedAsSuch_data();
    void failureIsReportedAsSuch();
    void secondRunTellsItsOwnCount();
    void rowDarkensFromTheLeft();
    void rowsCanBeAddedDuringARun();
    void stoppedFolderKeepsItsRow();
    void stopBetweenFilesTellsTheUserWhatIsGone();
};

void TestRun::confirmedFilesAndFoldersAreGone()
{
    const QString kept = tree->makeFile(QStringLiteral("kept"), 10);
    tree->makeFile(QStringLiteral("folder/inner/file"), 5000);
    const QStringList paths = {tree->makeFile(QStringLiteral("一 百%.txt"), 10000),
                               tree->makeFile(QStringLiteral("<b>x</b>"), 0),
                               tree->makeFile(QStringLiteral("two\nlines"), 10),
                               tree->makeFile(QStringLiteral("🗑️"), 10),
                               tree->makeFile(QString(200, QLatin1Char('w')), 10),
                               tree->makeLink(QStringLiteral("link"), kept),
                               tree->path(QStringLiteral("folder"))};
    drop(paths);
    QVERIFY(!window->find("emptyPanel")->isVisible());
    QVERIFY(window->isTicked("selectAllCheckBox"));
    crush();
    QCOMPARE(window->rows(), QStringList());
    for (const QString &path : paths)
        QVERIFY2(!entryExists(path), qPrintable(path));
    QCOMPARE(TemporaryTree::contentsOf(kept), QByteArray(10, 'x'));
    QCOMPARE(window->textOf("subtitleLabel"), header(7));
    QCOMPARE(dialogs->seen().last().text,
             QStringLiteral("本次文件粉碎任务已经结束\n7 个文件(文件夹)已被成功粉碎"));
    QCOMPARE(window->textOf("crushButton"), idleText());
    for (const char *name : {"crushButton", "removeButton", "selectAllCheckBox"})
        QVERIFY2(!window->isEnabled(name), name);
    QVERIFY(!window->isTicked("selectAllCheckBox"));
    QVERIFY(!window->find("successPanel")->isVisible());
}

void TestRun::untickedRowsAreSpared()
{
    const QStringList files = dropFiles(3);
    window->clickTickBox(1);
    settle();
    crush();
    QCOMPARE(window->rows(), files.mid(1, 1));
    QCOMPARE(window->tickedRows(), QStringList());
    QVERIFY(!entryExists(files.at(0)));
    QCOMPARE(TemporaryTree::contentsOf(files.at(1)), QByteArray(10, 'x'));
    QVERIFY(!entryExists(files.at(2)));
    // What is left can be ticked and goes with the next run.
    pressRow(0);
    QVERIFY(window->isEnabled("crushButton"));
    crush();
    QVERIFY(!entryExists(files.at(1)));
}

void TestRun::failureIsReportedAsSuch_data()
{
    QTest::addColumn<int>("succeeding");
    QTest::addColumn<QString>("report");
    const auto text = QStringLiteral("本次文件粉碎任务已经结束%1\n1 个文件(文件夹)未能完成粉碎");
    QTest::newRow("alone") << 0 << text.arg(QString());
    QTest::newRow("besides success")
        << 1 << text.arg(QStringLiteral("\n1 个文件(文件夹)已被成功粉碎"));
}

void TestRun::failureIsReportedAsSuch()
{
    QFETCH(int, succeeding);
    const QString failing = makeFailingFolder();
    const QStringList files = makeFiles(succeeding);
    drop(QStringList(failing) + files);
    crush();
    QTEST(dialogs->seen().last().text, "report");
    QVERIFY(entryExists(failing));
    for (const QString &file : files)
        QVERIFY(!entryExists(file));
    QCOMPARE(window->rows(), QStringList(failing));
    QCOMPARE(window->tickedRows(), QStringList());
    QVERIFY(!window->isTicked("selectAllCheckBox"));
    QVERIFY(!overlayOf(0)->isVisible());
    QCOMPARE(window->textOf("subtitleLabel"), header(succeeding));
}

void TestRun::secondRunTellsItsOwnCount()
{
    dropFiles(2);
    crush();
    QCOMPARE(window->textOf("subtitleLabel"), header(2));
    dropFiles(1);
    QCOMPARE(window->textOf("subtitleLabel"), header(2));
    crush();
    QCOMPARE(window->textOf("subtitleLabel"), header(1));
}

void TestRun::rowDarkensFromTheLeft()
{
    constexpr int tenMegabytes = 10000000;
    drop({tree->makeFile(QStringLiteral("big"), tenMegabytes)});
    // Once for nothing, so that only what the run does is seen.
    mainWindow->setTableRowHeightEva(0, 1);
    mainWindow->setTableRowHeightEva(0, 0);
    DarkeningWatch watch(overlayOf(0));
    crush();
    // The last report is always of 99 percent; the rest is told by the row's going.
    QVERIFY(watch.widths.size() > 1);
    QCOMPARE(watch.widths.takeLast(), 776 * 99 / 100);
    QVERIFY(std::is_sorted(watch.widths.cbegin(), watch.widths.cend()));
}

void TestRun::rowsCanBeAddedDuringARun()
{
    const QString folder = makeBigFolder(500);
    const QString added = makeFiles(1).first();
    drop({folder});
    dialogs->next(Answer::Ok);
    dialogs->next(Answer::Ok);
    window->click("crushButton");
    PROMPTLY_COMPARE(window->textOf("crushButton"), runningText());
    window->drop({added});
    PROMPTLY_COMPARE(dialogs->seen().size(), 2);
    PROMPTLY_VERIFY(dialogs->isDone());
    QVERIFY(!entryExists(folder));
    QVERIFY(!entryExists(added));
    QCOMPARE(window->textOf("subtitleLabel"), header(2));
}

void TestRun::stoppedFolderKeepsItsRow()
{
    constexpr int manyFiles = 3000;
    const QString folder = makeBigFolder(manyFiles);
    drop({folder});
    dialogs->next(Answer::Ok);
    window->click("crushButton");
    PROMPTLY_COMPARE(window->textOf("crushButton"), runningText());
    QVERIFY(!window->isEnabled("removeButton"));
    QVERIFY(window->isEnabled("addButton"));
    // What the worker has not begun is taken back, and that ends in a report.
    PROMPTLY_VERIFY(static_cast<int>(QDir(folder).count()) < manyFiles);
    window->click("crushButton");
    PROMPTLY_COMPARE(window->textOf("crushButton"), idleText());
    settle();
    QCOMPARE(window->rows(), QStringList(folder));
    QVERIFY(!QDir(folder).isEmpty());
    QCOMPARE(reports(), QStringList());
    QVERIFY(window->isEnabled("selectAllCheckBox"));
}

void TestRun::stopBetweenFilesTellsTheUserWhatIsGone()
{
    constexpr int manyFiles = 100;
    const QStringList files = dropFiles(manyFiles);
    dialogs->next(Answer::Ok);
    dialogs->next(Answer::Ok);
    window->click("crushButton");
    PROMPTLY_VERIFY(window->rows().size() < manyFiles);
    QCOMPARE(window->textOf("crushButton"), runningText());
    window->click("crushButton");
    PROMPTLY_COMPARE(dialogs->seen().size(), 2);
    PROMPTLY_VERIFY(dialogs->isDone());
    settle();
    settle(); // the report kept "uncheck all" from being performed
    QCOMPARE(window->textOf("crushButton"), idleText());
    const int gone = manyFiles - window->rows().size();
    QVERIFY(gone > 0 && gone < manyFiles);
    QCOMPARE(dialogs->seen().last().text,
             QStringLiteral("本次文件粉碎任务已经结束\n%1 个文件(文件夹)已被成功粉碎").arg(gone));
    QCOMPARE(window->textOf("subtitleLabel"), header(gone));
    QCOMPARE(int(std::count_if(files.cbegin(), files.cend(),
                               [](const QString &file) { return !entryExists(file); })),
             gone);
    QCOMPARE(window->tickedRows(), QStringList());
    QVERIFY(!window->isEnabled("crushButton"));
}

TEST_SUITE(run, TestRun)
#include "run.moc"
