// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The directories of a tree in the order in which a walk finds them, the top first
// and kept open. Any of them is reached from the top, one name at a time and never
// through a link, so the walk stays in the tree. Few descriptors are open however
// large the tree is. A local of the routines of FileCrusher; worker thread only.

#pragma once

#include "engine/fileat.h"

#include <QString>
#include <QVector>

#include <array>

class DirectoryTree final
{
public:
    /// Opens the directory @p path; isOpen() is false when it is none or a link.
    explicit DirectoryTree(const QString &path);

    bool isOpen() const { return top.isOpen(); }
    int size() const { return directories.size(); }
    /// The path under which directory @p index is reported; that of the top as it was given.
    QString pathOf(int index) const { return directories.at(index).path; }
    /// The path of the entry @p name of directory @p index, absolute and clean.
    QString pathOf(int index, const QString &name) const;
    /// A descriptor of directory @p index, or -1. Valid until the next call.
    int descriptorOf(int index);
    /// Adds the directory @p name found in directory @p holder.
    void append(int holder, const QByteArray &name);
    /// Removes directory @p index, which must be empty.
    bool remove(int index);

private:
    struct Directory {
        QString path;
        int parent = -1;
        QByteArray name;
    };
    struct Open {
        int index = -1;
        Descriptor descriptor;
    };

    const Open *find(int index) const;

    ParentDirectory parent;
    Descriptor top;
    QString base; ///< the top's absolute and clean path
    QVector<Directory> directories;
    /// The directory reached last and the one that holds it; the next is usually in one of them.
    std::array<Open, 2> recent;
};
