// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The version record and the reserved block, read from built files as the suite's
// tools do it: with readelf and objcopy.

#include "suites.h"
#include "temporarytree.h"

#include <QProcess>
#include <QtTest>

namespace
{

struct Section {
    QString type;
    quint64 address = 0;
    quint64 size = 0;
    QString flags;
    int alignment = 0;
    int position = -1;
};

QByteArray outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qFatal("%s failed", qPrintable(program));
    return process.readAllStandardOutput();
}

/// The sections of @p file by name, from the wide section table of readelf.
QHash<QString, Section> sectionsOf(const QString &file)
{
    // "[25] .data  PROGBITS  0000000000004000 003000 000010 00  WA  0  0  8"
    static const QRegularExpression row(
        QStringLiteral("^\\s*\\[\\s*(\\d+)\\]\\s+(\\S+)\\s+(\\S+)\\s+([0-9a-f]+)\\s+[0-9a-f]+\\s+"
                       "([0-9a-f]+)\\s+[0-9a-f]+\\s+([A-Za-z]*)\\s+\\d+\\s+\\d+\\s+(\\d+)"));
    QHash<QString, Section> sections;
    const QList<QByteArray> lines =
        outputOf(QStringLiteral("readelf"), {QStringLiteral("-SW"), file}).split('\n');
    for (const QByteArray &line : lines) {
        const QRegularExpressionMatch match = row.match(QString::fromUtf8(line));
        if (match.hasMatch()) {
            sections.insert(match.captured(2),
                            Section{match.captured(3), match.captured(4).toULongLong(nullptr, 16),
                                    match.captured(5).toULongLong(nullptr, 16), match.captured(6),
                                    match.captured(7).toInt(), match.captured(1).toInt()});
        }
    }
    return sections;
}

QByteArray contentsOf(const QString &section, const QString &file)
{
    const testsupport::TemporaryTree tree;
    const QString dump = tree.path(QStringLiteral("dump"));
    outputOf(QStringLiteral("objcopy"), {QStringLiteral("-O"), QStringLiteral("binary"),
                                         QStringLiteral("--only-section=") + section, file, dump});
    return testsupport::TemporaryTree::contentsOf(dump);
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
    const QHash<QString, Section> sections = sectionsOf(file);
    const Section reserved = sections.value(QStringLiteral(".qarvo"));
    const Section version = sections.value(QStringLiteral(".version"));
    for (const Section &section : {reserved, version}) {
        QCOMPARE(section.type, QStringLiteral("PROGBITS"));
        QVERIFY(section.flags.startsWith(QStringLiteral("WA")));
        QCOMPARE(section.alignment, 32);
        QCOMPARE(section.address % 32, quint64{0});
    }
    QCOMPARE(version.position, reserved.position + 1);
    QCOMPARE(version.address, reserved.address + reserved.size);
    QVERIFY(sections.value(QStringLiteral(".data")).position < reserved.position);
    QVERIFY(version.position < sections.value(QStringLiteral(".bss")).position);
}

void TestVersionRecord::versionSectionHoldsTheRecord()
{
    QFETCH(QString, file);
    const QByteArray record = contentsOf(QStringLiteral(".version"), file);
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
    const QByteArray block = contentsOf(QStringLiteral(".qarvo"), file);
    QCOMPARE(block, QByteArray("\xDE\xAD\xC0\xDE", 4) + QByteArray(1020, '\0'));
}

TEST_SUITE(versionrecord, TestVersionRecord)
#include "versionrecord.moc"
