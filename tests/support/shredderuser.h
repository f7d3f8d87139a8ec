// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A person with a home folder of their own. The shredder asks the passwd
// database for its home, so the sandbox is a passwd file of its own, which
// nss_wrapper puts in front of the system's.

#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

#include <sys/types.h>

namespace testsupport
{

class ShredderUser
{
public:
    /// The user the tests run as.
    ShredderUser();
    /// Another user; only root may become one.
    explicit ShredderUser(uid_t id);

    uid_t id() const { return uid; }
    /// True when starting a program as this user means changing users.
    bool isSomebodyElse() const;
    QString home() const { return homePath; }
    QString inHome(const QString &name) const { return homePath + QLatin1Char('/') + name; }
    QString pidFile() const { return inHome(QStringLiteral(".fileshredder.pid")); }
    QString historyFile() const { return inHome(QStringLiteral(".fileshredderEx.dat")); }
    /// The lines of the history file, none if it does not exist.
    QStringList historyLines() const;
    /// Makes a history of letters, numbered from 0, the oldest; false when that fails.
    bool writeHistory(int entries) const;
    /// Where a program of this user writes its messages.
    QString messagesFile() const { return directory.filePath(QStringLiteral("messages")); }
    /// A program this user may run, wherever the build folder is hidden.
    QString reachable(const QString &program) const;

    /// Takes the user out of the passwd file: a user id without a home.
    void forgetPasswdEntry() const;
    /// Has the programs this user starts from now on find @p variable in their environment.
    void set(const QString &variable, const QString &value) { wishes.insert(variable, value); }
    /// @p base, with this user's home, passwd file and variables.
    QProcessEnvironment environment(QProcessEnvironment base) const;

private:
    void giveToUser(const QString &path) const;
    void writeAccounts(bool listed) const;

    QTemporaryDir directory;
    QProcessEnvironment wishes;
    uid_t uid;
    QString homePath;
};

} // namespace testsupport
