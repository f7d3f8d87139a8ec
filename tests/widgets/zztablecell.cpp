// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "widgets/zztablecell.h"
#include "suites.h"
#include "widgets/elision.h"

#include <QCheckBox>
#include <QImage>
#include <QLabel>
#include <QSignalSpy>
#include <QWindow>
#include <QtTest>

#include <memory>

class TestZZTableCell : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void freshCellIsEmptyAndHarmless();
    void childrenHaveTheirPlaces_data();
    void childrenHaveTheirPlaces();
    void styleSheetsAreSet();
    void iconIsShownAtSixteenPixels();
    void nameThatFitsIsShownUnchanged();
    void nameWithMarkupIsShownLiterally();
    void longNameKeepsItsEnding();
    void nameOfSixCharactersIsNeverShortened();
    void longFolderIsShortenedToItsPlace();
    void tickBoxNamesTheEntryForScreenReaders();
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
    void build(const QString &path, int row = 3);
    void click(QPoint place, Qt::MouseButton button = Qt::LeftButton);
    QWidget *child(const char *name) const;
    QLabel *label(const char *name) const;

    std::unique_ptr<ZZTableCell> cell;
    std::unique_ptr<QSignalSpy> reports;
    QList<bool> statesSeen; ///< of the check box, at each report
};

void TestZZTableCell::init()
{
    cell = std::make_unique<ZZTableCell>(nullptr);
    reports = std::make_unique<QSignalSpy>(cell.get(), &ZZTableCell::tableCellClicked);
}

void TestZZTableCell::cleanup()
{
    reports.reset();
    cell.reset();
}

void TestZZTableCell::build(const QString &path, int row)
{
    cell->build(path, QIcon(QStringLiteral(":/images/ico_file")), QImage(), row, 0);
}

/// A click that takes the road of a real one, through the window to the widget under it.
void TestZZTableCell::click(QPoint place, Qt::MouseButton button)
{
    cell->show();
    QVERIFY(QTest::qWaitForWindowExposed(cell.get()));
    QTest::mouseClick(cell->windowHandle(), button, Qt::NoModifier, place);
}

QWidget *TestZZTableCell::child(const char *name) const
{
    return cell->findChild<QWidget *>(QString::fromLatin1(name));
}

QLabel *TestZZTableCell::label(const char *name) const
{
    return cell->findChild<QLabel *>(QString::fromLatin1(name));
}

void TestZZTableCell::freshCellIsEmptyAndHarmless()
{
    QVERIFY(cell->children().isEmpty());
    QVERIFY(cell->fullPath().isEmpty());
    cell->setProgress(50);
    cell->setChecked(true);
    QVERIFY(!cell->isChecked());
    QVERIFY(cell->children().isEmpty());
}

void TestZZTableCell::childrenHaveTheirPlaces_data()
{
    QTest::addColumn<QRect>("place");
    QTest::newRow("checkBox") << QRect(15, 0, 25, 30);
    QTest::newRow("iconLabel") << QRect(42, 7, 16, 16);
    QTest::newRow("nameLabel") << QRect(60, 0, 240, 30);
    QTest::newRow("placeLabel") << QRect(315, 0, 463, 30);
    QTest::newRow("progressOverlay") << QRect(1, 0, 776, 30);
}

void TestZZTableCell::childrenHaveTheirPlaces()
{
    build(QStringLiteral("/folder/name.txt"));
    QCOMPARE(cell->size(), QSize(778, 30));
    QTEST(child(QTest::currentDataTag())->geometry(), "place");
    QCOMPARE(child(QTest::currentDataTag())->isHidden(),
             qstrcmp(QTest::currentDataTag(), "progressOverlay") == 0);
}

void TestZZTableCell::styleSheetsAreSet()
{
    build(QStringLiteral("/folder/name.txt"));
    QCOMPARE(cell->styleSheet(),
             QStringLiteral("background:url(:/images/bk_item);border:none;color:#333;"
                            "font-size:12px;"));
    QCOMPARE(label("progressOverlay")->styleSheet(),
             QStringLiteral("background-color:rgb(0, 0, 0, 70)"));
    QVERIFY(cell->windowFlags().testFlag(Qt::FramelessWindowHint));
}

void TestZZTableCell::iconIsShownAtSixteenPixels()
{
    QPixmap picture(64, 64);
    picture.fill(Qt::red);
    cell->build(QStringLiteral("/folder/name.txt"), QIcon(picture), QImage(), 0, 0);
    QCOMPARE(label("iconLabel")->property("pixmap").value<QPixmap>().size(), QSize(16, 16));
}

void TestZZTableCell::nameThatFitsIsShownUnchanged()
{
    build(QStringLiteral("/folder//sub/name.txt"));
    QCOMPARE(cell->fullPath(), QStringLiteral("/folder//sub/name.txt"));
    QCOMPARE(label("nameLabel")->text(), QStringLiteral("name.txt"));
    QCOMPARE(label("nameLabel")->toolTip(), QStringLiteral("name.txt"));
    QVERIFY(cell->isChecked());
}

void TestZZTableCell::nameWithMarkupIsShownLiterally()
{
    build(QStringLiteral("/folder/<b>x"));
    QCOMPARE(label("nameLabel")->text(), QStringLiteral("<b>x"));
    QCOMPARE(label("nameLabel")->textFormat(), Qt::PlainText);
    QCOMPARE(label("placeLabel")->textFormat(), Qt::PlainText);
}

void TestZZTableCell::longNameKeepsItsEnding()
{
    const QString name = QString(150, QLatin1Char('w')) + QStringLiteral("45.txt");
    build(QStringLiteral("/folder/") + name);
    const QString shown = label("nameLabel")->text();
    QVERIFY(shown.endsWith(QStringLiteral("w...45.txt")));
    QCOMPARE(shown, elidedKeepingTail(name, 240, label("nameLabel")));
    QVERIFY(label("nameLabel")->fontMetrics().horizontalAdvance(shown) <= 240);
    QCOMPARE(label("nameLabel")->font().pixelSize(), 12);
    QCOMPARE(label("nameLabel")->toolTip(), name);
}

void TestZZTableCell::nameOfSixCharactersIsNeverShortened()
{
    // This one character is far wider than its code unit lets expect.
    const QString name(6, QChar(0xfdfd));
    build(QStringLiteral("/folder/") + name);
    QCOMPARE(label("nameLabel")->text(), name);
}

void TestZZTableCell::longFolderIsShortenedToItsPlace()
{
    const QString folder = QStringLiteral("/some folder").repeated(20);
    build(folder + QStringLiteral("/name.txt"));
    const QString shown = label("placeLabel")->text();
    QVERIFY(shown.endsWith(QStringLiteral("...folder")));
    QCOMPARE(shown, elidedKeepingTail(folder, 463, label("placeLabel")));
    QCOMPARE(label("placeLabel")->toolTip(), folder);
}

void TestZZTableCell::tickBoxNamesTheEntryForScreenReaders()
{
    build(QStringLiteral("/folder/name.txt"));
    QCOMPARE(child("checkBox")->accessibleName(), QStringLiteral("name.txt"));
    QCOMPARE(child("checkBox")->accessibleDescription(), QStringLiteral("/folder"));
}

void TestZZTableCell::leftPressAnywhereReportsTheRow_data()
{
    QTest::addColumn<QPoint>("place");
    QTest::newRow("left edge") << QPoint(3, 15);
    QTest::newRow("icon") << QPoint(50, 15);
    QTest::newRow("name") << QPoint(100, 15);
    QTest::newRow("between") << QPoint(307, 15);
    QTest::newRow("place") << QPoint(500, 15);
}

void TestZZTableCell::leftPressAnywhereReportsTheRow()
{
    QFETCH(QPoint, place);
    build(QStringLiteral("/folder/name.txt"));
    click(place);
    QCOMPARE(reports->count(), 1);
    QCOMPARE(reports->first(), QList<QVariant>({3, 0}));
    QVERIFY(cell->isChecked());
}

void TestZZTableCell::otherButtonsReportNothing()
{
    build(QStringLiteral("/folder/name.txt"));
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        click(QPoint(100, 15), button);
        click(child("checkBox")->geometry().center(), button);
    }
    QCOMPARE(reports->count(), 0);
    QVERIFY(cell->isChecked());
}

void TestZZTableCell::clickOnTheBoxReportsOnceAfterItChanged_data()
{
    QTest::addColumn<QPoint>("place");
    QTest::newRow("on the square") << QPoint(22, 15);
    QTest::newRow("top left corner") << QPoint(15, 0);
    QTest::newRow("bottom right corner") << QPoint(39, 29);
}

void TestZZTableCell::clickOnTheBoxReportsOnceAfterItChanged()
{
    QFETCH(QPoint, place);
    build(QStringLiteral("/folder/name.txt"));
    statesSeen.clear();
    connect(cell.get(), &ZZTableCell::tableCellClicked, this,
            [this] { statesSeen << cell->isChecked(); });
    click(place);
    QCOMPARE(statesSeen, QList<bool>({false}));
    click(place);
    QCOMPARE(statesSeen, QList<bool>({false, true}));
    QCOMPARE(reports->last(), QList<QVariant>({3, 0}));
}

void TestZZTableCell::spaceKeyOnTheBoxReportsTheRow()
{
    build(QStringLiteral("/folder/name.txt"));
    QTest::keyClick(child("checkBox"), Qt::Key_Space);
    QVERIFY(!cell->isChecked());
    QCOMPARE(reports->count(), 1);
}

void TestZZTableCell::setCheckedReportsNothing()
{
    build(QStringLiteral("/folder/name.txt"));
    cell->setChecked(false);
    QVERIFY(!cell->isChecked());
    cell->setChecked(true);
    QVERIFY(cell->isChecked());
    QCOMPARE(reports->count(), 0);
}

void TestZZTableCell::clicksReportTheIndexSetLast()
{
    build(QStringLiteral("/folder/name.txt"));
    cell->setIndex(7, 1);
    click(QPoint(100, 15));
    QCOMPARE(reports->last(), QList<QVariant>({7, 1}));
    cell->setIndex(-1, 0);
    click(QPoint(22, 15));
    QCOMPARE(reports->last(), QList<QVariant>({-1, 0}));
}

void TestZZTableCell::secondBuildChangesNothing()
{
    build(QStringLiteral("/folder/first.txt"), 3);
    const QObjectList children = cell->children();
    build(QStringLiteral("/folder/second.txt"), 4);
    QCOMPARE(cell->children(), children);
    QCOMPARE(cell->fullPath(), QStringLiteral("/folder/first.txt"));
    QCOMPARE(label("nameLabel")->text(), QStringLiteral("first.txt"));
    click(QPoint(100, 15));
    QCOMPARE(reports->last(), QList<QVariant>({3, 0}));
}

TEST_SUITE(zztablecell, TestZZTableCell)
#include "zztablecell.moc"
