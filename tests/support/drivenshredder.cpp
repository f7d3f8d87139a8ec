// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "drivenshredder.h"

#include "eventually.h"

#include <QFileInfo>

#include <csignal>

namespace testsupport
{

void DrivenShredder::start(const QString &path, const QProcessEnvironment &base)
{
    QProcessEnvironment environment = base;
    if (!base.contains(QStringLiteral("DISPLAY"))) {
        environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    }
    environment = user.environment(environment);
    // After a sanitizer's runtime, which comes first in there. By its name alone: the list is
    // divided at spaces, and there may be some in its folder's.
    const QFileInfo driver(QStringLiteral(SELF_DRIVER_LIBRARY));
    const QString preloaded = QStringLiteral("LD_PRELOAD");
    environment.insert(preloaded,
                       environment.value(preloaded) + QLatin1Char(' ') + driver.fileName());
    environment.insert(QStringLiteral("LD_LIBRARY_PATH"), driver.path());
    environment.insert(QStringLiteral("SELFDRIVER_PATH"), path);
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(user.messagesFile(), QIODevice::Append);
    process.start(QStringLiteral(SHREDDER_PROGRAM), QStringList());
    process.waitForStarted();
}

bool DrivenShredder::waitUntilShown()
{
    const auto saidOrEnded = [this] {
        words += process.readAllStandardOutput();
        return words.contains('\n') || hasEnded();
    };
    if (!eventually(saidOrEnded) || !words.startsWith("shown "))
        return false;
    number = QString::fromLatin1(words.mid(6, words.indexOf('\n') - 6));
    return true;
}

bool DrivenShredder::waitForEnd()
{
    return eventually([this] { return hasEnded(); });
}

void DrivenShredder::sendSignal(int signal) const
{
    ::kill(static_cast<pid_t>(process.processId()), signal);
}

int DrivenShredder::outcome() const
{
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -process.exitCode();
}

} // namespace testsupport
