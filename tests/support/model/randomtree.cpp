// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "randomtree.h"

#include <QFileInfo>
#include <QList>

#include <climits>
#include <filesystem>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace testsupport
{

namespace
{

/// Ends, beginnings and middles of blocks, the stop code, and enough blocks for each kind of
/// progress.
QList<int> sizes()
{
    return {0,    0,    1,    3,     100,   254,   255,   256,    511,   4095,
            4096, 4097, 8191, 12288, 20000, 40959, 69632, 204807, 413696};
}

constexpr int smallSizes = 9;

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

void require(bool done, const char *what, const QByteArray &path)
{
    if (!done)
        qFatal("cannot make the %s %s", what, path.constData());
}

bool isTaken(const QByteArray &path)
{
    struct stat status = {};
    return ::lstat(path.constData(), &status) == 0;
}

} // namespace

RandomTree::RandomTree(Dice &chance)
    : dice(chance)
    , rootPath(QFileInfo(directory.path()).canonicalFilePath().toUtf8())
{
    const QByteArray neighbours = rootPath + "/neighbours";
    require(::mkdir(neighbours.constData(), S_IRWXU) == 0, "folder", neighbours);
    writeFile(neighbours + "/kept", 5000);
    writeFile(neighbours + "/stop code", 255);
}

RandomTree::~RandomTree()
{
    // A folder that was made unreadable and survived could not be emptied.
    for (const QByteArray &path : qAsConst(restrictable)) {
        struct stat status = {};
        if (::lstat(path.constData(), &status) == 0 && !S_ISLNK(status.st_mode))
            ::chmod(path.constData(), S_IRWXU);
    }
    // Qt's own way to remove a folder finds no names that are not UTF-8.
    std::error_code ignored;
    std::filesystem::remove_all(rootPath.toStdString(), ignored);
}

QByteArray RandomTree::freePathIn(const QByteArray &folder, Names names)
{
    QByteArray path = folder + '/' + dice.oneOf(utf8Names());
    if (names == Names::AnyBytes && dice.onceIn(25))
        path = folder + '/' + dice.oneOf(otherNames());
    const QByteArray wanted = path;
    for (int number = 1; isTaken(path); ++number)
        path = wanted + QByteArray::number(number);
    return path;
}

QByteArray RandomTree::freePath()
{
    return freePathIn(rootPath, Names::Utf8);
}

int RandomTree::randomSize()
{
    // Most are small, so that many fit in a test.
    return dice.onceIn(3) ? dice.oneOf(sizes()) : sizes().at(dice.upTo(smallSizes));
}

void RandomTree::writeFile(const QByteArray &path, int size)
{
    const int descriptor =
        ::open(path.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
    const QByteArray bytes(size, 'x');
    require(descriptor >= 0
                && ::write(descriptor, bytes.constData(), static_cast<size_t>(size)) == size,
            "file", path);
    ::close(descriptor);
    files.append(path);
}

QByteArray RandomTree::makeFile(int size)
{
    const QByteArray path = freePath();
    writeFile(path, size);
    restrictable.append(path);
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
        return require(::mkfifo(path.constData(), S_IRUSR | S_IWUSR) == 0, "fifo", path);
    if (kind == 10)
        return require(::link(dice.oneOf(files).constData(), path.constData()) == 0, "second name",
                       path);
    writeFile(path, randomSize());
    restrictable.append(path);
}

void RandomTree::fillFolder(const QByteArray &path, int depth)
{
    require(::mkdir(path.constData(), S_IRWXU) == 0, "folder", path);
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
    const QByteArray target = dice.oneOf(targets);
    require(::symlink(target.constData(), path.constData()) == 0, "link", path);
    if (dice.onceIn(3))
        files.append(path); // a link to a link, or a second name of one
}

void RandomTree::takePermissions(ModelDisk &picture)
{
    const QList<mode_t> modes = {0555, 0444, 0333, 0111, 0600, 0};
    // What lies deeper first, as long as it can still be reached.
    for (auto path = restrictable.crbegin(); path != restrictable.crend(); ++path) {
        const ModelEntry *entry = picture.find(*path, false);
        if (dice.onceIn(6) && entry != nullptr && entry->kind != ModelKind::Link)
            picture.setMode(*path, dice.oneOf(modes));
    }
}

} // namespace testsupport
