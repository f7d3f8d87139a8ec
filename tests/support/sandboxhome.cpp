// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "sandboxhome.h"

#include "controller/walle.h"
#include "ordinaryuser.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

namespace testsupport
{

static void write(const QString &file, const QByteArray &contents)
{
    QFile out(file);
    if (!out.open(QIODevice::WriteOnly) || out.write(contents) != contents.size())
        qFatal("cannot write %s", qPrintable(file));
}

SandboxHome::SandboxHome()
    : homePath(QFileInfo(directory.path()).canonicalFilePath() + QStringLiteral("/home"))
{
    QDir().mkpath(homePath);
    OrdinaryUser::give(directory.path());
    OrdinaryUser::give(homePath);
    const auto account = [this](const char *name, uid_t uid) {
        return QStringLiteral("%1:x:%2:%2::%3:/bin/sh\n")
            .arg(QLatin1String(name), QString::number(uid), homePath)
            .toUtf8();
    };
    QByteArray accounts = account("tester", ::getuid());
    if (OrdinaryUser::id() != ::getuid())
        accounts += account("ordinary", OrdinaryUser::id());
    const QString passwd = directory.filePath(QStringLiteral("passwd"));
    const QString group = directory.filePath(QStringLiteral("group"));
    write(passwd, accounts);
    write(group, "tester:x:" + QByteArray::number(::getgid()) + ":\n");
    qputenv("NSS_WRAPPER_PASSWD", passwd.toUtf8());
    qputenv("NSS_WRAPPER_GROUP", group.toUtf8());
    if (!directory.isValid() || Walle::historyFilePath() != historyFile())
        qFatal("The history would go to a real home folder. Run this test through ctest, or with "
               "LD_PRELOAD=libnss_wrapper.so (package libnss-wrapper).");
}

void SandboxHome::forgetHistory() const
{
    QFile::remove(historyFile());
    QDir(homePath).rmdir(historyFile());
}

void SandboxHome::writeHistory(const QByteArray &contents) const
{
    write(historyFile(), contents);
}

QByteArray SandboxHome::history() const
{
    QFile file(historyFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArrayList SandboxHome::historyLines() const
{
    QByteArrayList lines = history().split('\n');
    lines.removeLast(); // behind the last newline
    return lines;
}

} // namespace testsupport
