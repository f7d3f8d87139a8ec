// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "instance.h"

#include "app/instancelock.h"
#include "inventory.h"

#include <cstdio>

#include <sys/wait.h>
#include <unistd.h>

namespace testsupport
{

namespace
{

[[noreturn]] void live(const QString &lockPath, int answer, int life)
{
    const int before = openDescriptors();
    const int lockResult = instancelock::acquireInstanceLock(lockPath);
    char bytes[2] = {static_cast<char>(lockResult), openDescriptors() != before};
    if (::write(answer, bytes, sizeof bytes) == sizeof bytes)
        static_cast<void>(::read(life, bytes, 1) == 0);
    ::_exit(0);
}

} // namespace

Instance::Instance(const QString &lockPath)
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
