// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A person with a home folder of their own. The shredder asks the passwd
// database for its home, so the sandbox is a passwd file of its own, which
// nss_wrapper puts in front of the system's.

#pragma once

#include "literals.h"
#include "temporarytree.h"

#include <QProcessEnvironment>

#include <sys/types.h>
#include <unistd.h>

namespace testsupport
{

class ShredderUser
{
public:
    /// The user the tests run as, or another one, which only root may become.
    explicit ShredderUser(uid_t id = ::getuid());

    uid_t id() const { return uid; }
    /// True when starting a program as this user means changing users.
    bool isSomebodyElse() const { return uid != ::getuid(); }
    QString home() const { return directory.path("home"); }
    QString inHome(const QString &name) const { return home() + QLatin1Char('/') + name; }
    QString pidFile() const { return inHome(".fileshredder.pid"_s); }
    /// What the pid file holds.
    QByteArray pid() const { return TemporaryTree::contentsOf(pidFile()); }
    QString historyFile() const { return inHome(".fileshredderEx.dat"_s); }
    /// The bytes of the history file, none if it does not exist.
    QByteArray history() const;
    QStringList historyLines() const;
    /// Makes a history of letters, numbered from 0, the oldest.
    void writeHistory(int entries) const;
    /// Where a program of this user writes its messages.
    QString messagesFile() const { return directory.path("messages"); }
    /// A program this user may run, wherever the build folder is hidden.
    QString reachable(const QString &program) const;

    /// Takes the user out of the passwd file: a user id without a home.
    void forgetPasswdEntry() const { writeAccounts({}); }
    /// Has the programs this user starts from now on find @p variable in their environment.
    void set(const QString &variable, const QString &value) { wishes.insert(variable, value); }
    /// @p base, with this user's home, passwd file and variables.
    QProcessEnvironment environment(QProcessEnvironment base) const;

private:
    void writeAccounts(const QByteArray &entry) const;

    TemporaryTree directory;
    QProcessEnvironment wishes;
    uid_t uid;
};

} // namespace testsupport
