// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "tiedprocess.h"

#include "eventually.h"

#include <QStandardPaths>

#include <csignal>
#include <sys/prctl.h>

namespace testsupport
{

void TiedProcess::startIn(const QProcessEnvironment &environment, const QString &program,
                          const QStringList &arguments)
{
    setProcessEnvironment(environment);
    start(program, arguments);
    waitForStarted();
}

QByteArray TiedProcess::firstLine()
{
    while (!canReadLine() && waitForReadyRead(patience))
        continue;
    return readLine().trimmed();
}

void TiedProcess::end()
{
    constexpr int politeWait = 2000;
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

bool isInstalled(const QString &program)
{
    return !QStandardPaths::findExecutable(program).isEmpty();
}

QByteArray outputOf(const QString &command, const QStringList &arguments,
                    const QProcessEnvironment &environment)
{
    TiedProcess process;
    process.startIn(environment, command, arguments);
    if (!process.waitForFinished())
        qWarning("%s: %s", qPrintable(command), qPrintable(process.errorString()));
    return process.readAllStandardOutput();
}

} // namespace testsupport
