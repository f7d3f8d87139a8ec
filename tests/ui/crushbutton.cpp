// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The crush button and what stands around it: the question before a run, the one start for
// several confirmations, and how button, header and title bar answer.
// A start with nothing ticked is a run that ends at once, with a report, so the reports
// tell how often the window asked for a start.

#include "suites.h"
#include "windowtest.h"

#include <QDialog>
#include <QFile>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

using testsupport::Answer;
using testsupport::DialogDriver;
using testsupport::idleText;
using testsupport::runningText;
using testsupport::stoppingText;
using testsupport::TemporaryTree;
using testsupport::WindowTest;

class TestCrushButton : public WindowTest
{
    Q_OBJECT

private slots:
    void questionStandsOverTheWindow();
    void declinedQuestionPostsNothing();
    void severalConfirmationsOfOneRunStartItOnce_data();
    void severalConfirmationsOfOneRunStartItOnce();
    void startDuringARunKeepsNobodyFromTheNext();
    void doesNothingWhileStopping();
    void stopsWithoutAQuestion();
    void runStateShowsInTheButtons();
    void buttonsAreEnabledAsTold();
    void headerTellsHowManyWereShredded();
    void negativeCountChangesNothing();
    void finishedFileChangesNothing();
    void closeButtonQuits();
    void windowIsMinimizedButNeverMaximized();
};

void TestCrushButton::questionStandsOverTheWindow()
{
    dropFiles(1);
    mainWindow->move(100, 20);
    dialogs->next(Answer::Cancel);
    window->click("crushButton");
    QCOMPARE(dialogs->seen().size(), 1);
    const testsupport::SeenDialog &seen = dialogs->seen().first();
    QCOMPARE(seen.text, QStringLiteral("选中的内容将被彻底删除，确定要粉碎选定的内容吗？"));
    QCOMPARE(seen.iconSheet, QStringLiteral("background-image:url(:/images/ico_war4)"));
    QCOMPARE(seen.buttons, (QStringList{QStringLiteral("确定"), QStringLiteral("取消")}));
    QCOMPARE(seen.place, QRect(100 + 190, 20 + 160, 420, 230));
}

void TestCrushButton::declinedQuestionPostsNothing()
{
    const QStringList files = dropFiles(1);
    const QString subtitle = window->textOf("subtitleLabel");
    dialogs->next(Answer::Cancel);
    press("crushButton");
    QCOMPARE(dialogs->seen().size(), 1);
    QCOMPARE(TemporaryTree::contentsOf(files.first()), QByteArray(10, 'x'));
    QCOMPARE(window->tickedRows(), files);
    QCOMPARE(window->textOf("crushButton"), idleText());
    QCOMPARE(window->textOf("subtitleLabel"), subtitle);
    crush(); // keeps nobody from starting
    QCOMPARE(reports().size(), 1);
}

void TestCrushButton::severalConfirmationsOfOneRunStartItOnce_data()
{
    QTest::addColumn<bool>("afterTheRun");
    QTest::newRow("at once") << false;
    QTest::newRow("when the run is over") << true;
}

void TestCrushButton::severalConfirmationsOfOneRunStartItOnce()
{
    QFETCH(bool, afterTheRun);
    const DialogDriver::Action sayOk = [&](QDialog &dialog) {
        const bool isQuestion = dialogs->seen().last().buttons.size() == 2;
        if (isQuestion && afterTheRun && dialogs->seen().size() > 1)
            PROMPTLY_VERIFY(reports().size() == 1 && QApplication::activeModalWidget() == &dialog);
        DialogDriver::press(dialog, Answer::Ok);
    };
    const auto start = [&] {
        dialogs->next(sayOk); // to the question
        dialogs->next(sayOk); // to the report
        mainWindow->crushFilesEva();
    };
    start();
    start();
    settle();
    QCOMPARE(reports().size(), 1);
    start();
    PROMPTLY_COMPARE(reports().size(), 2);
    settle();
}

/// The controller does not answer it; the end of the run does.
void TestCrushButton::startDuringARunKeepsNobodyFromTheNext()
{
    const auto start = [&] {
        dialogs->next(Answer::Ok);
        mainWindow->crushFilesEva();
        QVERIFY(dialogs->isDone());
    };
    // A run in which a file became a fifo stays open until it is stopped.
    const QStringList files = dropFiles(1);
    QVERIFY(QFile::remove(files.first()));
    tree->makeFifo(QStringLiteral("0"));
    start();
    PROMPTLY_COMPARE(window->textOf("crushButton"), runningText());
    auto *button = window->find<QPushButton>("crushButton");
    button->setText(idleText()); // as long as the window has not heard of the run
    start();
    settle();
    QCOMPARE(window->textOf("crushButton"), idleText());
    button->setText(runningText());
    mainWindow->crushFilesEva();
    PROMPTLY_COMPARE(window->textOf("crushButton"), idleText());
    start();
    PROMPTLY_COMPARE(window->textOf("crushButton"), runningText());
}

void TestCrushButton::doesNothingWhileStopping()
{
    dropFiles(1);
    mainWindow->setCrushStartedEva(3);
    press("crushButton");
    QVERIFY(dialogs->seen().isEmpty());
    QCOMPARE(window->textOf("crushButton"), stoppingText());
    // A posted stop would have been answered by disabling the button.
    QVERIFY(window->isEnabled("crushButton"));
}

void TestCrushButton::stopsWithoutAQuestion()
{
    dropFiles(1);
    mainWindow->setCrushStartedEva(2);
    press("crushButton");
    QVERIFY(dialogs->seen().isEmpty());
    // The controller was asked to stop and says so, there being no run to stop.
    QVERIFY(window->textOf("crushButton") != runningText());
}

void TestCrushButton::runStateShowsInTheButtons()
{
    const QString other = QStringLiteral("anything");
    const struct {
        int state;
        QString text;
        bool removeBefore;
        bool removeAfterwards;
    } cases[] = {
        {1, idleText(), false, true},    {1, idleText(), true, true},
        {2, runningText(), true, false}, {3, stoppingText(), false, false},
        {3, stoppingText(), true, true}, {0, other, false, false},
        {4, other, true, true},          {-1, other, true, true},
    };
    for (const auto &expected : cases) {
        mainWindow->setRemoveButtonEnabledEva(expected.removeBefore);
        window->find<QPushButton>("crushButton")->setText(other);
        mainWindow->setCrushStartedEva(expected.state);
        QCOMPARE(window->textOf("crushButton"), expected.text);
        QCOMPARE(window->isEnabled("removeButton"), expected.removeAfterwards);
        QVERIFY(window->isEnabled("addButton"));
        QVERIFY(!window->isEnabled("crushButton"));
    }
}

void TestCrushButton::buttonsAreEnabledAsTold()
{
    for (const bool enabled : {true, false}) {
        mainWindow->setRemoveButtonEnabledEva(enabled);
        mainWindow->setCrushButtonEnabledEva(!enabled);
        QCOMPARE(window->isEnabled("removeButton"), enabled);
        QCOMPARE(window->isEnabled("crushButton"), !enabled);
    }
}

void TestCrushButton::headerTellsHowManyWereShredded()
{
    const QString headline = window->textOf("headlineLabel");
    for (const int count : {0, 3, 200}) {
        window->find("emptyPanel")->show();
        mainWindow->finishAllEva(count);
        QCOMPARE(window->textOf("subtitleLabel"),
                 QStringLiteral("已成功粉碎%1个文件（文件夹）").arg(count));
        QVERIFY(!window->find("emptyPanel")->isVisible());
    }
    QCOMPARE(window->textOf("headlineLabel"), headline);
    QCOMPARE(window->textOf("successLabel"), QStringLiteral("文件粉碎成功！"));
    QVERIFY(!window->find("successPanel")->isVisible());
}

void TestCrushButton::negativeCountChangesNothing()
{
    const QString subtitle = window->textOf("subtitleLabel");
    mainWindow->finishAllEva(-1);
    QCOMPARE(window->textOf("subtitleLabel"), subtitle);
    QVERIFY(window->find("emptyPanel")->isVisible());
}

void TestCrushButton::finishedFileChangesNothing()
{
    const QString file = QStringLiteral("/folder/file");
    mainWindow->addRowToMainTableEva(file);
    const QString subtitle = window->textOf("subtitleLabel");
    mainWindow->finishOneFileEva(file);
    QCOMPARE(window->tickedRows(), QStringList(file));
    QCOMPARE(window->textOf("subtitleLabel"), subtitle);
    QCOMPARE(window->textOf("crushButton"), idleText());
}

void TestCrushButton::closeButtonQuits()
{
    const QSignalSpy quits(mainWindow, &MainWindow::quit);
    window->click("closeButton");
    QCOMPARE(quits.count(), 1);
}

void TestCrushButton::windowIsMinimizedButNeverMaximized()
{
    mainWindow->windowMaxi();
    QVERIFY(mainWindow->windowState() == Qt::WindowNoState);
    // Built and connected, if never shown.
    window->find<QPushButton>("minimizeButton")->click();
    QVERIFY(mainWindow->isMinimized());
}

TEST_SUITE(crushbutton, TestCrushButton)
#include "crushbutton.moc"
