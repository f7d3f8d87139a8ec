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

bool ownMounts = false;

bool write(const char *file, const QByteArray &text)
{
    QFile out(QString::fromLatin1(file));
    return out.open(QIODevice::WriteOnly) && out.write(text) == text.size();
}

} // namespace

void enterOwnMounts()
{
    // The programs of an administrator are not on everybody's path.
    qputenv("PATH", qgetenv("PATH") + ":/usr/sbin:/sbin");
    const uid_t user = ::getuid();
    const gid_t group = ::getgid();
    ownMounts = ::unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) == 0;
    if (user != 0)
        ownMounts = ownMounts && write("/proc/self/setgroups", "deny")
                    && write("/proc/self/uid_map", "0 " + QByteArray::number(user) + " 1")
                    && write("/proc/self/gid_map", "0 " + QByteArray::number(group) + " 1");
    ownMounts = ownMounts && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool hasOwnMounts()
{
    return ownMounts;
}

QString whyNoImages()
{
    if (!ownMounts)
        return QStringLiteral("no mounts of one's own here");
    if (!QFile(QStringLiteral("/dev/loop-control")).open(QIODevice::ReadWrite))
        return QStringLiteral("no loop devices here, or not for this user");
    return QString();
}

Mount::Mount(const QString &folder, const QByteArray &options, const char *type)
    : place(folder.toUtf8())
    , done(::mount(type, place.constData(), type, 0, options.constData()) == 0)
{
}

Mount::~Mount()
{
    if (done)
        ::umount2(place.constData(), MNT_DETACH);
}

bool Mount::makeReadOnly() const
{
    return ::mount("none", place.constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}

FileSystemKind plainFileSystem(const QString &type)
{
    const QString force =
        type == QLatin1String("xfs") ? QStringLiteral("-f") : QStringLiteral("-F");
    return FileSystemKind{type, {QStringLiteral("mkfs.") + type, QStringLiteral("-q"), force}};
}

LoopImage::LoopImage(const FileSystemKind &fileSystem)
    : kind(fileSystem)
{
    if (!image.open() || !image.resize(imageSize)) {
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
        ::umount2(path().toUtf8().constData(), MNT_DETACH);
}

bool LoopImage::isUnknownToKernel() const
{
    // Trying to mount it has loaded the module, if there is one.
    return made && !isMounted
           && !contentsOf(QStringLiteral("/proc/filesystems"))
                   .contains('\t' + kind.type.toLatin1() + '\n');
}

bool LoopImage::unmount()
{
    if (isMounted && ::umount2(path().toUtf8().constData(), 0) != 0) {
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
    isMounted = run(QStringLiteral("mount"), {QStringLiteral("-t"), kind.type, QStringLiteral("-o"),
                                              kind.mountOptions, imageFile(), path()});
    return isMounted;
}

bool LoopImage::run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    const bool ended = process.waitForFinished(-1);
    if (ended && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return true;
    problemText = program + QStringLiteral(": ") + QString::fromUtf8(process.readAll()).trimmed();
    return false;
}

bool setImmutable(const QString &path, bool immutable)
{
    const int file = ::open(path.toUtf8().constData(), O_RDONLY | O_CLOEXEC);
    int flags = 0;
    bool done = ::ioctl(file, FS_IOC_GETFLAGS, &flags) == 0;
    flags = immutable ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
    done = done && ::ioctl(file, FS_IOC_SETFLAGS, &flags) == 0;
    ::close(file);
    return done;
}

} // namespace testsupport
