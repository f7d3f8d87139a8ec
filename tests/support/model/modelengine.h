// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the worker is to do, told as plainly as possible and independently of how
// it does it: results, signals in their order, and what is left. It works on a
// ModelDisk, in the caller's thread.

#pragma once

#include "modeldisk.h"

#include "signallog.h"

#include <functional>

namespace testsupport
{

class ModelEngine
{
public:
    /// @p hear gets every signal when it is emitted, and may request a stop.
    ModelEngine(ModelDisk &picture, const std::function<void(const SignalRecord &)> &hear);

    bool stopRequested = false;

    qint64 shredFile(const QString &path);
    qint64 shredFileInDirectory(const QString &path, quint64 totalBytes, quint64 doneBytes,
                                const QString &topDirectory);
    qint64 shredDirectory(const QString &path);
    quint64 directorySize(const QString &path) const;

    /// What the worker does with a queued path: verdict, pause, and the answer to a stop.
    void takeFromQueue(const QString &path);
    /// The end of a pass of the worker's loop, also of one without a path.
    void endPass();

private:
    bool remove(const QString &path);
    QStringList walk(const QString &top,
                     const std::function<void(const QString &entry)> &visit) const;

    ModelDisk &disk;
    std::function<void(const SignalRecord &)> emitSignal;
};

} // namespace testsupport
