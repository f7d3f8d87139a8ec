// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The history window: what it shows, copies and clears.

#include "endtoendtest.h"
#include "suites.h"

#include <QTest>

using namespace testsupport;

namespace
{
constexpr int lowestRow = 11;
}

class TestEndToEndHistory : public EndToEndTest
{
    Q_OBJECT

private slots:
    void opensOverTheMainWindowAndClosesByItsButton();
    void copyPutsEveryEntryOnTheClipboard();
    void clearDeletesTheFileAndEmptiesTheWindow();
    void closesWhileALongHistoryIsStillArriving();

private:
    bool openHistory();
    /// Opens the history window and waits until it shows its entries.
    bool openHistoryWith(int entries);
    bool closeHistory();
    QRect place(const QRect &inHistoryWindow) const;
    QImage shownRow(int row) const;
    void click(const QRect &inHistoryWindow);

    WindowId windowId = 0;
    QRect window;
    QImage bareRow;
};

void TestEndToEndHistory::opensOverTheMainWindowAndClosesByItsButton()
{
    QVERIFY(user->writeHistory(2));
    QVERIFY(openWith());
    QVERIFY(openHistoryWith(2));
    QCOMPARE(window, QRect(mainwindow::onScreen.topLeft() + historywindow::overMainWindow,
                           historywindow::size));
    // Two entries, so no third row; the newer one, on top, reads differently.
    QVERIFY(!samePixels(shownRow(0), shownRow(1)));
    QVERIFY(samePixels(shownRow(2), bareRow));
    QVERIFY(closeHistory());

    // Opening again shows the entries once, not twice.
    QVERIFY(openHistoryWith(2));
    QVERIFY(samePixels(shownRow(2), bareRow));
}

void TestEndToEndHistory::copyPutsEveryEntryOnTheClipboard()
{
    QVERIFY(user->writeHistory(2));
    QVERIFY(openWith());
    QVERIFY(openHistoryWith(2));
    const QString expected = QStringLiteral(
        "日期：2026-01-02 03:04:05\t已粉碎的文件或目录名：信件 0.txt\t路径：/home/某人/0\n"
        "日期：2026-01-02 03:04:05\t已粉碎的文件或目录名：信件 1.txt\t路径：/home/某人/1\n");
    click(historywindow::copyButton);
    QTRY_COMPARE_WITH_TIMEOUT(desktop.clipboardText(), expected, patience);
}

void TestEndToEndHistory::clearDeletesTheFileAndEmptiesTheWindow()
{
    QVERIFY(user->writeHistory(2));
    QVERIFY(openWith());
    QVERIFY(openHistoryWith(2));
    click(historywindow::clearButton);
    QTRY_VERIFY_WITH_TIMEOUT(!entryExists(user->historyFile()), patience);
    QTRY_VERIFY_WITH_TIMEOUT(samePixels(shownRow(0), bareRow), patience);
    QCOMPARE(desktop.clipboardText(), QString());
}

void TestEndToEndHistory::closesWhileALongHistoryIsStillArriving()
{
    QVERIFY(user->writeHistory(20000));
    QVERIFY(openWith());
    QVERIFY(openHistory());
    QVERIFY(closeHistory());
    // The controller was in the middle of handing over rows, and serves requests again.
    QVERIFY(shredder->drop({tree->makeFolder(QStringLiteral("folder"))}));
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 1, patience);
    QVERIFY(openHistory());
    QVERIFY(closeHistory());
    shredder->click(mainwindow::closeButton);
    QVERIFY(shredder->waitForEnd());
    QCOMPARE(shredder->exitStatus(), 0);
}

bool TestEndToEndHistory::openHistory()
{
    shredder->click(mainwindow::historyLink);
    const std::optional<WindowId> opened = shredder->waitForOtherWindow();
    if (!opened)
        return false;
    windowId = *opened;
    window = desktop.geometryOf(windowId);
    return true;
}

bool TestEndToEndHistory::openHistoryWith(int entries)
{
    if (!openHistory())
        return false;
    desktop.movePointer(window.topLeft() + historywindow::restingPlace);
    // The lowest row of the table has no entry, so it shows what bare rows look
    // like; before the window is drawn all its rows look alike.
    return eventually([&] {
        bareRow = desktop.picture(place(historywindow::row(lowestRow)));
        return samePixels(desktop.picture(place(historywindow::row(entries))), bareRow)
               && !samePixels(desktop.picture(place(historywindow::row(entries - 1))), bareRow);
    });
}

bool TestEndToEndHistory::closeHistory()
{
    click(historywindow::closeButton);
    shredder->rest();
    return eventually([this] { return shredder->onlyMainWindowIsOpen(); });
}

QRect TestEndToEndHistory::place(const QRect &inHistoryWindow) const
{
    return inHistoryWindow.translated(window.topLeft());
}

QImage TestEndToEndHistory::shownRow(int row) const
{
    return desktop.picture(place(historywindow::row(row)));
}

void TestEndToEndHistory::click(const QRect &inHistoryWindow)
{
    desktop.click(place(inHistoryWindow).center());
    desktop.movePointer(window.topLeft() + historywindow::restingPlace);
}

TEST_SUITE(history, TestEndToEndHistory)
#include "history.moc"
