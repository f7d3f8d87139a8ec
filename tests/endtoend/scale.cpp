// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The window on screens of other resolutions: in the middle, of the size that the
// screen or the user asks for, and where that is hardly another one, not scaled at all.

#include "endtoendtest.h"
#include "suites.h"

#include <QTest>

using namespace testsupport;

namespace
{
constexpr int usualResolution = 96;
constexpr QSize usualScreen(1920, 1080);
constexpr QSize largeScreen = usualScreen * 2;
/// Texts there have sizes in pixels.
constexpr QRect titleAndHeader(0, 0, 800, 110);

QRect middleOf(const QSize &screen, qreal scale)
{
    const QSize rest = screen / scale - mainwindow::size;
    return {QPoint(rest.width() / 2, rest.height() / 2) * scale, mainwindow::size * scale};
}
} // namespace

class TestEndToEndScale : public EndToEndTest
{
    Q_OBJECT

private slots:
    void initTestCase();

    void windowHasTheSizeThatIsAskedFor_data();
    void windowHasTheSizeThatIsAskedFor();
    void hardlyAnotherResolutionChangesNoPixel_data();
    void hardlyAnotherResolutionChangesNoPixel();

private:
    static void addWishes();
    bool openAsWishedOn(const QSize &screen);

    QImage usualSight;
    std::unique_ptr<DesktopSession> otherDesktop;
};

void TestEndToEndScale::initTestCase()
{
    QVERIFY2(desktop.start(largeScreen, usualResolution), qPrintable(desktop.problem()));
    init();
    QVERIFY(shredder->openWindow());
    QCOMPARE(shredder->mainWindowOnScreen(), middleOf(largeScreen, 1));
    usualSight = shredder->picture(titleAndHeader);
    cleanup();
}

void TestEndToEndScale::addWishes()
{
    QTest::addColumn<int>("ofScreen");  // dots per inch
    QTest::addColumn<int>("ofDesktop"); // the same, whatever the screen says; 0 where it is silent
    QTest::addColumn<qreal>("factor");  // of the user
}

bool TestEndToEndScale::openAsWishedOn(const QSize &screen)
{
    QFETCH(int, ofScreen);
    QFETCH(int, ofDesktop);
    QFETCH(qreal, factor);
    if (ofDesktop != 0)
        user->set("QT_FONT_DPI"_s, QString::number(ofDesktop));
    if (factor != 1)
        user->set("QT_SCALE_FACTOR"_s, QString::number(factor));
    if (ofScreen != usualResolution) {
        otherDesktop = std::make_unique<DesktopSession>();
        shredder = std::make_unique<RunningShredder>(*otherDesktop, *user);
        if (!otherDesktop->start(screen, ofScreen))
            return false;
    }
    return shredder->openWindow();
}

void TestEndToEndScale::windowHasTheSizeThatIsAskedFor_data()
{
    addWishes();
    QTest::addColumn<qreal>("scale");
    // The first that is scaled, and sizes that desktops offer.
    for (const int dotsPerInch : {108, 120, 144, 168, 192, 288})
        QTest::addRow("screen of %d dots per inch", dotsPerInch)
            << dotsPerInch << 0 << 1.0 << qreal(dotsPerInch) / usualResolution;
    for (const qreal factor : {1.25, 1.5, 2.0, 3.0})
        QTest::addRow("%g times the usual one", factor) << 96 << 96 << factor << factor;
    QTest::newRow("twice a hardly scaled one") << 96 << 100 << 2.0 << 2.0;
    QTest::newRow("twice a coarse one") << 96 << 75 << 2.0 << 2.0;
    QTest::newRow("less of a fine one") << 96 << 192 << 0.5 << 1.0;
}

void TestEndToEndScale::windowHasTheSizeThatIsAskedFor()
{
    QFETCH(qreal, scale);
    QFETCH(int, ofScreen);
    const QSize screen = ofScreen == usualResolution ? largeScreen : usualScreen * scale;
    QVERIFY(openAsWishedOn(screen));
    QCOMPARE(shredder->mainWindowOnScreen(), middleOf(screen, scale));
}

void TestEndToEndScale::hardlyAnotherResolutionChangesNoPixel_data()
{
    addWishes();
    for (const int dotsPerInch : {75, 100, 107})
        QTest::addRow("screen of %d dots per inch", dotsPerInch) << dotsPerInch << 0 << 1.0;
    for (const int dotsPerInch : {75, 90, 100, 107})
        QTest::addRow("desktop of %d dots per inch", dotsPerInch) << 96 << dotsPerInch << 1.0;
}

void TestEndToEndScale::hardlyAnotherResolutionChangesNoPixel()
{
    QVERIFY(openAsWishedOn(largeScreen));
    QCOMPARE(shredder->mainWindowOnScreen(), middleOf(largeScreen, 1));
    QVERIFY(samePixels(shredder->picture(titleAndHeader), usualSight));
}

TEST_SUITE(scale, TestEndToEndScale)
#include "scale.moc"
