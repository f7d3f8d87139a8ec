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

namespace testsupport
{

/// Moves the program into a mount namespace of its own, so that whatever it mounts goes with its
/// last process, and the loop devices with that. Called by main() before any thread runs.
void enterOwnMounts();

/// Why no image can be mounted on this machine; empty when one can. After enterOwnMounts().
QString whyNoImages();

/// How a file system is made and mounted.
struct FileSystemKind {
    QString type;            ///< as mount(8) names it
    QStringList makeCommand; ///< the program and its arguments; the image follows
    QString mountOptions;    ///< behind "loop"
};

/// The kinds that shredding promises something for: ext4, ext2 or xfs.
FileSystemKind plainFileSystem(const QString &type);

class LoopImage
{
public:
    /// Makes the image and mounts it; see problem(). Sparse: it takes what is written to it.
    explicit LoopImage(const FileSystemKind &fileSystem);
    ~LoopImage();
    LoopImage(const LoopImage &) = delete;
    LoopImage &operator=(const LoopImage &) = delete;

    /// What went wrong last; empty when it is mounted.
    QString problem() const { return problemText; }
    /// Whether it cannot be mounted because the kernel has no such file system.
    bool isUnknownToKernel() const;
    /// The file that stands for the medium.
    QString imageFile() const { return scratch.path("image"); }
    /// The absolute path of @p name in the file system; nothing is made.
    QString path(const TreeName &name) const { return scratch.path(mounted(name)); }

    /// Makes a file with its parent folders; returns its path.
    QString makeFile(const TreeName &name, const QByteArray &contents) const
    {
        return scratch.makeFile(mounted(name), contents);
    }
    QString makeFolder(const TreeName &name) const { return scratch.makeFolder(mounted(name)); }

    /// Unmounts it, after which all that was written is on the medium.
    bool unmount();
    /// Unmounts and mounts it again: all is on the medium, and nothing in memory.
    bool remount();

private:
    static QString mounted(const TreeName &name) { return QStringLiteral("mounted/") + name.text; }
    bool mount();
    bool run(const QString &program, const QStringList &arguments);

    TemporaryTree scratch;
    FileSystemKind kind;
    QString mountPoint = scratch.makeFolder("mounted");
    QString problemText;
    bool made = false;
    bool isMounted = false;
};

/// Makes the folder @p path immutable, so that no name in it can go, or lets it change again.
bool setImmutable(const QString &path, bool immutable);

} // namespace testsupport
