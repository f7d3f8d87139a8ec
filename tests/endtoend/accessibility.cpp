// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The program for somebody who hears it: everything is found by what a screen
// reader says, and pressed the way a screen reader presses.

#include "endtoendtest.h"
#include "suites.h"

#include <QTest>

using namespace testsupport;

namespace
{
const auto button = QStringLiteral("push button");
const auto row = QStringLiteral("list item");
} // namespace

class TestEndToEndAccessibility : public EndToEndTest
{
    Q_OBJECT

private slots:
    void initTestCase();

    void everyControlHasAName();
    void rowTellsNameFolderAndTick();
    void rowTellsItsProgress();
    void arrowKeysTellTheRowTheyReach();
    void dialogsTellTheirMessageAndAreAnswered();
    void historyIsReadEntryByEntry();
    void escapeAnswersAsCancelDoes();
};

void TestEndToEndAccessibility::initTestCase()
{
    if (!ScreenReader::isInstalled())
        QSKIP("needs dbus-daemon and at-spi2-core");
    EndToEndTest::initTestCase();
    QVERIFY(startReader());
}

void TestEndToEndAccessibility::everyControlHasAName()
{
    QVERIFY(openWith());
    const auto window = hear(mainwindow::title());
    QVERIFY(window);
    const QStringList words = window->readAloud();
    QCOMPARE(words.first(), QStringLiteral("frame: Brenvale - 文件粉碎机"));
    for (const char *control :
         {"push button: 关闭", "push button: 查看粉碎记录", "list: 待粉碎的文件或文件夹",
          "check box: 全选", "push button: 添加文件", "push button: 移除文件",
          "push button: 粉碎文件"})
        QVERIFY2(words.contains(QString::fromUtf8(control)), control);
    QVERIFY(!words.contains(QStringLiteral("push button: ")));
    QVERIFY(window->find(button, QStringLiteral("添加文件"))->isEnabled());
    QVERIFY(!window->find(button, QStringLiteral("粉碎文件"))->isEnabled());
}

void TestEndToEndAccessibility::rowTellsNameFolderAndTick()
{
    const QString name = QStringLiteral("信件 <b>一，有一个很长很长很长很长很长很长的名字.txt");
    QVERIFY(openWith({tree->makeFile(name, 1), tree->makeFolder(QStringLiteral("folder"))}));
    const auto window = hear(mainwindow::title());
    QVERIFY(window);
    const auto first = window->find(row, name);
    const auto second = window->find(row, QStringLiteral("folder"));
    QVERIFY(first && second);
    const auto list = window->find(QStringLiteral("list"), QStringLiteral("待粉碎的文件或文件夹"));
    QVERIFY(list);
    QTRY_VERIFY_WITH_TIMEOUT(reader.hasHeard(*list, QStringLiteral("add")), patience);
    QCOMPARE(first->description(), tree->path());
    QVERIFY(first->isChecked() && second->isChecked());
    QVERIFY(first->find(QStringLiteral("check box"), name));

    reader.forget();
    QVERIFY(second->act());
    QTRY_VERIFY_WITH_TIMEOUT(!second->isChecked(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(reader.hasHeard(*second, QStringLiteral("checked")), patience);
    QVERIFY(first->isChecked());
}

void TestEndToEndAccessibility::rowTellsItsProgress()
{
    const QString folder = makeBusyFolder();
    QVERIFY(openWith({folder}));
    const auto window = hear(mainwindow::title());
    QVERIFY(window);
    const auto entry = window->find(row, QStringLiteral("folder"));
    QVERIFY(entry && window->press(QStringLiteral("粉碎文件")));
    const auto question = hear(dialog::title());
    QVERIFY(question && question->press(QStringLiteral("确定")));

    std::optional<HeardNode> progress;
    QTRY_VERIFY_WITH_TIMEOUT((progress = entry->find(QStringLiteral("progress bar"))), patience);
    QCOMPARE(progress->name(), QStringLiteral("粉碎进度"));
    QTRY_VERIFY_WITH_TIMEOUT(progress->value() > 0, patience);
    QTRY_VERIFY_WITH_TIMEOUT(reader.hasHeard(*progress, QStringLiteral("accessible-value")),
                             patience);
    QVERIFY(entry->description().startsWith(tree->path() + QStringLiteral("，已粉碎")));
    QVERIFY(window->press(QStringLiteral("停止粉碎")));
    QTRY_VERIFY_WITH_TIMEOUT(window->find(button, QStringLiteral("粉碎文件")), patience);
    QVERIFY2(entryExists(folder), "the run was over before it could be stopped");
}

void TestEndToEndAccessibility::arrowKeysTellTheRowTheyReach()
{
    QVERIFY(openWith(
        {tree->makeFile(QStringLiteral("one"), 1), tree->makeFile(QStringLiteral("two"), 1)}));
    const auto window = hear(mainwindow::title());
    QVERIFY(window);
    const auto second = window->find(row, QStringLiteral("two"));
    QVERIFY(second);
    reader.forget();
    // The title bar takes no focus from the table, which has it from the start.
    desktop.click(mainwindow::onScreen.topLeft() + mainwindow::restingPlace);
    desktop.pressKey(QStringLiteral("Down"));
    desktop.pressKey(QStringLiteral("Down"));
    QTRY_VERIFY_WITH_TIMEOUT(reader.hasHeard(*second, QStringLiteral("focused")), patience);
}

void TestEndToEndAccessibility::dialogsTellTheirMessageAndAreAnswered()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 5000);
    QVERIFY(openWith({file}));
    const auto window = hear(mainwindow::title());
    QVERIFY(window && window->press(QStringLiteral("粉碎文件")));
    auto message = hear(dialog::title());
    QVERIFY(message);
    const QString question = QStringLiteral("选中的内容将被彻底删除，确定要粉碎选定的内容吗？");
    QCOMPARE(message->role(), QStringLiteral("dialog"));
    QCOMPARE(message->description(), question);
    QVERIFY(message->find(QStringLiteral("label"), question));
    QVERIFY(message->find(QStringLiteral("label"), QStringLiteral("询问")));
    QVERIFY(message->press(QStringLiteral("取消")));
    QTRY_VERIFY_WITH_TIMEOUT(!shredder->dialogIsOpen(), patience);
    QVERIFY(entryExists(file));

    QVERIFY(window->press(QStringLiteral("粉碎文件")));
    message = hear(dialog::title());
    QVERIFY(message && message->press(QStringLiteral("确定")));
    const QString report = QStringLiteral("本次文件粉碎任务已经结束\n1 个文件(文件夹)已被成功粉碎");
    QTRY_VERIFY_WITH_TIMEOUT((message = hear(dialog::title()))->description() == report, patience);
    QVERIFY(message->find(QStringLiteral("label"), QStringLiteral("成功")));
    QVERIFY(message->press(QStringLiteral("确定")));
    QVERIFY(!entryExists(file));
    QTRY_VERIFY_WITH_TIMEOUT(
        window->find(QStringLiteral("label"), QStringLiteral("已成功粉碎1个文件（文件夹）")),
        patience);
    QVERIFY(!window->find(row));
    QVERIFY(window->press(QStringLiteral("关闭")));
    QVERIFY(shredder->waitForEnd());
    QCOMPARE(shredder->exitStatus(), 0);
}

void TestEndToEndAccessibility::historyIsReadEntryByEntry()
{
    constexpr int many = 300;
    QVERIFY(user->writeHistory(many));
    QVERIFY(openWith());
    const auto window = hear(mainwindow::title());
    QVERIFY(window && window->press(QStringLiteral("查看粉碎记录")));
    const auto history = hear(QStringLiteral("Brenvale - 文件粉碎记录"));
    QVERIFY(history);
    QCOMPARE(history->role(), QStringLiteral("dialog"));
    const auto list = history->find(QStringLiteral("list"), QStringLiteral("已粉碎的文件或目录"));
    QVERIFY(list);
    QTRY_COMPARE_WITH_TIMEOUT(list->children().size(), many, patience);
    // Newest first; the last one is far below what the window shows.
    const QVector<HeardNode> entries = list->children();
    QCOMPARE(entries.first().name(), QStringLiteral("信件 299.txt"));
    QCOMPARE(entries.last().role(), row);
    QCOMPARE(entries.last().name(), QStringLiteral("信件 0.txt"));
    QCOMPARE(entries.last().description(),
             QStringLiteral("日期：2026-01-02 03:04:05，路径：/home/某人/0"));

    QVERIFY(history->press(QStringLiteral("清除历史记录")));
    QTRY_COMPARE_WITH_TIMEOUT(list->children().size(), 0, patience);
    QCOMPARE(entries.last().name(), QString());
    QVERIFY(history->press(QStringLiteral("关闭")));
    QVERIFY(eventually([this] { return shredder->onlyMainWindowIsOpen(); }));
}

void TestEndToEndAccessibility::escapeAnswersAsCancelDoes()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 5000);
    QVERIFY(openWith({file}));
    const auto window = hear(mainwindow::title());
    QVERIFY(window && window->press(QStringLiteral("粉碎文件")));
    QVERIFY(shredder->waitForDialog());
    // The dialog is there before it has the keyboard.
    QVERIFY(eventually([this] {
        desktop.pressKey(QStringLiteral("Escape"));
        return !shredder->dialogIsOpen();
    }));
    QVERIFY(shredder->isRunning() && entryExists(file));
    QVERIFY(window->find(row, QStringLiteral("file"))->isChecked());
}

TEST_SUITE(accessibility, TestEndToEndAccessibility)
#include "accessibility.moc"
