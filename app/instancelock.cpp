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

void writePid(int fd)
{
    const QByteArray pid = QByteArray::number(static_cast<qlonglong>(getpid()));
    // Only the lock counts, so a full disk does not prevent the start.
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
    lock.l_len = 0; // to the end, also when the file grows
    // F_SETLK alone would lose the lock as soon as the process closed another descriptor of the
    // file, and Qt's file dialog opens and closes every file of a folder to choose its icon.
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
        writePid(fd); // and never close(fd), which would release the lock
        return Acquired;
    }
    if (errno == EAGAIN || errno == EACCES) {
        close(fd);
        return HeldByAnother;
    }
    std::exit(EXIT_FAILURE); // NOLINT(concurrency-mt-unsafe): no thread runs yet
}

} // namespace instancelock
