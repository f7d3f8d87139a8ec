// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A home folder for the test program itself. The controller asks the user
// database where home is, so the sandbox is a passwd file of its own that
// nss_wrapper, preloaded by ctest, puts in front of the system's. A test that
// could reach the history of whoever runs it must not run: initTestCase() of
// each says QVERIFY2(home.isInForce(), home.advice()).

#pragma once

#include "ordinaryuser.h"

#include <QByteArrayList>
#include <QString>
#include <QTemporaryDir>

namespace testsupport
{

class SandboxHome
{
public:
    /// Once in a program, before anything asks for a home folder.
    SandboxHome();

    /// True when the controller keeps its history in here.
    bool isInForce() const;
    /// What to do when it does not.
    static const char *advice();

    QString path() const { return homePath; }
    QString historyFile() const;
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
