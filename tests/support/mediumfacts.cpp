// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What is left on the medium by file system, as a table; see scripts/medium, which installs what
// makes and mounts them. Every figure is read from an image, at the verdict of the worker and once
// more when all has been written and unmounted.

#include "engine/filecrusher.h"

#include "eventually.h"
#include "loopimage.h"
#include "oldbytes.h"
#include "signallog.h"

#include <QCoreApplication>
#include <QProcess>
#include <QSemaphore>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>

#include <unistd.h>

using namespace testsupport;

namespace
{

constexpr int smallFiles = 500;
constexpr int bigSize = 16 * 1024 * 1024;
/// The medium is read after so many removals, as a power cut would find it then.
constexpr int removalsBetweenLooks = 25;

struct Kind {
    const char *name;
    FileSystemKind fileSystem;
    bool hasCopy = false; ///< a copy that shares its blocks stays outside what is shredded
};

QVector<Kind> kinds()
{
    const auto plain = [](const char *type, const char *options = "") {
        FileSystemKind kind = plainFileSystem(QString::fromLatin1(type));
        kind.mountOptions = QString::fromLatin1(options);
        return kind;
    };
    // Blocks that are given up would be told to the loop device, which forgets them.
    const auto btrfs = [](const char *options) {
        return FileSystemKind{
            QStringLiteral("btrfs"),
            {QStringLiteral("mkfs.btrfs"), QStringLiteral("-q"), QStringLiteral("-f")},
            QStringLiteral("nodiscard") + QString::fromLatin1(options)};
    };
    return {{"ext4", plain("ext4")},
            {"ext4, data=journal", plain("ext4", "data=journal")},
            {"ext2", plain("ext2")},
            {"XFS", plain("xfs")},
            {"XFS, a reflink copy elsewhere", plain("xfs"), true},
            {"Btrfs", btrfs("")},
            {"Btrfs, nodatacow", btrfs(",nodatacow")},
            {"exFAT by exfat-fuse",
             {QStringLiteral("exfat-fuse"), {QStringLiteral("mkfs.exfat")}, QString()}},
            {"NTFS by ntfs-3g",
             {QStringLiteral("ntfs-3g"),
              {QStringLiteral("mkfs.ntfs"), QStringLiteral("-Q"), QStringLiteral("-F")},
              QString()}}};
}

/// Short enough to stand in one piece in every kind of directory.
QString nameOf(int file)
{
    return QStringLiteral("secret-%1").arg(file, 8, 10, QLatin1Char('0'));
}

/// How many of the names stand anywhere on the medium, in UTF-8 or UTF-16.
int namesIn(const QString &imageFile)
{
    QVector<bool> found(smallFiles, false);
    const QString prefix = QStringLiteral("secret-");
    const QByteArray wide(reinterpret_cast<const char *>(prefix.utf16()), 2 * prefix.size());
    readImage(imageFile, [&](qint64, const QByteArray &bytes) {
        for (const QByteArray &start : {prefix.toLatin1(), wide}) {
            const int step = start.size() / prefix.size();
            for (int at = bytes.indexOf(start); at >= 0; at = bytes.indexOf(start, at + 1)) {
                QByteArray digits;
                for (int digit = 0; digit < 8; ++digit)
                    digits += bytes.mid(at + start.size() + digit * step, 1);
                bool isNumber = false;
                const int file = digits.toInt(&isNumber);
                if (isNumber && file < smallFiles)
                    found[file] = true;
            }
        }
    });
    return static_cast<int>(std::count(found.begin(), found.end(), true));
}

/// One image, filled, shredded and looked at.
class Trial
{
public:
    explicit Trial(const Kind &kind)
        : image(kind.fileSystem)
    {
        if (image.problem().isEmpty())
            fill(kind.hasCopy);
    }

    QString problem() const { return image.problem(); }
    void shred();
    void printRow(const char *name);

private:
    void fill(bool withCopy);
    void lookBetween(const QStringList &removed);

    LoopImage image;
    OldBytes old;
    QHash<QString, PieceRange> rangeOf;
    PieceRange ofSmall;
    PieceRange ofBig;
    int mostUnwritten = 0;
    PiecePlaces atVerdict;
    bool failed = false;
};

void Trial::fill(bool withCopy)
{
    for (int file = 0; file < smallFiles; ++file) {
        const QByteArray bytes = old.take(1000 + (file * 997) % 9000);
        rangeOf.insert(image.makeFile(QStringLiteral("top/") + nameOf(file), bytes), old.last());
    }
    ofSmall = old.all();
    image.makeFile(QStringLiteral("top/big"), old.take(bigSize));
    ofBig = old.last();
    if (withCopy)
        QProcess::execute(QStringLiteral("cp"),
                          {QStringLiteral("--recursive"), QStringLiteral("--reflink=always"),
                           image.path(QStringLiteral("top")), image.path(QStringLiteral("copy"))});
    if (!image.remount())
        return;
    ::sync(); // what a file system in user space has given to the device
    if (piecesLeft(old.placesIn(image.imageFile()), old.all()) != old.all().count)
        std::cout << "not every old piece is on the medium before the run:" << std::endl;
}

/// What a power cut would have left at this moment of files that are already reported.
void Trial::lookBetween(const QStringList &removed)
{
    const PiecePlaces places = old.placesIn(image.imageFile());
    const auto isUnwritten = [&](const QString &path) {
        return rangeOf.contains(path) && piecesLeft(places, rangeOf.value(path)) > 0;
    };
    const auto unwritten = std::count_if(removed.begin(), removed.end(), isUnwritten);
    mostUnwritten = std::max(mostUnwritten, static_cast<int>(unwritten));
}

void Trial::shred()
{
    auto *crusher = new FileCrusher; // lives until the process ends
    SignalLog log(crusher);
    QSemaphore done;
    log.onRecord = [&](const SignalRecord &record) {
        if (record.name == "addToHistory") {
            const QStringList removed = log.firstArguments("addToHistory");
            if (removed.size() % removalsBetweenLooks == 0)
                lookBetween(removed);
        } else if (record.name == "finishOne" || record.name == "failedOne") {
            atVerdict = old.placesIn(image.imageFile());
            failed = record.name == "failedOne";
            done.release();
        }
    };
    crusher->addPath(image.path(QStringLiteral("top")));
    crusher->start();
    done.acquire();
}

void Trial::printRow(const char *name)
{
    const int namesAtVerdict = namesIn(image.imageFile());
    ::sync();
    image.unmount();
    ::sync();
    const PiecePlaces later = old.placesIn(image.imageFile());
    const auto pieces = [&](const PieceRange &range) {
        std::cout << " | " << range.count << " → " << piecesLeft(atVerdict, range) << " → "
                  << piecesLeft(later, range);
    };
    std::cout << "| " << name;
    pieces(ofSmall);
    pieces(ofBig);
    std::cout << " | " << mostUnwritten << " | " << namesAtVerdict << " → "
              << namesIn(image.imageFile()) << " |" << (failed ? " (reported as failed)" : "")
              << std::endl;
}

} // namespace

int main(int argc, char **argv)
{
    enterOwnMounts();
    const QCoreApplication application(argc, argv);
    const QString reason = whyNoImages();
    if (!reason.isEmpty()) {
        std::cerr << qPrintable(reason) << std::endl;
        return EXIT_FAILURE;
    }
    std::cout << "Old pieces of 32 bytes on the medium before the run → at the verdict → after a "
                 "sync and unmounting.\nUnwritten: the most of "
              << smallFiles
              << " small files that were reported removed while old\npieces of them still stood "
                 "there. Names: of those, how many are readable at the verdict →\nafter "
                 "unmounting.\n\n"
                 "| file system | small files | a file of 16 MiB | unwritten | names |\n"
                 "| --- | --- | --- | --- | --- |"
              << std::endl;
    const QVector<Kind> all = kinds();
    for (const Kind &kind : all) {
        Trial trial(kind);
        if (!trial.problem().isEmpty()) {
            std::cout << "| " << kind.name << " | " << qPrintable(trial.problem()) << " |"
                      << std::endl;
            continue;
        }
        trial.shred();
        trial.printRow(kind.name);
    }
    std::_Exit(EXIT_SUCCESS); // the workers still run
}
