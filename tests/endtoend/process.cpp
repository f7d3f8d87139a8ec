// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Starting and ending: one instance per user, the pid file, and an end with
// status 0 whatever the program is doing.

#include "endtoendtest.h"
#include "suites.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <unistd.h>

using namespace testsupport;

namespace
{
/// Ids no system account has; only their difference matters.
constexpr uid_t anybody = 54321;
constexpr uid_t somebodyElse = 54322;
} // namespace

class TestEndToEndProcess : public EndToEndTest
{
    Q_OBJECT

private slots:
    void secondStartEndsAtOnceAndThePidFileNamesTheFirst();
    void fileDialogOfADesktopKeepsTheOnlyInstance();
    void fontInTheHomeIsUsed();
    void openGlIsNotLoaded();
    void homelessUserIsTurnedAway();
    void twoUsersRunSideBySide();
    void closeButtonAndWindowManagerEndTheProgram();
    void openDialogKeepsTheMainWindowOpen_data();
    void openDialogKeepsTheMainWindowOpen();

private:
    /// Starts the program once more and waits until that one has ended, as it should.
    void startAgain();
};

void TestEndToEndProcess::secondStartEndsAtOnceAndThePidFileNamesTheFirst()
{
    // Left behind by an earlier run, and longer than any pid.
    QFile::copy(tree->makeFile("stale", "123456789012345678901234567890\n"), user->pidFile());
    QVERIFY(openWith());
    const QByteArray pid = QByteArray::number(shredder->processId());
    QCOMPARE(user->pid(), pid);
    startAgain();
    QVERIFY(shredder->onlyMainWindowIsOpen());
    QVERIFY(shredder->drop({tree->makeFolder("folder")}));
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 1, patience);
    QVERIFY(closeEndsWell());
    QCOMPARE(user->pid(), pid);
}

/// With the theme of a desktop, Qt's file dialog opens the files of the home to find their icons,
/// the pid file among them.
void TestEndToEndProcess::fileDialogOfADesktopKeepsTheOnlyInstance()
{
    user->set("XDG_CURRENT_DESKTOP"_s, "GNOME"_s);
    QVERIFY(openWith());
    const std::optional<WindowId> fileDialog = openBy(mainwindow::addButton);
    QVERIFY(fileDialog && !shredder->drawnWindow(*fileDialog).isNull());
    QVERIFY(escape());
    startAgain();
}

void TestEndToEndProcess::fontInTheHomeIsUsed()
{
    const QString another = "/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc"_s;
    if (!QFile::exists(another))
        QSKIP("needs Noto Sans CJK");
    constexpr QRect latinLettersOfTheTitle(40, 0, 80, 40);
    QVERIFY(openWith());
    const QImage usual = shredder->picture(latinLettersOfTheTitle);
    QVERIFY(closeEndsWell());
    QVERIFY(QDir(user->home()).mkdir("img"_s));
    QVERIFY(QFile::copy(another, user->inHome("img/NotoSansCJKsc-DemiLight.otf"_s)));
    QVERIFY(openWith());
    QVERIFY(!samePixels(shredder->picture(latinLettersOfTheTitle), usual));
}

void TestEndToEndProcess::openGlIsNotLoaded()
{
    QVERIFY(openWith());
    const QByteArray loaded =
        TemporaryTree::contentsOf("/proc/%1/maps"_s.arg(shredder->processId()));
    QVERIFY(loaded.contains("libqxcb.so"));
    QVERIFY(!loaded.contains("libqxcb-glx-integration.so"));
    QVERIFY(!loaded.contains("libGLX_mesa.so"));
}

void TestEndToEndProcess::homelessUserIsTurnedAway()
{
    // Without a home the pid file would stand in the root folder, where only root
    // may write.
    if (::getuid() == 0)
        user = std::make_unique<ShredderUser>(anybody);
    user->forgetPasswdEntry();
    shredder = std::make_unique<RunningShredder>(desktop, *user);
    shredder->start();
    QCOMPARE(shredder->waitForEnd().value_or(-1), 1);
    QVERIFY(!entryExists("/.fileshredder.pid"_s));
}

void TestEndToEndProcess::twoUsersRunSideBySide()
{
    if (::getuid() != 0)
        QSKIP("only root can start programs as two other users");
    ShredderUser firstUser(anybody);
    ShredderUser secondUser(somebodyElse);
    RunningShredder first(desktop, firstUser);
    RunningShredder second(desktop, secondUser);
    QVERIFY(first.openWindow());
    // The second window covers the first pixel by pixel, so only its being there counts.
    second.start();
    QVERIFY(second.waitForOtherWindow().has_value());
    QVERIFY(first.isRunning() && second.isRunning());
    QCOMPARE(firstUser.pid(), QByteArray::number(first.processId()));
    QCOMPARE(secondUser.pid(), QByteArray::number(second.processId()));
    QCOMPARE(first.complaints() + second.complaints(), QStringList());
}

void TestEndToEndProcess::closeButtonAndWindowManagerEndTheProgram()
{
    const QString file = tree->makeFile("file", 10);
    QVERIFY(openWith({file}));
    QVERIFY(closeEndsWell());
    QVERIFY(openWith());
    desktop.closeByWindowManager(shredder->mainWindowId());
    QCOMPARE(shredder->waitForEnd().value_or(-1), 0);
    QVERIFY(entryExists(file));
}

void TestEndToEndProcess::openDialogKeepsTheMainWindowOpen_data()
{
    QTest::addColumn<bool>("question");
    QTest::newRow("report of a refusal") << false;
    QTest::newRow("question before a run") << true;
}

/// The dialog is modal: the window behind it takes no press and no request to close, and the user
/// is not left without an answer.
void TestEndToEndProcess::openDialogKeepsTheMainWindowOpen()
{
    QFETCH(bool, question);
    const QString file = tree->makeFile("file", 10);
    QVERIFY(openWith({file}));
    if (question)
        shredder->click(mainwindow::crushButton);
    else
        QVERIFY(shredder->drop({file}));
    QVERIFY(shredder->waitForDialog());
    shredder->click(mainwindow::closeButton);
    desktop.closeByWindowManager(shredder->mainWindowId());
    QVERIFY(shredder->answerDialog(question ? dialog::questionCancel : dialog::reportOk));
    QVERIFY(shredder->isRunning() && closeEndsWell());
    QVERIFY(entryExists(file));
}

void TestEndToEndProcess::startAgain()
{
    RunningShredder second(desktop, *user);
    second.start();
    QCOMPARE(second.waitForEnd().value_or(-1), 0);
    QVERIFY(shredder->isRunning());
}

TEST_SUITE(process, TestEndToEndProcess)
#include "process.moc"
