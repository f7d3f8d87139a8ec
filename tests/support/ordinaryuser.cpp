// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "ordinaryuser.h"

#include <sys/prctl.h>
#include <unistd.h>

namespace testsupport
{

constexpr uid_t rootId = 0;
constexpr uid_t nobodyId = 65534;

OrdinaryUser::OrdinaryUser()
    : wasRoot(::getuid() == rootId)
{
    if (wasRoot && ::setresuid(nobodyId, nobodyId, rootId) != 0)
        qFatal("cannot become an ordinary user");
}

OrdinaryUser::~OrdinaryUser()
{
    if (wasRoot && ::setresuid(rootId, rootId, rootId) != 0)
        qFatal("cannot become root again");
    ::prctl(PR_SET_DUMPABLE, 1); // lost with the change; leak checkers need it
}

uid_t OrdinaryUser::id()
{
    return ::getuid() == rootId ? nobodyId : ::getuid();
}

void OrdinaryUser::give(const QString &path)
{
    if (id() != ::getuid() && ::chown(path.toUtf8().constData(), id(), id()) != 0)
        qFatal("cannot give %s away", qPrintable(path));
}

} // namespace testsupport
