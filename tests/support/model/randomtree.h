// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A random choice that is the same everywhere for the same seed, and trees made by it: all that a
// user may have, with names of every kind, and with what an ordinary user may not touch.

#pragma once

#include "modeldisk.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QStringList>
#include <QTemporaryDir>

#include <random>

namespace testsupport
{

class Dice
{
public:
    explicit Dice(quint32 seed)
        : engine(seed)
    {
    }
    /// 0 to @p limit - 1.
    int upTo(int limit) { return static_cast<int>(engine() % static_cast<quint32>(limit)); }
    /// True once in @p times on average.
    bool onceIn(int times) { return upTo(times) == 0; }
    template <class List>
    auto oneOf(const List &list)
    {
        return list.at(upTo(list.size()));
    }

private:
    std::mt19937 engine;
};

class RandomTree
{
public:
    /// Makes the folder, empty but for a neighbourhood for links to lead to, which must survive.
    explicit RandomTree(Dice &chance);
    ~RandomTree();
    RandomTree(const RandomTree &) = delete;
    RandomTree &operator=(const RandomTree &) = delete;

    QByteArray root() const { return rootPath; }
    /// Makes one entry of a random kind, a folder with up to @p depth levels below it; returns
    /// its path, which is in UTF-8.
    QByteArray makeEntry(int depth);
    QByteArray makeFile(int size);
    QByteArray makeFolder(int depth);
    /// A path in the folder at which nothing is.
    QByteArray freePath();
    /// Takes permissions from random entries of @p picture, which is a picture of root().
    void takePermissions(ModelDisk &picture);

private:
    enum class Names { AnyBytes, Utf8 };

    QByteArray freePathIn(const QByteArray &folder, Names names);
    void makeAnything(const QByteArray &path, int depth);
    void fillFolder(const QByteArray &path, int depth);
    void writeFile(const QByteArray &path, int size);
    void makeLink(const QByteArray &path);

    Dice &dice;
    QTemporaryDir directory;
    QByteArray rootPath;
    QByteArrayList files;        ///< where a link or second name may lead to
    QByteArrayList restrictable; ///< an outer folder comes before what is in it
};

} // namespace testsupport
