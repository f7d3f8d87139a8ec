// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Contents of files that are recognised wherever they lie on a medium: they consist of pieces of
// 32 bytes, each with a number of its own, so that no piece can be left over unseen.

#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <functional>

namespace testsupport
{

/// Pieces that follow each other, by their numbers.
struct PieceRange {
    int first = 0;
    int count = 0;
};

/// Where each piece lies in an image, by its number; -1 for one that is not there.
using PiecePlaces = QVector<qint64>;

/// The pieces of another object are others.
class OldBytes
{
public:
    static constexpr int pieceSize = 32;

    OldBytes();
    /// @p size bytes of new pieces; what is too short for a piece at the end is filled up.
    QByteArray take(int size);
    /// All pieces taken so far.
    PieceRange all() const { return {0, taken}; }
    /// The pieces of the last take().
    PieceRange last() const { return lastTaken; }

    /// Reads all of @p imageFile. Any thread, while nobody takes.
    PiecePlaces placesIn(const QString &imageFile) const;

private:
    QByteArray prefix; ///< the number follows, and a newline
    int taken = 0;
    PieceRange lastTaken;
};

/// Gives @p look what @p imageFile holds, stretch by stretch with its place, but for the holes that
/// nothing was ever written to.
void readImage(const QString &imageFile,
               const std::function<void(qint64 place, const QByteArray &bytes)> &look);

/// How many pieces of @p range have a place.
int piecesLeft(const PiecePlaces &places, const PieceRange &range);

/// What stands in @p imageFile now where the pieces of @p range lay at @p places.
QByteArray bytesAt(const QString &imageFile, const PiecePlaces &places, const PieceRange &range);

} // namespace testsupport
