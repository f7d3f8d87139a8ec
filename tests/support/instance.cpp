// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "instance.h"

#include "app/instancelock.h"
#include "inventory.h"

#include <cstdio>
#include <utility>

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace testsupport
{

namespace
{

[[noreturn]] void live(const QString &lockPath, int parent)
{
    const int before = openDescriptors();
    const int lockResult = instancelock::acquireInstanceLock(lockPath);
    int answers[2] = {lockResult, openDescriptors() != before};
    if (::write(parent, answers, sizeof answers) == sizeof answers)
        static_cast<void>(::read(parent, answers, 1) == 0);
    ::_exit(0);
}

} // namespace

Instance::Instance(const QString &lockPath)
{
    int sockets[2] = {};
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, sockets) != 0)
        qFatal("no sockets");
    // Or an exiting child would print again what waits here.
    static_cast<void>(std::fflush(nullptr));
    process = ::fork();
    if (process == -1)
        qFatal("no child process");
    if (process == 0) {
        ::close(sockets[0]);
        live(lockPath, sockets[1]);
    }
    ::close(sockets[1]);
    lifeline = sockets[0];
    int answers[2] = {};
    if (::read(lifeline, answers, sizeof answers) == sizeof answers) {
        result = answers[0];
        openFile = answers[1] != 0;
    }
}

int Instance::end()
{
    if (lifeline != -1) {
        ::close(std::exchange(lifeline, -1));
        int state = 0;
        ::waitpid(process, &state, 0);
        status = WIFEXITED(state) ? WEXITSTATUS(state) : -1;
    }
    return status;
}

} // namespace testsupport
