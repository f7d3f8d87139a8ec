// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "engine/helddirectory.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

struct DirectoryCloser {
    void operator()(DIR *directory) const { ::closedir(directory); }
};

bool isSelfOrParent(const char *name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

/// Most names are, and need no decoding.
bool isAscii(const QByteArray &name)
{
    constexpr unsigned char firstOther = 0x80;
    return std::all_of(name.begin(), name.end(),
                       [](char byte) { return static_cast<unsigned char>(byte) < firstOther; });
}

EntryKind kindOf(mode_t mode)
{
    switch (mode & S_IFMT) {
    case S_IFLNK:
        return EntryKind::Link;
    case S_IFDIR:
        return EntryKind::Directory;
    case S_IFREG:
        return EntryKind::File;
    default:
        return EntryKind::Other;
    }
}

} // namespace

Descriptor::Descriptor(Descriptor &&other) noexcept
    : number(other.release())
{
}

Descriptor &Descriptor::operator=(Descriptor &&other) noexcept
{
    std::swap(number, other.number);
    return *this;
}

Descriptor::~Descriptor()
{
    if (isOpen())
        ::close(number);
}

int Descriptor::release()
{
    return std::exchange(number, -1);
}

QString textOf(const QByteArray &name)
{
    if (isAscii(name))
        return QString::fromLatin1(name);
    return QString::fromUtf8('/' + name).mid(1);
}

bool isUtf8(const QByteArray &name)
{
    return isAscii(name) || textOf(name).toUtf8() == name;
}

QVector<ListedEntry> entriesIn(int directory)
{
    QVector<ListedEntry> entries;
    // A description of its own, since reading moves a position that descriptors share.
    Descriptor own(::openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!own.isOpen())
        return entries;
    const std::unique_ptr<DIR, DirectoryCloser> stream(::fdopendir(own.get()));
    if (!stream)
        return entries;
    own.release(); // the stream closes it
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the stream is this call's own
    while (const dirent *entry = ::readdir(stream.get())) {
        if (!isSelfOrParent(entry->d_name))
            entries.append(ListedEntry{QByteArray(entry->d_name), entry->d_type == DT_REG});
    }
    return entries;
}

EntryState lookAt(int directory, const QByteArray &name)
{
    struct stat status = {};
    if (::fstatat(directory, name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return EntryState();
    return EntryState{kindOf(status.st_mode), FileIdentity{status.st_dev, status.st_ino},
                      status.st_size < 0 ? 0 : static_cast<quint64>(status.st_size)};
}

quint64 sizeThrough(int directory, const QByteArray &name)
{
    struct stat status = {};
    if (::fstatat(directory, name.constData(), &status, 0) != 0 || status.st_size < 0)
        return 0;
    return static_cast<quint64>(status.st_size);
}

Descriptor openDirectoryIn(int directory, const QByteArray &name)
{
    return Descriptor(
        ::openat(directory, name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

OpenFile openForOverwriting(int directory, const QByteArray &name)
{
    Descriptor file(
        ::openat(directory, name.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return OpenFile();
    std::FILE *stream = ::fdopen(file.get(), "r+");
    if (stream != nullptr)
        file.release(); // the stream closes it
    return OpenFile{stream, FileIdentity{status.st_dev, status.st_ino}};
}

bool removeNameIn(int directory, const QByteArray &name)
{
    return ::unlinkat(directory, name.constData(), 0) == 0;
}

bool removeDirectoryIn(int directory, const QByteArray &name)
{
    return ::unlinkat(directory, name.constData(), AT_REMOVEDIR) == 0;
}

HeldPlace::HeldPlace(const QByteArray &path)
{
    if (path.isEmpty())
        return; // no place at all; least of all the current folder
    QByteArray trimmed = path;
    while (trimmed.size() > 1 && trimmed.endsWith('/'))
        trimmed.chop(1);
    const int slash = trimmed.lastIndexOf('/');
    lastName = trimmed.mid(slash + 1);
    const QByteArray folder = slash < 0 ? QByteArray(".") : trimmed.left(slash + 1);
    parent = Descriptor(::open(folder.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}
