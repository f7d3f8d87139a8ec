// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Which paths become rows of the job list. Paths are taken literally: nothing is
// cleaned, made absolute or resolved, and only the exact system directories are
// refused, not what lies in them.

#include "controller/droppedurls.h"
#include "controller/walle.h"

#include <QFileInfo>
#include <QMutexLocker>

#include <optional>

RejectReasons Walle::admitPath(const QString &path)
{
    // No file has a zero byte in its name, but an URL may: the system calls would read it as the
    // end and find another file.
    if (path.contains(QChar(QChar::Null)))
        return RejectNotFound;
    // Asked once before the lock: a disk that has to spin up, or a server that does not answer,
    // keeps this thread waiting but not the GUI thread, which needs the lock while a run goes on.
    QFileInfo::exists(path);
    std::optional<DeliveryFence::Emission> emission;
    {
        const QMutexLocker locker(&jobMutex);
        const RejectReasons refusal = refusalOf(path);
        if (refusal != 0)
            return refusal;
        emission.emplace(fence);
        appendJob(path);
    }
    // The GUI thread may be waiting for jobMutex to take out a finished row, so it is given back
    // before this thread waits for the GUI thread to put the new row in. The bracket keeps the
    // order: no row is taken out of the table before this one is in it.
    emit addRowToMainTable(path);
    return 0;
}

/// The first reason, in the order of the tests, not to admit @p path; 0 when there is none.
RejectReasons Walle::refusalOf(const QString &path) const
{
    const QFileInfo info(path);
    const bool isLink = info.isSymLink();
    // A link stands for itself, so it is admitted dangling and whatever its target permits.
    if (!info.exists() && !isLink)
        return RejectNotFound;
    if (!info.isFile() && !info.isDir() && !isLink)
        return RejectUnknownType;
    if (!(info.isWritable() && info.isReadable()) && !isLink)
        return RejectNoPermission;

    const QMutexLocker locker(&listMutex);
    if (jobPaths.contains(path))
        return RejectDuplicate;
    if (systemDirectories.contains(path))
        return RejectSystemPath;
    if (jobPaths.size() >= maxJobs)
        return RejectOverLimit;
    return 0;
}

/// A batch from the file dialog is tried to its end, also beyond the limit.
RejectReasons Walle::admitChosen()
{
    QStringList names;
    {
        const QMutexLocker locker(&queueMutex);
        if (chosenBatches.isEmpty())
            return 0;
        names = chosenBatches.takeFirst();
    }
    RejectReasons reasons = 0;
    for (const QString &name : qAsConst(names))
        reasons |= admitPath(name);
    refreshAfterBatch();
    return reasons;
}

RejectReasons Walle::admitDropped()
{
    QList<QUrl> urls;
    {
        const QMutexLocker locker(&queueMutex);
        if (droppedBatches.isEmpty())
            return 0;
        urls = droppedBatches.takeFirst();
    }
    const RejectReasons reasons = admitUrls(urls);
    refreshAfterBatch();
    return reasons;
}

/// A drop, unlike a batch from the file dialog, ends at the first refusal for the limit.
RejectReasons Walle::admitUrls(const QList<QUrl> &urls)
{
    RejectReasons reasons = 0;
    const QStringList paths = localPathsOf(urls);
    for (const QString &path : paths) {
        const RejectReasons refusal = admitPath(path);
        reasons |= refusal;
        if (refusal == RejectOverLimit)
            break;
    }
    return reasons;
}

void Walle::refreshAfterBatch()
{
    // As one step for finishOneWalle(), or what this tells the controls, already out of date,
    // could reach them after what the end of the run told them.
    const QMutexLocker locker(&jobMutex);
    const DeliveryFence::Emission emission(fence);
    refreshControls(ControlSituation::BatchAdmitted);
}

void Walle::report(RejectReasons reasons)
{
    if (reasons == 0)
        return;
    // Nothing may be on its way while the report is open: a slot of the GUI thread that
    // delivers pending calls would open the report inside itself and hold up the run.
    fence.waitUntilDelivered();
    emit alertDialog(reasons);
}
