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

ModelKind kindOf(fs::file_type type)
{
    switch (type) {
    case fs::file_type::directory:
        return ModelKind::Directory;
    case fs::file_type::regular:
        return ModelKind::File;
    case fs::file_type::symlink:
        return ModelKind::Link;
    default:
        return ModelKind::Fifo;
    }
}

QByteArray parentOf(const QByteArray &path)
{
    return path.left(path.lastIndexOf('/'));
}

bool hasMode(const ModelEntry &entry, fs::perms wanted)
{
    return (entry.mode & wanted) == wanted;
}

QString named(const char *what, const QByteArray &path)
{
    return QLatin1String(what) + QString::fromLatin1(path.toPercentEncoding("/"));
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
    entry.kind = kindOf(state.type());
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
QByteArray ModelDisk::resolve(const QByteArray &path, bool follow, int links) const
{
    if (links > mostLinks || !(path + '/').startsWith(root + '/'))
        return QByteArray();
    const bool slashBehind = path.endsWith('/');
    const QByteArrayList parts = cleaned(path).mid(root.size()).split('/');
    QByteArray here = root;
    for (int index = 1; index < parts.size(); ++index) {
        const ModelEntry &folder = entries[here];
        if (folder.kind != ModelKind::Directory || !hasMode(folder, fs::perms::owner_exec))
            return QByteArray();
        if (parts.at(index) == "..") {
            if (here == root)
                return QByteArray();
            here = parentOf(here);
            continue;
        }
        const QByteArray next = here + '/' + parts.at(index);
        if (!entries.contains(next))
            return QByteArray();
        const bool isLast = index == parts.size() - 1;
        const ModelEntry &entry = entries[next];
        if (entry.kind == ModelKind::Link && (!isLast || follow || slashBehind)) {
            QByteArray onward =
                entry.target.startsWith('/') ? entry.target : here + '/' + entry.target;
            const auto remaining = parts.mid(index + 1);
            for (const QByteArray &rest : remaining)
                onward += '/' + rest;
            return resolve(slashBehind ? onward + '/' : onward, follow, links + 1);
        }
        here = next;
    }
    if (slashBehind && entries[here].kind != ModelKind::Directory)
        return QByteArray();
    return here;
}

const ModelEntry *ModelDisk::find(const QByteArray &path, bool follow) const
{
    const QByteArray key = resolve(path, follow, 0);
    const auto entry = entries.constFind(key);
    return entry == entries.constEnd() ? nullptr : &*entry;
}

bool ModelDisk::isKind(const QByteArray &path, ModelKind kind) const
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
    entries[resolve(path, false, 0)].body->overwritten = true;
}

bool ModelDisk::remove(const QByteArray &path)
{
    QByteArray name = path;
    while (name.endsWith('/'))
        name.chop(1);
    const QByteArray key = resolve(name, false, 0);
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
    const ModelDisk disk(root);
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
        const auto found = disk.entries.constFind(entry.key());
        if (found == disk.entries.cend())
            return named("gone: ", entry.key());
        if (found->kind != entry->kind || found->target != entry->target)
            return named("another kind: ", entry.key());
        if (!entry->body)
            continue;
        if (found->body->bytes.size() != entry->body->bytes.size())
            return named("another size: ", entry.key());
        const bool isRight = entry->body->overwritten
                                 ? wasOverwritten(found->body->bytes, first, last)
                                 : found->body->bytes == entry->body->bytes;
        if (!isRight)
            return named("other bytes: ", entry.key());
    }
    for (auto found = disk.entries.cbegin(); found != disk.entries.cend(); ++found) {
        if (!entries.contains(found.key()))
            return named("still there: ", found.key());
    }
    return QString();
}

} // namespace testsupport
