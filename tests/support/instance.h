// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <sys/types.h>

namespace testsupport
{

/// A process that tries to become the instance and then lives as long as the object. The one
/// started last has to end first: it inherits what keeps the others alive.
class Instance
{
public:
    explicit Instance(const QString &lockPath);
    ~Instance() { end(); }
    Instance(const Instance &) = delete;
    Instance &operator=(const Instance &) = delete;

    pid_t pid() const { return process; }
    /// What acquireInstanceLock() returned; -1 when it ended the process.
    int lockResult() const { return result; }
    /// Whether the process still has the file open.
    bool keepsFileOpen() const { return openFile; }
    /// Ends the process, if it has not ended itself, and returns its exit status.
    int end();

private:
    pid_t process = -1;
    int lifeline = -1;
    bool openFile = false;
    int result = -1;
    int status = -1;
};

} // namespace testsupport
