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
const auto button = "push button"_s;
const auto row = "list item"_s;
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
};

void TestEndToEndAccessibility::initTestCase()
{
    if (!ScreenReader::isInstalled())
        QSKIP("needs dbus-daemon and at-spi2-core");
    EndToEndTest::initTestCase();
    QVERIFY(reader.start(desktop));
}

void TestEndToEndAccessibility::everyControlHasAName()
{
    const auto window = openAndHear();
    QVERIFY(window);
    const QStringList words = window->readAloud();
    QCOMPARE(words.first(), "frame: Brenvale - 文件粉碎机"_s);
    for (const char *control :
         {"push button: 关闭", "push button: 查看粉碎记录", "list: 待粉碎的文件或文件夹",
          "check box: 全选", "push button: 添加文件", "push button: 移除文件",
          "push button: 粉碎文件"})
        QVERIFY2(words.contains(QString::fromUtf8(control)), control);
    QVERIFY(!words.contains("push button: "_s));
    QVERIFY(window->find(button, "添加文件"_s)->isEnabled());
    QVERIFY(!window->find(button, "粉碎文件"_s)->isEnabled());
}

void TestEndToEndAccessibility::rowTellsNameFolderAndTick()
{
    const QString name = "信件 <b>一，有一个很长很长很长很长很长很长的名字.txt"_s;
    const auto window = openAndHear({tree->makeFile(name, 1), tree->makeFolder("folder")});
    QVERIFY(window);
    const auto first = window->find(row, name);
    const auto second = window->find(row, "folder"_s);
    QVERIFY(first && second);
    const auto list = window->find(QStringLiteral("list"), QStringLiteral("待粉碎的文件或文件夹"));
    QVERIFY(list);
    QTRY_VERIFY_WITH_TIMEOUT(reader.hasHeard(*list, QStringLiteral("add")), patience);
    QCOMPARE(first->description(), tree->path());
    QVERIFY(first->isChecked() && second->isChecked());
    QVERIFY(first->find("check box"_s, name));

    reader.forget();
    QVERIFY(second->act());
    QTRY_VERIFY_WITH_TIMEOUT(!second->isChecked(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(reader.hasHeard(*second, "checked"_s), patience);
    QVERIFY(first->isChecked());
}

void TestEndToEndAccessibility::rowTellsItsProgress()
{
    const QString folder = makeBusyFolder();
    const auto window = openAndHear({folder});
    QVERIFY(window);
    const auto entry = window->find(row, "folder"_s);
    QVERIFY(entry && window->press("粉碎文件"_s));
    const auto question = hear(dialog::title());
    QVERIFY(question && question->press("确定"_s));

    std::optional<HeardNode> progress;
    QTRY_VERIFY_WITH_TIMEOUT((progress = entry->find("progress bar"_s)), patience);
    QCOMPARE(progress->name(), "粉碎进度"_s);
    QTRY_VERIFY_WITH_TIMEOUT(progress->value() > 0, patience);
    QTRY_VERIFY_WITH_TIMEOUT(reader.hasHeard(*progress, "accessible-value"_s), patience);
    QVERIFY(entry->description().startsWith(tree->path() + "，已粉碎"_s));
    QVERIFY(window->press("停止粉碎"_s));
    QTRY_VERIFY_WITH_TIMEOUT(window->find(button, "粉碎文件"_s), patience);
    QVERIFY2(entryExists(folder), "the run was over before it could be stopped");
}

void TestEndToEndAccessibility::arrowKeysTellTheRowTheyReach()
{
    const auto window = openAndHear({tree->makeFile("one", 1), tree->makeFile("two", 1)});
    QVERIFY(window);
    const auto second = window->find(row, "two"_s);
    QVERIFY(second);
    reader.forget();
    // The title bar takes no focus from the table, which has it from the start.
    desktop.click(mainwindow::onScreen.topLeft() + mainwindow::restingPlace);
    desktop.pressKey("Down"_s);
    desktop.pressKey("Down"_s);
    QTRY_VERIFY_WITH_TIMEOUT(reader.hasHeard(*second, "focused"_s), patience);
}

void TestEndToEndAccessibility::dialogsTellTheirMessageAndAreAnswered()
{
    const QString file = tree->makeFile("file", 5000);
    const auto window = openAndHear({file});
    QVERIFY(window && window->press("粉碎文件"_s));
    auto message = hear(dialog::title());
    QVERIFY(message);
    const QString question = "选中的内容将被彻底删除，确定要粉碎选定的内容吗？"_s;
    QCOMPARE(message->role(), "dialog"_s);
    QCOMPARE(message->description(), question);
    QVERIFY(message->find("label"_s, question));
    QVERIFY(message->find("label"_s, "询问"_s));
    QVERIFY(message->press("取消"_s));
    QTRY_VERIFY_WITH_TIMEOUT(!shredder->dialogIsOpen(), patience);
    QVERIFY(entryExists(file));

    QVERIFY(window->press("粉碎文件"_s));
    message = hear(dialog::title());
    QVERIFY(message && message->press("确定"_s));
    const QString report = "本次文件粉碎任务已经结束\n1 个文件(文件夹)已被成功粉碎"_s;
    QTRY_VERIFY_WITH_TIMEOUT((message = hear(dialog::title()))->description() == report, patience);
    QVERIFY(message->find("label"_s, "成功"_s));
    QVERIFY(message->press("确定"_s));
    QVERIFY(!entryExists(file));
    QTRY_VERIFY_WITH_TIMEOUT(window->find("label"_s, "已成功粉碎1个文件（文件夹）"_s), patience);
    QVERIFY(!window->find(row));
    QVERIFY(window->press("关闭"_s));
    QCOMPARE(shredder->waitForEnd().value_or(-1), 0);
}

void TestEndToEndAccessibility::historyIsReadEntryByEntry()
{
    constexpr int many = 300;
    user->writeHistory(many);
    const auto window = openAndHear();
    QVERIFY(window && window->press("查看粉碎记录"_s));
    const auto history = hear("Brenvale - 文件粉碎记录"_s);
    QVERIFY(history);
    QCOMPARE(history->role(), "dialog"_s);
    const auto list = history->find("list"_s, "已粉碎的文件或目录"_s);
    QVERIFY(list);
    QTRY_COMPARE_WITH_TIMEOUT(list->children().size(), many, patience);
    // Newest first; the last one is far below what the window shows.
    const QVector<HeardNode> entries = list->children();
    QCOMPARE(entries.first().name(), "信件 299.txt"_s);
    QCOMPARE(entries.last().role(), row);
    QCOMPARE(entries.last().name(), "信件 0.txt"_s);
    QCOMPARE(entries.last().description(), "日期：2026-01-02 03:04:05，路径：/home/某人/0"_s);

    QVERIFY(history->press("清除历史记录"_s));
    QTRY_COMPARE_WITH_TIMEOUT(list->children().size(), 0, patience);
    QCOMPARE(entries.last().name(), QString());
    QVERIFY(history->press("关闭"_s));
    QVERIFY(isAlone());
}

TEST_SUITE(accessibility, TestEndToEndAccessibility)
#include "accessibility.moc"
