// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What a row looks like in a table, pixel by pixel: how far it is darkened, and that
// its style sheet, which has no selector, draws the row's image neither in the
// children nor in the tooltips.

#include "suites.h"
#include "widgets/zztablecell.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QImage>
#include <QLabel>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTextDocument>
#include <QToolTip>
#include <QWindow>
#include <QtTest>

#include <memory>

namespace
{

constexpr QSize rowSize(778, 30);

QImage pictureOf(QWidget *widget)
{
    return widget->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

bool isDark(QRgb pixel)
{
    return qGray(pixel) < 100;
}

bool hasDarkPixels(const QImage &picture, const QRect &area)
{
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (isDark(picture.pixel(x, y)))
                return true;
        }
    }
    return false;
}

QLabel *visibleTip()
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (widget->inherits("QTipLabel") && widget->isVisible())
            return qobject_cast<QLabel *>(widget);
    }
    return nullptr;
}

/// The tip that appears when the pointer rests on @p widget.
QLabel *tipOf(QWidget *widget)
{
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
    const QPoint middle = widget->rect().center();
    QHelpEvent rest(QEvent::ToolTip, middle, widget->mapToGlobal(middle));
    QApplication::sendEvent(widget, &rest);
    return visibleTip();
}

QString readableText(const QLabel *tip)
{
    if (!Qt::mightBeRichText(tip->text()))
        return tip->text();
    QTextDocument document;
    document.setHtml(tip->text());
    return document.toPlainText();
}

} // namespace

class TestZZTableCellLooks : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void rowImageIsDrawnOnce();
    void labelsAddNoBackgroundOfTheirOwn_data();
    void labelsAddNoBackgroundOfTheirOwn();
    void progressCoversItsShareOfTheRow_data();
    void progressCoversItsShareOfTheRow();
    void zeroProgressTakesTheDarkeningAway();
    void boxUnderTheDarkeningStillTakesClicks();
    void darkeningLetsTheRowShowThrough();
    void darkeningEndsWhereTheProgressDoes();
    void nameWithLineFeedsIsDrawnOnOneLine();
    void tipShowsTheWholeNameLiterally_data();
    void tipShowsTheWholeNameLiterally();
    void tipLooksLikeAnyOther();

private:
    ZZTableCell *build(const QString &path, const QIcon &icon = QIcon());

    std::unique_ptr<QTableWidget> table;
};

/// A row of a table that has a style sheet of its own, as in the main window.
ZZTableCell *TestZZTableCellLooks::build(const QString &path, const QIcon &icon)
{
    table = std::make_unique<QTableWidget>(1, 1);
    table->setStyleSheet(QStringLiteral("border:none;background:none;"));
    table->horizontalHeader()->hide();
    table->verticalHeader()->hide();
    table->setShowGrid(false);
    table->resize(800, 100);
    auto *cell = new ZZTableCell(table.get());
    cell->build(path, icon, QImage(), 0, 0);
    table->setColumnWidth(0, rowSize.width());
    table->setRowHeight(0, rowSize.height());
    table->setCellWidget(0, 0, cell);
    table->show();
    return cell;
}

void TestZZTableCellLooks::cleanup()
{
    QToolTip::hideText();
    QTRY_VERIFY(visibleTip() == nullptr);
    table.reset();
}

void TestZZTableCellLooks::rowImageIsDrawnOnce()
{
    // The root directory has no name; what else would stand out from the row goes.
    ZZTableCell *cell = build(QStringLiteral("/"));
    cell->findChild<QWidget *>(QStringLiteral("checkBox"))->hide();
    cell->findChild<QLabel *>(QStringLiteral("placeLabel"))->clear();
    const QImage picture = pictureOf(cell);
    const QImage line = QImage(QStringLiteral(":/images/bk_item"));
    QCOMPARE(picture.size(), rowSize);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            QCOMPARE(QColor(picture.pixel(x, y)), QColor(line.pixel(0, y)));
    }
}

void TestZZTableCellLooks::labelsAddNoBackgroundOfTheirOwn_data()
{
    QTest::addColumn<int>("opacity");
    QTest::newRow("iconLabel") << 0;
    QTest::newRow("nameLabel") << 0;
    QTest::newRow("placeLabel") << 0;
    QTest::newRow("progressOverlay") << 70;
}

void TestZZTableCellLooks::labelsAddNoBackgroundOfTheirOwn()
{
    ZZTableCell *cell = build(QStringLiteral("/folder/name.txt"));
    cell->setProgress(100);
    auto *label = cell->findChild<QLabel *>(QString::fromLatin1(QTest::currentDataTag()));
    QTEST(label->grab().toImage().pixelColor(label->rect().bottomRight()).alpha(), "opacity");
}

void TestZZTableCellLooks::progressCoversItsShareOfTheRow_data()
{
    QTest::addColumn<int>("percent");
    QTest::addColumn<int>("width");
    QTest::newRow("1") << 1 << 7;
    QTest::newRow("13") << 13 << 100;
    QTest::newRow("50") << 50 << 388;
    QTest::newRow("100") << 100 << 776;
    QTest::newRow("more than whole") << 150 << 1164;
    // A widget's width cannot be negative; the darkening is there and empty.
    QTest::newRow("negative") << -50 << 0;
}

void TestZZTableCellLooks::progressCoversItsShareOfTheRow()
{
    QFETCH(int, percent);
    ZZTableCell *cell = build(QStringLiteral("/folder/name.txt"));
    const auto *overlay = cell->findChild<QLabel *>(QStringLiteral("progressOverlay"));
    cell->setProgress(percent);
    QVERIFY(!overlay->isHidden());
    QCOMPARE(overlay->pos(), QPoint(1, 0));
    QCOMPARE(overlay->height(), 30);
    QTEST(overlay->width(), "width");
}

void TestZZTableCellLooks::zeroProgressTakesTheDarkeningAway()
{
    ZZTableCell *cell = build(QStringLiteral("/folder/name.txt"));
    const QImage before = pictureOf(cell);
    cell->setProgress(50);
    cell->setProgress(0);
    QVERIFY(cell->findChild<QLabel *>(QStringLiteral("progressOverlay"))->isHidden());
    QCOMPARE(pictureOf(cell), before);
}

void TestZZTableCellLooks::boxUnderTheDarkeningStillTakesClicks()
{
    ZZTableCell *cell = build(QStringLiteral("/folder/name.txt"));
    const QSignalSpy reports(cell, &ZZTableCell::tableCellClicked);
    cell->setProgress(100);
    QVERIFY(QTest::qWaitForWindowExposed(table.get()));
    QTest::mouseClick(table->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      cell->mapTo(table.get(), QPoint(22, 15)));
    QVERIFY(!cell->isChecked());
    QCOMPARE(reports.count(), 1);
}

void TestZZTableCellLooks::darkeningLetsTheRowShowThrough()
{
    ZZTableCell *cell = build(QStringLiteral("/folder/WWWWWWWW.txt"));
    const QImage before = pictureOf(cell);
    cell->setProgress(100);
    const QImage after = pictureOf(cell);

    QCOMPARE(after.pixel(0, 15), before.pixel(0, 15));
    QCOMPARE(after.pixel(777, 15), before.pixel(777, 15));
    for (int x = 1; x <= 776; ++x) {
        const int expected = qRed(before.pixel(x, 15)) * (255 - 70) / 255;
        QVERIFY(qAbs(qRed(after.pixel(x, 15)) - expected) <= 1);
    }
    QVERIFY(hasDarkPixels(after, QRect(60, 0, 100, 30)));
}

void TestZZTableCellLooks::darkeningEndsWhereTheProgressDoes()
{
    ZZTableCell *cell = build(QStringLiteral("/folder/name.txt"));
    const QImage before = pictureOf(cell);
    cell->setProgress(50);
    const QImage after = pictureOf(cell);
    constexpr int last = 388;
    QVERIFY(after.pixel(last, 25) != before.pixel(last, 25));
    QCOMPARE(after.pixel(last + 1, 25), before.pixel(last + 1, 25));
}

void TestZZTableCellLooks::nameWithLineFeedsIsDrawnOnOneLine()
{
    const QString name = QStringLiteral("W\nW\nW\nW");
    ZZTableCell *cell = build(QStringLiteral("/folder/") + name);
    auto *label = cell->findChild<QLabel *>(QStringLiteral("nameLabel"));
    QCOMPARE(label->text(), name);
    const QImage drawn = pictureOf(label);
    label->setText(QStringLiteral("W W W W"));
    QCOMPARE(drawn, pictureOf(label));
}

void TestZZTableCellLooks::tipShowsTheWholeNameLiterally_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << QStringLiteral("name.txt");
    QTest::newRow("markup") << QStringLiteral("<b>x<b> &amp; y");
    QTest::newRow("entity") << QStringLiteral("a &lt;b");
    QTest::newRow("runs of blanks") << QStringLiteral("<i>a   b");
    QTest::newRow("line feed") << QStringLiteral("<i>a\nb");
}

void TestZZTableCellLooks::tipShowsTheWholeNameLiterally()
{
    QFETCH(QString, name);
    const ZZTableCell *cell = build(QStringLiteral("/folder/") + name);
    auto *label = cell->findChild<QLabel *>(QStringLiteral("nameLabel"));
    QCOMPARE(label->toolTip(), name);
    const QLabel *tip = tipOf(label);
    QVERIFY(tip != nullptr);
    QCOMPARE(readableText(tip), name);
}

void TestZZTableCellLooks::tipLooksLikeAnyOther()
{
    const ZZTableCell *cell = build(QStringLiteral("/folder/name.txt"));
    QLabel *tip = tipOf(cell->findChild<QLabel *>(QStringLiteral("nameLabel")));
    QVERIFY(tip != nullptr);
    const QImage ofRow = pictureOf(tip);
    QToolTip::hideText();
    QTRY_VERIFY(visibleTip() == nullptr);

    QWidget unstyled;
    unstyled.setToolTip(QStringLiteral("name.txt"));
    tip = tipOf(&unstyled);
    QVERIFY(tip != nullptr);
    QCOMPARE(ofRow, pictureOf(tip));
}

TEST_SUITE(zztablecell_looks, TestZZTableCellLooks)
#include "zztablecell_looks.moc"
