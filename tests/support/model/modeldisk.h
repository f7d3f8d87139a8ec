// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A picture of a folder in memory, on which a model works in place of the disk as an ordinary user
// does. Then the picture tells what must be left there by the product, which works on the disk.

#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QMap>
#include <QString>

#include <ctime>
#include <filesystem>
#include <memory>

namespace testsupport
{

/// What the names of one file share.
struct ModelBody {
    QByteArray bytes;
    bool overwritten = false;
};

namespace ModelKind
{
constexpr auto Directory = std::filesystem::file_type::directory;
constexpr auto File = std::filesystem::file_type::regular;
constexpr auto Link = std::filesystem::file_type::symlink;
} // namespace ModelKind

struct ModelEntry {
    std::filesystem::file_type kind = std::filesystem::file_type::none;
    std::filesystem::perms mode = std::filesystem::perms::none;
    qint64 directorySize = 0;        ///< what stat(2) tells for a directory
    QByteArray target;               ///< of a link
    QByteArrayList names;            ///< of a directory, in the order the system reads them
    std::shared_ptr<ModelBody> body; ///< of a file
};

class ModelDisk
{
public:
    /// Takes the picture of the folder @p root and everything in it, which must be readable.
    explicit ModelDisk(const QByteArray &root);

    QByteArray folder() const { return root; }
    /// The entry at @p path as an ordinary user finds it: through links on the way, and through a
    /// link at its end if @p follow or a slash behind it says so. Null when there is none.
    const ModelEntry *find(const QByteArray &path, bool follow) const;
    bool isLink(const QByteArray &path) const;
    bool isFile(const QByteArray &path) const { return isKind(path, ModelKind::File); }
    bool isDirectory(const QByteArray &path) const { return isKind(path, ModelKind::Directory); }
    bool exists(const QByteArray &path) const { return find(path, true) != nullptr; }
    /// True when the entry at @p path, or the target of the link there, may be read and written.
    bool isOpenToUser(const QByteArray &path) const;
    /// Bytes of what @p path leads to; 0 when it leads nowhere.
    quint64 sizeOf(const QByteArray &path) const;
    /// Names in the directory @p path; none when it cannot be read.
    QByteArrayList namesIn(const QByteArray &path) const;

    /// Overwrites the file @p path.
    void overwrite(const QByteArray &path);
    /// Removes a name, of a directory only an empty one; false when that is not allowed.
    bool remove(const QByteArray &path);

    /// The permissions of @p path, set on the disk as well.
    void setMode(const QByteArray &path, std::filesystem::perms mode);

    /// Looks at the disk again; empty when everything is as in this picture, with the files
    /// overwritten between @p first and @p last, else the first difference.
    QString differenceFromDisk(std::time_t first, std::time_t last) const;

private:
    void takeIn(const QByteArray &path, QMap<quint64, std::shared_ptr<ModelBody>> &bodies);
    bool isKind(const QByteArray &path, std::filesystem::file_type kind) const;
    QByteArray resolve(const QByteArray &path, bool follow) const;

    QByteArray root;
    qint64 bytesPerName = 0;              ///< by which a directory becomes smaller when a name goes
    QMap<QByteArray, ModelEntry> entries; ///< by absolute path
};

/// Opens everything at and below @p path on the disk to its owner.
void openToOwner(const QByteArray &path);

/// @p path without "." in it and without more than one slash in a row.
QByteArray cleaned(const QByteArray &path);

} // namespace testsupport
