// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The functions below have the names of the C library's, so the program and the libraries it is
// linked to find these first; each passes the call on to the next of its name.

#include "systemcalls.h"

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <mutex>
#include <type_traits>
#include <utility>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace testsupport
{

namespace
{

struct Hooks {
    std::recursive_mutex mutex; ///< guards the rest
    CallHook::Before before;
    CallHook::After after;
    std::function<long long()> clock;
};

/// Never ended: threads of the program go on until the process is gone.
Hooks &hooks()
{
    static auto *const instance = new Hooks;
    return *instance;
}

// Apart from the mutex, which would put every call of every test in an order.
std::atomic<bool> callsAreHooked{false};
std::atomic<bool> clockIsHooked{false};
std::atomic<bool> pausesAreShort{false};

thread_local bool asking = false;

bool isUnseen()
{
    return asking || !callsAreHooked;
}

/// Calls @p ask, whose own calls pass unseen and whose errors stay its own.
template <class Ask>
void askUnseen(Ask ask)
{
    const std::lock_guard<std::recursive_mutex> locker(hooks().mutex);
    const int errorBefore = errno;
    const bool wasAsking = std::exchange(asking, true);
    ask();
    asking = wasAsking;
    errno = errorBefore;
}

CallFate fateOf(const SystemCall &call)
{
    CallFate fate;
    if (!isUnseen())
        askUnseen([&] { fate = hooks().before ? hooks().before(call) : CallFate(); });
    return fate;
}

/// Pipes and the wake-up calls of event loops are no files; nobody has C streams for those.
bool isAboutFile(int descriptor)
{
    bool isFile = false;
    askUnseen([&] {
        struct stat64 status = {};
        isFile = ::fstat64(descriptor, &status) == 0
                 && (S_ISREG(status.st_mode) || S_ISDIR(status.st_mode));
    });
    return isFile;
}

template <class Function>
Function *next(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

SystemCall about(CallKind kind, const char *name, int file, const char *path = nullptr,
                 int flags = 0, long long offset = 0, long long length = 0)
{
    return SystemCall{kind, name, file, path, flags, offset, length};
}

/// Hooks may change what is @p filledIn, or what the returned pointer leads to.
template <class Result, class Perform>
Result performed(const SystemCall &call, Result failure, void *filledIn, Perform perform)
{
    const CallFate fate = fateOf(call);
    if (fate.pretended)
        return Result();
    if (fate.error != 0) {
        errno = fate.error;
        return failure;
    }
    const Result result = perform();
    if constexpr (std::is_pointer_v<Result>)
        filledIn = result;
    if (result != failure && !isUnseen())
        askUnseen([&] { return hooks().after ? hooks().after(call, filledIn) : void(); });
    return result;
}

/// For calls that take what they are given whether they fail or not.
template <class Perform>
int closed(const SystemCall &call, Perform perform)
{
    if (isUnseen() || (call.file >= 0 && !isAboutFile(call.file)))
        return perform();
    const CallFate fate = fateOf(call);
    const int result = perform();
    if (fate.error == 0)
        return result;
    errno = fate.error;
    return -1;
}

template <class Result, class Perform>
Result transferred(const SystemCall &call, Result failure, size_t size, Perform perform)
{
    if (isUnseen() || !(call.is("fwrite") || isAboutFile(call.file)))
        return perform(size);
    const CallFate fate = fateOf(call);
    if (fate.pretended)
        return static_cast<Result>(size);
    if (fate.error == 0)
        return perform(fate.half && size > 1 ? size / 2 : size);
    errno = fate.error;
    return failure;
}

template <class Second>
Second told(Second (*real)(Second *), Second *result)
{
    if (!clockIsHooked)
        return real(result);
    const auto second = static_cast<Second>(hooks().clock());
    if (result != nullptr)
        *result = second;
    return second;
}

} // namespace

bool SystemCall::is(const char *other) const
{
    return std::strcmp(name, other) == 0;
}

CallHook::CallHook(Before before, After after)
{
    const std::lock_guard<std::recursive_mutex> locker(hooks().mutex);
    hooks().before = std::move(before);
    hooks().after = std::move(after);
    callsAreHooked = true;
}

CallHook::~CallHook()
{
    const std::lock_guard<std::recursive_mutex> locker(hooks().mutex);
    callsAreHooked = false;
    hooks().before = nullptr;
    hooks().after = nullptr;
}

ClockHook::ClockHook(std::function<long long()> clock)
{
    const std::lock_guard<std::recursive_mutex> locker(hooks().mutex);
    hooks().clock = std::move(clock);
    clockIsHooked = true;
}

ClockHook::~ClockHook()
{
    clockIsHooked = false;
}

ShortPauses::ShortPauses()
{
    pausesAreShort = true;
}

ShortPauses::~ShortPauses()
{
    pausesAreShort = false;
}

} // namespace testsupport

using testsupport::about;
using testsupport::CallKind;
using testsupport::closed;
using testsupport::next;
using testsupport::performed;
using testsupport::transferred;

// NOLINTBEGIN: the names, and some parameters, are the C library's; lists are no expressions
/// A function NAME of PARAMETERS that passes on ARGUMENTS. CALL is what hooks are told, FILLED_IN
/// what it fills in, if that is not what it returns.
#define PASS_ON_FILLING(result, failure, name, parameters, arguments, call, filled_in)             \
    result name parameters                                                                         \
    {                                                                                              \
        static auto *const real = next<result parameters>(#name);                                  \
        return performed(call, static_cast<result>(failure), filled_in,                            \
                         [&] { return real arguments; });                                          \
    }
#define PASS_ON(result, failure, name, parameters, arguments, call)                                \
    PASS_ON_FILLING(result, failure, name, parameters, arguments, call, nullptr)

/// The same for the functions that open, whose mode is there only when a file may be made.
#define PASS_ON_OPENING(name, parameters, arguments, call)                                         \
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
        return performed(call, -1, nullptr, [&] { return real arguments; });                       \
    }

/// The same for fcntl, of which two uses are told: another descriptor, and locks.
#define PASS_ON_CONTROLLING(name)                                                                  \
    int name(int file, int command, ...)                                                           \
    {                                                                                              \
        static auto *const real = next<int(int, int, ...)>(#name);                                 \
        std::va_list rest;                                                                         \
        va_start(rest, command);                                                                   \
        void *const argument = va_arg(rest, void *);                                               \
        va_end(rest);                                                                              \
        const bool duplicates = command == F_DUPFD_CLOEXEC;                                        \
        if (!duplicates && command != F_SETLK && command != F_SETLK64 && command != F_OFD_SETLK)   \
            return real(file, command, argument);                                                  \
        return performed(                                                                          \
            about(duplicates ? CallKind::Open : CallKind::Lock, "fcntl", file, nullptr, command),  \
            -1, nullptr, [&] { return real(file, command, argument); });                           \
    }

/// The same for the functions that close ARGUMENT, which stands for FILE.
#define PASS_ON_CLOSING(name, Argument, file)                                                      \
    int name(Argument argument)                                                                    \
    {                                                                                              \
        static auto *const real = next<int(Argument)>(#name);                                      \
        return closed(about(CallKind::Close, #name, file), [&] { return real(argument); });        \
    }

#define PASS_ON_TELLING_TIME(name, Second)                                                         \
    Second name(Second *result) noexcept                                                           \
    {                                                                                              \
        static auto *const real = next<Second(Second *)>(#name);                                   \
        return testsupport::told(real, result);                                                    \
    }

/// The same for a call that looks at something and fills in STATUS.
#define PASS_ON_LOOKING(call, name, parameters, arguments, file, path)                             \
    PASS_ON_FILLING(int, -1, name, parameters, arguments, about(CallKind::Look, call, file, path), \
                    status)

/// The four ways to look at a file. In an older library, whose headers' functions are in every
/// program and call these, a VERSION comes first.
#define PASS_ON_LOOKS(stat, lstat, fstat, fstatat, Status, VERSION, version)                       \
    PASS_ON_LOOKING("stat", stat, (VERSION const char *path, Status *status) noexcept,             \
                    (version path, status), AT_FDCWD, path)                                        \
    PASS_ON_LOOKING("lstat", lstat, (VERSION const char *path, Status *status) noexcept,           \
                    (version path, status), AT_FDCWD, path)                                        \
    PASS_ON_LOOKING("fstat", fstat, (VERSION int file, Status *status) noexcept,                   \
                    (version file, status), file, nullptr)                                         \
    PASS_ON_LOOKING("fstatat", fstatat,                                                            \
                    (VERSION int folder, const char *path, Status *status, int flags) noexcept,    \
                    (version folder, path, status, flags), folder, path)

extern "C" {
PASS_ON_OPENING(open, (const char *path, int flags, ...), (path, flags, mode),
                about(CallKind::Open, "open", AT_FDCWD, path, flags))
PASS_ON_OPENING(open64, (const char *path, int flags, ...), (path, flags, mode),
                about(CallKind::Open, "open", AT_FDCWD, path, flags))
PASS_ON_OPENING(openat, (int folder, const char *path, int flags, ...), (folder, path, flags, mode),
                about(CallKind::Open, "openat", folder, path, flags))
PASS_ON_OPENING(openat64, (int folder, const char *path, int flags, ...),
                (folder, path, flags, mode), about(CallKind::Open, "openat", folder, path, flags))
PASS_ON(FILE *, nullptr, fopen, (const char *path, const char *mode), (path, mode),
        about(CallKind::Open, "fopen", AT_FDCWD, path))
PASS_ON(FILE *, nullptr, fopen64, (const char *path, const char *mode), (path, mode),
        about(CallKind::Open, "fopen", AT_FDCWD, path))
PASS_ON(FILE *, nullptr, fdopen, (int file, const char *mode) noexcept, (file, mode),
        about(CallKind::Open, "fdopen", file))
PASS_ON_CONTROLLING(fcntl)
PASS_ON_CONTROLLING(fcntl64)
PASS_ON_CONTROLLING(__fcntl_time64)

PASS_ON(int, -1, access, (const char *path, int mode) noexcept, (path, mode),
        about(CallKind::Look, "access", AT_FDCWD, path))
#if __GLIBC_PREREQ(2, 33)
PASS_ON_LOOKS(stat, lstat, fstat, fstatat, struct stat, , )
PASS_ON_LOOKS(stat64, lstat64, fstat64, fstatat64, struct stat64, , )
#else
#define COMMA ,
PASS_ON_LOOKS(__xstat, __lxstat, __fxstat, __fxstatat, struct stat, int version COMMA,
              version COMMA)
PASS_ON_LOOKS(__xstat64, __lxstat64, __fxstat64, __fxstatat64, struct stat64, int version COMMA,
              version COMMA)
#endif
// With times of 64 bits on a machine of 32 bits; nobody calls them elsewhere.
PASS_ON_LOOKS(__stat64_time64, __lstat64_time64, __fstat64_time64, __fstatat64_time64, void, , )
PASS_ON_LOOKING("statx", statx,
                (int folder, const char *path, int flags, unsigned mask,
                 struct statx *status) noexcept,
                (folder, path, flags, mask, status), folder, path)
PASS_ON_LOOKING("fstatfs", fstatfs, (int file, struct statfs *status) noexcept, (file, status),
                file, nullptr)
PASS_ON_LOOKING("fstatfs", fstatfs64, (int file, struct statfs64 *status) noexcept, (file, status),
                file, nullptr)

PASS_ON(int, -1, unlink, (const char *path) noexcept, (path),
        about(CallKind::Remove, "unlink", AT_FDCWD, path))
PASS_ON(int, -1, remove, (const char *path) noexcept, (path),
        about(CallKind::Remove, "remove", AT_FDCWD, path))
PASS_ON(int, -1, rmdir, (const char *path) noexcept, (path),
        about(CallKind::RemoveFolder, "rmdir", AT_FDCWD, path))
PASS_ON(int, -1, unlinkat, (int folder, const char *path, int flags) noexcept,
        (folder, path, flags),
        about((flags & AT_REMOVEDIR) != 0 ? CallKind::RemoveFolder : CallKind::Remove, "unlinkat",
              folder, path, flags))
PASS_ON(DIR *, nullptr, opendir, (const char *path), (path),
        about(CallKind::OpenFolder, "opendir", AT_FDCWD, path))
PASS_ON(DIR *, nullptr, fdopendir, (int folder), (folder),
        about(CallKind::OpenFolder, "fdopendir", folder))
PASS_ON(dirent *, nullptr, readdir, (DIR * folder), (folder),
        about(CallKind::ReadFolder, "readdir", ::dirfd(folder)))
PASS_ON(dirent64 *, nullptr, readdir64, (DIR * folder), (folder),
        about(CallKind::ReadFolder, "readdir", ::dirfd(folder)))

PASS_ON(int, -1, fdatasync, (int file), (file), about(CallKind::WriteOut, "fdatasync", file))
PASS_ON(int, -1, fsync, (int file), (file), about(CallKind::WriteOut, "fsync", file))
PASS_ON(int, -1, syncfs, (int file) noexcept, (file), about(CallKind::WriteOut, "syncfs", file))
PASS_ON(int, -1, sync_file_range, (int file, off64_t offset, off64_t length, unsigned flags),
        (file, offset, length, flags),
        about(CallKind::WriteOut, "sync_file_range", file, nullptr, static_cast<int>(flags), offset,
              length))
PASS_ON(int, -1, ftruncate, (int file, off_t size) noexcept, (file, size),
        about(CallKind::Write, "ftruncate", file))
PASS_ON(int, -1, ftruncate64, (int file, off64_t size) noexcept, (file, size),
        about(CallKind::Write, "ftruncate", file))

void sync() noexcept
{
    static auto *const real = next<void()>("sync");
    if (testsupport::fateOf(about(CallKind::WriteOut, "sync", -1)).error == 0)
        real();
}

PASS_ON_CLOSING(close, int, argument)
PASS_ON_CLOSING(closedir, DIR *, -1)
PASS_ON_CLOSING(fclose, FILE *, ::fileno(argument))

ssize_t read(int file, void *bytes, size_t size)
{
    static auto *const real = next<ssize_t(int, void *, size_t)>("read");
    return transferred(about(CallKind::Read, "read", file), ssize_t{-1}, size,
                       [&](size_t count) { return real(file, bytes, count); });
}

ssize_t write(int file, const void *bytes, size_t size)
{
    static auto *const real = next<ssize_t(int, const void *, size_t)>("write");
    const auto length = static_cast<long long>(size);
    return transferred(about(CallKind::Write, "write", file, nullptr, 0, 0, length), ssize_t{-1},
                       size, [&](size_t count) { return real(file, bytes, count); });
}

size_t fwrite(const void *bytes, size_t size, size_t items, FILE *stream)
{
    static auto *const real = next<size_t(const void *, size_t, size_t, FILE *)>("fwrite");
    const auto length = static_cast<long long>(size * items);
    return transferred(about(CallKind::Write, "fwrite", ::fileno(stream), nullptr, 0, 0, length),
                       size_t{0}, items,
                       [&](size_t count) { return real(bytes, size, count, stream); });
}

PASS_ON_TELLING_TIME(time, time_t)
PASS_ON_TELLING_TIME(__time64, long long)

int nanosleep(const timespec *wanted, timespec *remaining)
{
    static auto *const real = next<int(const timespec *, timespec *)>("nanosleep");
    constexpr timespec shortPause = {0, 50000};
    return real(testsupport::pausesAreShort ? &shortPause : wanted, remaining);
}
}
// NOLINTEND
