// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What is left on the medium by file system, as a table; see scripts/medium, which installs what
// makes and mounts them. Every figure is read from an image, at the verdict of the worker and once
// more when all has been written and unmounted.

#include "engine/filecrusher.h"

#include "loopimage.h"
#include "oldbytes.h"
#include "signallog.h"

#include <QCoreApplication>
#include <QProcess>

#include <algorithm>
#include <cstdlib>
#include <iostream>

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
    const auto plain = [](const char *type, const char *options = "loop") {
        FileSystemKind kind = plainFileSystem(QString::fromLatin1(type));
        kind.mountOptions = QString::fromLatin1(options);
        return kind;
    };
    const auto other = [](const char *type, const char *makeCommand, const char *options = "loop") {
        return FileSystemKind{QString::fromLatin1(type),
                              QString::fromLatin1(makeCommand).split(QLatin1Char(' ')),
                              QString::fromLatin1(options)};
    };
    // Blocks that are given up would be told to the loop device, which forgets them.
    return {{"ext4", plain("ext4")},
            {"ext4, data=journal", plain("ext4", "loop,data=journal")},
            {"ext2", plain("ext2")},
            {"XFS", plain("xfs")},
            {"XFS, a reflink copy elsewhere", plain("xfs"), true},
            {"Btrfs", other("btrfs", "mkfs.btrfs -q -f", "loop,nodiscard")},
            {"Btrfs, nodatacow", other("btrfs", "mkfs.btrfs -q -f", "loop,nodiscard,nodatacow")},
            {"exFAT by exfat-fuse", other("exfat-fuse", "mkfs.exfat")},
            {"NTFS by ntfs-3g", other("ntfs-3g", "mkfs.ntfs -Q -F")}};
}

/// Short enough to stand in one piece in every kind of directory.
QString nameOf(int file)
{
    return QStringLiteral("secret-%1").arg(file, 8, 10, QLatin1Char('0'));
}

/// How many of the names stand anywhere on the medium, in UTF-8 or UTF-16.
int namesIn(const QString &imageFile)
{
    QSet<int> found;
    const QString prefix = QStringLiteral("secret-");
    const QByteArray wide(reinterpret_cast<const char *>(prefix.utf16()), 2 * prefix.size());
    readImage(imageFile, [&](qint64, const QByteArray &bytes) {
        for (const QByteArray &start : {prefix.toLatin1(), wide}) {
            const int length = 8 * start.size() / prefix.size();
            for (int at = bytes.indexOf(start); at >= 0; at = bytes.indexOf(start, at + 1)) {
                bool isNumber = false;
                const QByteArray digits = bytes.mid(at + start.size(), length).replace('\0', "");
                const int file = digits.toInt(&isNumber);
                if (isNumber && file < smallFiles)
                    found.insert(file);
            }
        }
    });
    return found.size();
}

/// Fills an image, shreds what is in it and prints a row of the table.
void measure(const Kind &kind)
{
    LoopImage image(kind.fileSystem);
    const auto path = [&](const char *name) { return image.path(name); };
    std::cout << "| " << kind.name << " | ";
    if (!image.problem().isEmpty()) {
        std::cout << qPrintable(image.problem()) << " |" << std::endl;
        return;
    }
    OldBytes old;
    QHash<QString, PieceRange> rangeOf;
    for (int file = 0; file < smallFiles; ++file) {
        const QByteArray bytes = old.take(1000 + (file * 997) % 9000);
        rangeOf.insert(image.makeFile(QStringLiteral("top/") + nameOf(file), bytes), old.last());
    }
    const PieceRange ofSmall = old.all();
    image.makeFile("top/big", old.take(bigSize));
    const PieceRange ofBig = old.last();
    if (kind.hasCopy)
        QProcess::execute(QStringLiteral("cp"),
                          {QStringLiteral("--recursive"), QStringLiteral("--reflink=always"),
                           path("top"), path("copy")});
    image.remount();
    ::sync(); // what a file system in user space has given to the device
    if (piecesLeft(old.placesIn(image.imageFile()), old.all()) != old.all().count)
        std::cout << "not every old piece is on the medium before the run: ";

    FileCrusher crusher;
    SignalLog log(&crusher);
    int mostUnwritten = 0;
    // What a power cut would have left at this moment of files that are already reported.
    log.onRecord = [&](const SignalRecord &) {
        const QStringList removed = log.firstArguments("addToHistory");
        if (removed.size() % removalsBetweenLooks != 0)
            return;
        const PiecePlaces places = old.placesIn(image.imageFile());
        const auto isUnwritten = [&](const QString &file) {
            return rangeOf.contains(file) && piecesLeft(places, rangeOf.value(file)) > 0;
        };
        const auto unwritten = std::count_if(removed.begin(), removed.end(), isUnwritten);
        mostUnwritten = std::max(mostUnwritten, static_cast<int>(unwritten));
    };
    const qint64 verdict = crusher.shredDirectory(path("top").toUtf8().constData());
    const PiecePlaces atVerdict = old.placesIn(image.imageFile());
    const int namesAtVerdict = namesIn(image.imageFile());

    ::sync();
    image.unmount();
    ::sync();
    const PiecePlaces later = old.placesIn(image.imageFile());
    for (const PieceRange &range : {ofSmall, ofBig})
        std::cout << range.count << " → " << piecesLeft(atVerdict, range) << " → "
                  << piecesLeft(later, range) << " | ";
    std::cout << mostUnwritten << " | " << namesAtVerdict << " → " << namesIn(image.imageFile())
              << " |" << (verdict != CrushResult::Success ? " (reported as failed)" : "")
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
    for (const Kind &kind : all)
        measure(kind);
    return EXIT_SUCCESS;
}
