// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "tiedprocess.h"

#include <csignal>
#include <sys/prctl.h>

namespace testsupport
{

namespace
{
constexpr int politeWait = 2000;
constexpr int commandLimit = 10000;
} // namespace

TiedProcess::~TiedProcess()
{
    end();
}

void TiedProcess::end()
{
    if (state() == NotRunning)
        return;
    terminate();
    if (!waitForFinished(politeWait)) {
        kill();
        waitForFinished(politeWait);
    }
}

// Runs in the child between fork and exec, where only system calls are safe.
void TiedProcess::setupChildProcess()
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
}

QByteArray outputOf(const QString &command, const QStringList &arguments,
                    const QProcessEnvironment &environment)
{
    TiedProcess process;
    process.setProcessEnvironment(environment);
    process.start(command, arguments);
    if (!process.waitForFinished(commandLimit))
        qWarning("%s: %s", qPrintable(command), qPrintable(process.errorString()));
    return process.readAllStandardOutput();
}

} // namespace testsupport
