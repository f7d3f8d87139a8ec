// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "engine/fileat.h"

#include <algorithm>
#include <cerrno>
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

EntryStatus entryStatus(int directory, const QByteArray &name, int flags)
{
    struct stat status = {};
    if (::fstatat(directory, name.constData(), &status, flags) != 0)
        return EntryStatus();
    return EntryStatus{kindOf(status.st_mode),
                       status.st_size < 0 ? 0 : static_cast<quint64>(status.st_size)};
}

} // namespace

void StreamCloser::operator()(std::FILE *stream) const
{
    // NOLINTNEXTLINE(cert-err33-c)
    static_cast<void>(std::fclose(stream));
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

QVector<QByteArray> namesIn(Descriptor directory)
{
    QVector<QByteArray> names;
    if (!directory.isOpen())
        return names;
    const std::unique_ptr<DIR, DirectoryCloser> stream(::fdopendir(directory.get()));
    if (!stream)
        return names;
    directory.release(); // the stream closes it
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the stream is this call's own
    while (const dirent *entry = ::readdir(stream.get())) {
        if (!isSelfOrParent(entry->d_name))
            names.append(QByteArray(entry->d_name));
    }
    return names;
}

QVector<QByteArray> namesIn(int directory)
{
    return namesIn(Descriptor(::openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)));
}

EntryStatus statAt(int directory, const QByteArray &name)
{
    return entryStatus(directory, name, AT_SYMLINK_NOFOLLOW);
}

EntryStatus statTargetAt(int directory, const QByteArray &name)
{
    return entryStatus(directory, name, 0);
}

Descriptor openDirectoryAt(int directory, const QByteArray &name)
{
    return Descriptor(
        ::openat(directory, name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

OpenFile openFileAt(int directory, const QByteArray &name)
{
    constexpr int flags = O_RDWR | O_NOFOLLOW | O_CLOEXEC;
    Descriptor file(::openat(directory, name.constData(), flags | O_NONBLOCK));
    // A lease, as file servers hold them: its holder is given time to let the file go. Opening a
    // fifo for reading and writing does not wait, should one take the file's place just now.
    if (!file.isOpen() && errno == EWOULDBLOCK && statAt(directory, name).kind == EntryKind::File)
        file = Descriptor(::openat(directory, name.constData(), flags));
    if (!file.isOpen())
        return OpenFile();
    struct stat status = {};
    const bool isKnown = ::fstat(file.get(), &status) == 0;
    if (isKnown && !S_ISREG(status.st_mode))
        return OpenFile();
    Stream stream(::fdopen(file.get(), "r+"));
    if (stream)
        file.release(); // the stream closes it
    return OpenFile{std::move(stream), FileIdentity{status.st_dev, status.st_ino},
                    isKnown ? status.st_size : -1};
}

bool unlinkAt(int directory, const QByteArray &name)
{
    return ::unlinkat(directory, name.constData(), 0) == 0;
}

bool removeDirectoryAt(int directory, const QByteArray &name)
{
    return ::unlinkat(directory, name.constData(), AT_REMOVEDIR) == 0;
}

ParentDirectory::ParentDirectory(const QByteArray &path)
{
    if (path.isEmpty())
        return; // leads nowhere; least of all to the current folder
    QByteArray trimmed = path;
    while (trimmed.size() > 1 && trimmed.endsWith('/'))
        trimmed.chop(1);
    const int slash = trimmed.lastIndexOf('/');
    lastName = trimmed.mid(slash + 1);
    const QByteArray parent = slash < 0 ? QByteArray(".") : trimmed.left(slash + 1);
    folder = Descriptor(::open(parent.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}
