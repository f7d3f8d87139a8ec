// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "engine/heldtree.h"

#include <QDir>
#include <QFileInfo>

#include <sys/stat.h>

namespace
{

bool isIdentity(int descriptor, const FileIdentity &identity)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0
           && FileIdentity{status.st_dev, status.st_ino} == identity;
}

} // namespace

HeldTree::HeldTree(const QString &path)
    : place(path.toUtf8())
    , top(openDirectoryIn(place.directory(),
                          place.name().isEmpty() ? QByteArray(".") : place.name()))
    , base(QDir::cleanPath(QFileInfo(path).absoluteFilePath()))
{
    directories.append(Directory{path, -1, place.name(), FileIdentity()});
}

QString HeldTree::pathOf(int index, const QString &name) const
{
    const QString &folder = index == 0 ? base : directories.at(index).path;
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

const HeldTree::Open *HeldTree::find(int index) const
{
    for (const Open &open : recent) {
        if (open.index == index && open.descriptor.isOpen())
            return &open;
    }
    return nullptr;
}

int HeldTree::descriptorOf(int index)
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
        Descriptor opened = openDirectoryIn(from, directory.name);
        if (!opened.isOpen() || !isIdentity(opened.get(), directory.identity))
            return -1;
        std::swap(recent[0], recent[1]);
        recent[0] = Open{next, std::move(opened)};
        from = recent[0].descriptor.get();
    }
    return from;
}

void HeldTree::append(int parent, const QByteArray &name, const FileIdentity &identity)
{
    directories.append(Directory{pathOf(parent, textOf(name)), parent, name, identity});
}

bool HeldTree::remove(int index)
{
    if (index == 0)
        return removeDirectoryIn(place.directory(), place.name());
    const int parent = descriptorOf(directories.at(index).parent);
    return parent >= 0 && removeDirectoryIn(parent, directories.at(index).name);
}
