// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Reaching files safely while other processes rename and replace things. A path
// that is looked at first and used later may lead somewhere else by then; a
// folder that is held open stays the same folder. So folders are held open and
// entries are looked at, opened and removed relative to them, and no link is ever
// followed at the name that was looked at. Worker thread only.

#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <cstdio>

#include <sys/types.h>

/// Owns a file descriptor.
class Descriptor final
{
public:
    explicit Descriptor(int opened = -1)
        : number(opened)
    {
    }
    Descriptor(Descriptor &&other) noexcept;
    Descriptor &operator=(Descriptor &&other) noexcept;
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor();

    bool isOpen() const { return number >= 0; }
    int get() const { return number; }
    /// Gives the descriptor up to the caller.
    int release();

private:
    int number;
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

enum class EntryKind { Missing, Link, Directory, File, Other };

/// One entry of a folder as it was when looked at; a link is not followed.
struct EntryState {
    EntryKind kind = EntryKind::Missing;
    FileIdentity identity;
    quint64 size = 0; ///< bytes
};

/// An entry of a folder as the folder lists it.
struct ListedEntry {
    QByteArray name;
    bool listedAsFile = false; ///< false also where the file system does not tell
};
Q_DECLARE_TYPEINFO(ListedEntry, Q_MOVABLE_TYPE);

/// The entries of the open folder @p directory but "." and "..", whatever type the file system
/// reports for them; walking into ".." would leave the tree. Empty when unreadable.
QVector<ListedEntry> entriesIn(int directory);

/// @p name as text. Only at the start of a text does a byte order mark stand for none; here it is
/// the start of a name, which must stay what it is.
QString textOf(const QByteArray &name);

/// False for a name that would be another one after a way through QString. Such an entry is left
/// alone: what is reported must be what was removed.
bool isUtf8(const QByteArray &name);

/// Looks at the entry @p name of @p directory.
EntryState lookAt(int directory, const QByteArray &name);

/// Bytes that the target of the link @p name holds; 0 when that cannot be told.
quint64 sizeThrough(int directory, const QByteArray &name);

/// Opens a folder within @p directory, never through a link, to reach its entries by; it need
/// not be readable, as one that is empty can be removed all the same.
Descriptor openDirectoryIn(int directory, const QByteArray &name);

/// A file open for overwriting, positioned at its start. Whoever has it closes the stream.
struct OpenFile {
    std::FILE *stream = nullptr;
    FileIdentity identity;

    bool isOpen() const { return stream != nullptr; }
};

/// Opens a regular file within @p directory for overwriting, never through a link and never
/// waiting for the other end of a fifo. Not open when it cannot be or is no regular file.
OpenFile openForOverwriting(int directory, const QByteArray &name);

/// Removes the name of a file or link.
bool removeNameIn(int directory, const QByteArray &name);
/// Removes an empty folder.
bool removeDirectoryIn(int directory, const QByteArray &name);

/// A path split into the folder that holds it, held open, and the name in it.
class HeldPlace final
{
public:
    /// Slashes at the end of @p path do not count; they would make the system look through a link.
    explicit HeldPlace(const QByteArray &path);

    bool isOpen() const { return parent.isOpen(); }
    int directory() const { return parent.get(); }
    const QByteArray &name() const { return lastName; }

private:
    Descriptor parent;
    QByteArray lastName;
};
