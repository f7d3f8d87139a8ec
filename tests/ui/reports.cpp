// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The two reports on screen: their words, icon, button and place, and that a
// result leaves nothing ticked.

#include "dialogdriver.h"
#include "promptly.h"
#include "shownwindow.h"
#include "suites.h"
#include "temporarytree.h"
#include "windowtesthome.h"

#include <QtTest>

using testsupport::Answer;
using testsupport::DialogDriver;
using testsupport::SeenDialog;
using testsupport::ShownWindow;
using testsupport::TemporaryTree;

namespace
{

QString iconSheet(const char *image)
{
    return QStringLiteral("background-image:url(:/images/%1)").arg(QLatin1String(image));
}

QString rejectionHeader()
{
    return QStringLiteral("您添加的部分文件或目录由于以下原因无法被添加到文件粉碎机中：");
}

QString resultHeader()
{
    return QStringLiteral("本次文件粉碎任务已经结束");
}

} // namespace

class TestMainWindowReports : public QObject
{
    Q_OBJECT

private slots:
    void oneReasonHasNoNumber();
    void threeReasonsAreNumbered();
    void unknownReasonShowsTheHeaderAlone();
    void successesAloneShowTheSuccessIcon();
    void successesAndFailuresShowTheMixedIcon();
    void failuresAloneShowTheWarningIcon();
    void nothingDoneShowsTheHeaderAndTheWarningIcon();
    void reportsEndHoweverTheyAreClosed_data();
    void reportsEndHoweverTheyAreClosed();
    void nothingIsTickedAfterAResult_data();
    void nothingIsTickedAfterAResult();
    void nothingIsTickedWhileTheResultIsShown();
    void resultUnticksTheListBeforeItIsClosed();
    void rowOnItsWayWhenTheResultComesIsUntickedToo();

private:
    /// What the window shows for these reasons; it must have an OK button only and stand in the
    /// middle of the window.
    SeenDialog rejection(uint reasons);
    SeenDialog result(uint succeeded, uint failed);
};

namespace
{

/// The one dialog that @p report shows over @p window.
template <class Report>
SeenDialog onlyDialog(ShownWindow &window, Report report)
{
    DialogDriver dialogs;
    dialogs.next(Answer::Ok);
    report();
    if (dialogs.seen().size() != 1 || !dialogs.isDone())
        return {};
    SeenDialog seen = dialogs.seen().first();
    if (seen.buttons != QStringList(QStringLiteral("确定"))
        || seen.place != QRect(window->pos() + QPoint(190, 160), QSize(420, 230)))
        seen.text = QStringLiteral("other buttons or another place");
    return seen;
}

} // namespace

SeenDialog TestMainWindowReports::rejection(uint reasons)
{
    ShownWindow window;
    return onlyDialog(window, [&] { window->alertDialogEva(reasons); });
}

SeenDialog TestMainWindowReports::result(uint succeeded, uint failed)
{
    ShownWindow window;
    return onlyDialog(window, [&] { window->showResultDialogEva(1, succeeded, failed); });
}

void TestMainWindowReports::oneReasonHasNoNumber()
{
    const SeenDialog seen = rejection(0x01);
    QCOMPARE(seen.text, rejectionHeader() + QStringLiteral("\n文件或目录不存在"));
    QCOMPARE(seen.iconSheet, iconSheet("ico_war"));
}

void TestMainWindowReports::threeReasonsAreNumbered()
{
    const SeenDialog seen = rejection(0x01 | 0x10 | 0x20);
    QCOMPARE(seen.text,
             rejectionHeader()
                 + QStringLiteral("\n1.文件或目录不存在"
                                  "\n2.已经超出文件粉碎机的单次处理上限(200个)\n3.属于系统目录"));
    QCOMPARE(seen.iconSheet, iconSheet("ico_war"));
}

void TestMainWindowReports::unknownReasonShowsTheHeaderAlone()
{
    const SeenDialog seen = rejection(0x40);
    QCOMPARE(seen.text, rejectionHeader());
    QCOMPARE(seen.iconSheet, iconSheet("ico_war"));
}

void TestMainWindowReports::successesAloneShowTheSuccessIcon()
{
    const SeenDialog seen = result(3, 0);
    QCOMPARE(seen.text, resultHeader() + QStringLiteral("\n3 个文件(文件夹)已被成功粉碎"));
    QCOMPARE(seen.iconSheet, iconSheet("ico_ok"));
}

void TestMainWindowReports::successesAndFailuresShowTheMixedIcon()
{
    const SeenDialog seen = result(2, 1);
    QCOMPARE(seen.text, resultHeader()
                            + QStringLiteral("\n2 个文件(文件夹)已被成功粉碎"
                                             "\n1 个文件(文件夹)未能完成粉碎"));
    QCOMPARE(seen.iconSheet, iconSheet("ico_war2"));
}

void TestMainWindowReports::failuresAloneShowTheWarningIcon()
{
    const SeenDialog seen = result(0, 2);
    QCOMPARE(seen.text, resultHeader() + QStringLiteral("\n2 个文件(文件夹)未能完成粉碎"));
    QCOMPARE(seen.iconSheet, iconSheet("ico_war"));
}

void TestMainWindowReports::nothingDoneShowsTheHeaderAndTheWarningIcon()
{
    const SeenDialog seen = result(0, 0);
    QCOMPARE(seen.text, resultHeader());
    QCOMPARE(seen.iconSheet, iconSheet("ico_war"));
}

void TestMainWindowReports::reportsEndHoweverTheyAreClosed_data()
{
    QTest::addColumn<int>("answer");
    QTest::newRow("ok") << static_cast<int>(Answer::Ok);
    QTest::newRow("close") << static_cast<int>(Answer::Close);
    QTest::newRow("escape") << static_cast<int>(Answer::Escape);
}

void TestMainWindowReports::reportsEndHoweverTheyAreClosed()
{
    QFETCH(int, answer);
    ShownWindow window;
    DialogDriver dialogs;
    dialogs.next(static_cast<Answer>(answer));
    dialogs.next(static_cast<Answer>(answer));
    window->alertDialogEva(0x08);
    window->showResultDialogEva(1, 1, 0);
    QVERIFY(dialogs.isDone());
    QCOMPARE(dialogs.seen().size(), 2);
}

void TestMainWindowReports::nothingIsTickedAfterAResult_data()
{
    QTest::addColumn<uint>("succeeded");
    QTest::addColumn<uint>("failed");
    QTest::newRow("nothing") << 0U << 0U;
    QTest::newRow("successes") << 2U << 0U;
    QTest::newRow("failures") << 0U << 2U;
    QTest::newRow("both") << 1U << 1U;
}

void TestMainWindowReports::nothingIsTickedAfterAResult()
{
    QFETCH(uint, succeeded);
    QFETCH(uint, failed);
    const TemporaryTree tree;
    ShownWindow window;
    window.drop({tree.makeFile(QStringLiteral("a"), 1), tree.makeFile(QStringLiteral("b"), 1)});
    PROMPTLY_VERIFY(window.isTicked("selectAllCheckBox"));
    QCOMPARE(window.tickedRows().size(), 2);
    DialogDriver dialogs;
    dialogs.next(Answer::Ok);
    window->showResultDialogEva(1, succeeded, failed);
    QCOMPARE(window.tickedRows(), QStringList());
    QVERIFY(!window.isTicked("selectAllCheckBox"));
}

void TestMainWindowReports::nothingIsTickedWhileTheResultIsShown()
{
    ShownWindow window;
    window->addRowToMainTableEva(QStringLiteral("/a"));
    window->setSelectAllCheckBoxStateEva(true);
    DialogDriver dialogs;
    QStringList ticked(QStringLiteral("not looked at"));
    bool allTicked = true;
    dialogs.next([&](QDialog &report) {
        ticked = window.tickedRows();
        allTicked = window.isTicked("selectAllCheckBox");
        DialogDriver::press(report, Answer::Ok);
    });
    window->showResultDialogEva(1, 1, 0);
    QCOMPARE(ticked, QStringList());
    QVERIFY(!allTicked);
}

/// What is shown as unticked is not shredded by the next run, nor removed.
void TestMainWindowReports::resultUnticksTheListBeforeItIsClosed()
{
    const TemporaryTree tree;
    const QStringList files = {tree.makeFile(QStringLiteral("a"), 1),
                               tree.makeFile(QStringLiteral("b"), 1)};
    ShownWindow window;
    window.drop(files);
    QVERIFY(window.settle());
    QVERIFY(window.isEnabled("removeButton"));
    DialogDriver dialogs;
    dialogs.next([&](QDialog &report) {
        PROMPTLY_VERIFY(!window.isEnabled("removeButton"));
        DialogDriver::press(report, Answer::Ok);
    });
    window->showResultDialogEva(1, 1, 0);
    QVERIFY(window.settle());
    QVERIFY(!window.isEnabled("crushButton"));
    QVERIFY(!window.isEnabled("removeButton"));
    // A click ticks the row, in the list as well.
    window.clickRow(1);
    QVERIFY(window.settle());
    window.click("removeButton");
    QVERIFY(window.settle());
    QCOMPARE(window.rows(), QStringList(files.first()));
}

void TestMainWindowReports::rowOnItsWayWhenTheResultComesIsUntickedToo()
{
    const TemporaryTree tree;
    const QString file = tree.makeFile(QStringLiteral("late"), 1);
    ShownWindow window;
    DialogDriver dialogs;
    dialogs.next(Answer::Ok);
    window.drop({file});
    window->showResultDialogEva(1, 1, 0);
    QVERIFY(window.settle());
    QCOMPARE(window.rows(), QStringList(file));
    QCOMPARE(window.tickedRows(), QStringList());
    QVERIFY(!window.isEnabled("crushButton"));
    window.clickRow(0);
    QVERIFY(window.settle());
    QCOMPARE(window.tickedRows(), QStringList(file));
}

TEST_SUITE(reports, TestMainWindowReports)
#include "reports.moc"
