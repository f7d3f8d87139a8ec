// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "randomtree.h"

#include <QFileInfo>
#include <QList>

#include <climits>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include <sys/stat.h>

namespace testsupport
{

namespace fs = std::filesystem;

namespace
{

/// Ends, beginnings and middles of blocks, the stop code, and enough blocks for each kind of
/// progress. Most are small, so that many fit in a test.
int randomSize(Dice &dice)
{
    const QList<int> small{0, 0, 1, 3, 100, 254, 255, 256, 511};
    const QList<int> large{4095, 4096, 4097, 8191, 12288, 20000, 40959, 69632, 204807, 413696};
    return dice.oneOf(dice.onceIn(3) ? small + large : small);
}

QByteArrayList utf8Names()
{
    return {
        "plain",         " two  spaces ", "it's \"quoted\"",  "100%1 %s%n",
        "文件粉碎机",    "🗑️",       "one\ntwo\r",       "a\\b\\",
        "--help",        "$HOME;*?[a]&|", ".hidden",          "...",
        "..b",           "e\xCC\x81",     "\xEF\xBF\xBD",     "\xE2\x90\xA4",
        "tab\tbell\x07", "n#f?q=%2F",     "\xEF\xBB\xBFmark", QByteArray(NAME_MAX - 4, 'n'),
    };
}

QByteArrayList otherNames()
{
    return {"latin1-\xE9", "\xFF\xFE", "\xED\xA0\x80", "cut\xE6\x96"};
}

} // namespace

RandomTree::RandomTree(Dice &chance)
    : dice(chance)
    , rootPath(QFileInfo(directory.path()).canonicalFilePath().toUtf8())
{
    const QByteArray neighbours = rootPath + "/neighbours";
    fs::create_directory(neighbours.toStdString());
    writeFile(neighbours + "/kept", 5000);
    writeFile(neighbours + "/stop code", 255);
    restrictable.clear();
}

RandomTree::~RandomTree()
{
    openToOwner(rootPath);
    // Qt's own way to remove a folder finds no names that are not UTF-8.
    std::error_code ignored;
    fs::remove_all(rootPath.toStdString(), ignored);
}

QByteArray RandomTree::freePathIn(const QByteArray &folder, Names names)
{
    QByteArray path = folder + '/' + dice.oneOf(utf8Names());
    if (names == Names::AnyBytes && dice.onceIn(25))
        path = folder + '/' + dice.oneOf(otherNames());
    const QByteArray wanted = path;
    for (int number = 1; fs::symlink_status(path.toStdString()).type() != fs::file_type::not_found;
         ++number)
        path = wanted + QByteArray::number(number);
    return path;
}

QByteArray RandomTree::freePath()
{
    return freePathIn(rootPath, Names::Utf8);
}

void RandomTree::writeFile(const QByteArray &path, int size)
{
    std::ofstream(path.toStdString()) << std::string(static_cast<std::size_t>(size), 'x');
    files.append(path);
    restrictable.append(path);
}

QByteArray RandomTree::makeFile(int size)
{
    const QByteArray path = freePath();
    writeFile(path, size);
    return path;
}

QByteArray RandomTree::makeFolder(int depth)
{
    const QByteArray path = freePath();
    fillFolder(path, depth);
    return path;
}

QByteArray RandomTree::makeEntry(int depth)
{
    const QByteArray path = freePath();
    makeAnything(path, depth);
    return path;
}

void RandomTree::makeAnything(const QByteArray &path, int depth)
{
    const int kind = dice.upTo(20);
    if (kind < 5 && depth > 0)
        return fillFolder(path, depth);
    if (kind < 9)
        return makeLink(path);
    if (kind == 9)
        return static_cast<void>(::mkfifo(path.constData(), S_IRUSR | S_IWUSR));
    if (kind == 10)
        return fs::create_hard_link(dice.oneOf(files).toStdString(), path.toStdString());
    writeFile(path, randomSize(dice));
}

void RandomTree::fillFolder(const QByteArray &path, int depth)
{
    fs::create_directory(path.toStdString());
    restrictable.append(path);
    const int entries = dice.upTo(7);
    for (int entry = 0; entry < entries; ++entry)
        makeAnything(freePathIn(path, Names::AnyBytes), depth - 1);
}

void RandomTree::makeLink(const QByteArray &path)
{
    const QByteArray name = path.mid(path.lastIndexOf('/') + 1);
    const QByteArrayList targets = {
        dice.oneOf(files),
        rootPath + "/neighbours",
        rootPath + "/neighbours/stop code",
        rootPath + "/neighbours/.",
        "nowhere",
        rootPath + "/neighbours/kept/below",
        name,
        ".",
    };
    fs::create_symlink(dice.oneOf(targets).toStdString(), path.toStdString());
    if (dice.onceIn(3))
        files.append(path); // a link to a link, or a second name of one
}

void RandomTree::takePermissions(ModelDisk &picture)
{
    const QList<int> modes = {0555, 0444, 0333, 0111, 0600, 0};
    // What lies deeper first, as long as it can still be reached.
    for (auto path = restrictable.crbegin(); path != restrictable.crend(); ++path) {
        const ModelEntry *entry = picture.find(*path, false);
        if (dice.onceIn(6) && entry != nullptr && entry->kind != ModelKind::Link)
            picture.setMode(*path, static_cast<fs::perms>(dice.oneOf(modes)));
    }
}

} // namespace testsupport
