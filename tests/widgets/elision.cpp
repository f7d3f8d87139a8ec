// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "widgets/elision.h"
#include "suites.h"

#include <QFontMetrics>
#include <QLabel>
#include <QtTest>

class TestElision : public QObject
{
    Q_OBJECT

private slots:
    void sixCharactersOrFewerAreNeverShortened();
    void emptyTextNoWidthOrNoWidgetChangesNothing();
    void fontOfTheWidgetDecides();
    void equalsStepByStepShortening_data();
    void equalsStepByStepShortening();

private:
    int widthOf(const QString &text) const
    {
        return QFontMetrics(label.font()).horizontalAdvance(text);
    }
    QString stepByStep(const QString &text, int pixelWidth) const;

    QLabel label;
};

/// The rule as it is defined: one more character is left out until the text fits.
QString TestElision::stepByStep(const QString &text, int pixelWidth) const
{
    QString shortened = text;
    for (int count = text.length() - 6; widthOf(shortened) > pixelWidth && count >= 1; --count)
        shortened = text.left(count) + QStringLiteral("...") + text.right(6);
    return shortened;
}

void TestElision::sixCharactersOrFewerAreNeverShortened()
{
    for (int length = 1; length <= 6; ++length) {
        const QString name(length, QLatin1Char('W'));
        QCOMPARE(elidedKeepingTail(name, 1, &label), name);
    }
}

void TestElision::emptyTextNoWidthOrNoWidgetChangesNothing()
{
    const QString name(100, QLatin1Char('W'));
    QCOMPARE(elidedKeepingTail(QString(), 240, &label), QString());
    QCOMPARE(elidedKeepingTail(name, 0, &label), name);
    QCOMPARE(elidedKeepingTail(name, -5, &label), name);
    QCOMPARE(elidedKeepingTail(name, 10, nullptr), name);
}

void TestElision::fontOfTheWidgetDecides()
{
    QLabel large;
    QFont font = large.font();
    font.setPixelSize(40);
    large.setFont(font);
    const QString name = QStringLiteral("a name of some length.pdf");
    QCOMPARE(elidedKeepingTail(name, widthOf(name), &label), name);
    QVERIFY(elidedKeepingTail(name, widthOf(name), &large).length() < name.length());
}

void TestElision::equalsStepByStepShortening_data()
{
    QTest::addColumn<QString>("text");
    const auto repeated = [](const char *part, int times) -> QString {
        return QString::fromUtf8(part).repeated(times) + QStringLiteral("end.txt");
    };
    QTest::newRow("seven characters, where only stops come in") << QStringLiteral("WabcdeF");
    QTest::newRow("narrow letters") << repeated("il.", 200);
    QTest::newRow("wide letters") << repeated("MW", 200);
    QTest::newRow("ligatures and kerning") << repeated("ffiAVToffl", 40);
    QTest::newRow("Chinese") << repeated("粉碎文件夹", 60);
    QTest::newRow("Arabic, joined letters") << repeated("لا إله سلام ", 40);
    QTest::newRow("combining marks") << repeated("e\xcc\x81\xcc\xa3", 150);
    QTest::newRow("without width") << repeated("\xe2\x80\x8b", 300);
    QTest::newRow("surrogate pairs, counted as two") << repeated("\xf0\x9f\x98\x80", 100);
    QTest::newRow("joined emoji") << repeated("\xf0\x9f\x91\xa8\xe2\x80\x8d\xf0\x9f\x91\xa9", 60);
    QTest::newRow("folders") << repeated("/some folder", 100);
    QTest::newRow("line feeds") << repeated("a\nb\t", 100);
}

void TestElision::equalsStepByStepShortening()
{
    QFETCH(QString, text);
    const int whole = widthOf(text);
    for (const int width : {1, 20, 77, 240, 463, whole - 1, whole})
        QCOMPARE(elidedKeepingTail(text, width, &label), stepByStep(text, width));
}

TEST_SUITE(elision, TestElision)
#include "elision.moc"
