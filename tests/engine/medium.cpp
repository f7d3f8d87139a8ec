// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the medium holds at the moment of a verdict, before anybody syncs: file systems in images,
// whose old bytes are on the medium and not in memory when the shredding begins.

#include "enginetest.h"
#include "expectedbytes.h"
#include "loopimage.h"
#include "oldbytes.h"

#include <ctime>
#include <map>

using namespace testsupport;

namespace
{

constexpr int mebibyte = 1024 * 1024;

} // namespace

class TestMedium : public EngineTest
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void initTestCase();
    void init();
    void cleanup();

    void definedBytesStandWhereANameCannotGo();
    void nothingIsLeftBelowAnOverlay();
    void stoppedFolderHasLeftNothingOfWhatIsReported();
    void definedBytesStandWhereASecondNameStays();
    void nothingIsLeftOfFilesInFolders();

private:
    QString makeOld(const QString &name, int size);
    bool putOnTheMedium();
    int leftOf(const PieceRange &range) const;
    QByteArray standingWhere(const PieceRange &range) const;

    /// One of each kind for all tests, as it takes a while to make one. Each test begins with an
    /// empty one; the largest files come last, so that the others have little to read.
    std::map<QString, std::unique_ptr<LoopImage>> images;
    LoopImage *image = nullptr;
    OldBytes old;
    PiecePlaces before;
};

void TestMedium::initTestCase_data()
{
    QTest::addColumn<QString>("type");
    for (const char *type : {"ext4", "ext2", "xfs"})
        QTest::newRow(type) << QString::fromLatin1(type);
}

void TestMedium::initTestCase()
{
    const QString reason = whyNoImages();
    if (!reason.isEmpty())
        QSKIP(qPrintable(reason));
}

void TestMedium::init()
{
    EngineTest::init();
    QFETCH_GLOBAL(QString, type);
    std::unique_ptr<LoopImage> &kept = images[type];
    if (!kept)
        kept = std::make_unique<LoopImage>(plainFileSystem(type));
    image = kept.get();
    if (image->isUnknownToKernel())
        QSKIP(qPrintable(QStringLiteral("no %1 in this kernel").arg(type)));
    QVERIFY2(image->problem().isEmpty(), qPrintable(image->problem()));
    old = OldBytes();
}

void TestMedium::cleanup()
{
    QDir(image->path()).removeRecursively(); // but for the mounted folder itself
    EngineTest::cleanup();
}

/// A file of old bytes, which are the last that were taken.
QString TestMedium::makeOld(const QString &name, int size)
{
    return image->makeFile(name, old.take(size));
}

/// Whether every old piece is on the medium then.
bool TestMedium::putOnTheMedium()
{
    if (!image->remount())
        return false;
    before = old.placesIn(image->imageFile());
    return piecesLeft(before, old.all()) == old.all().count;
}

/// How many old pieces are on the medium now.
int TestMedium::leftOf(const PieceRange &range) const
{
    return piecesLeft(old.placesIn(image->imageFile()), range);
}

/// What the medium holds now in the place of old pieces.
QByteArray TestMedium::standingWhere(const PieceRange &range) const
{
    return bytesAt(image->imageFile(), before, range);
}

void TestMedium::definedBytesStandWhereANameCannotGo()
{
    const QString inTree = makeOld(QStringLiteral("top/kept/file"), 20000);
    const PieceRange ofTree = old.last();
    const QString lone = makeOld(QStringLiteral("kept/lone"), 20000);
    const PieceRange ofLone = old.last();
    QVERIFY(putOnTheMedium());
    const QStringList keepers{image->path("top/kept"), image->path("kept")};
    for (const QString &folder : keepers)
        QVERIFY(setImmutable(folder, true));
    const std::time_t begin = std::time(nullptr);
    const qint64 ofFile = shredFile(lone);
    const QByteArray standingOfLone = standingWhere(ofLone);
    const qint64 ofFolder = shredFolder(image->path("top"));
    const QByteArray standingOfTree = standingWhere(ofTree);
    const std::time_t end = std::time(nullptr);
    for (const QString &folder : keepers)
        QVERIFY(setImmutable(folder, false));
    QVERIFY(ofFile < 0 && ofFolder < 0 && entryExists(lone) && entryExists(inTree));
    QVERIFY(wasOverwritten(standingOfLone, begin, end));
    QVERIFY(wasOverwritten(standingOfTree, begin, end));
}

/// An overlay has its files written in place once they are in its upper layer, and writes nothing
/// when it is asked for a range of a file.
void TestMedium::nothingIsLeftBelowAnOverlay()
{
    for (int file = 0; file < 200; ++file)
        makeOld(QStringLiteral("upper/top/%1").arg(file), 3000 + file);
    for (const char *folder : {"lower", "work", "merged"})
        image->makeFolder(folder);
    QVERIFY(putOnTheMedium());
    const QByteArray root = image->path().toUtf8();
    const Mount merged(image->path("merged"),
                       "lowerdir=" + root + "/lower,upperdir=" + root + "/upper,workdir=" + root
                           + "/work",
                       "overlay");
    if (!merged.isDone())
        QSKIP("no overlay over this file system");
    QCOMPARE(shredFolder(image->path("merged/top")), CrushResult::Success);
    QCOMPARE(leftOf(old.all()), 0);
}

void TestMedium::stoppedFolderHasLeftNothingOfWhatIsReported()
{
    constexpr int removals = 400;
    QHash<QString, PieceRange> rangeOf;
    for (int file = 0; file < 2 * removals; ++file) {
        const QString path = makeOld(QStringLiteral("top/%1").arg(file), 3000 + file);
        rangeOf.insert(path, old.last());
    }
    QVERIFY(putOnTheMedium());
    stopAtRemoval(removals);
    QCOMPARE(shredFolder(image->path("top")), CrushResult::Stopped);
    const PiecePlaces atVerdict = old.placesIn(image->imageFile());
    const QStringList reported = log->firstArguments("addToHistory");
    QCOMPARE(reported.size(), removals);
    for (const QString &path : reported)
        QCOMPARE(piecesLeft(atVerdict, rangeOf.take(path)), 0);
    for (const PieceRange &range : qAsConst(rangeOf))
        QCOMPARE(piecesLeft(atVerdict, range), range.count);
}

void TestMedium::definedBytesStandWhereASecondNameStays()
{
    const auto makeWithSecondName = [this](const QString &name, int size) {
        image->makeHardLink(QStringLiteral("second-of-%1").arg(size), makeOld(name, size));
        return old.last();
    };
    const PieceRange small = makeWithSecondName(QStringLiteral("top/small"), 800);
    const PieceRange big = makeWithSecondName(QStringLiteral("top/big"), 9 * mebibyte + 64);
    const PieceRange lone = makeWithSecondName(QStringLiteral("lone"), 3 * 4096 + 96);
    QVERIFY(putOnTheMedium());
    const std::time_t begin = std::time(nullptr);
    QCOMPARE(shredFile(image->path("lone")), qint64{3 * 4096 + 96});
    QCOMPARE(leftOf(lone), 0);
    QCOMPARE(leftOf(big), big.count);
    QVERIFY(wasOverwritten(standingWhere(lone), begin, std::time(nullptr)));
    QCOMPARE(shredFolder(image->path("top")), CrushResult::Success);
    QCOMPARE(leftOf(old.all()), 0);
    QVERIFY(wasOverwritten(standingWhere(small), begin, std::time(nullptr)));
    QVERIFY(wasOverwritten(standingWhere(big), begin, std::time(nullptr)));
}

void TestMedium::nothingIsLeftOfFilesInFolders()
{
    for (int file = 0; file < 1500; ++file) {
        const QString folder = QStringLiteral("top/%1/%2/").arg(file % 5).arg(file % 30);
        makeOld(folder + QString::number(file), OldBytes::pieceSize + (file * 997) % 9000);
        if (file % 50 == 0)
            image->makeFile(folder + QStringLiteral("empty-%1").arg(file), 0);
    }
    for (const int size : {24 * mebibyte + 96, 8 * mebibyte, 4 * mebibyte + 4096})
        makeOld(QStringLiteral("top/big/%1").arg(size), size);
    QVERIFY(putOnTheMedium());
    QCOMPARE(shredFolder(image->path("top")), CrushResult::Success);
    QCOMPARE(leftOf(old.all()), 0);
    QCOMPARE(log->count("addToHistory"), 1500 + 30 + 3 + 1 + 5 + 30 + 1);
}

static void prepare(int, char **)
{
    enterOwnMounts();
}

TEST_SUITE_PREPARED_BY(medium, TestMedium, prepare)
#include "medium.moc"
