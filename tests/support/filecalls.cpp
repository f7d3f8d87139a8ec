// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The functions below have the names of the C library's, so the program and the
// libraries it is linked to find these first; each passes the call on to the next
// of its name.

#include "filecalls.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <utility>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace testsupport
{

namespace
{

// Never ended: threads of the program go on until the process is gone.
std::recursive_mutex &mutex()
{
    static auto *const instance = new std::recursive_mutex;
    return *instance;
}

FileCallWatch::Watch &currentWatch()
{
    static auto *const instance = new FileCallWatch::Watch;
    return *instance;
}

thread_local bool asking = false;

CallFate fateOf(FileCall call)
{
    if (asking)
        return CallFate();
    const std::lock_guard<std::recursive_mutex> locker(mutex());
    if (!currentWatch())
        return CallFate();
    const int errorBefore = errno;
    asking = true;
    const CallFate fate = currentWatch()(call);
    asking = false;
    errno = errorBefore;
    return fate;
}

/// Pipes and the wake-up calls of event loops are no files.
bool isAboutFile(int descriptor)
{
    const bool wasAsking = std::exchange(asking, true);
    struct stat64 status = {};
    const bool known = ::fstat64(descriptor, &status) == 0;
    asking = wasAsking;
    return known && (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode));
}

template <class Function>
Function *next(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

template <class Result, class Perform>
Result performed(FileCall call, Result failure, Perform perform)
{
    const CallFate fate = fateOf(call);
    if (fate.error == 0)
        return perform();
    errno = fate.error;
    return failure;
}

/// For calls that take what they are given whether they fail or not.
template <class Perform>
int closed(FileCall call, Perform perform)
{
    const CallFate fate = fateOf(call);
    const int result = perform();
    if (fate.error == 0)
        return result;
    errno = fate.error;
    return -1;
}

template <class Result, class Perform>
Result transferred(FileCall call, int descriptor, Result failure, size_t size, Perform perform)
{
    if (asking || !isAboutFile(descriptor))
        return perform(size);
    const CallFate fate = fateOf(call);
    if (fate.error == 0)
        return perform(fate.half && size > 1 ? size / 2 : size);
    errno = fate.error;
    return failure;
}

} // namespace

FileCallWatch::FileCallWatch(Watch watch)
{
    const std::lock_guard<std::recursive_mutex> locker(mutex());
    currentWatch() = std::move(watch);
}

FileCallWatch::~FileCallWatch()
{
    const std::lock_guard<std::recursive_mutex> locker(mutex());
    currentWatch() = nullptr;
}

} // namespace testsupport

using testsupport::closed;
using testsupport::FileCall;
using testsupport::next;
using testsupport::performed;
using testsupport::transferred;

/// A function NAME that has the parameters PARAMETERS and passes on ARGUMENTS.
#define PASS_ON(call, result, failure, name, parameters, arguments)                                \
    result name parameters                                                                         \
    {                                                                                              \
        static auto *const real = next<result parameters>(#name);                                  \
        return performed(FileCall::call, static_cast<result>(failure),                             \
                         [&] { return real arguments; });                                          \
    }

// NOLINTBEGIN(bugprone-macro-parentheses): a parameter list is no expression
/// The same for the functions that open, whose mode is there only when a file may be made.
#define PASS_ON_OPENING(name, parameters, arguments)                                               \
    int name parameters                                                                            \
    {                                                                                              \
        static auto *const real = next<int parameters>(#name);                                     \
        mode_t mode = 0;                                                                           \
        if ((flags & (O_CREAT | O_TMPFILE)) != 0) {                                                \
            std::va_list rest;                                                                     \
            va_start(rest, flags);                                                                 \
            mode = va_arg(rest, mode_t);                                                           \
            va_end(rest);                                                                          \
        }                                                                                          \
        return performed(FileCall::Open, -1, [&] { return real arguments; });                      \
    }
// NOLINTEND(bugprone-macro-parentheses)

/// The same for fcntl, which makes another descriptor when it is told to.
#define PASS_ON_DUPLICATING(name)                                                                  \
    int name(int file, int command, ...)                                                           \
    {                                                                                              \
        static auto *const real = next<int(int, int, ...)>(#name);                                 \
        std::va_list rest;                                                                         \
        va_start(rest, command);                                                                   \
        void *const argument = va_arg(rest, void *);                                               \
        va_end(rest);                                                                              \
        if (command != F_DUPFD_CLOEXEC)                                                            \
            return real(file, command, argument);                                                  \
        return performed(FileCall::Open, -1, [&] { return real(file, command, argument); });       \
    }

// NOLINTBEGIN: the names, and some parameters, are the C library's
extern "C" {
PASS_ON_OPENING(open, (const char *path, int flags, ...), (path, flags, mode))
PASS_ON_OPENING(open64, (const char *path, int flags, ...), (path, flags, mode))
PASS_ON_OPENING(openat, (int folder, const char *name, int flags, ...), (folder, name, flags, mode))
PASS_ON_OPENING(openat64, (int folder, const char *name, int flags, ...),
                (folder, name, flags, mode))

PASS_ON(Open, FILE *, nullptr, fopen, (const char *path, const char *mode), (path, mode))
PASS_ON(Open, FILE *, nullptr, fopen64, (const char *path, const char *mode), (path, mode))
PASS_ON(Open, FILE *, nullptr, fdopen, (int file, const char *mode) noexcept, (file, mode))

PASS_ON(Look, int, -1, access, (const char *path, int mode) noexcept, (path, mode))
#if __GLIBC_PREREQ(2, 33)
PASS_ON(Look, int, -1, stat, (const char *path, struct stat *status) noexcept, (path, status))
PASS_ON(Look, int, -1, stat64, (const char *path, struct stat64 *status) noexcept, (path, status))
PASS_ON(Look, int, -1, lstat, (const char *path, struct stat *status) noexcept, (path, status))
PASS_ON(Look, int, -1, lstat64, (const char *path, struct stat64 *status) noexcept, (path, status))
PASS_ON(Look, int, -1, fstat, (int file, struct stat *status) noexcept, (file, status))
PASS_ON(Look, int, -1, fstat64, (int file, struct stat64 *status) noexcept, (file, status))
PASS_ON(Look, int, -1, fstatat,
        (int folder, const char *name, struct stat *status, int flags) noexcept,
        (folder, name, status, flags))
PASS_ON(Look, int, -1, fstatat64,
        (int folder, const char *name, struct stat64 *status, int flags) noexcept,
        (folder, name, status, flags))
#else
// The functions that the headers of an older library declare are in every program and call these.
PASS_ON(Look, int, -1, __xstat, (int version, const char *path, struct stat *status) noexcept,
        (version, path, status))
PASS_ON(Look, int, -1, __xstat64, (int version, const char *path, struct stat64 *status) noexcept,
        (version, path, status))
PASS_ON(Look, int, -1, __lxstat, (int version, const char *path, struct stat *status) noexcept,
        (version, path, status))
PASS_ON(Look, int, -1, __lxstat64, (int version, const char *path, struct stat64 *status) noexcept,
        (version, path, status))
PASS_ON(Look, int, -1, __fxstat, (int version, int file, struct stat *status) noexcept,
        (version, file, status))
PASS_ON(Look, int, -1, __fxstat64, (int version, int file, struct stat64 *status) noexcept,
        (version, file, status))
PASS_ON(Look, int, -1, __fxstatat,
        (int version, int folder, const char *name, struct stat *status, int flags) noexcept,
        (version, folder, name, status, flags))
PASS_ON(Look, int, -1, __fxstatat64,
        (int version, int folder, const char *name, struct stat64 *status, int flags) noexcept,
        (version, folder, name, status, flags))
#endif
// With times of 64 bits on a machine of 32 bits; nobody calls them elsewhere.
PASS_ON(Look, int, -1, __stat64_time64, (const char *path, void *status) noexcept, (path, status))
PASS_ON(Look, int, -1, __lstat64_time64, (const char *path, void *status) noexcept, (path, status))
PASS_ON(Look, int, -1, __fstat64_time64, (int file, void *status) noexcept, (file, status))
PASS_ON(Look, int, -1, __fstatat64_time64,
        (int folder, const char *name, void *status, int flags) noexcept,
        (folder, name, status, flags))
PASS_ON(Look, int, -1, statx,
        (int folder, const char *name, int flags, unsigned mask, struct statx *status) noexcept,
        (folder, name, flags, mask, status))

PASS_ON(Remove, int, -1, unlink, (const char *path) noexcept, (path))
PASS_ON(Remove, int, -1, remove, (const char *path) noexcept, (path))
PASS_ON(RemoveFolder, int, -1, rmdir, (const char *path) noexcept, (path))
PASS_ON(OpenFolder, DIR *, nullptr, opendir, (const char *path), (path))
PASS_ON(OpenFolder, DIR *, nullptr, fdopendir, (int folder), (folder))
PASS_ON(ReadFolder, dirent *, nullptr, readdir, (DIR * folder), (folder))
PASS_ON(ReadFolder, dirent64 *, nullptr, readdir64, (DIR * folder), (folder))

PASS_ON(WriteOut, int, -1, fdatasync, (int file), (file))
PASS_ON(WriteOut, int, -1, sync_file_range,
        (int file, off64_t offset, off64_t length, unsigned flags), (file, offset, length, flags))

PASS_ON_DUPLICATING(fcntl)
PASS_ON_DUPLICATING(fcntl64)

int unlinkat(int folder, const char *name, int flags) noexcept
{
    static auto *const real = next<int(int, const char *, int)>("unlinkat");
    const bool ofFolder = (flags & AT_REMOVEDIR) != 0;
    return performed(ofFolder ? FileCall::RemoveFolder : FileCall::Remove, -1,
                     [&] { return real(folder, name, flags); });
}

int close(int file)
{
    static auto *const real = next<int(int)>("close");
    if (!testsupport::isAboutFile(file))
        return real(file);
    return closed(FileCall::Close, [&] { return real(file); });
}

int closedir(DIR *folder)
{
    static auto *const real = next<int(DIR *)>("closedir");
    return closed(FileCall::Close, [&] { return real(folder); });
}

int fclose(FILE *stream)
{
    static auto *const real = next<int(FILE *)>("fclose");
    return closed(FileCall::Close, [&] { return real(stream); });
}

ssize_t read(int file, void *bytes, size_t size)
{
    static auto *const real = next<ssize_t(int, void *, size_t)>("read");
    return transferred(FileCall::Read, file, ssize_t{-1}, size,
                       [&](size_t count) { return real(file, bytes, count); });
}

ssize_t write(int file, const void *bytes, size_t size)
{
    static auto *const real = next<ssize_t(int, const void *, size_t)>("write");
    return transferred(FileCall::Write, file, ssize_t{-1}, size,
                       [&](size_t count) { return real(file, bytes, count); });
}

size_t fwrite(const void *bytes, size_t size, size_t items, FILE *stream)
{
    static auto *const real = next<size_t(const void *, size_t, size_t, FILE *)>("fwrite");
    return transferred(FileCall::Write, ::fileno(stream), size_t{0}, items,
                       [&](size_t count) { return real(bytes, size, count, stream); });
}

int ftruncate(int file, off_t size) noexcept
{
    static auto *const real = next<int(int, off_t)>("ftruncate");
    return performed(FileCall::Write, -1, [&] { return real(file, size); });
}

int ftruncate64(int file, off64_t size) noexcept
{
    static auto *const real = next<int(int, off64_t)>("ftruncate64");
    return performed(FileCall::Write, -1, [&] { return real(file, size); });
}
}
// NOLINTEND
