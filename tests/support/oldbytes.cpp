// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "oldbytes.h"

#include <QByteArrayMatcher>
#include <QFile>

#include <algorithm>

#include <unistd.h>

namespace testsupport
{

namespace
{

constexpr char prefix[] = "old bytes, piece ";
constexpr int prefixSize = sizeof(prefix) - 1;
/// The number, and a newline behind it.
constexpr int digits = OldBytes::pieceSize - prefixSize - 1;

void findPieces(const QByteArray &bytes, qint64 place, PiecePlaces &places)
{
    static const QByteArrayMatcher matcher(QByteArray::fromRawData(prefix, prefixSize));
    for (int found = matcher.indexIn(bytes);
         found >= 0 && found + OldBytes::pieceSize <= bytes.size();
         found = matcher.indexIn(bytes, found + OldBytes::pieceSize)) {
        bool isNumber = false;
        const int number = QByteArray::fromRawData(bytes.constData() + found + prefixSize, digits)
                               .toInt(&isNumber);
        if (isNumber && number < places.size())
            places[number] = place + found;
    }
}

} // namespace

QByteArray OldBytes::take(int size)
{
    lastTaken = PieceRange{taken, size / pieceSize};
    QByteArray bytes;
    bytes.reserve(size);
    for (int piece = 0; piece < lastTaken.count; ++piece)
        bytes += prefix + QByteArray::number(taken++).rightJustified(digits, '0') + '\n';
    bytes.append(size - bytes.size(), 'x');
    return bytes;
}

PiecePlaces OldBytes::placesIn(const QString &imageFile) const
{
    PiecePlaces places(taken, -1);
    readImage(imageFile,
              [&](qint64 place, const QByteArray &bytes) { findPieces(bytes, place, places); });
    return places;
}

void readImage(const QString &imageFile,
               const std::function<void(qint64 place, const QByteArray &bytes)> &look)
{
    QFile image(imageFile);
    if (!image.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        qFatal("cannot read %s", qPrintable(imageFile));
    const off_t size = image.size();
    off_t end = 0;
    for (off_t start = ::lseek(image.handle(), 0, SEEK_DATA); start >= 0 && start < size;
         start = ::lseek(image.handle(), end, SEEK_DATA)) {
        end = ::lseek(image.handle(), start, SEEK_HOLE);
        image.seek(start);
        look(start, image.read(end - start));
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
    if (!image.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        qFatal("cannot read %s", qPrintable(imageFile));
    QByteArray bytes;
    for (int piece = range.first; piece < range.first + range.count; ++piece) {
        image.seek(places.at(piece));
        bytes += image.read(OldBytes::pieceSize);
    }
    return bytes;
}

} // namespace testsupport
