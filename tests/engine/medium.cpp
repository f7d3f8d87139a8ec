// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the medium holds at the moment of a verdict, before anybody syncs: file systems in images,
// whose old bytes are on the medium and not in memory when the worker begins. The medium is read
// in the worker's thread, within its report.

#include "engine/filecrusher.h"

#include "eventually.h"
#include "expectedbytes.h"
#include "loopimage.h"
#include "oldbytes.h"
#include "signallog.h"
#include "suites.h"
#include "temporarytree.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QtTest>

#include <atomic>
#include <ctime>
#include <memory>

#include <sys/mount.h>
#include <unistd.h>

using namespace testsupport;

namespace
{

constexpr int mebibyte = 1024 * 1024;
/// Blocks and a tail.
constexpr int bigSize = 24 * mebibyte + 96;

} // namespace

class TestMedium : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void nothingIsLeftOfFilesInFolders_data() { fileSystems(); }
    void nothingIsLeftOfFilesInFolders();
    void definedBytesStandWhereASecondNameStays_data() { fileSystems(); }
    void definedBytesStandWhereASecondNameStays();
    void definedBytesStandWhereANameCannotGo_data() { fileSystems(); }
    void definedBytesStandWhereANameCannotGo();
    void nothingIsLeftBelowAnOverlay_data() { fileSystems(); }
    void nothingIsLeftBelowAnOverlay();
    void stoppedFolderHasLeftNothingOfWhatIsReported_data() { fileSystems(); }
    void stoppedFolderHasLeftNothingOfWhatIsReported();

private:
    static void fileSystems();
    QString makeOld(const TreeName &name, int size);
    bool putOnTheMedium();
    bool shred(const QString &path, const char *signal = "finishOne");
    QByteArray standingWhere(const PieceRange &range) const;

    /// Its worker lives until the process ends.
    FileCrusher *crusher = new FileCrusher;
    /// Outlives every test: the worker may still be in its last report when one ends.
    SignalLog log{crusher};
    std::atomic<int> stopAfter{0}; ///< removals
    std::unique_ptr<LoopImage> image;
    OldBytes old;
    PiecePlaces before;
    PiecePlaces atVerdict;
    QSemaphore looked;
    std::time_t begin = 0;
};

void TestMedium::initTestCase()
{
    const QString reason = whyNoImages();
    if (!reason.isEmpty())
        QSKIP(qPrintable(reason));
    log.onRecord = [this](const SignalRecord &record) {
        if (record.name == "addToHistory" && log.count("addToHistory") == stopAfter)
            crusher->requestStop(true);
        if (record.name == "finishPercent" || record.name == "addToHistory")
            return;
        atVerdict = old.placesIn(image->imageFile());
        looked.release();
    };
}

void TestMedium::fileSystems()
{
    QTest::addColumn<QString>("type");
    for (const char *type : {"ext4", "ext2", "xfs"})
        QTest::newRow(type) << QString::fromLatin1(type);
}

void TestMedium::init()
{
    QFETCH(QString, type);
    image = std::make_unique<LoopImage>(plainFileSystem(type));
    if (image->isUnknownToKernel())
        QSKIP(qPrintable(QStringLiteral("no %1 in this kernel").arg(type)));
    QVERIFY2(image->problem().isEmpty(), qPrintable(image->problem()));
    old = OldBytes();
    log.clear();
    stopAfter = 0;
}

void TestMedium::cleanup()
{
    image.reset();
}

/// A file of old bytes, which are the last that were taken.
QString TestMedium::makeOld(const TreeName &name, int size)
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

/// Whether the worker says @p signal of @p path, within which the medium is read.
bool TestMedium::shred(const QString &path, const char *signal)
{
    begin = std::time(nullptr);
    crusher->addPath(path);
    if (!crusher->isRunning())
        crusher->start(QThread::InheritPriority);
    return looked.tryAcquire(1, patience) && log.firstArguments(signal).contains(path);
}

/// What the medium holds now in the place of old pieces.
QByteArray TestMedium::standingWhere(const PieceRange &range) const
{
    return bytesAt(image->imageFile(), before, range);
}

void TestMedium::nothingIsLeftOfFilesInFolders()
{
    for (int file = 0; file < 1500; ++file) {
        const QString folder = QStringLiteral("top/%1/%2/").arg(file % 5).arg(file % 30);
        makeOld(folder + QString::number(file), OldBytes::pieceSize + (file * 997) % 9000);
        if (file % 50 == 0)
            image->makeFile(folder + QStringLiteral("empty-%1").arg(file), QByteArray());
    }
    for (const int size : {bigSize, 8 * mebibyte, 4 * mebibyte + 4096})
        makeOld(QStringLiteral("top/big/%1").arg(size), size);
    QVERIFY(putOnTheMedium());
    QVERIFY(shred(image->path("top")));
    QCOMPARE(piecesLeft(atVerdict, old.all()), 0);
    QCOMPARE(log.count("addToHistory"), 1500 + 30 + 3 + 1 + 5 + 30 + 1);
}

void TestMedium::definedBytesStandWhereASecondNameStays()
{
    const auto makeWithSecondName = [this](const TreeName &name, int size) {
        const QString file = makeOld(name, size);
        const QString second = image->path(QStringLiteral("second-of-%1").arg(size));
        if (::link(file.toUtf8().constData(), second.toUtf8().constData()) != 0)
            qFatal("cannot link %s", qPrintable(second));
        return old.last();
    };
    const PieceRange small = makeWithSecondName("top/small", 800);
    const PieceRange big = makeWithSecondName("top/big", 9 * mebibyte + 64);
    const PieceRange lone = makeWithSecondName("lone", 3 * 4096 + 96);
    QVERIFY(putOnTheMedium());
    QVERIFY(shred(image->path("lone")));
    QCOMPARE(piecesLeft(atVerdict, lone), 0);
    QCOMPARE(piecesLeft(atVerdict, big), big.count);
    QVERIFY(wasOverwritten(standingWhere(lone), begin, std::time(nullptr)));
    QVERIFY(shred(image->path("top")));
    QCOMPARE(piecesLeft(atVerdict, old.all()), 0);
    QVERIFY(wasOverwritten(standingWhere(small), begin, std::time(nullptr)));
    QVERIFY(wasOverwritten(standingWhere(big), begin, std::time(nullptr)));
}

void TestMedium::definedBytesStandWhereANameCannotGo()
{
    const QString inTree = makeOld("top/kept/file", 20000);
    const PieceRange ofTree = old.last();
    const QString lone = makeOld("kept/lone", 20000);
    const PieceRange ofLone = old.last();
    QVERIFY(putOnTheMedium());
    const QStringList keepers{QFileInfo(inTree).path(), QFileInfo(lone).path()};
    for (const QString &folder : keepers)
        QVERIFY(setImmutable(folder, true));
    const bool loneFailed = shred(lone, "failedOne");
    const QByteArray standingOfLone = standingWhere(ofLone);
    const std::time_t beginOfLone = begin;
    const bool treeFailed = shred(image->path("top"), "failedOne");
    const QByteArray standingOfTree = standingWhere(ofTree);
    const std::time_t end = std::time(nullptr);
    for (const QString &folder : keepers)
        QVERIFY(setImmutable(folder, false));
    QVERIFY(loneFailed && treeFailed && entryExists(lone) && entryExists(inTree));
    QVERIFY(wasOverwritten(standingOfLone, beginOfLone, end));
    QVERIFY(wasOverwritten(standingOfTree, begin, end));
    QCOMPARE(piecesLeft(atVerdict, old.all()), 0);
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
    const QByteArray root = image->path("").toUtf8();
    const QByteArray options =
        "lowerdir=" + root + "lower,upperdir=" + root + "upper,workdir=" + root + "work";
    const QByteArray merged = root + "merged";
    if (::mount("overlay", merged.constData(), "overlay", 0, options.constData()) != 0)
        QSKIP("no overlay over this file system");
    const bool shredded = shred(image->path("merged/top"));
    ::umount2(merged.constData(), 0);
    QVERIFY(shredded);
    QCOMPARE(piecesLeft(atVerdict, old.all()), 0);
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
    stopAfter = removals;
    QVERIFY(!shred(image->path("top")));
    QCOMPARE(log.records().constLast(), SignalRecord("stopped"));
    const QStringList reported = log.firstArguments("addToHistory");
    QCOMPARE(reported.size(), removals);
    for (const QString &path : reported)
        QCOMPARE(piecesLeft(atVerdict, rangeOf.take(path)), 0);
    for (const PieceRange &range : qAsConst(rangeOf))
        QCOMPARE(piecesLeft(atVerdict, range), range.count);
}

static void prepare(int, char **)
{
    enterOwnMounts();
}

TEST_SUITE_PREPARED_BY(medium, TestMedium, prepare)

#include "medium.moc"
