// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#pragma once

#include <QTest>

namespace testsupport
{

/// Long enough for the slowest machine under a sanitizer; a condition that comes
/// true ends the wait at once.
constexpr int patience = 30000;

/// Waits until @p condition holds, at most @p milliseconds; returns whether it does.
template <class Condition>
bool eventually(Condition condition, int milliseconds = patience)
{
    return QTest::qWaitFor(condition, milliseconds);
}

} // namespace testsupport
