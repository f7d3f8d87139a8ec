// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <sys/types.h>

/// The home directory that the user database names for @p uid; empty without an entry, without
/// memory or when the lookup fails. Any thread. $HOME is not read: whoever starts the program
/// could set it and so choose the folder of the history and the lock.
QString homeDirectoryOf(uid_t uid);
