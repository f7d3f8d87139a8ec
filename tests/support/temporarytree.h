// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A folder that exists for the life of the object and in which a test makes
// its files, folders and links with one call each.

#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

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
    TemporaryTree();

    /// The folder's absolute path, without links in it.
    QString path() const { return root; }
    /// The absolute path of @p name inside the folder; nothing is made.
    QString path(const TreeName &name) const;

    // Each makes the parent folders too, and returns its path.
    /// Makes a file holding @p contents.
    QString makeFile(const TreeName &name, const QByteArray &contents) const;
    /// Makes a file of @p size times 'x'.
    QString makeFile(const TreeName &name, qint64 size) const
    {
        return makeFile(name, QByteArray(static_cast<int>(size), 'x'));
    }
    QString makeFolder(const TreeName &name) const;
    /// Makes a symbolic link that says @p target.
    QString makeLink(const TreeName &name, const TreeName &target) const;
    /// Makes a second name for the file @p existing.
    QString makeHardLink(const TreeName &name, const QString &existing) const;
    /// Makes a fifo that its owner may read and write.
    QString makeFifo(const TreeName &name) const;

    /// The bytes of the file @p path (an absolute path).
    static QByteArray contentsOf(const QString &path);

private:
    QString pathInFolder(const TreeName &name) const;

    QTemporaryDir directory;
    QString root;
};

/// Whether the file @p path still holds @p size times 'x', as makeFile() made it.
bool isAsMade(const QString &path, int size);

/// True when a directory entry of that name exists, dangling links included.
bool entryExists(const QString &path);

/// The path of the open file or folder @p descriptor.
QString pathOf(int descriptor);

} // namespace testsupport
