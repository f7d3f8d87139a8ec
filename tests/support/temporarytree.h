// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A folder that exists for the life of the object and in which a test makes
// its files, folders and links with one call each.

#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

namespace testsupport
{

/// A name as the functions below take it; a literal is UTF-8.
struct TreeName {
    TreeName(const QString &name)
        : text(name)
    {
    }
    TreeName(QLatin1String name)
        : text(name)
    {
    }
    TreeName(const char *name)
        : text(QString::fromUtf8(name))
    {
    }

    QString text;
};

class TemporaryTree
{
public:
    TemporaryTree() { require(directory.isValid(), "folder", root); }

    /// The folder's absolute path, without links in it.
    QString path() const { return root; }
    /// The absolute path of @p name inside the folder; nothing is made.
    QString path(const TreeName &name) const { return root + QLatin1Char('/') + name.text; }

    // Each makes the parent folders too, and returns its path.
    QString makeFolder(const TreeName &name) const
    {
        require(QDir().mkpath(path(name)), "folder", path(name));
        return path(name);
    }
    /// Makes a file holding @p contents.
    QString makeFile(const TreeName &name, const QByteArray &contents) const
    {
        const QString path = pathInFolder(name);
        QFile file(path);
        require(file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size(), "file",
                path);
        return path;
    }
    /// Makes a file of @p size times 'x'.
    QString makeFile(const TreeName &name, qint64 size) const
    {
        return makeFile(name, QByteArray(static_cast<int>(size), 'x'));
    }
    /// Makes a symbolic link that says @p target.
    QString makeLink(const TreeName &name, const TreeName &target) const
    {
        const QString path = pathInFolder(name);
        require(::symlink(qUtf8Printable(target.text), qUtf8Printable(path)) == 0, "link", path);
        return path;
    }
    /// Makes a second name for the file @p existing.
    QString makeHardLink(const TreeName &name, const QString &existing) const
    {
        const QString path = pathInFolder(name);
        require(::link(qUtf8Printable(existing), qUtf8Printable(path)) == 0, "hard link", path);
        return path;
    }
    /// Makes a fifo that its owner may read and write.
    QString makeFifo(const TreeName &name) const
    {
        const QString path = pathInFolder(name);
        require(::mkfifo(qUtf8Printable(path), S_IRUSR | S_IWUSR) == 0, "fifo", path);
        return path;
    }

    /// The bytes of the file @p path (an absolute path).
    static QByteArray contentsOf(const QString &path)
    {
        QFile file(path);
        require(file.open(QIODevice::ReadOnly), "readable", path);
        return file.readAll();
    }

private:
    static void require(bool done, const char *what, const QString &path)
    {
        if (!done)
            qFatal("cannot make %s %s", what, qUtf8Printable(path));
    }
    QString pathInFolder(const TreeName &name) const
    {
        makeFolder(QFileInfo(name.text).path());
        return path(name);
    }

    const QTemporaryDir directory;
    const QString root = QFileInfo(directory.path()).canonicalFilePath();
};

/// Whether the file @p path still holds @p size times 'x', as makeFile() made it.
inline bool isAsMade(const QString &path, int size)
{
    return TemporaryTree::contentsOf(path) == QByteArray(size, 'x');
}

/// True when a directory entry of that name exists, dangling links included.
inline bool entryExists(const QString &path)
{
    struct stat entry = {};
    return ::lstat(qUtf8Printable(path), &entry) == 0;
}

/// The path of the open file or folder @p descriptor.
inline QString pathOf(int descriptor)
{
    return QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
}

} // namespace testsupport
