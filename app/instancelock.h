// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// One instance a user: a write lock on a file in the user's home directory. Only
// the lock counts, and the kernel releases it when the process ends. The pid in
// the file is for people to read; a stale file is harmless. For the main thread.

#pragma once

#include <QString>

namespace instancelock
{

constexpr int Acquired = 0;
constexpr int HeldByAnother = 1;

/// Locks the whole file @p fd for writing without waiting; returns what fcntl() returns, with its
/// errno. The lock ends with the last descriptor of this open file description, and conflicts with
/// the record locks of processes too.
int lockWholeFile(int fd);

/// Locks the file @p path, created when missing, for the life of the process and writes the pid
/// into it. Returns Acquired or HeldByAnother; ends the process with status 1 when the file
/// cannot be opened or locked for any other reason.
int acquireInstanceLock(const QString &path);

} // namespace instancelock
