// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <sys/types.h>

namespace testsupport
{

/// While it exists the program runs as a user whom permissions bind, which they do not root. For
/// anybody else it changes nothing.
class OrdinaryUser
{
public:
    OrdinaryUser();
    ~OrdinaryUser();
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;

    static uid_t id();
    /// Makes @p path theirs.
    static void give(const QString &path);

private:
    bool wasRoot;
};

} // namespace testsupport
