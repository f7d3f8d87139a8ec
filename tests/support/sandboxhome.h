// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A home folder for the test program itself. The controller asks the user database where
// home is, so the sandbox is a passwd file of its own that nss_wrapper, preloaded by
// ctest, puts in front of the system's.

#pragma once

#include "controller/walle.h"
#include "ordinaryuser.h"

#include <QByteArrayList>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

#include <unistd.h>

namespace testsupport
{

class SandboxHome
{
public:
    /// Once in a program, before anything asks for a home folder. Ends the program when the
    /// controller would keep its history elsewhere, which could be the real home.
    SandboxHome()
        : homePath(QFileInfo(directory.path()).canonicalFilePath() + QStringLiteral("/home"))
    {
        QDir().mkpath(homePath);
        OrdinaryUser::give(directory.path());
        OrdinaryUser::give(homePath);
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
            qFatal("The history would go to a real home folder. Run this test through ctest, or "
                   "with LD_PRELOAD=libnss_wrapper.so (package libnss-wrapper).");
    }

    QString path() const { return homePath; }
    QString historyFile() const { return homePath + QStringLiteral("/.fileshredderEx.dat"); }
    void writeHistory(const QByteArray &contents) const { write(historyFile(), contents); }
    /// Leaves a home without a history.
    void forgetHistory() const
    {
        QFile::remove(historyFile());
        QDir(homePath).rmdir(historyFile());
    }
    /// The bytes of the history file; empty when there is none.
    QByteArray history() const
    {
        QFile file(historyFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// The lines of the history file without their ends.
    QByteArrayList historyLines() const
    {
        QByteArrayList lines = history().split('\n');
        lines.removeLast(); // behind the last newline
        return lines;
    }

private:
    QByteArray account(const char *name, uid_t user) const
    {
        const QByteArray id = QByteArray::number(user);
        return QByteArray(name) + ":x:" + id + ':' + id + "::" + homePath.toUtf8() + ":/bin/sh\n";
    }
    static void write(const QString &file, const QByteArray &contents)
    {
        QFile out(file);
        if (!out.open(QIODevice::WriteOnly) || out.write(contents) != contents.size())
            qFatal("cannot write %s", qPrintable(file));
    }

    QTemporaryDir directory;
    QString homePath;
};

} // namespace testsupport
