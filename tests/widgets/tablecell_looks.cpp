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

class TestTableCellLooks : public QObject
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
    void darkeningLetsItsShareOfTheRowShowThrough();
    void nameWithLineFeedsIsDrawnOnOneLine();
    void tipShowsTheWholeNameLiterally_data();
    void tipShowsTheWholeNameLiterally();
    void tipLooksLikeAnyOther();

private:
    ZZTableCell *build(const QString &path = QStringLiteral("/folder/name.txt"));

    std::unique_ptr<QTableWidget> table;
};

/// A row of a table that has a style sheet of its own, as in the main window.
ZZTableCell *TestTableCellLooks::build(const QString &path)
{
    table = std::make_unique<QTableWidget>(1, 1);
    table->setStyleSheet(QStringLiteral("border:none;background:none;"));
    table->horizontalHeader()->hide();
    table->verticalHeader()->hide();
    table->setShowGrid(false);
    table->resize(800, 100);
    auto *cell = new ZZTableCell(table.get());
    cell->build(path, QIcon(), QImage(), 0, 0);
    table->setColumnWidth(0, rowSize.width());
    table->setRowHeight(0, rowSize.height());
    table->setCellWidget(0, 0, cell);
    table->show();
    return cell;
}

void TestTableCellLooks::cleanup()
{
    QToolTip::hideText();
    QTRY_VERIFY(visibleTip() == nullptr);
    table.reset();
}

void TestTableCellLooks::rowImageIsDrawnOnce()
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

void TestTableCellLooks::labelsAddNoBackgroundOfTheirOwn_data()
{
    QTest::addColumn<int>("opacity");
    QTest::newRow("iconLabel") << 0;
    QTest::newRow("nameLabel") << 0;
    QTest::newRow("placeLabel") << 0;
    QTest::newRow("progressOverlay") << 70;
}

void TestTableCellLooks::labelsAddNoBackgroundOfTheirOwn()
{
    ZZTableCell *cell = build();
    cell->setProgress(100);
    auto *label = cell->findChild<QLabel *>(QString::fromLatin1(QTest::currentDataTag()));
    QTEST(label->grab().toImage().pixelColor(label->rect().bottomRight()).alpha(), "opacity");
}

void TestTableCellLooks::progressCoversItsShareOfTheRow_data()
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

void TestTableCellLooks::progressCoversItsShareOfTheRow()
{
    QFETCH(int, percent);
    ZZTableCell *cell = build();
    const auto *overlay = cell->findChild<QLabel *>(QStringLiteral("progressOverlay"));
    cell->setProgress(percent);
    QVERIFY(!overlay->isHidden());
    QCOMPARE(overlay->pos(), QPoint(1, 0));
    QCOMPARE(overlay->height(), 30);
    QTEST(overlay->width(), "width");
}

void TestTableCellLooks::zeroProgressTakesTheDarkeningAway()
{
    ZZTableCell *cell = build();
    const QImage before = pictureOf(cell);
    cell->setProgress(50);
    cell->setProgress(0);
    QVERIFY(cell->findChild<QLabel *>(QStringLiteral("progressOverlay"))->isHidden());
    QCOMPARE(pictureOf(cell), before);
}

void TestTableCellLooks::boxUnderTheDarkeningStillTakesClicks()
{
    ZZTableCell *cell = build();
    const QSignalSpy reports(cell, &ZZTableCell::tableCellClicked);
    cell->setProgress(100);
    QVERIFY(QTest::qWaitForWindowExposed(table.get()));
    QTest::mouseClick(table->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      cell->mapTo(table.get(), QPoint(22, 15)));
    QVERIFY(!cell->isChecked());
    QCOMPARE(reports.count(), 1);
}

void TestTableCellLooks::darkeningLetsItsShareOfTheRowShowThrough()
{
    ZZTableCell *cell = build(QStringLiteral("/folder/WWWWWWWW.txt"));
    const QImage before = pictureOf(cell);
    cell->setProgress(50);
    const QImage after = pictureOf(cell);
    constexpr int last = 388;
    bool nameIsSeen = false;
    for (int x = 0; x < after.width(); ++x) {
        const bool darkened = x >= 1 && x <= last;
        const int expected = qRed(before.pixel(x, 15)) * (darkened ? 255 - 70 : 255) / 255;
        QVERIFY(qAbs(qRed(after.pixel(x, 15)) - expected) <= (darkened ? 1 : 0));
        nameIsSeen = nameIsSeen || (darkened && qGray(after.pixel(x, 15)) < 100);
    }
    QVERIFY(nameIsSeen);
}

void TestTableCellLooks::nameWithLineFeedsIsDrawnOnOneLine()
{
    const QString name = QStringLiteral("W\nW\nW\nW");
    ZZTableCell *cell = build(QStringLiteral("/folder/") + name);
    auto *label = cell->findChild<QLabel *>(QStringLiteral("nameLabel"));
    QCOMPARE(label->text(), name);
    const QImage drawn = pictureOf(label);
    label->setText(QStringLiteral("W W W W"));
    QCOMPARE(drawn, pictureOf(label));
}

void TestTableCellLooks::tipShowsTheWholeNameLiterally_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << QStringLiteral("name.txt");
    QTest::newRow("markup") << QStringLiteral("<b>x<b> &amp; y");
    QTest::newRow("entity") << QStringLiteral("a &lt;b");
    QTest::newRow("runs of blanks") << QStringLiteral("<i>a   b");
    QTest::newRow("line feed") << QStringLiteral("<i>a\nb");
}

void TestTableCellLooks::tipShowsTheWholeNameLiterally()
{
    QFETCH(QString, name);
    const ZZTableCell *cell = build(QStringLiteral("/folder/") + name);
    auto *label = cell->findChild<QLabel *>(QStringLiteral("nameLabel"));
    QCOMPARE(label->toolTip(), name);
    const QLabel *tip = tipOf(label);
    QVERIFY(tip != nullptr);
    QCOMPARE(readableText(tip), name);
}

void TestTableCellLooks::tipLooksLikeAnyOther()
{
    const ZZTableCell *cell = build();
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

TEST_SUITE(tablecell_looks, TestTableCellLooks)
#include "tablecell_looks.moc"
