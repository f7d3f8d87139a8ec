// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The history window: opening and closing it, its buttons, and what is shown while a long
// history arrives.

#include "suites.h"
#include "windowtest.h"

#include <QClipboard>
#include <QLabel>
#include <QSignalSpy>
#include <QtTest>

using namespace testsupport;

namespace
{

QByteArray entry(const QByteArray &name)
{
    return "2026-01-02 03:04:05\n" + name + "\n/home/somebody/" + name + "\n";
}

constexpr int manyEntries = 5000;

} // namespace

class TestHistory : public WindowTest
{
    Q_OBJECT

private slots:
    void opensInTheMiddleOfTheMainWindow();
    void newestEntryIsOnTop();
    void openingEmptiesTheTableAndDisablesTheButtons();
    void repeatedOpeningsShowTheHistoryOnce();
    void mainWindowIsBlockedUntilTheHistoryIsClosed();
    void buttonsAreEnabledByNumber();
    void clearTakesEverythingAwayUntilTheNextOpening();
    void slotsHoldForEveryCaller();
    void clearWhileRowsArriveLeavesTheTableEmpty();
    void closingWhileRowsArriveEndsTheLoad();
    void reopeningWhileRowsArriveShowsTheHistoryOnce();
    void windowCanGoWhileRowsArrive();
    void recordingWhileOpenAddsNoRow();

private:
    /// Opens a long history and comes back when some rows, but not all, are there.
    void openHalfWay();
    QTableWidget *table() const { return find<QTableWidget>("historyTable"); }
    QString textIn(int row, const char *label = "nameLabel") const;
    QStringList names() const;
    bool areButtonsEnabled(bool copy, bool clear) const
    {
        return isEnabled("copyButton") == copy && isEnabled("clearHistoryButton") == clear;
    }
};

void TestHistory::openHalfWay()
{
    QByteArray history;
    for (int number = 0; number < manyEntries; ++number)
        history += entry(QByteArray::number(number));
    testHome().writeHistory(history);
    click("historyLink");
    PROMPTLY_VERIFY(table()->rowCount() != 0);
    QVERIFY(table()->rowCount() < manyEntries);
}

QString TestHistory::textIn(int row, const char *label) const
{
    const QWidget *frame = table()->cellWidget(row, 0);
    return frame == nullptr ? QStringLiteral("no frame")
                            : frame->findChild<QLabel *>(QString::fromLatin1(label))->text();
}

QStringList TestHistory::names() const
{
    QStringList texts;
    for (int row = 0; row < table()->rowCount(); ++row)
        texts.append(textIn(row));
    return texts;
}

void TestHistory::opensInTheMiddleOfTheMainWindow()
{
    // The last is partly off the screen.
    for (const QPoint place : {QPoint(100, 100), QPoint(0, 0), QPoint(-300, 400)}) {
        window->move(place);
        PROMPTLY_COMPARE(window->pos(), place);
        press("historyLink");
        QCOMPARE(find("historyWindow")->geometry(), QRect(place + QPoint(50, 25), QSize(700, 500)));
        click("historyCloseButton");
    }
}

void TestHistory::newestEntryIsOnTop()
{
    testHome().writeHistory(entry("a") + entry("b") + entry("c"));
    press("historyLink");
    QCOMPARE(names(), (QStringList{QStringLiteral("c"), QStringLiteral("b"), QStringLiteral("a")}));
    QCOMPARE(textIn(0, "timeLabel"), QStringLiteral("2026-01-02 03:04:05"));
    QCOMPARE(textIn(0, "pathLabel"), QStringLiteral("/home/somebody/c"));
    QVERIFY(areButtonsEnabled(true, true));
}

/// With nothing in the history they stay so.
void TestHistory::openingEmptiesTheTableAndDisablesTheButtons()
{
    window->setHistoryButtonEnabledEva(true, 3);
    addToHistory(QStringLiteral("added"));
    window->slotShowHistoryEva();
    for (int answered = 0; answered < 2; ++answered) {
        QVERIFY(areButtonsEnabled(false, false));
        QCOMPARE(table()->rowCount(), 0);
        settle();
    }
}

void TestHistory::repeatedOpeningsShowTheHistoryOnce()
{
    testHome().writeHistory(entry("a") + entry("b"));
    for (const bool inOneTurn : {false, true}) {
        constexpr int openCloseOpenCloseOpen = 5;
        for (int number = 0; number < openCloseOpenCloseOpen; ++number) {
            window->slotShowHistoryEva();
            if (!inOneTurn)
                settle();
        }
        settle();
        QCOMPARE(names(), (QStringList{QStringLiteral("b"), QStringLiteral("a")}));
        QVERIFY(areButtonsEnabled(true, true));
        QVERIFY(find("historyWindow")->isVisible());
        click("historyCloseButton");
    }
}

void TestHistory::mainWindowIsBlockedUntilTheHistoryIsClosed()
{
    const QSignalSpy quits(window.get(), &MainWindow::quit);
    press("historyLink");
    click("closeButton");
    click("historyLink");
    QCOMPARE(quits.count(), 0);
    QVERIFY(find("historyWindow")->isVisible());
    click("historyCloseButton");
    QVERIFY(!find("historyWindow")->isVisible());
    QVERIFY(window->isVisible());
    click("closeButton");
    QCOMPARE(quits.count(), 1);
}

void TestHistory::buttonsAreEnabledByNumber()
{
    press("historyLink");
    for (const int number : {1, 2, 3, 0, 4, -1}) {
        const bool copy = number == 1 || number == 3;
        const bool clear = number == 2 || number == 3;
        window->setHistoryButtonEnabledEva(false, 3);
        window->setHistoryButtonEnabledEva(true, number);
        QVERIFY(areButtonsEnabled(copy, clear));
        window->setHistoryButtonEnabledEva(true, 3);
        window->setHistoryButtonEnabledEva(false, number);
        QVERIFY(areButtonsEnabled(!copy, !clear));
    }
}

void TestHistory::clearTakesEverythingAwayUntilTheNextOpening()
{
    testHome().writeHistory(entry("a") + entry("b"));
    press("historyLink");
    QGuiApplication::clipboard()->setText(QStringLiteral("copied history"));
    click("clearHistoryButton");
    QCOMPARE(names(), QStringList());
    QCOMPARE(QGuiApplication::clipboard()->text(), QString());
    QVERIFY(areButtonsEnabled(false, false));
    addToHistory(QStringLiteral("added"));
    QCOMPARE(names(), QStringList());
    PROMPTLY_VERIFY(!QFile::exists(testHome().historyFile()));
    click("historyCloseButton");
    testHome().writeHistory(entry("later"));
    press("historyLink");
    QCOMPARE(names(), QStringList(QStringLiteral("later")));
    QVERIFY(areButtonsEnabled(true, true));
}

/// Only rows and buttons of a load are held back: of one that is followed by another or was
/// cleared.
void TestHistory::slotsHoldForEveryCaller()
{
    window->slotShowHistoryEva();
    addToHistory(QStringLiteral("added"));
    QCOMPARE(names(), QStringList(QStringLiteral("added")));
    window->removeAllFromHistoryEva();
    window->setHistoryButtonEnabledEva(true, 3);
    QVERIFY(areButtonsEnabled(true, true));
}

void TestHistory::clearWhileRowsArriveLeavesTheTableEmpty()
{
    openHalfWay();
    click("clearHistoryButton");
    QCOMPARE(table()->rowCount(), 0);
    settle();
    QCOMPARE(table()->rowCount(), 0);
    QVERIFY(areButtonsEnabled(false, false));
    QVERIFY(!QFile::exists(testHome().historyFile()));
}

void TestHistory::closingWhileRowsArriveEndsTheLoad()
{
    openHalfWay();
    const int rowsBefore = table()->rowCount();
    click("historyCloseButton");
    QVERIFY(!find("historyWindow")->isVisible());
    settle();
    QVERIFY(table()->rowCount() < manyEntries);
    // The rows stay until the next opening.
    QVERIFY(table()->rowCount() >= rowsBefore);
}

void TestHistory::reopeningWhileRowsArriveShowsTheHistoryOnce()
{
    openHalfWay();
    window->slotShowHistoryEva();
    window->slotShowHistoryEva();
    settle();
    QCOMPARE(table()->rowCount(), manyEntries);
    PROMPTLY_COMPARE(textIn(0), QString::number(manyEntries - 1));
    QVERIFY(areButtonsEnabled(true, true));
    table()->scrollToBottom();
    QCOMPARE(textIn(manyEntries - 1), QStringLiteral("0"));
    window.reset(); // can go while scrolled to the end
}

void TestHistory::windowCanGoWhileRowsArrive()
{
    openHalfWay();
    window.reset();
    // Another one does not hear of the load that the first had asked for.
    show();
    settle();
    QCOMPARE(table()->rowCount(), 0);
}

void TestHistory::recordingWhileOpenAddsNoRow()
{
    const QStringList files = dropFiles(1);
    testHome().writeHistory(entry("older"));
    press("historyLink");
    dialogs->next(Answer::Ok);
    dialogs->next(Answer::Ok);
    window->crushFilesEva();
    PROMPTLY_COMPARE(dialogs->seen().size(), 2);
    settle();
    QVERIFY(!entryExists(files.first()));
    QCOMPARE(testHome().historyLines().size(), 6);
    QCOMPARE(names(), QStringList(QStringLiteral("older")));
}

TEST_SUITE(history, TestHistory)
#include "history.moc"
