// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "loopimage.h"

#include <QFile>
#include <QProcess>

// In older C libraries it does not compile after linux/fs.h.
#include <sys/mount.h>

#include <fcntl.h>
#include <linux/fs.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace testsupport
{

namespace
{

/// XFS makes none below 300 MiB.
constexpr qint64 imageSize = qint64{512} * 1024 * 1024;

bool hasOwnMounts = false;

} // namespace

void enterOwnMounts()
{
    hasOwnMounts = ::unshare(CLONE_NEWNS) == 0
                   && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

QString whyNoImages()
{
    if (::getuid() != 0)
        return QStringLiteral("only root mounts images");
    if (!hasOwnMounts)
        return QStringLiteral("no mounts of one's own here");
    if (!QFile(QStringLiteral("/dev/loop-control")).open(QIODevice::ReadWrite))
        return QStringLiteral("no loop devices here");
    return QString();
}

FileSystemKind plainFileSystem(const QString &type)
{
    const QString force =
        type == QLatin1String("xfs") ? QStringLiteral("-f") : QStringLiteral("-F");
    return FileSystemKind{
        type, {QStringLiteral("mkfs.") + type, QStringLiteral("-q"), force}, QString()};
}

LoopImage::LoopImage(const FileSystemKind &fileSystem)
    : kind(fileSystem)
{
    if (!QFile::resize(scratch.makeFile("image", QByteArray()), imageSize)) {
        problemText = QStringLiteral("no room for ") + imageFile();
        return;
    }
    made = run(kind.makeCommand.first(), kind.makeCommand.mid(1) + QStringList{imageFile()});
    if (made)
        mount();
}

LoopImage::~LoopImage()
{
    // Whatever a failed test left open goes with the process.
    if (isMounted)
        ::umount2(mountPoint.toUtf8().constData(), MNT_DETACH);
}

bool LoopImage::isUnknownToKernel() const
{
    // Trying to mount it has loaded the module, if there is one.
    return made && !isMounted
           && !TemporaryTree::contentsOf(QStringLiteral("/proc/filesystems"))
                   .contains('\t' + kind.type.toLatin1() + '\n');
}

bool LoopImage::unmount()
{
    if (isMounted && ::umount2(mountPoint.toUtf8().constData(), 0) != 0) {
        problemText = QStringLiteral("umount: ") + qt_error_string();
        return false;
    }
    isMounted = false;
    return true;
}

bool LoopImage::remount()
{
    return unmount() && mount();
}

bool LoopImage::mount()
{
    const QString options = kind.mountOptions.isEmpty()
                                ? QStringLiteral("loop")
                                : QStringLiteral("loop,") + kind.mountOptions;
    isMounted = run(QStringLiteral("mount"), {QStringLiteral("-t"), kind.type, QStringLiteral("-o"),
                                              options, imageFile(), mountPoint});
    return isMounted;
}

bool LoopImage::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    // The programs of an administrator are not on everybody's path.
    process.start(QStringLiteral("env"),
                  QStringList{QString::fromLocal8Bit("PATH=" + qgetenv("PATH"))
                                  + QStringLiteral(":/usr/sbin:/sbin"),
                              program}
                      + arguments);
    const bool ended = process.waitForFinished(-1);
    if (ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return true;
    problemText = program + QStringLiteral(": ") + QString::fromUtf8(process.readAll()).trimmed();
    return false;
}

bool setImmutable(const QString &path, bool immutable)
{
    const int folder = ::open(path.toUtf8().constData(), O_RDONLY | O_CLOEXEC);
    int flags = 0;
    bool done = ::ioctl(folder, FS_IOC_GETFLAGS, &flags) == 0;
    flags = immutable ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
    done = done && ::ioctl(folder, FS_IOC_SETFLAGS, &flags) == 0;
    ::close(folder);
    return done;
}

} // namespace testsupport
