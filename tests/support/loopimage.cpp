// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "loopimage.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <cerrno>
#include <cstring>

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

/// The programs of an administrator are not on everybody's path.
QString programNamed(const QString &name)
{
    const QString found = QStandardPaths::findExecutable(name);
    return !found.isEmpty() ? found
                            : QStandardPaths::findExecutable(
                                name, {QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")});
}

bool hasLoopDevices()
{
    const int control = ::open("/dev/loop-control", O_RDWR | O_CLOEXEC);
    if (control < 0)
        return false;
    ::close(control);
    return true;
}

QString systemsWord()
{
    return QString::fromLocal8Bit(std::strerror(errno)); // NOLINT(concurrency-mt-unsafe)
}

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
    if (!hasLoopDevices())
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
    , mountPoint(QFileInfo(scratch.path()).canonicalFilePath() + QStringLiteral("/mounted"))
{
    made = make(kind.makeCommand);
    if (made)
        mount();
}

LoopImage::~LoopImage()
{
    // Whatever a failed test left open goes with the process.
    if (mounted)
        ::umount2(mountPoint.toUtf8().constData(), MNT_DETACH);
}

bool LoopImage::isUnknownToKernel() const
{
    // Trying to mount it has loaded the module, if there is one.
    QFile known(QStringLiteral("/proc/filesystems"));
    return made && !mounted && known.open(QIODevice::ReadOnly)
           && !known.readAll().contains('\t' + kind.type.toLatin1() + '\n');
}

QString LoopImage::path(const TreeName &name) const
{
    return mountPoint + QLatin1Char('/') + name.text;
}

QString LoopImage::makeFile(const TreeName &name, const QByteArray &contents) const
{
    const QString file = path(name);
    QFile out(file);
    if (!QDir().mkpath(QFileInfo(file).path()) || !out.open(QIODevice::WriteOnly)
        || out.write(contents) != contents.size())
        qFatal("cannot make file %s", qPrintable(file));
    return file;
}

QString LoopImage::makeFolder(const TreeName &name) const
{
    if (!QDir().mkpath(path(name)))
        qFatal("cannot make folder %s", qPrintable(path(name)));
    return path(name);
}

bool LoopImage::unmount()
{
    if (mounted && ::umount2(mountPoint.toUtf8().constData(), 0) != 0) {
        problemText = QStringLiteral("umount: ") + systemsWord();
        return false;
    }
    mounted = false;
    return true;
}

bool LoopImage::remount()
{
    return unmount() && mount();
}

bool LoopImage::make(const QStringList &command)
{
    QFile image(imageFile());
    if (!QDir().mkpath(mountPoint) || !image.open(QIODevice::WriteOnly)
        || !image.resize(imageSize)) {
        problemText = QStringLiteral("no room for an image in ") + scratch.path();
        return false;
    }
    return run(command.first(), command.mid(1) + QStringList{imageFile()});
}

bool LoopImage::mount()
{
    const QString options = kind.mountOptions.isEmpty()
                                ? QStringLiteral("loop")
                                : QStringLiteral("loop,") + kind.mountOptions;
    mounted = run(QStringLiteral("mount"), {QStringLiteral("-t"), kind.type, QStringLiteral("-o"),
                                            options, imageFile(), mountPoint});
    return mounted;
}

bool LoopImage::run(const QString &program, const QStringList &arguments)
{
    const QString found = programNamed(program);
    if (found.isEmpty()) {
        problemText = program + QStringLiteral(" is not installed");
        return false;
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(found, arguments);
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
