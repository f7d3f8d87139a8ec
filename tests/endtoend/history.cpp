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
    /// Presses @p button, which takes no click before the entries are there, until @p works.
    template <typename Condition>
    bool press(const QRect &button, Condition works)
    {
        const std::optional<WindowId> window = openBy(mainwindow::historyLink);
        return window && eventually([&] {
                   shredder->clickIn(*window, button);
                   return works();
               });
    }
};

void TestEndToEndHistory::historyIsCopiedToTheClipboard()
{
    user->writeHistory(2);
    QVERIFY(openWith());
    const QString expected =
        "日期：2026-01-02 03:04:05\t已粉碎的文件或目录名：信件 0.txt\t路径：/home/某人/0\n"
        "日期：2026-01-02 03:04:05\t已粉碎的文件或目录名：信件 1.txt\t路径：/home/某人/1\n"_s;
    QVERIFY(press(historywindow::copyButton, [&] { return desktop.clipboardText() == expected; }));
}

void TestEndToEndHistory::clearDeletesTheFileAndCopiesNothing()
{
    user->writeHistory(2);
    QVERIFY(openWith());
    QVERIFY(press(historywindow::clearButton, [&] { return !entryExists(user->historyFile()); }));
    QCOMPARE(desktop.clipboardText(), QString());
}

void TestEndToEndHistory::closesWhileALongHistoryIsStillArriving()
{
    user->writeHistory(20000);
    QVERIFY(openWith());
    const auto opensAndCloses = [&] {
        const std::optional<WindowId> window = openBy(mainwindow::historyLink);
        if (window)
            shredder->clickIn(*window, historywindow::closeButton);
        return window && isAlone();
    };
    QVERIFY(opensAndCloses());
    // The controller was in the middle of handing over rows, and serves requests again.
    QVERIFY(shredder->drop({tree->makeFolder("folder")}));
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 1, patience);
    QVERIFY(opensAndCloses());
    QVERIFY(closeEndsWell());
}

TEST_SUITE(history, TestEndToEndHistory)
#include "history.moc"
