// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "suites.h"
#include "widgets/elision.h"
#include "widgets/stylesheets.h"
#include "widgets/zztablecell.h"

#include <QImage>
#include <QLabel>
#include <QSignalSpy>
#include <QWindow>
#include <QtTest>

#include <memory>

class TestTableCell : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void freshCellIsEmptyAndHarmless();
    void eachPartHasItsPlaceAndSheet();
    void nameThatFitsIsShownUnchanged();
    void longNameAndFolderKeepTheirEndings();
    void leftPressAnywhereReportsTheRow_data();
    void leftPressAnywhereReportsTheRow();
    void otherButtonsReportNothing();
    void clickOnTheBoxReportsOnceAfterItChanged_data();
    void clickOnTheBoxReportsOnceAfterItChanged();
    void spaceKeyOnTheBoxReportsTheRow();
    void setCheckedReportsNothing();
    void clicksReportTheIndexSetLast();
    void secondBuildChangesNothing();

private:
    void build(const QString &path = QStringLiteral("/folder/name.txt"), int row = 3)
    {
        QPixmap picture(64, 64);
        picture.fill(Qt::red);
        cell->build(path, QIcon(picture), QImage(), row, 0);
    }
    void click(QPoint place, Qt::MouseButton button = Qt::LeftButton);
    QWidget *child(const char *name) const
    {
        return cell->findChild<QWidget *>(QString::fromLatin1(name));
    }
    QLabel *label(const char *name) const { return qobject_cast<QLabel *>(child(name)); }

    std::unique_ptr<ZZTableCell> cell;
    std::unique_ptr<QSignalSpy> reports;
};

void TestTableCell::init()
{
    cell = std::make_unique<ZZTableCell>(nullptr);
    reports = std::make_unique<QSignalSpy>(cell.get(), &ZZTableCell::tableCellClicked);
}

/// A click that takes the road of a real one, through the window to the widget under it.
void TestTableCell::click(QPoint place, Qt::MouseButton button)
{
    cell->show();
    QVERIFY(QTest::qWaitForWindowExposed(cell.get()));
    QTest::mouseClick(cell->windowHandle(), button, Qt::NoModifier, place);
}

void TestTableCell::freshCellIsEmptyAndHarmless()
{
    QVERIFY(cell->fullPath().isEmpty());
    cell->setProgress(50);
    cell->setChecked(true);
    QVERIFY(!cell->isChecked());
    QVERIFY(cell->children().isEmpty());
}

void TestTableCell::eachPartHasItsPlaceAndSheet()
{
    build();
    QCOMPARE(cell->size(), QSize(778, 30));
    QCOMPARE(cell->styleSheet(), stylesheets::row());
    QVERIFY(cell->windowFlags().testFlag(Qt::FramelessWindowHint));
    const auto check = [this](const char *name, const QRect &place, const QString &sheet = {}) {
        QVERIFY2(child(name)->geometry() == place, name);
        QVERIFY2(child(name)->styleSheet() == sheet, name);
        QVERIFY2(child(name)->isHidden() == !sheet.isEmpty(), name);
    };
    check("checkBox", {15, 0, 25, 30});
    check("iconLabel", {42, 7, 16, 16});
    check("nameLabel", {60, 0, 240, 30});
    check("placeLabel", {315, 0, 463, 30});
    check("progressOverlay", {1, 0, 776, 30}, stylesheets::progressOverlay());
    QCOMPARE(label("iconLabel")->property("pixmap").value<QPixmap>().size(), QSize(16, 16));
}

void TestTableCell::nameThatFitsIsShownUnchanged()
{
    build(QStringLiteral("/folder//sub/<b>name"));
    QCOMPARE(cell->fullPath(), QStringLiteral("/folder//sub/<b>name"));
    QCOMPARE(label("nameLabel")->text(), QStringLiteral("<b>name"));
    QCOMPARE(label("nameLabel")->toolTip(), QStringLiteral("<b>name"));
    QCOMPARE(label("placeLabel")->text(), QStringLiteral("/folder/sub"));
    for (const char *name : {"nameLabel", "placeLabel"})
        QCOMPARE(label(name)->textFormat(), Qt::PlainText);
    QVERIFY(cell->isChecked());
}

void TestTableCell::longNameAndFolderKeepTheirEndings()
{
    const QString name = QString(150, QLatin1Char('w')) + QStringLiteral("45.txt");
    const QString folder = QStringLiteral("/some folder").repeated(20);
    build(folder + QLatin1Char('/') + name);
    QVERIFY(label("nameLabel")->text().endsWith(QStringLiteral("w...45.txt")));
    QVERIFY(label("placeLabel")->text().endsWith(QStringLiteral("...folder")));
    QCOMPARE(label("nameLabel")->text(), elidedKeepingTail(name, 240, label("nameLabel")));
    QCOMPARE(label("placeLabel")->text(), elidedKeepingTail(folder, 463, label("placeLabel")));
    QCOMPARE(label("nameLabel")->font().pixelSize(), 12);
    QCOMPARE(label("nameLabel")->toolTip(), name);
    QCOMPARE(label("placeLabel")->toolTip(), folder);
}

void TestTableCell::leftPressAnywhereReportsTheRow_data()
{
    QTest::addColumn<QPoint>("place");
    QTest::newRow("left edge") << QPoint(3, 15);
    QTest::newRow("icon") << QPoint(50, 15);
    QTest::newRow("name") << QPoint(100, 15);
    QTest::newRow("between") << QPoint(307, 15);
    QTest::newRow("place") << QPoint(500, 15);
}

void TestTableCell::leftPressAnywhereReportsTheRow()
{
    QFETCH(QPoint, place);
    build();
    click(place);
    QCOMPARE(reports->count(), 1);
    QCOMPARE(reports->first(), QVariantList({3, 0}));
    QVERIFY(cell->isChecked());
}

void TestTableCell::otherButtonsReportNothing()
{
    build();
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        click(QPoint(100, 15), button);
        click(child("checkBox")->geometry().center(), button);
    }
    QCOMPARE(reports->count(), 0);
    QVERIFY(cell->isChecked());
}

void TestTableCell::clickOnTheBoxReportsOnceAfterItChanged_data()
{
    QTest::addColumn<QPoint>("place");
    QTest::newRow("on the square") << QPoint(22, 15);
    QTest::newRow("top left corner") << QPoint(15, 0);
    QTest::newRow("bottom right corner") << QPoint(39, 29);
}

void TestTableCell::clickOnTheBoxReportsOnceAfterItChanged()
{
    QFETCH(QPoint, place);
    build();
    QList<bool> states; // at each report
    connect(cell.get(), &ZZTableCell::tableCellClicked, this,
            [&] { states.append(cell->isChecked()); }); // clazy:exclude=lambda-in-connect
    click(place);
    QCOMPARE(states, QList<bool>({false}));
    click(place);
    QCOMPARE(states, QList<bool>({false, true}));
    QCOMPARE(reports->last(), QVariantList({3, 0}));
}

void TestTableCell::spaceKeyOnTheBoxReportsTheRow()
{
    build();
    QTest::keyClick(child("checkBox"), Qt::Key_Space);
    QVERIFY(!cell->isChecked());
    QCOMPARE(reports->count(), 1);
}

void TestTableCell::setCheckedReportsNothing()
{
    build();
    for (const bool state : {false, true}) {
        cell->setChecked(state);
        QCOMPARE(cell->isChecked(), state);
    }
    QCOMPARE(reports->count(), 0);
}

void TestTableCell::clicksReportTheIndexSetLast()
{
    build();
    cell->setIndex(7, 1);
    click(QPoint(100, 15));
    QCOMPARE(reports->last(), QVariantList({7, 1}));
    cell->setIndex(-1, 0);
    click(QPoint(22, 15));
    QCOMPARE(reports->last(), QVariantList({-1, 0}));
}

void TestTableCell::secondBuildChangesNothing()
{
    build(QStringLiteral("/folder/first.txt"), 3);
    const QObjectList children = cell->children();
    build(QStringLiteral("/folder/second.txt"), 4);
    QCOMPARE(cell->children(), children);
    QCOMPARE(cell->fullPath(), QStringLiteral("/folder/first.txt"));
    QCOMPARE(label("nameLabel")->text(), QStringLiteral("first.txt"));
    click(QPoint(100, 15));
    QCOMPARE(reports->last(), QVariantList({3, 0}));
}

TEST_SUITE(tablecell, TestTableCell)
#include "tablecell.moc"
