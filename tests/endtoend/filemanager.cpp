// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Files that come from programs of others: a file manager, and Qt's file dialog.

#include "endtoendtest.h"
#include "suites.h"

#include <QFileInfo>
#include <QStandardPaths>
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

private:
    bool openFileDialog();
};

void TestEndToEndFileManager::initTestCase()
{
    EndToEndTest::initTestCase();
    if (ScreenReader::isInstalled())
        QVERIFY(startReader());
}

void TestEndToEndFileManager::whatAFileManagerDragsBecomesRows()
{
    if (QStandardPaths::findExecutable(QStringLiteral("pcmanfm")).isEmpty())
        QSKIP("needs pcmanfm");
    const QString letter = tree->makeFile(QStringLiteral("信件 一.txt"), 5000);
    const QString percent = tree->makeFile(QStringLiteral("100% #1.txt"), 5000);
    const QString folder = tree->makeFolder(QStringLiteral("folder"));
    tree->makeFile(QStringLiteral("folder/inner"), 5000);
    QVERIFY(openWith());

    TiedProcess manager;
    manager.setProcessEnvironment(desktop.environment());
    manager.setStandardErrorFile(QProcess::nullDevice());
    manager.start(QStringLiteral("pcmanfm"), {QStringLiteral("--no-desktop"), tree->path()});
    const QString title = QFileInfo(tree->path()).fileName();
    QVector<WindowId> windows;
    QTRY_VERIFY_WITH_TIMEOUT(!(windows = desktop.windowsOf(manager.processId(), title)).isEmpty(),
                             patience);
    const WindowId window = windows.first();
    constexpr QRect besideTheShredder(0, 0, 540, 400);
    desktop.moveWindow(window, besideTheShredder);
    constexpr QPoint firstIcon(206, 98);
    desktop.movePointerInto(window, QPoint(300, 300));
    QVERIFY(!shredder->drawnWindow(window).isNull());
    const QImage unselected = desktop.picture(besideTheShredder);
    QVERIFY(eventually([&] {
        desktop.pressKey(QStringLiteral("ctrl+a"));
        return !samePixels(desktop.picture(besideTheShredder), unselected);
    }));

    desktop.movePointerInto(window, firstIcon);
    desktop.pressButton();
    desktop.movePointerInto(window, firstIcon + QPoint(20, 20));
    const QPoint target = mainwindow::onScreen.topLeft() + QPoint(500, 400);
    desktop.carryPointer(target - QPoint(200, 100), target);
    desktop.releaseButton();
    shredder->rest();
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 3, patience);
    QVERIFY(shredder->startShredding() && shredder->answerDialog(dialog::reportOk));
    QVERIFY(!entryExists(letter) && !entryExists(percent) && !entryExists(folder));
}

void TestEndToEndFileManager::fileDialogSpeaksChinese()
{
    if (!ScreenReader::isInstalled())
        QSKIP("needs dbus-daemon and at-spi2-core");
    QVERIFY(openWith());
    QVERIFY(openFileDialog());
    const auto fileDialog = hear(QStringLiteral("打开"));
    QVERIFY(fileDialog);
    const QStringList words = fileDialog->readAloud();
    // Those that every version of Qt's translation has.
    for (const char *word : {"push button: 父目录", "label: 文件名称(N)：", "push button: 打开(O)"})
        QVERIFY2(words.contains(QString::fromUtf8(word)), word);
}

void TestEndToEndFileManager::severalFilesAreChosenByKeyboard()
{
    const QString one = tree->makeFile(QStringLiteral("one"), 10);
    const QString other = tree->makeFile(QStringLiteral("other"), 10);
    QVERIFY(openWith());
    QVERIFY(openFileDialog());
    desktop.type(QStringLiteral("\"%1\" \"%2\"").arg(one, other));
    desktop.pressKey(QStringLiteral("Return"));
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 2, patience);
    QVERIFY(shredder->onlyMainWindowIsOpen());
}

void TestEndToEndFileManager::escapeFromTheFileDialogAddsNothing()
{
    QVERIFY(openWith());
    QVERIFY(openFileDialog());
    desktop.type(tree->makeFile(QStringLiteral("spared"), 10));
    QVERIFY(escape());
    QVERIFY(shredder->drop({tree->makeFolder(QStringLiteral("folder"))}));
    QTRY_VERIFY_WITH_TIMEOUT(shredder->rowsShown() > 0, patience);
    QCOMPARE(shredder->rowsShown(), 1);
}

bool TestEndToEndFileManager::openFileDialog()
{
    shredder->click(mainwindow::addButton);
    shredder->rest();
    return shredder->waitForOtherWindow().has_value();
}

TEST_SUITE(filemanager, TestEndToEndFileManager)
#include "filemanager.moc"
