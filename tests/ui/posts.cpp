// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the window posts while the controller does not get to it: commands are noted
// and never performed.

#include "controller/walle.h"
#include "dialogdriver.h"
#include "shownwindow.h"
#include "suites.h"
#include "windowtesthome.h"

#include <QtTest>

using testsupport::Answer;
using testsupport::DialogDriver;
using testsupport::ShownWindow;

namespace
{

QList<int> posted;

} // namespace

// The linker makes Walle::postCommand() this.
// NOLINTNEXTLINE(bugprone-reserved-identifier, cert-dcl50-cpp): the linker chooses the name
extern "C" void __wrap__ZN5Walle11postCommandEi(Walle *, int code)
{
    posted.append(code);
}

class TestMainWindowPosts : public QObject
{
    Q_OBJECT

private slots:
    void init() { posted.clear(); }

    void secondStartIsNotPostedBeforeTheFirstIsAnswered();
    void questionThatOutlivesTheRunPostsNothing();
    void startIsPostedAgainAfterAnAnswer_data();
    void startIsPostedAgainAfterAnAnswer();
    void declinedStartKeepsNobodyFromStarting();

private:
    static void pressCrush(ShownWindow &window, Answer answer);
};

/// Presses the crush button and answers the question, which there must be.
void TestMainWindowPosts::pressCrush(ShownWindow &window, Answer answer)
{
    DialogDriver dialogs;
    dialogs.next(answer);
    window->crushFilesEva();
    QVERIFY(dialogs.isDone());
}

void TestMainWindowPosts::secondStartIsNotPostedBeforeTheFirstIsAnswered()
{
    ShownWindow window;
    pressCrush(window, Answer::Ok);
    pressCrush(window, Answer::Ok);
    QCOMPARE(posted, QList<int>{CommandStartCrush});
}

void TestMainWindowPosts::questionThatOutlivesTheRunPostsNothing()
{
    ShownWindow window;
    pressCrush(window, Answer::Ok);
    {
        DialogDriver dialogs;
        dialogs.next([&window](QDialog &question) {
            window->setCrushStartedEva(RunState::Running);
            window->setCrushStartedEva(RunState::Idle);
            DialogDriver::press(question, Answer::Ok);
        });
        window->crushFilesEva();
        QVERIFY(dialogs.isDone());
    }
    QCOMPARE(posted, QList<int>{CommandStartCrush});
    pressCrush(window, Answer::Ok);
    QCOMPARE(posted, (QList<int>{CommandStartCrush, CommandStartCrush}));
}

void TestMainWindowPosts::startIsPostedAgainAfterAnAnswer_data()
{
    QTest::addColumn<QList<int>>("states");
    QTest::newRow("the run has ended") << QList<int>{RunState::Running, RunState::Idle};
    // A run that was going on has ended; the start went unheard.
    QTest::newRow("another run has ended") << QList<int>{RunState::Idle};
}

void TestMainWindowPosts::startIsPostedAgainAfterAnAnswer()
{
    QFETCH(QList<int>, states);
    ShownWindow window;
    pressCrush(window, Answer::Ok);
    for (const int state : states)
        window->setCrushStartedEva(state);
    pressCrush(window, Answer::Ok);
    QCOMPARE(posted, (QList<int>{CommandStartCrush, CommandStartCrush}));
}

void TestMainWindowPosts::declinedStartKeepsNobodyFromStarting()
{
    ShownWindow window;
    pressCrush(window, Answer::Cancel);
    pressCrush(window, Answer::Ok);
    QCOMPARE(posted, QList<int>{CommandStartCrush});
}

TEST_SUITE(posts, TestMainWindowPosts)
#include "posts.moc"
