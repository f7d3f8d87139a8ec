// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <sys/prctl.h>
#include <unistd.h>

namespace testsupport
{

/// While it exists the program runs as a user whom permissions bind, which they do not root. For
/// anybody else it changes nothing.
class OrdinaryUser
{
public:
    OrdinaryUser()
    {
        if (wasRoot && ::setresuid(id(), id(), 0) != 0)
            qFatal("cannot become an ordinary user");
    }
    ~OrdinaryUser()
    {
        if (wasRoot && ::setresuid(0, 0, 0) != 0)
            qFatal("cannot become root again");
        ::prctl(PR_SET_DUMPABLE, 1); // lost with the change; leak checkers need it
    }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

    static uid_t id()
    {
        constexpr uid_t nobody = 65534;
        return ::getuid() == 0 ? nobody : ::getuid();
    }
    /// Makes @p path theirs.
    static void give(const QString &path)
    {
        if (id() != ::getuid() && ::chown(path.toUtf8().constData(), id(), id()) != 0)
            qFatal("cannot give %s away", qPrintable(path));
    }

private:
    const bool wasRoot = ::getuid() == 0;
};

} // namespace testsupport
