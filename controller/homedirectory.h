// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <sys/types.h>

/// The home directory that the user database names for @p uid; empty without an entry, without
/// memory or when the lookup fails. Any thread. The environment has no say in it: a history or
/// lock that follows $HOME could be led astray by whoever starts the program.
QString homeDirectoryOf(uid_t uid);
