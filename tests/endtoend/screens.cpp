// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The window on screens of other resolutions: in the middle, of the size that the
// screen asks for, and where that is hardly another one, not scaled at all. And on
// two monitors, dragged from one to the other.

#include "desktopsession.h"
#include "eventually.h"
#include "runningshredder.h"
#include "shredderuser.h"
#include "suites.h"
#include "temporarytree.h"
#include "windowmap.h"

#include <QTest>

using namespace testsupport;

namespace
{

constexpr QSize screenInUnits(1920, 1080);
constexpr int usualResolution = 96;
/// Texts there have sizes in pixels.
constexpr QRect titleAndHeader(0, 0, 800, 110);

/// One of each to a desk; the right one has room for the window at twice its size.
constexpr QSize leftMonitor(1920, 1080);
constexpr QSize rightMonitor(2000, 1300);
/// Where the strip is held, unless a test says otherwise.
constexpr QPoint grip(200, 20);

struct Sight {
    QRect window;
    QImage titleAndHeader;
};

/// What the desktop says of all monitors.
QProcessEnvironment resolution(int dotsPerInch)
{
    QProcessEnvironment wish;
    wish.insert(QStringLiteral("QT_FONT_DPI"), QString::number(dotsPerInch));
    return wish;
}

/// The user's wish for each monitor.
QProcessEnvironment scaleFactors(int left, int right)
{
    QProcessEnvironment wish;
    wish.insert(QStringLiteral("QT_SCREEN_SCALE_FACTORS"),
                QStringLiteral("%1;%2").arg(left).arg(right));
    return wish;
}

constexpr QRect scaled(const QRect &place, int scale)
{
    return {place.topLeft() * scale, place.size() * scale};
}

/// The window on a screen of @p size pixels that says @p dotsPerInch, for a user with @p wish in
/// the environment; an empty one if none appears.
Sight sightOn(const QSize &size, int dotsPerInch,
              const QProcessEnvironment &wish = QProcessEnvironment())
{
    DesktopSession desktop;
    if (!desktop.start(size, dotsPerInch))
        return Sight();
    desktop.addVariables(wish);
    const ShredderUser user;
    RunningShredder shredder(desktop, user);
    if (!shredder.openWindow())
        return Sight();
    return {shredder.mainWindowOnScreen(), shredder.picture(titleAndHeader)};
}

} // namespace

class TestEndToEndScreens : public QObject
{
    Q_OBJECT

private slots:
    void windowHasTheSizeThatTheScreenAsksFor_data();
    void windowHasTheSizeThatTheScreenAsksFor();
    void windowHasTheSizeThatTheUserAsksFor_data();
    void windowHasTheSizeThatTheUserAsksFor();
    void hardlyAnotherResolutionChangesNoPixel_data();
    void hardlyAnotherResolutionChangesNoPixel();
    void windowIsDraggedToTheOtherMonitor_data();
    void windowIsDraggedToTheOtherMonitor();
    void windowIsWholeWhereverItIsReleased_data();
    void windowIsWholeWhereverItIsReleased();
};

void TestEndToEndScreens::windowHasTheSizeThatTheScreenAsksFor_data()
{
    QTest::addColumn<int>("dotsPerInch");
    for (const int dotsPerInch : {usualResolution, 120, 144, 168, 192, 288})
        QTest::addRow("%d dots per inch", dotsPerInch) << dotsPerInch;
}

void TestEndToEndScreens::windowHasTheSizeThatTheScreenAsksFor()
{
    QFETCH(int, dotsPerInch);
    const qreal scale = qreal(dotsPerInch) / usualResolution;
    QCOMPARE(sightOn(screenInUnits * scale, dotsPerInch).window,
             QRect(mainwindow::onScreen.topLeft() * scale, mainwindow::size * scale));
}

void TestEndToEndScreens::windowHasTheSizeThatTheUserAsksFor_data()
{
    QTest::addColumn<int>("dotsPerInch"); // as the desktop sets it, whatever the screen says
    QTest::addColumn<QString>("scaleFactor");
    QTest::addColumn<qreal>("scale");
    for (const char *factor : {"1.25", "1.5", "2", "3"})
        QTest::newRow(factor) << usualResolution << QString::fromLatin1(factor)
                              << QByteArray(factor).toDouble();
    QTest::newRow("twice a hardly scaled one") << 100 << QStringLiteral("2") << 2.0;
    QTest::newRow("twice a coarse one") << 75 << QStringLiteral("2") << 2.0;
    QTest::newRow("less of a fine one") << 192 << QStringLiteral("0.5") << 1.0;
}

void TestEndToEndScreens::windowHasTheSizeThatTheUserAsksFor()
{
    QFETCH(int, dotsPerInch);
    QFETCH(QString, scaleFactor);
    QFETCH(qreal, scale);
    QProcessEnvironment wish = resolution(dotsPerInch);
    wish.insert(QStringLiteral("QT_SCALE_FACTOR"), scaleFactor);
    QCOMPARE(sightOn(screenInUnits * scale, usualResolution, wish).window,
             QRect(mainwindow::onScreen.topLeft() * scale, mainwindow::size * scale));
}

void TestEndToEndScreens::hardlyAnotherResolutionChangesNoPixel_data()
{
    QTest::addColumn<int>("dotsPerInch");
    QTest::addColumn<bool>("byDesktop");
    for (const int dotsPerInch : {75, 90, 100, 107}) {
        QTest::addRow("screen of %d dots per inch", dotsPerInch) << dotsPerInch << false;
        QTest::addRow("desktop of %d dots per inch", dotsPerInch) << dotsPerInch << true;
    }
}

void TestEndToEndScreens::hardlyAnotherResolutionChangesNoPixel()
{
    QFETCH(int, dotsPerInch);
    QFETCH(bool, byDesktop);
    QProcessEnvironment wish;
    if (byDesktop)
        wish = resolution(dotsPerInch);
    const Sight usual = sightOn(screenInUnits, usualResolution);
    const Sight similar = sightOn(screenInUnits, byDesktop ? usualResolution : dotsPerInch, wish);
    QCOMPARE(usual.window, mainwindow::onScreen);
    QCOMPARE(similar.window, mainwindow::onScreen);
    QVERIFY(samePixels(usual.titleAndHeader, similar.titleAndHeader));
}

void TestEndToEndScreens::windowIsDraggedToTheOtherMonitor_data()
{
    QTest::addColumn<int>("leftScale");
    QTest::addColumn<int>("rightScale");
    QTest::newRow("of the same scale") << 1 << 1;
    QTest::newRow("of the same scale, both dense") << 2 << 2;
    QTest::newRow("of twice the scale") << 1 << 2;
    QTest::newRow("of half the scale") << 2 << 1;
}

void TestEndToEndScreens::windowIsDraggedToTheOtherMonitor()
{
    QFETCH(int, leftScale);
    QFETCH(int, rightScale);
    if (!DesktopSession::hasMonitors())
        QSKIP("needs Xephyr");
    DesktopSession desktop;
    QVERIFY2(desktop.startWithMonitors(leftMonitor, rightMonitor), qPrintable(desktop.problem()));
    if (leftScale == rightScale) // all that a desktop can say is one for all
        desktop.addVariables(resolution(leftScale * usualResolution));
    else
        desktop.addVariables(scaleFactors(leftScale, rightScale));
    const ShredderUser user;
    const TemporaryTree tree;
    RunningShredder shredder(desktop, user);
    QVERIFY(shredder.openWindow());
    const QRect start = shredder.mainWindowOnScreen();
    QCOMPARE(start.size(), mainwindow::size * leftScale);

    const QPoint target(leftMonitor.width() + 600, 200);
    desktop.drag(start.topLeft() + grip * leftScale, target);
    const QRect window(target - grip * rightScale, mainwindow::size * rightScale);
    QTRY_COMPARE_WITH_TIMEOUT(desktop.geometryOf(shredder.mainWindowId()), window, patience);
    const auto click = [&](const QRect &place) {
        desktop.click(window.topLeft() + scaled(place, rightScale).center());
    };

    click(mainwindow::historyLink);
    const auto history = shredder.waitForOtherWindow();
    QVERIFY(history);
    QTRY_COMPARE_WITH_TIMEOUT(
        desktop.geometryOf(*history),
        scaled({historywindow::overMainWindow, historywindow::size}, rightScale)
            .translated(window.topLeft()),
        patience);
    QVERIFY(!shredder.drawnWindow(*history).isNull());
    desktop.click(desktop.geometryOf(*history).topLeft()
                  + scaled(historywindow::closeButton, rightScale).center());
    QVERIFY(eventually([&] { return shredder.onlyMainWindowIsOpen(); }));

    click(mainwindow::addButton);
    QVERIFY(shredder.waitForOtherWindow());
    desktop.type(tree.makeFile(QStringLiteral("file"), 10));
    desktop.pressKey(QStringLiteral("Return"));
    QVERIFY(eventually([&] {
        click(mainwindow::crushButton);
        return shredder.dialogIsOpen();
    }));
    const QPoint middle((mainwindow::size.width() - dialog::size.width()) / 2,
                        (mainwindow::size.height() - dialog::size.height()) / 2);
    QTRY_COMPARE_WITH_TIMEOUT(
        desktop.geometryOf(*shredder.waitForDialog()),
        scaled({middle, dialog::size}, rightScale).translated(window.topLeft()), patience);
}

void TestEndToEndScreens::windowIsWholeWhereverItIsReleased_data()
{
    QTest::addColumn<int>("leftScale");
    QTest::addColumn<int>("rightScale");
    QTest::newRow("twice the scale on the right") << 1 << 2;
    QTest::newRow("half the scale on the right") << 2 << 1;
}

void TestEndToEndScreens::windowIsWholeWhereverItIsReleased()
{
    QFETCH(int, leftScale);
    QFETCH(int, rightScale);
    if (!DesktopSession::hasMonitors())
        QSKIP("needs Xephyr");
    DesktopSession desktop;
    QVERIFY2(desktop.startWithMonitors(leftMonitor, rightMonitor), qPrintable(desktop.problem()));
    desktop.addVariables(scaleFactors(leftScale, rightScale));
    const ShredderUser user;
    RunningShredder shredder(desktop, user);
    QVERIFY(shredder.openWindow());
    QRect window = shredder.mainWindowOnScreen();
    int scale = leftScale;
    for (const int held : {100, 700}) {
        for (const int beyondTheBorder : {-300, 0, -1, 300, -300}) {
            const QPoint target(leftMonitor.width() + beyondTheBorder, 200);
            desktop.drag(window.topLeft() + QPoint(held, grip.y()) * scale, target);
            // The monitor of the pointer has the window's middle and says its size.
            scale = beyondTheBorder < 0 ? leftScale : rightScale;
            const auto isThere = [&] {
                window = desktop.geometryOf(shredder.mainWindowId());
                return window.size() == mainwindow::size * scale
                       && window.y() == target.y() - grip.y() * scale
                       && (window.center().x() < leftMonitor.width()) == (beyondTheBorder < 0)
                       && window.contains(target);
            };
            QVERIFY2(eventually(isThere),
                     qPrintable(QStringLiteral("held at %1, released at %2: %3, %4; %5 x %6")
                                    .arg(held)
                                    .arg(target.x())
                                    .arg(window.x())
                                    .arg(window.y())
                                    .arg(window.width())
                                    .arg(window.height())));
        }
    }
}

TEST_SUITE(screens, TestEndToEndScreens)
#include "screens.moc"
