// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// How buttons and header show what the controller tells of a run, and what the
// buttons of the title bar do.

#include "shownwindow.h"
#include "suites.h"
#include "windowtesthome.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

using testsupport::ShownWindow;

namespace
{

QString idle()
{
    return QStringLiteral("粉碎文件");
}

QString running()
{
    return QStringLiteral("停止粉碎");
}

QString stopping()
{
    return QStringLiteral("正在停止");
}

} // namespace

class TestMainWindowStates : public QObject
{
    Q_OBJECT

private slots:
    void init() { window = std::make_unique<ShownWindow>(); }
    void cleanup() { window.reset(); }

    void runStateShowsInTheButtons_data();
    void runStateShowsInTheButtons();
    void buttonsAreEnabledAsTold();
    void headerTellsHowManyWereShredded_data();
    void headerTellsHowManyWereShredded();
    void negativeCountChangesNothing();
    void finishedFileChangesNothing();
    void closeButtonQuits();
    void minimizingAndMaximizing();

private:
    std::unique_ptr<ShownWindow> window;
};

void TestMainWindowStates::runStateShowsInTheButtons_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<bool>("removeEnabled");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("removeEnabledAfterwards");
    QTest::newRow("idle") << 1 << false << idle() << true;
    QTest::newRow("idle again") << 1 << true << idle() << true;
    QTest::newRow("running") << 2 << true << running() << false;
    QTest::newRow("stopping") << 3 << false << stopping() << false;
    QTest::newRow("stopping with a remove button") << 3 << true << stopping() << true;
    const QString other = QStringLiteral("anything");
    QTest::newRow("0") << 0 << false << other << false;
    QTest::newRow("4") << 4 << true << other << true;
    QTest::newRow("-1") << -1 << true << other << true;
}

void TestMainWindowStates::runStateShowsInTheButtons()
{
    QFETCH(int, state);
    QFETCH(bool, removeEnabled);
    (*window)->setRemoveButtonEnabledEva(removeEnabled);
    window->find<QPushButton>("crushButton")->setText(QStringLiteral("anything"));
    (*window)->setCrushStartedEva(state);
    QTEST(window->textOf("crushButton"), "text");
    QTEST(window->isEnabled("removeButton"), "removeEnabledAfterwards");
    QVERIFY(window->isEnabled("addButton"));
    QVERIFY(!window->isEnabled("crushButton"));
}

void TestMainWindowStates::buttonsAreEnabledAsTold()
{
    for (const bool enabled : {true, false}) {
        (*window)->setRemoveButtonEnabledEva(enabled);
        (*window)->setCrushButtonEnabledEva(!enabled);
        QCOMPARE(window->isEnabled("removeButton"), enabled);
        QCOMPARE(window->isEnabled("crushButton"), !enabled);
    }
}

void TestMainWindowStates::headerTellsHowManyWereShredded_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << 0 << QStringLiteral("已成功粉碎0个文件（文件夹）");
    QTest::newRow("three") << 3 << QStringLiteral("已成功粉碎3个文件（文件夹）");
    QTest::newRow("limit") << 200 << QStringLiteral("已成功粉碎200个文件（文件夹）");
}

void TestMainWindowStates::headerTellsHowManyWereShredded()
{
    QFETCH(int, count);
    const QString headline = window->textOf("headlineLabel");
    QVERIFY(window->find("emptyPanel")->isVisible());
    (*window)->finishAllEva(count);
    QTEST(window->textOf("subtitleLabel"), "text");
    QCOMPARE(window->textOf("headlineLabel"), headline);
    QCOMPARE(window->textOf("successLabel"), QStringLiteral("文件粉碎成功！"));
    QVERIFY(!window->find("emptyPanel")->isVisible());
    QVERIFY(!window->find("successPanel")->isVisible());
}

void TestMainWindowStates::negativeCountChangesNothing()
{
    const QString subtitle = window->textOf("subtitleLabel");
    (*window)->finishAllEva(-1);
    QCOMPARE(window->textOf("subtitleLabel"), subtitle);
    QVERIFY(window->find("emptyPanel")->isVisible());
}

void TestMainWindowStates::finishedFileChangesNothing()
{
    const QString file = QStringLiteral("/folder/file");
    (*window)->addRowToMainTableEva(file);
    const QString subtitle = window->textOf("subtitleLabel");
    (*window)->finishOneFileEva(file);
    QCOMPARE(window->tickedRows(), QStringList(file));
    QCOMPARE(window->textOf("subtitleLabel"), subtitle);
    QCOMPARE(window->textOf("crushButton"), idle());
}

void TestMainWindowStates::closeButtonQuits()
{
    const QSignalSpy quits(&**window, &MainWindow::quit);
    window->click("closeButton");
    QCOMPARE(quits.count(), 1);
}

void TestMainWindowStates::minimizingAndMaximizing()
{
    (*window)->windowMaxi();
    QVERIFY((*window)->windowState() == Qt::WindowNoState);
    // Built and connected, if never shown.
    window->find<QPushButton>("minimizeButton")->click();
    QVERIFY((*window)->isMinimized());
}

TEST_SUITE(states, TestMainWindowStates)
#include "states.moc"
