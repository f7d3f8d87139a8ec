// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The crush button, the question before a run, and how buttons and header answer.
// A start with nothing ticked is a run that ends at once, with a report, so the reports
// tell how often the window asked for a start.

#include "controller/protocol.h"
#include "suites.h"
#include "windowtest.h"

#include <QDialog>
#include <QFile>
#include <QPushButton>
#include <QtTest>

using namespace testsupport;

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
    void headerTellsHowManyWereShreddedUnlessNegative();
    void finishedFileChangesNothing();
    void windowIsMinimizedButNeverMaximized();
};

void TestCrushButton::questionStandsOverTheWindow()
{
    dropFiles(1);
    window->move(100, 20);
    dialogs->next(Answer::Cancel);
    click("crushButton");
    QCOMPARE(dialogs->seen().size(), 1);
    const SeenDialog &seen = dialogs->seen().first();
    QCOMPARE(seen.text, QStringLiteral("选中的内容将被彻底删除，确定要粉碎选定的内容吗？"));
    QCOMPARE(seen.iconSheet, QStringLiteral("background-image:url(:/images/ico_war4)"));
    QCOMPARE(seen.buttons, (QStringList{QStringLiteral("确定"), QStringLiteral("取消")}));
    QCOMPARE(seen.place, QRect(100 + 190, 20 + 160, 420, 230));
}

void TestCrushButton::declinedQuestionPostsNothing()
{
    const QStringList files = dropFiles(1);
    const QString subtitle = textOf("subtitleLabel");
    dialogs->next(Answer::Cancel);
    press("crushButton");
    QCOMPARE(dialogs->seen().size(), 1);
    QCOMPARE(TemporaryTree::contentsOf(files.first()), QByteArray(10, 'x'));
    QCOMPARE(tickedRows(), files);
    QCOMPARE(textOf("crushButton"), idleText());
    QCOMPARE(textOf("subtitleLabel"), subtitle);
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
    const DialogDriver::Action awaitRun = [&](QDialog &dialog) {
        const bool isQuestion = dialogs->seen().last().buttons.size() == 2;
        if (isQuestion && afterTheRun && dialogs->seen().size() > 1)
            PROMPTLY_VERIFY(reports().size() == 1 && QApplication::activeModalWidget() == &dialog);
    };
    const auto start = [&] {
        dialogs->next(Answer::Ok, awaitRun); // to the question
        dialogs->next(Answer::Ok, awaitRun); // to the report
        window->crushFilesEva();
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
        window->crushFilesEva();
        QVERIFY(dialogs->isDone());
    };
    // A run in which a file became a fifo stays open until it is stopped.
    const QStringList files = dropFiles(1);
    QVERIFY(QFile::remove(files.first()));
    tree->makeFifo("0");
    start();
    PROMPTLY_COMPARE(textOf("crushButton"), runningText());
    auto *button = find<QPushButton>("crushButton");
    button->setText(idleText()); // as long as the window has not heard of the run
    start();
    settle();
    QCOMPARE(textOf("crushButton"), idleText());
    button->setText(runningText());
    window->crushFilesEva();
    PROMPTLY_COMPARE(textOf("crushButton"), idleText());
    start();
    PROMPTLY_COMPARE(textOf("crushButton"), runningText());
}

void TestCrushButton::doesNothingWhileStopping()
{
    dropFiles(1);
    window->setCrushStartedEva(RunState::Stopping);
    press("crushButton");
    QVERIFY(dialogs->seen().isEmpty());
    QCOMPARE(textOf("crushButton"), stoppingText());
    // A posted stop would have been answered by disabling the button.
    QVERIFY(isEnabled("crushButton"));
}

void TestCrushButton::stopsWithoutAQuestion()
{
    dropFiles(1);
    window->setCrushStartedEva(RunState::Running);
    press("crushButton");
    QVERIFY(dialogs->seen().isEmpty());
    // The controller was asked to stop and says so, there being no run to stop.
    QVERIFY(textOf("crushButton") != runningText());
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
        window->setRemoveButtonEnabledEva(expected.removeBefore);
        find<QPushButton>("crushButton")->setText(other);
        window->setCrushStartedEva(expected.state);
        QCOMPARE(textOf("crushButton"), expected.text);
        QCOMPARE(isEnabled("removeButton"), expected.removeAfterwards);
        QVERIFY(isEnabled("addButton"));
        QVERIFY(!isEnabled("crushButton"));
    }
}

void TestCrushButton::headerTellsHowManyWereShreddedUnlessNegative()
{
    const auto finish = [this](int count) {
        find("emptyPanel")->show();
        window->finishAllEva(count);
        return textOf("subtitleLabel");
    };
    for (const int count : {0, 3, 200}) {
        QCOMPARE(finish(count), headerText(count));
        QVERIFY(!find("emptyPanel")->isVisible());
    }
    QCOMPARE(finish(-1), headerText(200)); // changes nothing
    QVERIFY(find("emptyPanel")->isVisible());
    QCOMPARE(textOf("successLabel"), QStringLiteral("文件粉碎成功！"));
    QVERIFY(!find("successPanel")->isVisible());
}

void TestCrushButton::finishedFileChangesNothing()
{
    const QString file = QStringLiteral("/folder/file");
    window->addRowToMainTableEva(file);
    const QString subtitle = textOf("subtitleLabel");
    window->finishOneFileEva(file);
    QCOMPARE(tickedRows(), QStringList(file));
    QCOMPARE(textOf("subtitleLabel"), subtitle);
    QCOMPARE(textOf("crushButton"), idleText());
}

void TestCrushButton::windowIsMinimizedButNeverMaximized()
{
    window->windowMaxi();
    QVERIFY(window->windowState() == Qt::WindowNoState);
    // Built and connected, if never shown.
    find<QPushButton>("minimizeButton")->click();
    QVERIFY(window->isMinimized());
}

TEST_SUITE(crushbutton, TestCrushButton)
#include "crushbutton.moc"
