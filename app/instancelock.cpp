// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "app/instancelock.h"

#include <QByteArray>

#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

#ifndef F_OFD_SETLK
#define F_OFD_SETLK 37 // NOLINT: the C library has it since 2.20
#endif

namespace instancelock
{

namespace
{

constexpr mode_t lockFileMode = 0644;

/// The descriptor is never closed: the lock belongs to it.
void writePid(int fd)
{
    const QByteArray pid = QByteArray::number(static_cast<qlonglong>(getpid()));
    // The lock is what counts, so a full disk is no reason not to start.
    [[maybe_unused]] const bool emptied = ftruncate(fd, 0) == 0;
    [[maybe_unused]] const auto written =
        write(fd, pid.constData(), static_cast<size_t>(pid.size()));
}

} // namespace

int lockWholeFile(int fd)
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = 0;
    lock.l_len = 0; // to the end, however far the file grows
    // A lock of the process would go as soon as anything in it closed another descriptor of the
    // file, and Qt's file dialog opens every file of a folder to choose its icon.
    const int result = fcntl(fd, F_OFD_SETLK, &lock);
    if (result != -1 || errno != EINVAL)
        return result;
    return fcntl(fd, F_SETLK, &lock); // Linux before 3.15
}

int acquireInstanceLock(const QString &path)
{
    const int fd = open(path.toUtf8().constData(), O_RDWR | O_CREAT | O_CLOEXEC, lockFileMode);
    if (fd < 0)
        std::exit(EXIT_FAILURE); // NOLINT(concurrency-mt-unsafe): no thread runs yet
    if (lockWholeFile(fd) != -1) {
        writePid(fd);
        return Acquired;
    }
    if (errno == EAGAIN || errno == EACCES) {
        close(fd);
        return HeldByAnother;
    }
    std::exit(EXIT_FAILURE); // NOLINT(concurrency-mt-unsafe): no thread runs yet
}

} // namespace instancelock
