// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "temporarytree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

namespace testsupport
{

namespace
{

void require(bool done, const char *what, const QString &path)
{
    if (!done)
        qFatal("cannot make %s %s", what, qPrintable(path));
}

} // namespace

TemporaryTree::TemporaryTree()
    : root(QFileInfo(directory.path()).canonicalFilePath())
{
    require(directory.isValid(), "folder", root);
}

QString TemporaryTree::path(const TreeName &name) const
{
    return root + QLatin1Char('/') + name.text;
}

QString TemporaryTree::pathInFolder(const TreeName &name) const
{
    const QString folder = QFileInfo(path(name)).path();
    require(QDir().mkpath(folder), "folder", folder);
    return path(name);
}

QString TemporaryTree::makeFile(const TreeName &name, const QByteArray &contents) const
{
    QFile out(pathInFolder(name));
    require(out.open(QIODevice::WriteOnly) && out.write(contents) == contents.size(), "file",
            out.fileName());
    return out.fileName();
}

QString TemporaryTree::makeFolder(const TreeName &name) const
{
    require(QDir().mkpath(path(name)), "folder", path(name));
    return path(name);
}

QString TemporaryTree::makeLink(const TreeName &name, const TreeName &target) const
{
    const QString link = pathInFolder(name);
    require(::symlink(target.text.toUtf8().constData(), link.toUtf8().constData()) == 0, "link",
            link);
    return link;
}

QString TemporaryTree::makeHardLink(const TreeName &name, const QString &existing) const
{
    const QString second = pathInFolder(name);
    require(::link(existing.toUtf8().constData(), second.toUtf8().constData()) == 0, "hard link",
            second);
    return second;
}

QString TemporaryTree::makeFifo(const TreeName &name) const
{
    const QString fifo = pathInFolder(name);
    require(::mkfifo(fifo.toUtf8().constData(), S_IRUSR | S_IWUSR) == 0, "fifo", fifo);
    return fifo;
}

QByteArray TemporaryTree::contentsOf(const QString &path)
{
    QFile in(path);
    require(in.open(QIODevice::ReadOnly), "readable", path);
    return in.readAll();
}

bool isAsMade(const QString &path, int size)
{
    return TemporaryTree::contentsOf(path) == QByteArray(size, 'x');
}

bool entryExists(const QString &path)
{
    struct stat entry = {};
    return ::lstat(path.toUtf8().constData(), &entry) == 0;
}

QString pathOf(int descriptor)
{
    return QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
}

} // namespace testsupport
