// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A home folder for the test program itself. The controller asks the user database where
// home is, so the sandbox is a passwd file of its own that nss_wrapper, preloaded by
// ctest, puts in front of the system's.

#pragma once

#include <QByteArrayList>
#include <QString>
#include <QTemporaryDir>

namespace testsupport
{

class SandboxHome
{
public:
    /// Once in a program, before anything asks for a home folder. Ends the program when the
    /// controller would keep its history elsewhere, which could be the real home.
    SandboxHome();

    QString path() const { return homePath; }
    QString historyFile() const { return homePath + QStringLiteral("/.fileshredderEx.dat"); }
    /// Leaves a home without a history.
    void forgetHistory() const;
    void writeHistory(const QByteArray &contents) const;
    /// The bytes of the history file; empty when there is none.
    QByteArray history() const;
    /// The lines of the history file without their ends.
    QByteArrayList historyLines() const;

private:
    QTemporaryDir directory;
    QString homePath;
};

} // namespace testsupport
