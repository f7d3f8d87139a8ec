// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The history window: opening and closing it, its rows and its buttons. Rows come
// from a history file, or from the slots where the controller has to stay out of it.

#include "promptly.h"
#include "shownwindow.h"
#include "suites.h"
#include "windowtesthome.h"

#include <QClipboard>
#include <QLabel>
#include <QTableWidget>
#include <QtTest>

#include <memory>

using testsupport::ShownWindow;
using testsupport::testHome;

namespace
{

QByteArray entry(const QByteArray &name)
{
    return "2026-01-02 03:04:05\n" + name + "\n/home/somebody/" + name + "\n";
}

const QByteArray &threeEntries()
{
    static const QByteArray history = entry("a") + entry("b") + entry("c");
    return history;
}

} // namespace

class TestMainWindowHistory : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { window.reset(); }

    void opensInTheMiddleOfTheMainWindow_data();
    void opensInTheMiddleOfTheMainWindow();
    void newestEntryIsOnTop();
    void emptyHistoryOffersNothing();
    void twoOpeningsShowTheHistoryOnce();
    void openingTwiceInOneTurnShowsTheHistoryOnce();
    void closeButtonAndLinkCloseTheWindow();
    void mainWindowIsBlockedWhileTheHistoryIsOpen();
    void buttonsAreEnabledByNumber_data();
    void buttonsAreEnabledByNumber();
    void openingDisablesTheButtonsFirst();
    void rowIsRemovedByNumber();
    void copyPutsTheHistoryOnTheClipboard();
    void copyBeforeAnyLoadPutsNothingOnTheClipboard();
    void clearTakesEverythingAway();
    void rowsAfterAClearAreDropped();
    void clearedHistoryCanBeOpenedAgain();
    void slotTakesARowWhileALoadIsAwaited();
    void slotEnablesTheButtonsAfterAClear();
    void rowIsInTheTableWhenTheSlotReturns();
    void longNameIsCutAndShownInFullAsATip();

private:
    void openHistory();
    QTableWidget *table() const { return window->find<QTableWidget>("historyTable"); }
    QStringList texts(const char *label) const;

    std::unique_ptr<ShownWindow> window;
};

void TestMainWindowHistory::init()
{
    testHome().forgetHistory();
    window = std::make_unique<ShownWindow>();
}

void TestMainWindowHistory::openHistory()
{
    window->click("historyLink");
    QVERIFY(QTest::qWaitForWindowExposed(window->find("historyWindow")));
    QVERIFY(window->settle());
}

/// What all rows show, from top to bottom.
QStringList TestMainWindowHistory::texts(const char *label) const
{
    QStringList texts;
    for (int row = 0; row < table()->rowCount(); ++row) {
        const QWidget *frame = table()->cellWidget(row, 0);
        texts.append(frame != nullptr
                         ? frame->findChild<QLabel *>(QString::fromLatin1(label))->text()
                         : QStringLiteral("no frame"));
    }
    return texts;
}

void TestMainWindowHistory::opensInTheMiddleOfTheMainWindow_data()
{
    QTest::addColumn<QPoint>("main");
    QTest::addColumn<QPoint>("history");
    QTest::newRow("100, 100") << QPoint(100, 100) << QPoint(150, 125);
    QTest::newRow("0, 0") << QPoint(0, 0) << QPoint(50, 25);
    QTest::newRow("partly off the screen") << QPoint(-300, 400) << QPoint(-250, 425);
}

void TestMainWindowHistory::opensInTheMiddleOfTheMainWindow()
{
    QFETCH(QPoint, main);
    (*window)->move(main);
    PROMPTLY_COMPARE((*window)->pos(), main);
    openHistory();
    QTEST(window->find("historyWindow")->pos(), "history");
    QCOMPARE(window->find("historyWindow")->size(), QSize(700, 500));
}

void TestMainWindowHistory::newestEntryIsOnTop()
{
    testHome().writeHistory(threeEntries());
    openHistory();
    QCOMPARE(texts("nameLabel"),
             (QStringList{QStringLiteral("c"), QStringLiteral("b"), QStringLiteral("a")}));
    QCOMPARE(texts("timeLabel").constFirst(), QStringLiteral("2026-01-02 03:04:05"));
    QCOMPARE(texts("pathLabel").constFirst(), QStringLiteral("/home/somebody/c"));
    for (int row = 0; row < 3; ++row)
        QCOMPARE(table()->rowHeight(row), 30);
    QVERIFY(window->isEnabled("copyButton"));
    QVERIFY(window->isEnabled("clearHistoryButton"));
}

void TestMainWindowHistory::emptyHistoryOffersNothing()
{
    openHistory();
    QCOMPARE(table()->rowCount(), 0);
    QVERIFY(!window->isEnabled("copyButton"));
    QVERIFY(!window->isEnabled("clearHistoryButton"));
}

void TestMainWindowHistory::twoOpeningsShowTheHistoryOnce()
{
    testHome().writeHistory(threeEntries());
    openHistory();
    window->click("historyCloseButton");
    openHistory();
    QCOMPARE(table()->rowCount(), 3);
    QCOMPARE(texts("nameLabel").constFirst(), QStringLiteral("c"));
}

void TestMainWindowHistory::openingTwiceInOneTurnShowsTheHistoryOnce()
{
    testHome().writeHistory(threeEntries());
    constexpr int openCloseOpenCloseOpen = 5;
    for (int click = 0; click < openCloseOpenCloseOpen; ++click)
        (*window)->slotShowHistoryEva();
    QVERIFY(window->settle());
    QVERIFY(window->find("historyWindow")->isVisible());
    QCOMPARE(table()->rowCount(), 3);
    QVERIFY(window->isEnabled("copyButton"));
    QVERIFY(window->isEnabled("clearHistoryButton"));
}

void TestMainWindowHistory::closeButtonAndLinkCloseTheWindow()
{
    openHistory();
    window->click("historyCloseButton");
    QVERIFY(!window->find("historyWindow")->isVisible());
    QVERIFY((*window)->isVisible());
    openHistory();
    (*window)->slotShowHistoryEva();
    QVERIFY(!window->find("historyWindow")->isVisible());
}

void TestMainWindowHistory::mainWindowIsBlockedWhileTheHistoryIsOpen()
{
    const QSignalSpy quits(&**window, &MainWindow::quit);
    openHistory();
    window->click("closeButton");
    window->click("historyLink");
    QCOMPARE(quits.count(), 0);
    QVERIFY(window->find("historyWindow")->isVisible());
    window->click("historyCloseButton");
    window->click("closeButton");
    QCOMPARE(quits.count(), 1);
}

void TestMainWindowHistory::buttonsAreEnabledByNumber_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("copy");
    QTest::addColumn<bool>("clear");
    QTest::newRow("1") << 1 << true << false;
    QTest::newRow("2") << 2 << false << true;
    QTest::newRow("3") << 3 << true << true;
    QTest::newRow("0") << 0 << false << false;
    QTest::newRow("4") << 4 << false << false;
    QTest::newRow("-1") << -1 << false << false;
}

void TestMainWindowHistory::buttonsAreEnabledByNumber()
{
    QFETCH(int, number);
    QFETCH(bool, copy);
    QFETCH(bool, clear);
    openHistory();
    (*window)->setHistoryButtonEnabledEva(true, number);
    QCOMPARE(window->isEnabled("copyButton"), copy);
    QCOMPARE(window->isEnabled("clearHistoryButton"), clear);
    (*window)->setHistoryButtonEnabledEva(true, 3);
    (*window)->setHistoryButtonEnabledEva(false, number);
    QCOMPARE(window->isEnabled("copyButton"), !copy);
    QCOMPARE(window->isEnabled("clearHistoryButton"), !clear);
}

void TestMainWindowHistory::openingDisablesTheButtonsFirst()
{
    (*window)->setHistoryButtonEnabledEva(true, 3);
    (*window)->historyTableAddItemEva(QStringLiteral("t"), QStringLiteral("n"),
                                      QStringLiteral("p"));
    QCOMPARE(table()->rowCount(), 1);
    (*window)->slotShowHistoryEva();
    QVERIFY(!window->isEnabled("copyButton"));
    QVERIFY(!window->isEnabled("clearHistoryButton"));
    QCOMPARE(table()->rowCount(), 0);
}

void TestMainWindowHistory::rowIsRemovedByNumber()
{
    testHome().writeHistory(threeEntries());
    openHistory();
    (*window)->removeRowFromHistoryTableEva(3);
    (*window)->removeRowFromHistoryTableEva(-1);
    QCOMPARE(table()->rowCount(), 3);
    (*window)->removeRowFromHistoryTableEva(1);
    QCOMPARE(texts("nameLabel"), (QStringList{QStringLiteral("c"), QStringLiteral("a")}));
}

void TestMainWindowHistory::copyPutsTheHistoryOnTheClipboard()
{
    testHome().writeHistory(entry("a") + entry("b"));
    openHistory();
    QGuiApplication::clipboard()->setText(QStringLiteral("something else"));
    window->click("copyButton");
    PROMPTLY_COMPARE(QGuiApplication::clipboard()->text(),
                     QStringLiteral("日期：2026-01-02 03:04:05\t已粉碎的文件或目录名：a"
                                    "\t路径：/home/somebody/a\n"
                                    "日期：2026-01-02 03:04:05\t已粉碎的文件或目录名：b"
                                    "\t路径：/home/somebody/b\n"));
}

void TestMainWindowHistory::copyBeforeAnyLoadPutsNothingOnTheClipboard()
{
    QGuiApplication::clipboard()->setText(QStringLiteral("something else"));
    (*window)->copyToClipboardEva();
    PROMPTLY_COMPARE(QGuiApplication::clipboard()->text(), QString());
}

void TestMainWindowHistory::clearTakesEverythingAway()
{
    testHome().writeHistory(threeEntries());
    openHistory();
    QGuiApplication::clipboard()->setText(QStringLiteral("copied history"));
    window->click("clearHistoryButton");
    QCOMPARE(table()->rowCount(), 0);
    QCOMPARE(QGuiApplication::clipboard()->text(), QString());
    QVERIFY(!window->isEnabled("copyButton"));
    QVERIFY(!window->isEnabled("clearHistoryButton"));
    PROMPTLY_VERIFY(!QFile::exists(testHome().historyFile()));
}

void TestMainWindowHistory::rowsAfterAClearAreDropped()
{
    testHome().writeHistory(threeEntries());
    openHistory();
    window->click("clearHistoryButton");
    (*window)->historyTableAddItemEva(QStringLiteral("t"), QStringLiteral("n"),
                                      QStringLiteral("p"));
    QCOMPARE(table()->rowCount(), 0);
}

void TestMainWindowHistory::clearedHistoryCanBeOpenedAgain()
{
    testHome().writeHistory(threeEntries());
    openHistory();
    window->click("clearHistoryButton");
    window->click("historyCloseButton");
    QVERIFY(window->settle());
    testHome().writeHistory(entry("later"));
    openHistory();
    QCOMPARE(texts("nameLabel"), QStringList(QStringLiteral("later")));
    QVERIFY(window->isEnabled("copyButton"));
    QVERIFY(window->isEnabled("clearHistoryButton"));
}

void TestMainWindowHistory::slotTakesARowWhileALoadIsAwaited()
{
    (*window)->slotShowHistoryEva();
    (*window)->historyTableAddItemEva(QStringLiteral("t"), QStringLiteral("n"),
                                      QStringLiteral("p"));
    QCOMPARE(texts("nameLabel"), QStringList(QStringLiteral("n")));
}

void TestMainWindowHistory::slotEnablesTheButtonsAfterAClear()
{
    openHistory();
    (*window)->removeAllFromHistoryEva();
    (*window)->setHistoryButtonEnabledEva(true, 3);
    QVERIFY(window->isEnabled("copyButton"));
    QVERIFY(window->isEnabled("clearHistoryButton"));
}

void TestMainWindowHistory::rowIsInTheTableWhenTheSlotReturns()
{
    constexpr int longHistory = 10000;
    openHistory();
    for (int number = 1; number <= longHistory; ++number) {
        (*window)->historyTableAddItemEva(QStringLiteral("t"), QStringLiteral("n"),
                                          QStringLiteral("p"));
        QCOMPARE(table()->rowCount(), number);
        QCOMPARE(table()->rowHeight(number - 1), 30);
    }
}

void TestMainWindowHistory::longNameIsCutAndShownInFullAsATip()
{
    const QString name(255, QChar(0x7c89));
    testHome().writeHistory("2026-01-02 03:04:05\n" + name.toUtf8() + "\n/" + name.toUtf8() + "\n");
    openHistory();
    for (const char *which : {"nameLabel", "pathLabel"}) {
        const auto *label =
            table()->cellWidget(0, 0)->findChild<QLabel *>(QString::fromLatin1(which));
        QVERIFY(label->text().endsWith(QChar(0x2026)));
        QVERIFY(label->fontMetrics().horizontalAdvance(label->text()) <= label->width());
        QVERIFY(label->toolTip().endsWith(name));
    }
}

TEST_SUITE(history, TestMainWindowHistory)
#include "history.moc"
