// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Runs that fail in part or follow one another, and what the user does to the rows
// between and during runs.

#include "dialogdriver.h"
#include "promptly.h"
#include "shownwindow.h"
#include "suites.h"
#include "temporarytree.h"
#include "widgets/zztablecell.h"
#include "windowtesthome.h"

#include <QTableWidget>
#include <QtTest>

#include <memory>

using testsupport::Answer;
using testsupport::DialogDriver;
using testsupport::entryExists;
using testsupport::ShownWindow;
using testsupport::TemporaryTree;

namespace
{

QString iconSheet(const char *image)
{
    return QStringLiteral("background-image:url(:/images/%1)").arg(QLatin1String(image));
}

} // namespace

class TestMainWindowRuns : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void failureBesidesSuccessIsReportedAsSuch();
    void failureAloneIsReportedAsSuch();
    void secondRunTellsItsOwnCount();
    void selectAllTicksAndUnticksEveryRow();
    void tickedRowsAreRemoved();
    void rowsCanBeAddedDuringARun();

private:
    void drop(const QStringList &paths);
    /// Presses the crush button, says OK to the question and to the report, and waits for that.
    void crush();
    QString makeBigFolder(int files);
    QString makeFailingFolder();

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<ShownWindow> window;
    std::unique_ptr<DialogDriver> dialogs;
};

void TestMainWindowRuns::init()
{
    tree = std::make_unique<TemporaryTree>();
    window = std::make_unique<ShownWindow>();
    dialogs = std::make_unique<DialogDriver>();
}

void TestMainWindowRuns::cleanup()
{
    dialogs.reset();
    window.reset();
    tree.reset();
}

void TestMainWindowRuns::drop(const QStringList &paths)
{
    const int before = window->table()->rowCount();
    window->drop(paths);
    QVERIFY(window->settle());
    QCOMPARE(window->rows().mid(before), paths);
}

void TestMainWindowRuns::crush()
{
    const int before = dialogs->seen().size();
    dialogs->next(Answer::Ok);
    dialogs->next(Answer::Ok);
    window->click("crushButton");
    PROMPTLY_COMPARE(dialogs->seen().size(), before + 2);
    PROMPTLY_VERIFY(dialogs->isDone());
}

QString TestMainWindowRuns::makeBigFolder(int files)
{
    for (int file = 0; file < files; ++file)
        tree->makeFile(QStringLiteral("big/%1").arg(file), 100);
    return tree->path(QStringLiteral("big"));
}

/// A fifo is nothing to overwrite, so its folder stays.
QString TestMainWindowRuns::makeFailingFolder()
{
    const QString folder = tree->makeFolder(QStringLiteral("failing"));
    tree->makeFifo(QStringLiteral("failing/fifo"));
    return folder;
}

void TestMainWindowRuns::failureBesidesSuccessIsReportedAsSuch()
{
    const QString failing = makeFailingFolder();
    const QString file = tree->makeFile(QStringLiteral("file"), 10);
    drop({failing, file});
    crush();
    QCOMPARE(dialogs->seen().last().text,
             QStringLiteral("本次文件粉碎任务已经结束\n1 个文件(文件夹)已被成功粉碎"
                            "\n1 个文件(文件夹)未能完成粉碎"));
    QCOMPARE(dialogs->seen().last().iconSheet, iconSheet("ico_war2"));
    QVERIFY(entryExists(failing));
    QVERIFY(!entryExists(file));
    QCOMPARE(window->rows(), QStringList(failing));
    QCOMPARE(window->tickedRows(), QStringList());
    QVERIFY(!window->isTicked("selectAllCheckBox"));
    QCOMPARE(window->textOf("subtitleLabel"), QStringLiteral("已成功粉碎1个文件（文件夹）"));
}

void TestMainWindowRuns::failureAloneIsReportedAsSuch()
{
    const QString failing = makeFailingFolder();
    drop({failing});
    crush();
    QCOMPARE(dialogs->seen().last().text,
             QStringLiteral("本次文件粉碎任务已经结束\n1 个文件(文件夹)未能完成粉碎"));
    QCOMPARE(dialogs->seen().last().iconSheet, iconSheet("ico_war"));
    QCOMPARE(window->tickedRows(), QStringList());
    QVERIFY(!window->isTicked("selectAllCheckBox"));
    QVERIFY(!window->cell(0)->findChild<QWidget *>(QStringLiteral("progressOverlay"))->isVisible());
    QCOMPARE(window->textOf("subtitleLabel"), QStringLiteral("已成功粉碎0个文件（文件夹）"));
}

void TestMainWindowRuns::secondRunTellsItsOwnCount()
{
    drop({tree->makeFile(QStringLiteral("a"), 1), tree->makeFile(QStringLiteral("b"), 1)});
    crush();
    QCOMPARE(window->textOf("subtitleLabel"), QStringLiteral("已成功粉碎2个文件（文件夹）"));
    drop({tree->makeFile(QStringLiteral("c"), 1)});
    QCOMPARE(window->textOf("subtitleLabel"), QStringLiteral("已成功粉碎2个文件（文件夹）"));
    crush();
    QCOMPARE(window->textOf("subtitleLabel"), QStringLiteral("已成功粉碎1个文件（文件夹）"));
}

void TestMainWindowRuns::selectAllTicksAndUnticksEveryRow()
{
    const QStringList paths = {tree->makeFile(QStringLiteral("a"), 1),
                               tree->makeFile(QStringLiteral("b"), 1)};
    drop(paths);
    window->click("selectAllCheckBox");
    QVERIFY(window->settle());
    QCOMPARE(window->tickedRows(), QStringList());
    QVERIFY(!window->isEnabled("crushButton"));
    QVERIFY(!window->isEnabled("removeButton"));
    window->clickRow(1);
    QVERIFY(window->settle());
    QVERIFY(!window->isTicked("selectAllCheckBox"));
    window->click("selectAllCheckBox");
    QVERIFY(window->settle());
    QCOMPARE(window->tickedRows(), paths);
    QVERIFY(window->isEnabled("crushButton"));
    QVERIFY(window->isEnabled("removeButton"));
}

void TestMainWindowRuns::tickedRowsAreRemoved()
{
    const QStringList paths = {tree->makeFile(QStringLiteral("a"), 1),
                               tree->makeFile(QStringLiteral("b"), 1),
                               tree->makeFile(QStringLiteral("c"), 1)};
    drop(paths);
    window->clickRow(1);
    QVERIFY(window->settle());
    window->click("removeButton");
    QVERIFY(window->settle());
    QCOMPARE(window->rows(), QStringList(paths.at(1)));
    QCOMPARE(window->tickedRows(), QStringList());
    QVERIFY(!window->isEnabled("removeButton"));
    for (const QString &path : paths)
        QVERIFY(entryExists(path));
    window->clickRow(0);
    QVERIFY(window->settle());
    window->click("removeButton");
    QVERIFY(window->settle());
    QCOMPARE(window->rows(), QStringList());
    QVERIFY(!window->isEnabled("selectAllCheckBox"));
}

void TestMainWindowRuns::rowsCanBeAddedDuringARun()
{
    constexpr int manyFiles = 500;
    const QString folder = makeBigFolder(manyFiles);
    const QString added = tree->makeFile(QStringLiteral("added"), 1);
    drop({folder});
    dialogs->next(Answer::Ok);
    dialogs->next(Answer::Ok);
    window->click("crushButton");
    PROMPTLY_COMPARE(window->textOf("crushButton"), QStringLiteral("停止粉碎"));
    window->drop({added});
    PROMPTLY_COMPARE(dialogs->seen().size(), 2);
    PROMPTLY_VERIFY(dialogs->isDone());
    QVERIFY(!entryExists(folder));
    QVERIFY(!entryExists(added));
    QCOMPARE(window->textOf("subtitleLabel"), QStringLiteral("已成功粉碎2个文件（文件夹）"));
}

TEST_SUITE(runs, TestMainWindowRuns)
#include "runs.moc"
