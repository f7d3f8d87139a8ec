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
    void textThatFitsIsUnchanged();
    void longTextKeepsItsLastSixCharactersAndAllThatFits();
    void sixCharactersOrFewerAreNeverShortened();
    void textThatNeverFitsKeepsOneLeadingCharacter();
    void emptyTextNoWidthOrNoWidgetChangesNothing();
    void fontOfTheWidgetDecides();
    void charactersAreCodeUnits();
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

/// The rule as it is defined: leave out one more character until the text fits.
QString TestElision::stepByStep(const QString &text, int pixelWidth) const
{
    QString shortened = text;
    for (int count = text.length() - 6; widthOf(shortened) > pixelWidth && count >= 1; --count)
        shortened = text.left(count) + QStringLiteral("...") + text.right(6);
    return shortened;
}

void TestElision::textThatFitsIsUnchanged()
{
    const QString name = QStringLiteral("a name of some length.pdf");
    QCOMPARE(elidedKeepingTail(name, widthOf(name), &label), name);
    QVERIFY(elidedKeepingTail(name, widthOf(name) - 1, &label) != name);
}

void TestElision::longTextKeepsItsLastSixCharactersAndAllThatFits()
{
    const QString name = QString(200, QLatin1Char('m')) + QStringLiteral("12.pdf");
    const QString shortened = elidedKeepingTail(name, 240, &label);
    QVERIFY(shortened.endsWith(QStringLiteral("m...12.pdf")));
    QVERIFY(widthOf(shortened) <= 240);
    QVERIFY(widthOf(QLatin1Char('m') + shortened) > 240);
}

void TestElision::sixCharactersOrFewerAreNeverShortened()
{
    for (int length = 1; length <= 6; ++length) {
        const QString name(length, QLatin1Char('W'));
        QCOMPARE(elidedKeepingTail(name, 1, &label), name);
    }
}

void TestElision::textThatNeverFitsKeepsOneLeadingCharacter()
{
    // Of seven characters nothing can be left out, but the stops come in.
    QCOMPARE(elidedKeepingTail(QStringLiteral("WabcdeF"), 1, &label), QStringLiteral("W...abcdeF"));
    QCOMPARE(elidedKeepingTail(QStringLiteral("a much too long name.txt"), 1, &label),
             QStringLiteral("a...me.txt"));
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

void TestElision::charactersAreCodeUnits()
{
    // The tail begins in the middle of the first pair of surrogates.
    const QString smiley = QString::fromUtf8("\xf0\x9f\x98\x80");
    const QString name = QStringLiteral("aaaaaaaa") + smiley + QStringLiteral("b.txt");
    QCOMPARE(elidedKeepingTail(name, 1, &label), QStringLiteral("a...") + name.right(6));
    QVERIFY(name.right(6).at(0).isLowSurrogate());
}

void TestElision::equalsStepByStepShortening_data()
{
    QTest::addColumn<QString>("text");
    const auto repeated = [](const char *part, int times) -> QString {
        return QString::fromUtf8(part).repeated(times) + QStringLiteral("end.txt");
    };
    QTest::newRow("narrow letters") << repeated("il.", 200);
    QTest::newRow("wide letters") << repeated("MW", 200);
    QTest::newRow("ligatures and kerning") << repeated("ffiAVToffl", 40);
    QTest::newRow("Chinese") << repeated("粉碎文件夹", 60);
    QTest::newRow("Arabic, joined letters") << repeated("لا إله سلام ", 40);
    QTest::newRow("combining marks") << repeated("e\xcc\x81\xcc\xa3", 150);
    QTest::newRow("without width") << repeated("\xe2\x80\x8b", 300);
    QTest::newRow("surrogate pairs") << repeated("\xf0\x9f\x98\x80", 100);
    QTest::newRow("joined emoji") << repeated("\xf0\x9f\x91\xa8\xe2\x80\x8d\xf0\x9f\x91\xa9", 60);
    QTest::newRow("folders") << repeated("/some folder", 100);
    QTest::newRow("line feeds") << repeated("a\nb\t", 100);
}

void TestElision::equalsStepByStepShortening()
{
    QFETCH(QString, text);
    for (const int width : {1, 20, 77, 240, 463})
        QCOMPARE(elidedKeepingTail(text, width, &label), stepByStep(text, width));
}

TEST_SUITE(elision, TestElision)
#include "elision.moc"
