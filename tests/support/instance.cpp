// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "instance.h"

#include "app/instancelock.h"

#include <cstddef>
#include <cstdio>

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace testsupport
{

namespace
{

int firstFreeDescriptor(int anyOpen)
{
    const int fd = ::dup(anyOpen);
    ::close(fd);
    return fd;
}

/// Has the kernel refuse locks to this process from now on.
void refuseLocks(const LockRefusal &refusal)
{
#ifdef SYS_fcntl64
    constexpr __u32 fcntlNumber = SYS_fcntl64;
#else
    constexpr __u32 fcntlNumber = SYS_fcntl;
#endif
    constexpr __u32 command =
        offsetof(seccomp_data, args[1]) + (Q_BYTE_ORDER == Q_BIG_ENDIAN ? sizeof(__u32) : 0);
    const __u32 other = refusal.openFileLocksOnly ? F_OFD_SETLK : F_SETLK;
    sock_filter steps[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, fcntlNumber, 0, 4),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, command),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, F_OFD_SETLK, 1, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, other, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<__u32>(refusal.error)),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog filter = {sizeof steps / sizeof *steps, steps};
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0
        || ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0)
        qFatal("the kernel filters no system calls");
}

[[noreturn]] void live(const QString &lockPath, int answer, int life)
{
    const int before = firstFreeDescriptor(life);
    const int lockResult = instancelock::acquireInstanceLock(lockPath);
    const bool open = firstFreeDescriptor(life) != before;
    char bytes[2] = {static_cast<char>(lockResult), static_cast<char>(open)};
    if (::write(answer, bytes, sizeof bytes) == sizeof bytes)
        static_cast<void>(::read(life, bytes, 1) == 0);
    ::_exit(0);
}

} // namespace

Instance::Instance(const QString &lockPath, const LockRefusal &refusal)
{
    int answer[2] = {};
    int life[2] = {};
    if (::pipe(answer) != 0 || ::pipe(life) != 0)
        qFatal("no pipes");
    std::fflush(nullptr); // or an exiting child would print again what waits here
    process = ::fork();
    if (process == -1)
        qFatal("no child process");
    if (process == 0) {
        ::close(answer[0]);
        ::close(life[1]);
        if (refusal.error != 0)
            refuseLocks(refusal);
        live(lockPath, answer[1], life[0]);
    }
    ::close(answer[1]);
    ::close(life[0]);
    lifeline = life[1];
    char bytes[2] = {};
    if (::read(answer[0], bytes, sizeof bytes) == sizeof bytes) {
        result = bytes[0];
        openFile = bytes[1] != 0;
    }
    ::close(answer[0]);
}

int Instance::end()
{
    if (!ended) {
        ::close(lifeline);
        int state = 0;
        ::waitpid(process, &state, 0);
        status = WIFEXITED(state) ? WEXITSTATUS(state) : -1;
        ended = true;
    }
    return status;
}

} // namespace testsupport
