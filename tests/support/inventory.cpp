// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "inventory.h"

#include "temporarytree.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <sys/stat.h>

namespace testsupport
{

namespace
{

QString lineFor(const QString &path)
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

} // namespace

QStringList inventoryOf(const QString &folder)
{
    QStringList lines{lineFor(folder)};
    QDirIterator entries(folder,
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext())
        lines.append(lineFor(entries.next()));
    lines.sort();
    return lines;
}

int openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

} // namespace testsupport
