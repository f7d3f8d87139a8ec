// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A long history in the history window: what is shown while it streams in and
// when it is scrolled, cleared, closed or left in the middle of that.

#include "dialogdriver.h"
#include "promptly.h"
#include "shownwindow.h"
#include "suites.h"
#include "temporarytree.h"
#include "windowtesthome.h"

#include <QLabel>
#include <QScrollBar>
#include <QTableWidget>
#include <QTimer>
#include <QtTest>

#include <memory>

using testsupport::Answer;
using testsupport::DialogDriver;
using testsupport::ShownWindow;
using testsupport::TemporaryTree;
using testsupport::testHome;

namespace
{

constexpr int entries = 5000;

QByteArray longHistory()
{
    QByteArray history;
    for (int number = 0; number < entries; ++number) {
        const QByteArray name = QByteArray::number(number);
        history += "2026-01-02 03:04:05\nname " + name + "\n/folder " + name + "\n";
    }
    return history;
}

} // namespace

class TestMainWindowHistoryLoad : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { window.reset(); }

    void everyEntryBecomesARow();
    void scrollingShowsTheRightTexts_data();
    void scrollingShowsTheRightTexts();
    void clearWhileRowsArriveLeavesTheTableEmpty();
    void closingWhileRowsArriveEndsTheLoad();
    void reopeningWhileRowsArriveShowsTheHistoryOnce();
    void windowCanGoWhileRowsArrive();
    void windowCanGoWhileScrolledToTheEnd();
    void recordingWhileOpenAddsNoRow();

private:
    void openHistory();
    /// Opens the history and does @p action as soon as some rows, but not all, are there.
    template <class Action>
    void openAndInTheMiddle(Action action);
    QTableWidget *table() const { return window->find<QTableWidget>("historyTable"); }
    QString nameIn(int row) const;

    std::unique_ptr<ShownWindow> window;
    int rowsInTheMiddle = 0;
};

void TestMainWindowHistoryLoad::init()
{
    testHome().writeHistory(longHistory());
    window = std::make_unique<ShownWindow>();
    rowsInTheMiddle = 0;
}

void TestMainWindowHistoryLoad::openHistory()
{
    window->click("historyLink");
    PROMPTLY_COMPARE(table()->rowCount(), entries);
    PROMPTLY_COMPARE(nameIn(0), QStringLiteral("name %1").arg(entries - 1));
    PROMPTLY_VERIFY(window->isEnabled("copyButton"));
}

template <class Action>
void TestMainWindowHistoryLoad::openAndInTheMiddle(Action action)
{
    // Not within the insertion: what the user does comes between two rows.
    const auto watch = connect(table()->model(), &QAbstractItemModel::rowsInserted, this, [=] {
        QTimer::singleShot(0, this, [=] {
            if (rowsInTheMiddle != 0)
                return;
            rowsInTheMiddle = table()->rowCount();
            action();
        });
    });
    window->click("historyLink");
    PROMPTLY_VERIFY(rowsInTheMiddle != 0);
    disconnect(watch);
    QVERIFY(rowsInTheMiddle < entries);
}

QString TestMainWindowHistoryLoad::nameIn(int row) const
{
    const QWidget *frame = table()->cellWidget(row, 0);
    return frame == nullptr ? QStringLiteral("no frame")
                            : frame->findChild<QLabel *>(QStringLiteral("nameLabel"))->text();
}

void TestMainWindowHistoryLoad::everyEntryBecomesARow()
{
    openHistory();
    QCOMPARE(nameIn(0), QStringLiteral("name %1").arg(entries - 1));
    QCOMPARE(nameIn(1), QStringLiteral("name %1").arg(entries - 2));
    QVERIFY(window->isEnabled("clearHistoryButton"));
}

void TestMainWindowHistoryLoad::scrollingShowsTheRightTexts_data()
{
    QTest::addColumn<double>("share");
    QTest::newRow("a little") << 0.01;
    QTest::newRow("middle") << 0.5;
    QTest::newRow("end") << 1.0;
}

void TestMainWindowHistoryLoad::scrollingShowsTheRightTexts()
{
    QFETCH(double, share);
    openHistory();
    QScrollBar *bar = table()->verticalScrollBar();
    QVERIFY(bar->isVisible());
    bar->setValue(qRound(bar->maximum() * share));
    const int first = table()->rowAt(0);
    const int last = table()->rowAt(table()->viewport()->height() - 1);
    QVERIFY(first > 0);
    for (int row = first; row <= (last < 0 ? entries - 1 : last); ++row)
        QCOMPARE(nameIn(row), QStringLiteral("name %1").arg(entries - 1 - row));
    bar->setValue(0);
    QCOMPARE(nameIn(0), QStringLiteral("name %1").arg(entries - 1));
}

void TestMainWindowHistoryLoad::clearWhileRowsArriveLeavesTheTableEmpty()
{
    openAndInTheMiddle([this] { window->click("clearHistoryButton"); });
    QCOMPARE(table()->rowCount(), 0);
    QVERIFY(window->settle());
    QCOMPARE(table()->rowCount(), 0);
    QVERIFY(!window->isEnabled("copyButton"));
    QVERIFY(!window->isEnabled("clearHistoryButton"));
    QVERIFY(!QFile::exists(testHome().historyFile()));
}

void TestMainWindowHistoryLoad::closingWhileRowsArriveEndsTheLoad()
{
    openAndInTheMiddle([this] { window->click("historyCloseButton"); });
    QVERIFY(!window->find("historyWindow")->isVisible());
    QVERIFY(window->settle());
    QVERIFY(table()->rowCount() < entries);
    // The rows stay until the next opening.
    QVERIFY(table()->rowCount() >= rowsInTheMiddle);
}

void TestMainWindowHistoryLoad::reopeningWhileRowsArriveShowsTheHistoryOnce()
{
    openAndInTheMiddle([this] {
        (*window)->slotShowHistoryEva();
        (*window)->slotShowHistoryEva();
    });
    QVERIFY(window->settle());
    PROMPTLY_COMPARE(table()->rowCount(), entries);
    PROMPTLY_COMPARE(nameIn(0), QStringLiteral("name %1").arg(entries - 1));
    QVERIFY(window->isEnabled("copyButton"));
    QVERIFY(window->isEnabled("clearHistoryButton"));
}

void TestMainWindowHistoryLoad::windowCanGoWhileRowsArrive()
{
    openAndInTheMiddle([] {});
    window.reset();
    // Another one does not hear of the load that the first had asked for.
    window = std::make_unique<ShownWindow>();
    QVERIFY(window->settle());
    QCOMPARE(table()->rowCount(), 0);
}

void TestMainWindowHistoryLoad::windowCanGoWhileScrolledToTheEnd()
{
    openHistory();
    table()->verticalScrollBar()->setValue(table()->verticalScrollBar()->maximum());
    (*window)->removeRowFromHistoryTableEva(0);
    window.reset();
}

void TestMainWindowHistoryLoad::recordingWhileOpenAddsNoRow()
{
    const TemporaryTree tree;
    const QString file = tree.makeFile(QStringLiteral("file"), 10);
    testHome().writeHistory("2026-01-02 03:04:05\nolder\n/folder\n");
    window->drop({file});
    PROMPTLY_VERIFY(window->isEnabled("crushButton"));
    window->click("historyLink");
    PROMPTLY_COMPARE(table()->rowCount(), 1);
    DialogDriver dialogs;
    dialogs.next(Answer::Ok);
    dialogs.next(Answer::Ok);
    (*window)->crushFilesEva();
    PROMPTLY_COMPARE(dialogs.seen().size(), 2);
    QVERIFY(window->settle());
    QVERIFY(!testsupport::entryExists(file));
    QCOMPARE(testHome().historyLines().size(), 6);
    QCOMPARE(table()->rowCount(), 1);
    QCOMPARE(nameIn(0), QStringLiteral("older"));
}

TEST_SUITE(historyload, TestMainWindowHistoryLoad)
#include "historyload.moc"
