// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What a row looks like in a table: how far it is darkened, and that its style sheet, which has
// no selector, draws the row's image neither in the children nor in the tooltips.

#include "suites.h"
#include "widgets/zztablecell.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QImage>
#include <QLabel>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTextDocument>
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

/// What the tip shows that appears when the pointer rests on @p widget.
struct Tip {
    QString text;
    QImage picture;
};

Tip tipOf(QWidget *widget)
{
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
    const QPoint middle = widget->rect().center();
    QHelpEvent rest(QEvent::ToolTip, middle, widget->mapToGlobal(middle));
    QApplication::sendEvent(widget, &rest);
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *window : widgets) {
        if (!window->inherits("QTipLabel") || !window->isVisible())
            continue;
        Tip tip{qobject_cast<QLabel *>(window)->text(), pictureOf(window)};
        if (Qt::mightBeRichText(tip.text)) {
            QTextDocument document;
            document.setHtml(tip.text);
            tip.text = document.toPlainText();
        }
        delete window; // else it stays for a while
        return tip;
    }
    return {};
}

} // namespace

class TestTableCellLooks : public QObject
{
    Q_OBJECT

private slots:
    void rowImageIsDrawnOnce();
    void progressCoversItsShareOfTheRow_data();
    void progressCoversItsShareOfTheRow();
    void darkeningLetsItsShareOfTheRowShowThroughUntilZero();
    void boxUnderTheDarkeningStillTakesClicks();
    void nameWithLineFeedsIsDrawnOnOneLine();
    void tipShowsTheWholeNameLiterally_data();
    void tipShowsTheWholeNameLiterally();
    void tipLooksLikeAnyOther();

private:
    void build(const QString &path = QStringLiteral("/folder/name.txt"));
    QLabel *label(const char *name) const
    {
        return cell->findChild<QLabel *>(QString::fromLatin1(name));
    }

    std::unique_ptr<QTableWidget> table;
    ZZTableCell *cell = nullptr;
};

/// A row of a table that has a style sheet of its own, as in the main window.
void TestTableCellLooks::build(const QString &path)
{
    table = std::make_unique<QTableWidget>(1, 1);
    table->setStyleSheet(QStringLiteral("border:none;background:none;"));
    table->horizontalHeader()->hide();
    table->verticalHeader()->hide();
    table->setShowGrid(false);
    table->resize(800, 100);
    cell = new ZZTableCell(table.get());
    cell->build(path, QIcon(), QImage(), 0, 0);
    table->setColumnWidth(0, rowSize.width());
    table->setRowHeight(0, rowSize.height());
    table->setCellWidget(0, 0, cell);
    table->show();
}

void TestTableCellLooks::rowImageIsDrawnOnce()
{
    // The root directory has no name; what else would stand out from the row goes.
    build(QStringLiteral("/"));
    cell->findChild<QWidget *>(QStringLiteral("checkBox"))->hide();
    label("placeLabel")->clear();
    const QImage picture = pictureOf(cell);
    const QImage line(QStringLiteral(":/images/bk_item"));
    QCOMPARE(picture.size(), rowSize);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            QCOMPARE(QColor(picture.pixel(x, y)), QColor(line.pixel(0, y)));
    }
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
    QFETCH(int, width);
    build();
    cell->setProgress(percent);
    QVERIFY(!label("progressOverlay")->isHidden());
    QCOMPARE(label("progressOverlay")->geometry(), QRect(1, 0, width, 30));
}

void TestTableCellLooks::darkeningLetsItsShareOfTheRowShowThroughUntilZero()
{
    build(QStringLiteral("/folder/WWWWWWWW.txt"));
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
    cell->setProgress(0);
    QVERIFY(label("progressOverlay")->isHidden());
    QCOMPARE(pictureOf(cell), before);
}

void TestTableCellLooks::boxUnderTheDarkeningStillTakesClicks()
{
    build();
    const QSignalSpy reports(cell, &ZZTableCell::tableCellClicked);
    cell->setProgress(100);
    QVERIFY(QTest::qWaitForWindowExposed(table.get()));
    QTest::mouseClick(table->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      cell->mapTo(table.get(), QPoint(22, 15)));
    QVERIFY(!cell->isChecked());
    QCOMPARE(reports.count(), 1);
}

void TestTableCellLooks::nameWithLineFeedsIsDrawnOnOneLine()
{
    build(QStringLiteral("/folder/W\nW\nW\nW"));
    QLabel *name = label("nameLabel");
    QCOMPARE(name->text(), QStringLiteral("W\nW\nW\nW"));
    const QImage drawn = pictureOf(name);
    name->setText(QStringLiteral("W W W W"));
    QCOMPARE(drawn, pictureOf(name));
}

void TestTableCellLooks::tipShowsTheWholeNameLiterally_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << "name.txt";
    QTest::newRow("markup") << "<b>x<b> &amp; y";
    QTest::newRow("entity") << "a &lt;b";
    QTest::newRow("runs of blanks") << "<i>a   b";
    QTest::newRow("line feed") << "<i>a\nb";
}

void TestTableCellLooks::tipShowsTheWholeNameLiterally()
{
    QFETCH(QString, name);
    build(QStringLiteral("/folder/") + name);
    QCOMPARE(label("nameLabel")->toolTip(), name);
    QCOMPARE(tipOf(label("nameLabel")).text, name);
}

void TestTableCellLooks::tipLooksLikeAnyOther()
{
    build();
    QWidget unstyled;
    unstyled.setToolTip(QStringLiteral("name.txt"));
    const QImage usual = tipOf(&unstyled).picture;
    QVERIFY(!usual.isNull());
    QCOMPARE(tipOf(label("nameLabel")).picture, usual);
}

TEST_SUITE(tablecell_looks, TestTableCellLooks)
#include "tablecell_looks.moc"
