// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The history window's ways out of the program: the clipboard and the file.

#include "endtoendtest.h"
#include "suites.h"

#include <QTest>

using namespace testsupport;

class TestEndToEndHistory : public EndToEndTest
{
    Q_OBJECT

private slots:
    void historyIsCopiedToTheClipboard();
    void clearDeletesTheFileAndCopiesNothing();
    void closesWhileALongHistoryIsStillArriving();

private:
    /// Opens the history window and waits until it is there.
    bool openHistory();
    bool closeHistory();

    WindowId window = 0;
};

void TestEndToEndHistory::historyIsCopiedToTheClipboard()
{
    QVERIFY(user->writeHistory(2));
    QVERIFY(openWith());
    QVERIFY(openHistory());
    const QString expected = QStringLiteral(
        "日期：2026-01-02 03:04:05\t已粉碎的文件或目录名：信件 0.txt\t路径：/home/某人/0\n"
        "日期：2026-01-02 03:04:05\t已粉碎的文件或目录名：信件 1.txt\t路径：/home/某人/1\n");
    // The button takes no click before the entries are there.
    QVERIFY(eventually([&] {
        desktop.clickIn(window, historywindow::copyButton);
        return desktop.clipboardText() == expected;
    }));
}

void TestEndToEndHistory::clearDeletesTheFileAndCopiesNothing()
{
    QVERIFY(user->writeHistory(2));
    QVERIFY(openWith());
    QVERIFY(openHistory());
    QVERIFY(eventually([this] {
        desktop.clickIn(window, historywindow::clearButton);
        return !entryExists(user->historyFile());
    }));
    QCOMPARE(desktop.clipboardText(), QString());
}

void TestEndToEndHistory::closesWhileALongHistoryIsStillArriving()
{
    QVERIFY(user->writeHistory(20000));
    QVERIFY(openWith());
    QVERIFY(openHistory() && closeHistory());
    // The controller was in the middle of handing over rows, and serves requests again.
    QVERIFY(shredder->drop({tree->makeFolder(QStringLiteral("folder"))}));
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 1, patience);
    QVERIFY(openHistory() && closeHistory());
    shredder->click(mainwindow::closeButton);
    QVERIFY(shredder->waitForEnd());
    QCOMPARE(shredder->exitStatus(), 0);
}

bool TestEndToEndHistory::openHistory()
{
    shredder->click(mainwindow::historyLink);
    window = shredder->waitForOtherWindow().value_or(0);
    return window != 0;
}

bool TestEndToEndHistory::closeHistory()
{
    desktop.clickIn(window, historywindow::closeButton);
    shredder->rest();
    return eventually([this] { return shredder->onlyMainWindowIsOpen(); });
}

TEST_SUITE(history, TestEndToEndHistory)
#include "history.moc"
