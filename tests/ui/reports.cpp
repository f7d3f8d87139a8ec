// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The two reports: their words, icon, button and place, and that a result leaves nothing ticked.

#include "suites.h"
#include "widgets/stylesheets.h"
#include "windowtest.h"

#include <QtTest>

using namespace testsupport;

class TestReports : public WindowTest
{
    Q_OBJECT

private slots:
    void refusalListsReasonsInOrder_data();
    void refusalListsReasonsInOrder();
    void resultNamesTheCountsThatAreNotZero_data();
    void resultNamesTheCountsThatAreNotZero();
    void nothingIsTickedWhileAResultIsShownOrAfterIt();
    void resultUnticksTheListBeforeItIsClosed();
    void rowOnItsWayWhenTheResultComesIsUntickedToo();

private:
    void checkOnlyReport(const char *header, const QString &lines, const QString &icon) const;
};

/// The one dialog so far had an OK button only and stood in the middle of the window.
void TestReports::checkOnlyReport(const char *header, const QString &lines,
                                  const QString &icon) const
{
    QCOMPARE(dialogs->seen().size(), 1);
    const SeenDialog &seen = dialogs->seen().first();
    QCOMPARE(seen.text.section(QLatin1Char('\n'), 0, 0), QString::fromUtf8(header));
    QCOMPARE(seen.text.section(QLatin1Char('\n'), 1), lines);
    QCOMPARE(seen.iconSheet, stylesheets::backgroundImage(icon));
    QCOMPARE(seen.buttons, QStringList(QStringLiteral("确定")));
    QCOMPARE(seen.place, QRect(window->pos() + QPoint(190, 160), QSize(420, 230)));
}

void TestReports::refusalListsReasonsInOrder_data()
{
    QTest::addColumn<uint>("reasons");
    QTest::addColumn<QString>("lines");
    QTest::newRow("none: the header alone") << 0U << "";
    QTest::newRow("one has no number") << 0x01U << "文件或目录不存在";
    QTest::newRow("two") << 0x06U << "1.不能确定文件或目录的类型\n2.文件或目录没有读写权限";
    QTest::newRow("three are numbered")
        << 0x31U << "1.文件或目录不存在\n2.已经超出文件粉碎机的单次处理上限(200个)\n3.属于系统目录";
    QTest::newRow("all")
        << 0x3fU
        << "1.文件或目录不存在\n2.不能确定文件或目录的类型\n3.文件或目录没有读写权限\n"
           "4.重复添加文件或目录\n5.已经超出文件粉碎机的单次处理上限(200个)\n6.属于系统目录";
    QTest::newRow("an unknown one: the header alone") << 0x40U << "";
    QTest::newRow("unknown reasons beside one") << 0xffffffc8U << "重复添加文件或目录";
}

void TestReports::refusalListsReasonsInOrder()
{
    QFETCH(uint, reasons);
    QFETCH(QString, lines);
    dialogs->next(Answer::Ok);
    window->alertDialogEva(reasons);
    checkOnlyReport("您添加的部分文件或目录由于以下原因无法被添加到文件粉碎机中：", lines,
                    QStringLiteral("ico_war"));
}

void TestReports::resultNamesTheCountsThatAreNotZero_data()
{
    QTest::addColumn<uint>("succeeded");
    QTest::addColumn<uint>("failed");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QString>("lines");
    const auto row = [](const char *name, uint succeeded, uint failed, const char *icon,
                        const char *lines = "") {
        QTest::newRow(name) << succeeded << failed << icon << lines;
    };
    row("success", 3, 0, "ico_ok", "3 个文件(文件夹)已被成功粉碎");
    row("both", 2, 1, "ico_war2", "2 个文件(文件夹)已被成功粉碎\n1 个文件(文件夹)未能完成粉碎");
    row("failure", 0, 4, "ico_war", "4 个文件(文件夹)未能完成粉碎");
    row("nothing: the header alone", 0, 0, "ico_war");
    row("most", 2147483647, 200, "ico_war2",
        "2147483647 个文件(文件夹)已被成功粉碎\n200 个文件(文件夹)未能完成粉碎");
}

void TestReports::resultNamesTheCountsThatAreNotZero()
{
    QFETCH(uint, succeeded);
    QFETCH(uint, failed);
    QFETCH(QString, icon);
    QFETCH(QString, lines);
    dialogs->next(Answer::Ok);
    window->showResultDialogEva(1, succeeded, failed);
    checkOnlyReport("本次文件粉碎任务已经结束", lines, icon);
}

void TestReports::nothingIsTickedWhileAResultIsShownOrAfterIt()
{
    const QStringList files = dropFiles(2);
    const auto isAnythingTicked = [this] {
        return !tickedRows().isEmpty() || isTicked("selectAllCheckBox");
    };
    for (const uint succeeded : {0U, 2U}) {
        for (const uint failed : {0U, 2U}) {
            window->selectAllEva(true);
            settle();
            QCOMPARE(tickedRows(), files);
            bool tickedMeanwhile = true;
            dialogs->next(Answer::Ok, [&](QDialog &) { tickedMeanwhile = isAnythingTicked(); });
            window->showResultDialogEva(1, succeeded, failed);
            QVERIFY(!tickedMeanwhile);
            QVERIFY(!isAnythingTicked());
        }
    }
}

/// What is shown as unticked is not shredded by the next run, nor removed.
void TestReports::resultUnticksTheListBeforeItIsClosed()
{
    const QStringList files = dropFiles(2);
    QVERIFY(isEnabled("removeButton"));
    dialogs->next(Answer::Ok, [&](QDialog &) { PROMPTLY_VERIFY(!isEnabled("removeButton")); });
    window->showResultDialogEva(1, 1, 0);
    settle();
    QVERIFY(!isEnabled("crushButton"));
    QVERIFY(!isEnabled("removeButton"));
    // A click ticks the row, in the list as well.
    pressRow(1);
    press("removeButton");
    QCOMPARE(rows(), files.mid(0, 1));
}

void TestReports::rowOnItsWayWhenTheResultComesIsUntickedToo()
{
    const QStringList files = makeFiles(1);
    dialogs->next(Answer::Ok);
    letGo(files);
    window->showResultDialogEva(1, 1, 0);
    settle();
    QCOMPARE(rows(), files);
    QCOMPARE(tickedRows(), QStringList());
    QVERIFY(!isEnabled("crushButton"));
    pressRow(0);
    QCOMPARE(tickedRows(), files);
}

TEST_SUITE(reports, TestReports)
#include "reports.moc"
