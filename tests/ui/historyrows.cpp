// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The rows of the history: what they show in which place, and that nobody who scrolls sees one
// without its frame.

#include "suites.h"
#include "ui/historyrowframe.h"
#include "widgets/stylesheets.h"
#include "windowtest.h"

#include <QFontMetrics>
#include <QLabel>
#include <QScrollBar>
#include <QtTest>

using namespace testsupport;

namespace
{
constexpr int manyRows = 5000;
} // namespace

class TestHistoryRows : public WindowTest
{
    Q_OBJECT

private slots:
    void init();

    void rowHasItsLabelsInPlace();
    void textsWiderThanTheirPlaceEndInAnEllipsis();
    void nameIsCutAtTwoHundredPixelsExactly();
    void rowShowsAnotherEntryWhenTold();
    void textsThatFitAreShownWholeAndLiterally();
    void eachRowOfAShortHistoryHasItsFrame();
    void scrollingShowsTheRightTextsInFewFrames();
    void rowsArrivingWhileScrolledKeepTheViewRight();
    void removedRowsCloseTheGap();
    void removingARowOfAHistoryScrolledToItsEndMovesTheViewUp();
    void longHistoryShowsItsScrollBar();
    void clearingTakesEveryRowAway();

private:
    /// Adds the entries @p first to @p end - 1, called by their numbers.
    void addNumbers(int first, int end)
    {
        for (int number = first; number < end; ++number)
            addToHistory(QString::number(number));
    }
    QLabel *label(const char *name, int row = 0) const
    {
        return table->cellWidget(row, 0)->findChild<QLabel *>(QString::fromLatin1(name));
    }
    int frames() const { return window->findChildren<HistoryRowFrame *>().size(); }
    QList<int> numbersInView() const;
    static QList<int> countingDown(int from, int count);

    QTableWidget *table = nullptr;
    QScrollBar *bar = nullptr;
};

void TestHistoryRows::init()
{
    WindowTest::init();
    table = find<QTableWidget>("historyTable");
    bar = table->verticalScrollBar();
    press("historyLink");
}

/// What stands in each row that can be seen, from top to bottom; -1 for a row without a frame in
/// its place.
QList<int> TestHistoryRows::numbersInView() const
{
    QList<int> numbers;
    for (int y = 0; y < table->viewport()->height() && table->rowAt(y) >= 0; y += 30) {
        const int row = table->rowAt(y);
        const QWidget *frame = table->cellWidget(row, 0);
        const bool isInPlace =
            frame != nullptr && frame->isVisible() && frame->y() == table->rowViewportPosition(row);
        numbers.append(isInPlace ? label("nameLabel", row)->text().toInt() : -1);
    }
    return numbers;
}

QList<int> TestHistoryRows::countingDown(int from, int count)
{
    QList<int> numbers;
    for (int index = 0; index < count; ++index)
        numbers.append(from - index);
    return numbers;
}

void TestHistoryRows::rowHasItsLabelsInPlace()
{
    addToHistory(QStringLiteral("name"));
    const QWidget *frame = table->cellWidget(0, 0);
    QCOMPARE(table->rowHeight(0), 30);
    QCOMPARE(HistoryRowFrame(nullptr).size(), QSize(678, 30));
    QVERIFY(HistoryRowFrame(window.get()).windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(frame->styleSheet(), stylesheets::row());
    const auto check = [this](const char *name, const QRect &place) {
        QVERIFY2(label(name)->geometry() == place, name);
        // It draws only its text over the row, as it is, and so does its tooltip.
        QVERIFY2(label(name)->inherits("PlainLabel"), name);
    };
    check("timeLabel", {2, 0, 150, 30});
    check("nameLabel", {154, 0, 200, 30});
    check("pathLabel", {356, 0, 322, 30});
    QCOMPARE(label("nameLabel")->font().pixelSize(), 12);
    QCOMPARE(label("nameLabel")->palette().color(QPalette::WindowText), QColor(0x33, 0x33, 0x33));
}

void TestHistoryRows::textsWiderThanTheirPlaceEndInAnEllipsis()
{
    for (const QString &text :
         {QString(255, QLatin1Char('w')), QStringLiteral("/folder").repeated(500),
          QString(60, QChar(0x7c89)), QStringLiteral("🗑").repeated(60),
          QStringLiteral("<b>bold</b>").repeated(20)}) {
        addToHistory(text, text);
        const QFontMetrics metrics(label("nameLabel")->font());
        for (const QLabel *shown : {label("nameLabel"), label("pathLabel")}) {
            QVERIFY(shown->text() != text);
            QVERIFY(shown->text().endsWith(QChar(0x2026)));
            QVERIFY(text.startsWith(shown->text().chopped(1)));
            QVERIFY(metrics.horizontalAdvance(shown->text()) <= shown->width());
            QCOMPARE(shown->toolTip(), text);
        }
        QVERIFY(label("pathLabel")->text().size() > label("nameLabel")->text().size());
    }
}

void TestHistoryRows::nameIsCutAtTwoHundredPixelsExactly()
{
    addToHistory(QString(), QString());
    const QFontMetrics metrics(label("nameLabel")->font());
    QString fitting;
    while (metrics.horizontalAdvance(fitting + QLatin1Char('i')) <= 200)
        fitting += QLatin1Char('i');
    addToHistory(fitting, fitting);
    QCOMPARE(label("nameLabel")->text(), fitting);
    const QString tooWide = fitting + QLatin1Char('i');
    addToHistory(tooWide, tooWide);
    QVERIFY(label("nameLabel")->text().endsWith(QChar(0x2026)));
    QCOMPARE(label("pathLabel")->text(), tooWide);
}

void TestHistoryRows::rowShowsAnotherEntryWhenTold()
{
    // Each arrival moves every text down by a row.
    addToHistory(QStringLiteral("other"), QStringLiteral("/folder"), QStringLiteral("2"));
    addToHistory(QStringLiteral("other"), QStringLiteral("/"), QStringLiteral("2"));
    QCOMPARE(label("pathLabel")->text(), QStringLiteral("/"));
    QCOMPARE(label("pathLabel", 1)->text(), QStringLiteral("/folder"));
    addToHistory(QStringLiteral("name"), QStringLiteral("/"), QStringLiteral("2"));
    QCOMPARE(label("nameLabel")->text(), QStringLiteral("name"));
    QCOMPARE(label("nameLabel", 1)->text(), QStringLiteral("other"));
    addToHistory(QStringLiteral("name"), QStringLiteral("/"), QStringLiteral("1"));
    QCOMPARE(label("timeLabel")->text(), QStringLiteral("1"));
    QCOMPARE(label("timeLabel", 1)->text(), QStringLiteral("2"));
}

void TestHistoryRows::textsThatFitAreShownWholeAndLiterally()
{
    const QString longTime(100, QLatin1Char('0')); // never shortened
    for (const auto &name :
         {QStringLiteral("<b>x</b>"), QStringLiteral("a&amp;b"), QStringLiteral("a&b"),
          QStringLiteral("100%s %1"), QStringLiteral("a\nb"),
          QStringLiteral("👩‍👩‍👧 🗑.txt")}) {
        addToHistory(name, QLatin1Char('/') + name, longTime);
        for (const char *property : {"text", "toolTip"}) {
            QCOMPARE(label("timeLabel")->property(property).toString(), longTime);
            QCOMPARE(label("nameLabel")->property(property).toString(), name);
            QCOMPARE(label("pathLabel")->property(property).toString(), QLatin1Char('/') + name);
        }
    }
}

void TestHistoryRows::eachRowOfAShortHistoryHasItsFrame()
{
    constexpr int rows = 30;
    addNumbers(0, rows);
    for (int row = 0; row < rows; ++row)
        QCOMPARE(label("nameLabel", row)->text(), QString::number(rows - 1 - row));
}

void TestHistoryRows::scrollingShowsTheRightTextsInFewFrames()
{
    constexpr int mostFrames = 40; // those of 13 rows in the view, and some on either side
    for (int number = 0; number < manyRows; ++number) {
        addNumbers(number, number + 1);
        QCOMPARE(table->rowCount(), number + 1);
        QCOMPARE(table->rowHeight(number), 30);
    }
    QTRY_COMPARE(numbersInView(), countingDown(manyRows - 1, 13));
    for (const int row : {0, 1, 13, manyRows / 2, bar->maximum(), 0, bar->maximum(), 0}) {
        bar->setValue(row);
        QCOMPARE(numbersInView(), countingDown(manyRows - 1 - row, 13));
        QCOMPARE(table->cellWidget(0, 0) != nullptr, row <= 1);
        QTRY_VERIFY(frames() <= mostFrames);
    }
}

void TestHistoryRows::rowsArrivingWhileScrolledKeepTheViewRight()
{
    addNumbers(0, 100);
    QTRY_COMPARE(numbersInView(), countingDown(99, 13));
    bar->setValue(40);
    addNumbers(100, 200);
    QTRY_COMPARE(numbersInView(), countingDown(199 - 40, 13));
    QCOMPARE(table->rowCount(), 200);
    QCOMPARE(bar->value(), 40);
}

void TestHistoryRows::removedRowsCloseTheGap()
{
    addNumbers(0, 50);
    window->removeRowFromHistoryTableEva(50);
    window->removeRowFromHistoryTableEva(-1);
    QCOMPARE(table->rowCount(), 50);
    window->removeRowFromHistoryTableEva(2);
    QCOMPARE(table->rowCount(), 49);
    QCOMPARE(numbersInView().mid(0, 4), (QList<int>{49, 48, 46, 45}));
    window->removeRowFromHistoryTableEva(48);
    bar->setValue(bar->maximum());
    QCOMPARE(numbersInView().constLast(), 1);
}

void TestHistoryRows::removingARowOfAHistoryScrolledToItsEndMovesTheViewUp()
{
    addNumbers(0, manyRows);
    QTRY_COMPARE(table->rowCount(), manyRows);
    bar->setValue(bar->maximum());
    const QList<int> before = numbersInView();
    QCOMPARE(before.constLast(), 0);
    window->removeRowFromHistoryTableEva(0);
    QTRY_COMPARE(numbersInView(), before);
    window->removeRowFromHistoryTableEva(manyRows - 2);
    QTRY_COMPARE(numbersInView().constLast(), 1);
    QCOMPARE(bar->value(), bar->maximum());
}

void TestHistoryRows::longHistoryShowsItsScrollBar()
{
    addNumbers(0, 13);
    QTRY_VERIFY(!bar->isVisible());
    addNumbers(13, 14);
    QTRY_VERIFY(bar->isVisible());
}

void TestHistoryRows::clearingTakesEveryRowAway()
{
    addNumbers(0, manyRows);
    bar->setValue(manyRows / 2);
    window->removeAllFromHistoryEva();
    QCOMPARE(table->rowCount(), 0);
    QVERIFY(table->updatesEnabled());
    QTRY_COMPARE(frames(), 0);
    // Those after it start anew.
    window->slotShowHistoryEva();
    window->slotShowHistoryEva();
    addNumbers(0, 20);
    QTRY_COMPARE(numbersInView(), countingDown(19, 13));
    QTRY_VERIFY(frames() <= table->rowCount());
}

TEST_SUITE(historyrows, TestHistoryRows)
#include "historyrows.moc"
