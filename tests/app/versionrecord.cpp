// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The version record and the reserved block, read from built files as the suite's
// tools do it: with readelf and objcopy.

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
    QString type;
    quint64 address = 0;
    quint64 size = 0;
    QString flags;
    int alignment = 0;
};

QString outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("%s failed", qPrintable(program));
    return QString::fromLatin1(process.readAllStandardOutput());
}

/// The section @p name of @p file, from the wide section table of readelf:
/// "[25] .data  PROGBITS  0000000000004000 003000 000010 00  WA  0  0  8"
Section sectionOf(const QString &file, const QString &name)
{
    QString table = outputOf("readelf"_s, {"-SW"_s, file});
    const QStringList lines = table.remove(QLatin1Char('[')).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QStringList words = line.simplified().split(QLatin1Char(' '));
        if (words.value(1) == name) {
            return {words.at(0).chopped(1).toInt(),
                    words.at(2),
                    words.at(3).toULongLong(nullptr, 16),
                    words.at(5).toULongLong(nullptr, 16),
                    words.at(7),
                    words.last().toInt()};
        }
    }
    return {};
}

QByteArray contentsOf(const QString &section, const QString &file)
{
    const TemporaryTree tree;
    const QString dump = tree.path("dump");
    outputOf("objcopy"_s, {"-O"_s, "binary"_s, "--only-section="_s + section, file, dump});
    return TemporaryTree::contentsOf(dump);
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
    const Section reserved = sectionOf(file, ".qarvo"_s);
    const Section version = sectionOf(file, ".version"_s);
    for (const Section &section : {reserved, version}) {
        QCOMPARE(section.type, "PROGBITS"_s);
        QVERIFY(section.flags.startsWith("WA"_s));
        QCOMPARE(section.alignment, 32);
        QCOMPARE(section.address % 32, quint64{0});
    }
    QCOMPARE(version.position, reserved.position + 1);
    QCOMPARE(version.address, reserved.address + reserved.size);
    QVERIFY(sectionOf(file, ".data"_s).position < reserved.position);
    QVERIFY(version.position < sectionOf(file, ".bss"_s).position);
}

void TestVersionRecord::versionSectionHoldsTheRecord()
{
    QFETCH(QString, file);
    const QByteArray record = contentsOf(".version"_s, file);
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
    const QByteArray block = contentsOf(".qarvo"_s, file);
    QCOMPARE(block, QByteArray("\xDE\xAD\xC0\xDE", 4) + QByteArray(1020, '\0'));
}

TEST_SUITE(versionrecord, TestVersionRecord)
#include "versionrecord.moc"
