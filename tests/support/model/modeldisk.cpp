// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "modeldisk.h"

#include "expectedbytes.h"

#include <filesystem>
#include <fstream>
#include <system_error>

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

namespace testsupport
{

namespace
{

namespace fs = std::filesystem;

/// After so many links the system gives up.
constexpr int mostLinks = 40;

QByteArrayList namesOnDisk(const QByteArray &path)
{
    QByteArrayList names;
    for (const fs::directory_entry &entry : fs::directory_iterator(path.toStdString()))
        names.append(QByteArray::fromStdString(entry.path().filename().string()));
    return names;
}

QByteArray bytesOnDisk(const QByteArray &path)
{
    QByteArray bytes(static_cast<int>(fs::file_size(path.toStdString())), '\0');
    if (!std::ifstream(path.toStdString(), std::ios::binary).read(bytes.data(), bytes.size()))
        qFatal("cannot read %s", path.constData());
    return bytes;
}

QByteArray parentOf(const QByteArray &path)
{
    return path.left(path.lastIndexOf('/'));
}

bool hasMode(const ModelEntry &entry, fs::perms wanted)
{
    return (entry.mode & wanted) == wanted;
}

} // namespace

QByteArray cleaned(const QByteArray &path)
{
    QByteArray clean;
    const QByteArrayList parts = path.split('/');
    for (const QByteArray &part : parts) {
        if (!part.isEmpty() && part != ".")
            clean += '/' + part;
    }
    return clean;
}

ModelDisk::ModelDisk(const QByteArray &folder)
    : root(folder)
{
    struct statfs system = {};
    if (::statfs(root.constData(), &system) == 0 && system.f_type == TMPFS_MAGIC)
        bytesPerName = 20;
    QMap<quint64, std::shared_ptr<ModelBody>> bodies;
    takeIn(root, bodies);
}

void ModelDisk::takeIn(const QByteArray &path, QMap<quint64, std::shared_ptr<ModelBody>> &bodies)
{
    struct stat status = {};
    if (::lstat(path.constData(), &status) != 0)
        qFatal("cannot look at %s", path.constData());
    const fs::file_status state = fs::symlink_status(path.toStdString());
    ModelEntry entry;
    entry.kind = state.type();
    entry.mode = state.permissions();
    if (entry.kind == ModelKind::File) {
        std::shared_ptr<ModelBody> &body = bodies[status.st_ino];
        if (!body)
            body = std::make_shared<ModelBody>(ModelBody{bytesOnDisk(path)});
        entry.body = body;
    } else if (entry.kind == ModelKind::Link) {
        entry.target = QByteArray::fromStdString(fs::read_symlink(path.toStdString()).string());
    } else if (entry.kind == ModelKind::Directory) {
        entry.directorySize = status.st_size;
        entry.names = namesOnDisk(path);
        for (const QByteArray &name : qAsConst(entry.names))
            takeIn(path + '/' + name, bodies);
    }
    entries.insert(path, entry);
}

/// The key of the entry at @p path; empty when there is none.
QByteArray ModelDisk::resolve(const QByteArray &path, bool follow) const
{
    QByteArray here = root;
    QByteArrayList ahead;
    int links = -1;
    // False when @p onward leads out of the folder.
    const auto goOn = [&](const QByteArray &onward) {
        const bool isAbsolute = onward.startsWith('/');
        here = isAbsolute ? root : here;
        ahead = onward.mid(isAbsolute ? root.size() : 0).split('/') + ahead;
        return ++links <= mostLinks && (!isAbsolute || (onward + '/').startsWith(root + '/'));
    };
    if (!goOn(path))
        return QByteArray();
    while (!ahead.isEmpty()) {
        const QByteArray name = ahead.takeFirst();
        const ModelEntry folder = entries.value(here);
        if (folder.kind != ModelKind::Directory)
            return QByteArray();
        if (name.isEmpty() || name == ".")
            continue;
        const QByteArray next = name == ".." ? parentOf(here) : here + '/' + name;
        if (!hasMode(folder, fs::perms::owner_exec) || !entries.contains(next))
            return QByteArray();
        const ModelEntry entry = entries.value(next);
        if (entry.kind != ModelKind::Link || (ahead.isEmpty() && !follow))
            here = next;
        else if (!goOn(entry.target))
            return QByteArray();
    }
    return here;
}

const ModelEntry *ModelDisk::find(const QByteArray &path, bool follow) const
{
    const QByteArray key = resolve(path, follow);
    const auto entry = entries.constFind(key);
    return entry == entries.constEnd() ? nullptr : &*entry;
}

bool ModelDisk::isKind(const QByteArray &path, fs::file_type kind) const
{
    const ModelEntry *entry = find(path, true);
    return entry != nullptr && entry->kind == kind;
}

bool ModelDisk::isLink(const QByteArray &path) const
{
    const ModelEntry *entry = find(path, false);
    return entry != nullptr && entry->kind == ModelKind::Link;
}

bool ModelDisk::isOpenToUser(const QByteArray &path) const
{
    const ModelEntry *entry = find(path, true);
    return entry != nullptr && hasMode(*entry, fs::perms::owner_read | fs::perms::owner_write);
}

quint64 ModelDisk::sizeOf(const QByteArray &path) const
{
    const ModelEntry *entry = find(path, true);
    if (entry == nullptr)
        return 0;
    if (entry->kind == ModelKind::Directory)
        return static_cast<quint64>(entry->directorySize);
    return entry->body ? static_cast<quint64>(entry->body->bytes.size()) : 0;
}

QByteArrayList ModelDisk::namesIn(const QByteArray &path) const
{
    const ModelEntry *entry = find(path, true);
    if (entry == nullptr || entry->kind != ModelKind::Directory
        || !hasMode(*entry, fs::perms::owner_read))
        return {};
    return entry->names;
}

void ModelDisk::overwrite(const QByteArray &path)
{
    entries[resolve(path, false)].body->overwritten = true;
}

bool ModelDisk::remove(const QByteArray &path)
{
    QByteArray name = path;
    while (name.endsWith('/'))
        name.chop(1);
    const QByteArray key = resolve(name, false);
    if (key.isEmpty() || key == root || !entries[key].names.isEmpty())
        return false;
    ModelEntry &folder = entries[parentOf(key)];
    if (!hasMode(folder, fs::perms::owner_write | fs::perms::owner_exec))
        return false;
    folder.names.removeOne(key.mid(key.lastIndexOf('/') + 1));
    folder.directorySize -= bytesPerName;
    entries.remove(key);
    return true;
}

void ModelDisk::setMode(const QByteArray &path, fs::perms mode)
{
    fs::permissions(path.toStdString(), mode);
    const std::shared_ptr<ModelBody> body = entries[path].body;
    for (ModelEntry &entry : entries) {
        if (body && entry.body == body)
            entry.mode = mode; // another name of the same file
    }
    entries[path].mode = mode;
}

void openToOwner(const QByteArray &path)
{
    const fs::file_type type = fs::symlink_status(path.toStdString()).type();
    if (type == fs::file_type::symlink || type == fs::file_type::not_found)
        return;
    std::error_code ignored; // what a worker still removes
    fs::permissions(path.toStdString(), fs::perms::owner_all, ignored);
    if (type != fs::file_type::directory)
        return;
    const QByteArrayList names = namesOnDisk(path);
    for (const QByteArray &name : names)
        openToOwner(path + '/' + name);
}

QString ModelDisk::differenceFromDisk(std::time_t first, std::time_t last) const
{
    const auto told = [](const char *what, const QByteArray &path) {
        return QLatin1String(what) + QString::fromLatin1(path.toPercentEncoding("/"));
    };
    const ModelDisk disk(root);
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
        const ModelEntry found = disk.entries.value(entry.key());
        if (found.kind != entry->kind || found.target != entry->target)
            return told("gone or of another kind: ", entry.key());
        if (!entry->body)
            continue;
        const QByteArray &bytes = found.body->bytes;
        const bool isRight = entry->body->overwritten ? wasOverwritten(bytes, first, last)
                                                      : bytes == entry->body->bytes;
        if (!isRight || bytes.size() != entry->body->bytes.size())
            return told("other bytes: ", entry.key());
    }
    for (auto found = disk.entries.cbegin(); found != disk.entries.cend(); ++found) {
        if (!entries.contains(found.key()))
            return told("still there: ", found.key());
    }
    return QString();
}

} // namespace testsupport
