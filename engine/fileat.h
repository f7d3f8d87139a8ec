// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The system calls that reach an entry relative to an open folder: fstatat, openat,
// unlinkat, readdir. A path that is examined first and used later may lead somewhere
// else by then, while an open folder stays the same folder. None of these follows a
// link at the entry's own name, unless it says so. Worker thread only.

#pragma once

#include "engine/descriptor.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <cstdio>
#include <memory>

#include <sys/types.h>

enum class EntryKind { Missing, Link, Directory, File, Other };

/// What fstatat tells of an entry.
struct EntryStatus {
    EntryKind kind = EntryKind::Missing;
    quint64 size = 0; ///< bytes
};

/// What tells one file from another whatever it is called.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;

    bool operator==(const FileIdentity &other) const
    {
        return device == other.device && inode == other.inode;
    }
};

struct StreamCloser {
    void operator()(std::FILE *stream) const;
};
/// Owns a C stream. A close that fails is not noticed, as a write that fails is not.
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

/// A file open for overwriting, positioned at its start.
struct OpenFile {
    Stream stream;
    FileIdentity identity;
    qint64 size = -1; ///< bytes

    bool isOpen() const { return stream != nullptr; }
};

/// The names in @p directory, which is open for reading and closed then, without "." and "..",
/// whatever type the file system reports for them. Empty when it cannot be read.
QVector<QByteArray> namesIn(Descriptor directory);
/// The names in the open folder @p directory, which need not be open for reading.
QVector<QByteArray> namesIn(int directory);

/// @p name as text. QString::fromUtf8() drops a byte order mark at the start; in a name it is kept.
QString textOf(const QByteArray &name);

/// False for a name that QString cannot hold unchanged. Such an entry is left alone: what is
/// reported must be what was removed.
bool isUtf8(const QByteArray &name);

/// fstatat of the entry itself.
EntryStatus statAt(int directory, const QByteArray &name);

/// fstatat of what the entry leads to, should it be a link.
EntryStatus statTargetAt(int directory, const QByteArray &name);

/// Opens a folder, to reach its entries by; it need not be readable, as one that is empty can be
/// removed all the same. Not open on failure.
Descriptor openDirectoryAt(int directory, const QByteArray &name);

/// Opens a regular file for overwriting. Waits while another process holds a lease on it, never
/// for the other end of a fifo. Not open when it cannot be opened or is no regular file; its size
/// is -1 when fstat fails.
OpenFile openFileAt(int directory, const QByteArray &name);

/// Removes the name of a file or link.
bool unlinkAt(int directory, const QByteArray &name);
/// Removes an empty folder.
bool removeDirectoryAt(int directory, const QByteArray &name);

/// A path split into the folder that holds it, which is kept open, and the name in it.
class ParentDirectory final
{
public:
    /// Slashes at the end of @p path do not count; they would make the system look through a link.
    explicit ParentDirectory(const QByteArray &path);

    bool isOpen() const { return folder.isOpen(); }
    int descriptor() const { return folder.get(); }
    const QByteArray &name() const { return lastName; }

private:
    Descriptor folder;
    QByteArray lastName;
};
