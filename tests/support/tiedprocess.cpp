// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "tiedprocess.h"

#include "eventually.h"

#include <QStandardPaths>

#include <csignal>
#include <sys/prctl.h>

namespace testsupport
{

void TiedProcess::launch(const QProcessEnvironment &environment, const QStringList &command)
{
    setProcessEnvironment(environment);
    start(command.first(), command.mid(1));
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

QByteArray outputOf(const QStringList &command, const QProcessEnvironment &environment)
{
    TiedProcess process;
    process.launch(environment, command);
    if (!process.waitForFinished())
        qWarning("%s: %s", qPrintable(command.first()), qPrintable(process.errorString()));
    return process.readAllStandardOutput();
}

} // namespace testsupport
