// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The real program, started many times a minute: on the offscreen platform unless
// told otherwise, and used from the inside by support/selfdriver.cpp.

#pragma once

#include "shredderuser.h"
#include "tiedprocess.h"

namespace testsupport
{

class DrivenShredder
{
public:
    /// Ends its process with the object.
    explicit DrivenShredder(const ShredderUser &asUser)
        : user(asUser)
    {
    }

    /// Starts the program, which at once begins to shred @p path unless that is empty. @p base
    /// says on which display; without one there is none.
    void start(const QString &path = QString(),
               const QProcessEnvironment &base = QProcessEnvironment());
    /// Waits until it has shown its window; false when it ended without.
    bool waitUntilShown();
    /// The window's number, once shown.
    QString windowNumber() const { return number; }
    bool hasEnded() const { return process.state() == QProcess::NotRunning; }
    bool waitForEnd();
    void sendSignal(int signal) const;
    void closeWindow() { process.write("close\n"); }
    /// The exit status, or minus the number of the signal that ended it.
    int outcome() const;

private:
    const ShredderUser &user;
    TiedProcess process;
    QByteArray words;
    QString number;
};

} // namespace testsupport
