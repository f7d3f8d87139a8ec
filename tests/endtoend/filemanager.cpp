// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Files that come from programs of others: a file manager, and Qt's file dialog.

#include "endtoendtest.h"
#include "suites.h"

#include <QFileInfo>
#include <QTest>

using namespace testsupport;

class TestEndToEndFileManager : public EndToEndTest
{
    Q_OBJECT

private slots:
    void initTestCase();

    void whatAFileManagerDragsBecomesRows();
    void fileDialogSpeaksChinese();
    void severalFilesAreChosenByKeyboard();
    void escapeFromTheFileDialogAddsNothing();
};

void TestEndToEndFileManager::initTestCase()
{
    EndToEndTest::initTestCase();
    if (ScreenReader::isInstalled())
        QVERIFY(reader.start(desktop));
}

void TestEndToEndFileManager::whatAFileManagerDragsBecomesRows()
{
    if (!isInstalled("pcmanfm"_s))
        QSKIP("needs pcmanfm");
    const QString letter = tree->makeFile("信件 一.txt", 5000);
    const QString percent = tree->makeFile("100% #1.txt", 5000);
    tree->makeFile("folder/inner", 5000);
    QVERIFY(openWith());

    TiedProcess manager;
    manager.launch(desktop.environment(), {"pcmanfm"_s, "--no-desktop"_s, tree->path()});
    const QString title = QFileInfo(tree->path()).fileName();
    QVector<WindowId> windows;
    QTRY_VERIFY_WITH_TIMEOUT(!(windows = desktop.windowsOf(manager.processId(), title)).isEmpty(),
                             patience);
    const WindowId window = windows.first();
    constexpr QRect besideTheShredder(0, 0, 540, 400);
    desktop.run("xdotool windowsize %1 540 400 windowmove %1 0 0"_s, window);
    desktop.run("xdotool mousemove --window %1 300 300"_s, window);
    QVERIFY(!shredder->drawnWindow(window).isNull());
    const QImage unselected = desktop.picture(besideTheShredder);
    QVERIFY(eventually([&] {
        desktop.pressKey("ctrl+a"_s);
        return !samePixels(desktop.picture(besideTheShredder), unselected);
    }));

    desktop.run("xdotool mousemove --window %1 206 98 mousedown 1"_s, window);
    desktop.run("xdotool mousemove --window %1 226 118"_s, window);
    const QPoint target = mainwindow::onScreen.topLeft() + QPoint(500, 400);
    desktop.carryPointer(target - QPoint(200, 100), target);
    desktop.releaseButton();
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 3, patience);
    QVERIFY(runToItsReport());
    QVERIFY(!entryExists(letter) && !entryExists(percent) && !entryExists(tree->path("folder")));
}

void TestEndToEndFileManager::fileDialogSpeaksChinese()
{
    if (!ScreenReader::isInstalled())
        QSKIP("needs dbus-daemon and at-spi2-core");
    QVERIFY(openWith() && openBy(mainwindow::addButton));
    const auto fileDialog = hear("打开"_s);
    QVERIFY(fileDialog);
    const QStringList words = fileDialog->readAloud();
    // Those that every version of Qt's translation has.
    for (const char *word : {"push button: 父目录", "label: 文件名称(N)：", "push button: 打开(O)"})
        QVERIFY2(words.contains(QString::fromUtf8(word)), word);
}

void TestEndToEndFileManager::severalFilesAreChosenByKeyboard()
{
    const QString one = tree->makeFile("one", 10);
    const QString other = tree->makeFile("other", 10);
    QVERIFY(openWith() && openBy(mainwindow::addButton));
    desktop.type("\"%1\" \"%2\""_s.arg(one, other));
    desktop.pressKey("Return"_s);
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 2, patience);
    QVERIFY(shredder->onlyMainWindowIsOpen());
}

void TestEndToEndFileManager::escapeFromTheFileDialogAddsNothing()
{
    QVERIFY(openWith() && openBy(mainwindow::addButton));
    desktop.type(tree->makeFile("spared", 10));
    QVERIFY(escape());
    QVERIFY(shredder->drop({tree->makeFolder("folder")}));
    QTRY_VERIFY_WITH_TIMEOUT(shredder->rowsShown() > 0, patience);
    QCOMPARE(shredder->rowsShown(), 1);
}

TEST_SUITE(filemanager, TestEndToEndFileManager)
#include "filemanager.moc"
