// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A file system in an image file, mounted over a loop device. The loop device writes into the
// image file, so reading that file shows what the file system has sent to its medium by now, and
// nothing that it still has in memory. The device itself is never read: it has a cache of its own.

#pragma once

#include "temporarytree.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryFile>

namespace testsupport
{

/// Moves the program into a mount namespace of its own, so that whatever it mounts goes with its
/// last process, and the loop devices with that. An ordinary user becomes root of a namespace that
/// only the test is in. Called by main() before any thread runs.
void enterOwnMounts();
/// Whether that was allowed.
bool hasOwnMounts();

/// Why no image can be mounted on this machine; empty when one can. After enterOwnMounts().
QString whyNoImages();

/// A file system, in memory unless said otherwise, mounted over a folder for the life of the
/// object.
class Mount
{
public:
    explicit Mount(const QString &folder, const QByteArray &options = {},
                   const char *type = "tmpfs");
    ~Mount();
    Mount(const Mount &) = delete;
    Mount &operator=(const Mount &) = delete;

    bool isDone() const { return done; }
    bool makeReadOnly() const;

private:
    QByteArray place;
    bool done;
};

/// How a file system is made and mounted.
struct FileSystemKind {
    QString type;            ///< as mount(8) names it
    QStringList makeCommand; ///< the program and its arguments; the image follows
    QString mountOptions = QStringLiteral("loop");
};

/// The kinds that shredding promises something for: ext4, ext2 or xfs.
FileSystemKind plainFileSystem(const QString &type);

/// What is made in the folder is made on the image.
class LoopImage : public TemporaryTree
{
public:
    /// Makes the image and mounts it; see problem(). Sparse: it takes what is written to it.
    explicit LoopImage(const FileSystemKind &fileSystem);
    ~LoopImage();

    /// What went wrong last; empty when it is mounted.
    QString problem() const { return problemText; }
    /// Whether it cannot be mounted because the kernel has no such file system.
    bool isUnknownToKernel() const;
    /// The file that stands for the medium.
    QString imageFile() const { return image.fileName(); }

    /// Unmounts it, after which all that was written is on the medium.
    bool unmount();
    /// Unmounts and mounts it again: all is on the medium, and nothing in memory.
    bool remount();

private:
    bool mount();
    bool run(const QString &program, const QStringList &arguments);

    QTemporaryFile image;
    FileSystemKind kind;
    QString problemText;
    bool made = false;
    bool isMounted = false;
};

/// Makes the file or folder @p path immutable, so that it, and no name in it, can change or go; or
/// lets it change again.
bool setImmutable(const QString &path, bool immutable);

} // namespace testsupport
