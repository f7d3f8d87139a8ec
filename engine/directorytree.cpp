// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "engine/directorytree.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

DirectoryTree::DirectoryTree(const QString &path)
    : parent(path.toUtf8())
    , top(openDirectoryAt(parent.descriptor(),
                          parent.name().isEmpty() ? QByteArray(".") : parent.name()))
    , base(QDir::cleanPath(QFileInfo(path).absoluteFilePath()))
{
    directories.append(Directory{path, -1, parent.name()});
}

QString DirectoryTree::pathOf(int index, const QString &name) const
{
    const QString &folder = index == 0 ? base : directories.at(index).path;
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

const DirectoryTree::Open *DirectoryTree::find(int index) const
{
    for (const Open &open : recent) {
        if (open.index == index && open.descriptor.isOpen())
            return &open;
    }
    return nullptr;
}

int DirectoryTree::descriptorOf(int index)
{
    if (index == 0)
        return top.get();
    if (const Open *open = find(index))
        return open->descriptor.get();

    // Up to the nearest directory that is open, then down again name by name.
    QVector<int> missing;
    int nearest = index;
    while (nearest != 0 && find(nearest) == nullptr) {
        missing.append(nearest);
        nearest = directories.at(nearest).parent;
    }
    if (nearest != 0 && recent[1].index == nearest)
        std::swap(recent[0], recent[1]);
    int from = nearest == 0 ? top.get() : recent[0].descriptor.get();
    while (!missing.isEmpty()) {
        const int next = missing.takeLast();
        const Directory &directory = directories.at(next);
        Descriptor opened = openDirectoryAt(from, directory.name);
        if (!opened.isOpen())
            return -1;
        std::swap(recent[0], recent[1]);
        recent[0] = Open{next, std::move(opened)};
        from = recent[0].descriptor.get();
    }
    return from;
}

void DirectoryTree::append(int holder, const QByteArray &name)
{
    directories.append(Directory{pathOf(holder, textOf(name)), holder, name});
}

bool DirectoryTree::remove(int index)
{
    if (index == 0)
        return removeDirectoryAt(parent.descriptor(), parent.name());
    const Directory &directory = directories.at(index);
    const int holder = descriptorOf(directory.parent);
    return holder >= 0 && removeDirectoryAt(holder, directory.name);
}
