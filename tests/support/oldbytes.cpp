// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "oldbytes.h"

#include <QByteArrayMatcher>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <unistd.h>

namespace testsupport
{

namespace
{

/// All of the file @p image, as long as that is open.
QByteArray mapped(QFile &image)
{
    const uchar *bytes = image.open(QIODevice::ReadOnly) ? image.map(0, image.size()) : nullptr;
    if (bytes == nullptr)
        qFatal("cannot read %s", qPrintable(image.fileName()));
    return QByteArray::fromRawData(reinterpret_cast<const char *>(bytes),
                                   static_cast<int>(image.size()));
}

} // namespace

OldBytes::OldBytes()
{
    static int objects = 0;
    prefix = "old bytes " + QByteArray::number(++objects) + ", piece ";
}

QByteArray OldBytes::take(int size)
{
    const int digits = pieceSize - prefix.size() - 1;
    lastTaken = PieceRange{taken, size / pieceSize};
    QByteArray bytes(size, 'x');
    for (int start = 0; start + pieceSize <= size; start += pieceSize)
        static_cast<void>(std::snprintf(bytes.data() + start, pieceSize, "%s%0*d",
                                        prefix.constData(), digits, taken++));
    bytes.replace('\0', '\n');
    return bytes;
}

PiecePlaces OldBytes::placesIn(const QString &imageFile) const
{
    PiecePlaces places(taken, -1);
    const QByteArrayMatcher matcher(prefix);
    readImage(imageFile, [&](qint64 place, const QByteArray &bytes) {
        for (int found = matcher.indexIn(bytes); found >= 0 && found + pieceSize <= bytes.size();
             found = matcher.indexIn(bytes, found + pieceSize)) {
            char *end = nullptr;
            const char *piece = bytes.constData() + found;
            const long number = std::strtol(piece + prefix.size(), &end, 10);
            if (end == piece + pieceSize - 1 && number >= 0 && number < places.size())
                places[static_cast<int>(number)] = place + found;
        }
    });
    return places;
}

void readImage(const QString &imageFile,
               const std::function<void(qint64 place, const QByteArray &bytes)> &look)
{
    QFile image(imageFile);
    const QByteArray all = mapped(image);
    off_t end = 0;
    for (off_t start = ::lseek(image.handle(), 0, SEEK_DATA); start >= 0;
         start = ::lseek(image.handle(), end, SEEK_DATA)) {
        end = ::lseek(image.handle(), start, SEEK_HOLE);
        look(start,
             QByteArray::fromRawData(all.constData() + start, static_cast<int>(end - start)));
    }
}

int piecesLeft(const PiecePlaces &places, const PieceRange &range)
{
    const auto begin = places.begin() + range.first;
    return static_cast<int>(
        std::count_if(begin, begin + range.count, [](qint64 place) { return place >= 0; }));
}

QByteArray bytesAt(const QString &imageFile, const PiecePlaces &places, const PieceRange &range)
{
    QFile image(imageFile);
    const QByteArray all = mapped(image);
    QByteArray bytes;
    for (int piece = range.first; piece < range.first + range.count; ++piece)
        bytes.append(all.constData() + places.at(piece), OldBytes::pieceSize);
    return bytes;
}

} // namespace testsupport
