// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "windowtesthome.h"

#include <QDir>
#include <QFile>

namespace testsupport
{

const SandboxHome &testHome()
{
    static const SandboxHome home;
    return home;
}

void moveIntoTestHome()
{
    const QString home = testHome().path();
    const QString runtime = home + QStringLiteral("/runtime");
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("HOME", home.toUtf8());
    qputenv("XDG_CONFIG_HOME", home.toUtf8());
    qputenv("XDG_RUNTIME_DIR", runtime.toUtf8());
}

} // namespace testsupport
