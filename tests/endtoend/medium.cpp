// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the medium holds when the program's report is on the screen, before anybody syncs: file
// systems in images, whose old bytes are on the medium and not in memory when the run begins.

#include "endtoendtest.h"
#include "loopimage.h"
#include "oldbytes.h"
#include "suites.h"

#include <QCoreApplication>
#include <QTest>

using namespace testsupport;

class TestEndToEndMedium : public EndToEndTest
{
    Q_OBJECT

private slots:
    void initTestCase();

    void nothingIsLeftWhenTheReportIsShown_data();
    void nothingIsLeftWhenTheReportIsShown();
};

void TestEndToEndMedium::initTestCase()
{
    const QString reason = whyNoImages();
    if (!reason.isEmpty())
        QSKIP(qPrintable(reason));
    EndToEndTest::initTestCase();
}

void TestEndToEndMedium::nothingIsLeftWhenTheReportIsShown_data()
{
    QTest::addColumn<QString>("type");
    for (const char *type : {"ext4", "ext2", "xfs"})
        QTest::newRow(type) << QString::fromLatin1(type);
}

void TestEndToEndMedium::nothingIsLeftWhenTheReportIsShown()
{
    constexpr int bigSize = 24 * 1024 * 1024 + 96;
    QFETCH(QString, type);
    LoopImage image(plainFileSystem(type));
    if (image.isUnknownToKernel())
        QSKIP(qPrintable("no %1 in this kernel"_s.arg(type)));
    QVERIFY2(image.problem().isEmpty(), qPrintable(image.problem()));

    OldBytes old;
    for (int file = 0; file < 500; ++file) {
        image.makeFile("folder/%1/%2"_s.arg(file % 30).arg(file),
                       old.take(OldBytes::pieceSize + (file * 997) % 9000));
    }
    image.makeFile("folder/big", old.take(bigSize));
    const QString big = image.makeFile("big", old.take(bigSize));
    const QString small = image.makeFile("small", old.take(1000));
    const QString empty = image.makeFile("empty", QByteArray());
    QVERIFY2(image.remount(), qPrintable(image.problem()));
    QCOMPARE(piecesLeft(old.placesIn(image.imageFile()), old.all()), old.all().count);

    QVERIFY(openWith({image.path("folder"), big, empty, small}));
    QVERIFY(shredder->startShredding());
    QVERIFY(shredder->waitForDialog().has_value());
    QCOMPARE(piecesLeft(old.placesIn(image.imageFile()), old.all()), 0);
    QVERIFY(shredder->answerDialog(dialog::reportOk));
    QVERIFY(!entryExists(image.path("folder")) && !entryExists(big));
}

static void prepare(int, char **)
{
    enterOwnMounts();
}

TEST_SUITE_PREPARED_BY(medium, TestEndToEndMedium, prepare)

#include "medium.moc"
