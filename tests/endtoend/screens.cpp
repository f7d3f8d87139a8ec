// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The window on screens of other resolutions: in the middle, of the size that the
// screen asks for, and where that is hardly another one, not scaled at all.

#include "desktopsession.h"
#include "runningshredder.h"
#include "shredderuser.h"
#include "suites.h"
#include "windowmap.h"

#include <QTest>

using namespace testsupport;

namespace
{

constexpr QSize screenInUnits(1920, 1080);
constexpr int usualResolution = 96;
/// Texts there have sizes in pixels.
constexpr QRect titleAndHeader(0, 0, 800, 110);

struct Sight {
    QRect window;
    QImage titleAndHeader;
};

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
    QProcessEnvironment wish;
    wish.insert(QStringLiteral("QT_SCALE_FACTOR"), scaleFactor);
    wish.insert(QStringLiteral("QT_FONT_DPI"), QString::number(dotsPerInch));
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
        wish.insert(QStringLiteral("QT_FONT_DPI"), QString::number(dotsPerInch));
    const Sight usual = sightOn(screenInUnits, usualResolution);
    const Sight similar = sightOn(screenInUnits, byDesktop ? usualResolution : dotsPerInch, wish);
    QCOMPARE(usual.window, mainwindow::onScreen);
    QCOMPARE(similar.window, mainwindow::onScreen);
    QVERIFY(samePixels(usual.titleAndHeader, similar.titleAndHeader));
}

TEST_SUITE(screens, TestEndToEndScreens)
#include "screens.moc"
