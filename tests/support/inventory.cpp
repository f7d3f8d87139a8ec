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
    QByteArray contents;
    if (S_ISLNK(state.st_mode))
        contents = QFile::symLinkTarget(path).toUtf8();
    else if (S_ISREG(state.st_mode))
        contents =
            QCryptographicHash::hash(TemporaryTree::contentsOf(path), QCryptographicHash::Md5)
                .toHex();
    return QStringLiteral("%1 %2 inode %3 names %4 size %5 changed %6.%7 holds %8")
        .arg(path)
        .arg(state.st_mode, 0, 8)
        .arg(state.st_ino)
        .arg(state.st_nlink)
        .arg(state.st_size)
        .arg(state.st_ctim.tv_sec)
        .arg(state.st_ctim.tv_nsec)
        .arg(QString::fromUtf8(contents));
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
