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
constexpr QSize largeScreen(3840, 2160);
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

    void windowHasTheSizeThatTheScreenAsksFor_data();
    void windowHasTheSizeThatTheScreenAsksFor();
    void windowHasTheSizeThatTheUserAsksFor_data();
    void windowHasTheSizeThatTheUserAsksFor();
    void hardlyAnotherResolutionChangesNoPixel_data();
    void hardlyAnotherResolutionChangesNoPixel();

private:
    QImage usualSight;
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

void TestEndToEndScale::windowHasTheSizeThatTheScreenAsksFor_data()
{
    QTest::addColumn<int>("dotsPerInch");
    // The first that is scaled, and sizes that desktops offer.
    for (const int dotsPerInch : {108, 120, 144, 168, 192, 288})
        QTest::addRow("%d dots per inch", dotsPerInch) << dotsPerInch;
}

void TestEndToEndScale::windowHasTheSizeThatTheScreenAsksFor()
{
    QFETCH(int, dotsPerInch);
    const qreal scale = qreal(dotsPerInch) / usualResolution;
    const QSize screen = QSize(1920, 1080) * scale;
    DesktopSession other;
    QVERIFY2(other.start(screen, dotsPerInch), qPrintable(other.problem()));
    RunningShredder there(other, *user);
    QVERIFY(there.openWindow());
    QCOMPARE(there.mainWindowOnScreen(), middleOf(screen, scale));
}

void TestEndToEndScale::windowHasTheSizeThatTheUserAsksFor_data()
{
    QTest::addColumn<QString>("dotsPerInch"); // as the desktop sets it, whatever the screen says
    QTest::addColumn<QString>("scaleFactor");
    QTest::addColumn<qreal>("scale");
    for (const char *factor : {"1.25", "1.5", "2", "3"})
        QTest::newRow(factor) << QStringLiteral("96") << QString::fromLatin1(factor)
                              << QByteArray(factor).toDouble();
    QTest::newRow("twice a hardly scaled one")
        << QStringLiteral("100") << QStringLiteral("2") << 2.0;
    QTest::newRow("twice a coarse one") << QStringLiteral("75") << QStringLiteral("2") << 2.0;
    QTest::newRow("less of a fine one") << QStringLiteral("192") << QStringLiteral("0.5") << 1.0;
}

void TestEndToEndScale::windowHasTheSizeThatTheUserAsksFor()
{
    QFETCH(QString, dotsPerInch);
    QFETCH(QString, scaleFactor);
    QFETCH(qreal, scale);
    user->set(QStringLiteral("QT_FONT_DPI"), dotsPerInch);
    user->set(QStringLiteral("QT_SCALE_FACTOR"), scaleFactor);
    QVERIFY(shredder->openWindow());
    QCOMPARE(shredder->mainWindowOnScreen(), middleOf(largeScreen, scale));
}

void TestEndToEndScale::hardlyAnotherResolutionChangesNoPixel_data()
{
    QTest::addColumn<int>("ofScreen");
    QTest::addColumn<QString>("ofDesktop");
    for (const int dotsPerInch : {75, 100, 107})
        QTest::addRow("screen of %d dots per inch", dotsPerInch) << dotsPerInch << QString();
    for (const int dotsPerInch : {75, 90, 100, 107})
        QTest::addRow("desktop of %d dots per inch", dotsPerInch)
            << usualResolution << QString::number(dotsPerInch);
}

void TestEndToEndScale::hardlyAnotherResolutionChangesNoPixel()
{
    QFETCH(int, ofScreen);
    QFETCH(QString, ofDesktop);
    DesktopSession other;
    if (ofScreen != usualResolution)
        QVERIFY2(other.start(largeScreen, ofScreen), qPrintable(other.problem()));
    if (!ofDesktop.isEmpty())
        user->set(QStringLiteral("QT_FONT_DPI"), ofDesktop);
    RunningShredder similar(ofScreen == usualResolution ? desktop : other, *user);
    QVERIFY(similar.openWindow());
    QCOMPARE(similar.mainWindowOnScreen(), middleOf(largeScreen, 1));
    QVERIFY(samePixels(similar.picture(titleAndHeader), usualSight));
}

TEST_SUITE(scale, TestEndToEndScale)
#include "scale.moc"
