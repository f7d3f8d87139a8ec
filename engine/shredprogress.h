// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The arithmetic of progress, apart from the writing. All of it is unsigned
// 64-bit with the narrowings written out: what they do to very large sizes is
// part of the reported values.

#pragma once

#include <QtGlobal>

namespace shredprogress
{

// Each report blocks the worker until the controller's slot has returned, so small steps are left
// out: of a lone file, and of a file in a tree.
constexpr int loneFileStep = 1;
constexpr int treeStep = 5;

/// Percent of a lone file of @p blocks whole blocks after block @p index was written.
inline int loneFilePercent(quint64 blocks, quint64 index)
{
    const auto narrowed = static_cast<qint32>(static_cast<quint32>(blocks));
    // A count that is a multiple of 2^32 narrows to 0; the whole count divides then.
    const quint64 divisor = narrowed != 0 ? static_cast<quint64>(qint64{narrowed}) : blocks;
    // NOLINTNEXTLINE(clang-analyzer-core.DivideZero): there are blocks when one was written
    return static_cast<int>(100 - (blocks - 1 - index) * 100 / divisor);
}

/// Percent of a tree of @p totalBytes (not 0) of which @p doneBytes are gone.
inline quint64 treePercent(quint64 doneBytes, quint64 totalBytes)
{
    return doneBytes * 100 / totalBytes;
}

/// Percent of a tree while a file of @p blocks whole blocks is being written, after block
/// @p index. It counts the blocks still to come, so it goes down as they are written.
inline quint64 treePercentInFile(quint64 doneBytes, quint64 totalBytes, quint64 blocks,
                                 quint64 index)
{
    return ((doneBytes + blocks * 4096) * 100 - 409600 * (index + 1)) / totalBytes;
}

/// True when @p percent is more than @p step points above @p last.
inline bool isStepAbove(quint64 percent, quint64 last, int step)
{
    return static_cast<qint32>(static_cast<quint32>(percent - last)) > step;
}

} // namespace shredprogress
