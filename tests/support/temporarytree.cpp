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

QString TemporaryTree::makeFile(const TreeName &name, qint64 size, char fill) const
{
    return makeFile(name, QByteArray(static_cast<int>(size), fill));
}

QString TemporaryTree::makeFile(const TreeName &name, const QByteArray &contents) const
{
    const QString file = path(name);
    require(QDir().mkpath(QFileInfo(file).path()), "folder of", file);
    QFile out(file);
    require(out.open(QIODevice::WriteOnly) && out.write(contents) == contents.size(), "file", file);
    return file;
}

QString TemporaryTree::makeFolder(const TreeName &name) const
{
    require(QDir().mkpath(path(name)), "folder", path(name));
    return path(name);
}

QString TemporaryTree::makeLink(const TreeName &name, const TreeName &target) const
{
    const QString link = path(name);
    require(QDir().mkpath(QFileInfo(link).path()), "folder of", link);
    require(::symlink(target.text.toUtf8().constData(), link.toUtf8().constData()) == 0, "link",
            link);
    return link;
}

QString TemporaryTree::makeHardLink(const TreeName &name, const QString &existing) const
{
    const QString second = path(name);
    require(::link(existing.toUtf8().constData(), second.toUtf8().constData()) == 0, "hard link",
            second);
    return second;
}

QString TemporaryTree::makeFifo(const TreeName &name) const
{
    const QString fifo = path(name);
    require(QDir().mkpath(QFileInfo(fifo).path()), "folder of", fifo);
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
