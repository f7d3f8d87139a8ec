// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The home of a test program with windows. It is there before the application exists:
// Qt looks a user name up while it starts, and from then on the user database is what it
// was. Qt's own settings go there too.

#pragma once

#include "sandboxhome.h"

namespace testsupport
{

/// The home of this test program.
const SandboxHome &testHome();

/// Brings the home and points Qt's environment to it; before the application.
void moveIntoTestHome();

} // namespace testsupport
