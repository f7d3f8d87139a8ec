// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#pragma once

#include "temporarytree.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QStringList>

#include <sys/stat.h>

namespace testsupport
{

/// A line of an inventory.
inline QString inventoryLine(const QString &path)
{
    struct stat state = {};
    if (::lstat(path.toUtf8().constData(), &state) != 0)
        return path + QStringLiteral(" vanished");
    QString contents;
    if (S_ISLNK(state.st_mode))
        contents = QFile::symLinkTarget(path);
    else if (S_ISREG(state.st_mode))
        contents = QString::fromLatin1(
            QCryptographicHash::hash(TemporaryTree::contentsOf(path), QCryptographicHash::Md5)
                .toHex());
    const QString times =
        QStringLiteral("%1.%2").arg(state.st_ctim.tv_sec).arg(state.st_ctim.tv_nsec);
    return QStringLiteral("%1 %2 inode %3 names %4 size %5 changed %6 holds %7")
        .arg(path)
        .arg(state.st_mode, 0, 8)
        .arg(state.st_ino)
        .arg(state.st_nlink)
        .arg(state.st_size)
        .arg(times, contents);
}

/// Everything below @p folder, one line an entry in the order of the names: path, kind and mode,
/// inode, number of names, time of the last change, and the bytes of a file or the target of a
/// link. Two inventories are the same when nothing has been touched in between.
inline QStringList inventoryOf(const QString &folder)
{
    QStringList lines{inventoryLine(folder)};
    QDirIterator entries(folder,
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext())
        lines.append(inventoryLine(entries.next()));
    lines.sort();
    return lines;
}

/// How many files and folders this process holds open.
inline int openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

} // namespace testsupport
