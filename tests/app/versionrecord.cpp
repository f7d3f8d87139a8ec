// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The version record and the reserved block, found in built files as the suite's
// tools do it: with readelf.

#include "literals.h"
#include "suites.h"
#include "temporarytree.h"

#include <QProcess>
#include <QtTest>

using namespace testsupport;

namespace
{

struct Section {
    int position = -1;
    QByteArray type;
    quint64 address = 0;
    int offset = 0;
    int size = 0;
    QByteArray flags;
    int alignment = 0;
};

/// The section @p name of @p file, from the wide section table of readelf:
/// "[25] .data  PROGBITS  0000000000004000 003000 000010 00  WA  0  0  8"
Section sectionOf(const QString &file, const QByteArray &name)
{
    QProcess readelf;
    readelf.start("readelf"_s, {"-SW"_s, file});
    readelf.waitForFinished();
    const QList<QByteArray> lines = readelf.readAllStandardOutput().split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> words = line.mid(line.indexOf('[') + 1).simplified().split(' ');
        const auto number = [&](int word) { return words.at(word).toInt(nullptr, 16); };
        if (words.value(1) == name)
            return {words.at(0).chopped(1).toInt(),
                    words.at(2),
                    words.at(3).toULongLong(nullptr, 16),
                    number(4),
                    number(5),
                    words.at(7),
                    words.last().toInt()};
    }
    return {};
}

QByteArray contentsOf(const QString &file, const QByteArray &section)
{
    const Section place = sectionOf(file, section);
    return TemporaryTree::contentsOf(file).mid(place.offset, place.size);
}

QByteArray padded(const char *text, int width)
{
    return QByteArray(text).append(QByteArray(width, '\0')).left(width);
}

} // namespace

class TestVersionRecord : public QObject
{
    Q_OBJECT

private slots:
    void sectionsStandBetweenDataAndBss_data() { addExecutables(); }
    void sectionsStandBetweenDataAndBss();
    void versionSectionHoldsTheRecord_data() { addExecutables(); }
    void versionSectionHoldsTheRecord();
    void reservedBlockStartsWithItsMark_data() { addExecutables(); }
    void reservedBlockStartsWithItsMark();

private:
    static void addExecutables()
    {
        QTest::addColumn<QString>("file");
        QTest::newRow("program") << QStringLiteral(FILESHREDDER_EXECUTABLE);
        QTest::newRow("unused sections dropped, optimised at link time")
            << QStringLiteral(STRIPPED_EXECUTABLE);
        QTest::newRow("stripped as in a package") << QStringLiteral(PACKAGED_EXECUTABLE);
    }
};

void TestVersionRecord::sectionsStandBetweenDataAndBss()
{
    QFETCH(QString, file);
    const Section reserved = sectionOf(file, ".qarvo");
    const Section version = sectionOf(file, ".version");
    for (const Section &section : {reserved, version}) {
        QCOMPARE(section.type, QByteArray("PROGBITS"));
        QVERIFY(section.flags.startsWith("WA"));
        QCOMPARE(section.alignment, 32);
        QCOMPARE(section.address % 32, quint64{0});
    }
    QCOMPARE(version.position, reserved.position + 1);
    QCOMPARE(version.address, reserved.address + quint64(reserved.size));
    QVERIFY(sectionOf(file, ".data").position < reserved.position);
    QVERIFY(version.position < sectionOf(file, ".bss").position);
}

void TestVersionRecord::versionSectionHoldsTheRecord()
{
    QFETCH(QString, file);
    const QByteArray record = contentsOf(file, ".version");
    QCOMPARE(record.size(), 448);
    QCOMPARE(record.left(4), QByteArray("\xC0\x01\x00\x00", 4));
    QCOMPARE(record.mid(4, 16),
             QByteArray("\x03\x00\x00\x00\x00\x00\x41\x00\x01\x00\x00\x00\x00\x00\x00\x04", 16));
    QCOMPARE(record.mid(20, 12), QByteArray(12, '\0'));
    QCOMPARE(record.mid(32, 32), padded("brenvalesecure", 32));
    QCOMPARE(record.mid(64, 16), padded("3.0.0.65", 16));
    QCOMPARE(record.mid(80, 32), padded("fileshredder", 32));
    QCOMPARE(record.mid(112, 16), padded("1.0.0.1024", 16));
    QCOMPARE(record.at(191), '\0');
    QVERIFY(QByteArray(record.mid(128, 64).constData()).contains("Brenvale"));
    QCOMPARE(record.mid(192, 256), padded("fileshredder", 256));
}

void TestVersionRecord::reservedBlockStartsWithItsMark()
{
    QFETCH(QString, file);
    const QByteArray block = contentsOf(file, ".qarvo");
    QCOMPARE(block, QByteArray("\xDE\xAD\xC0\xDE", 4) + QByteArray(1020, '\0'));
}

TEST_SUITE(versionrecord, TestVersionRecord)
#include "versionrecord.moc"
