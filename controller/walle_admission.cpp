// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Which paths become rows of the job list. A path is used as given: it is not
// cleaned, made absolute or resolved. Only the exact system directories are
// refused, not what is in them.

#include "controller/droppedurls.h"
#include "controller/walle.h"

#include <QFileInfo>

RejectReasons Walle::admitPath(const QString &path)
{
    // A URL may hold a zero byte, which no file name can. The system calls would read it as the
    // end of the path and find another file.
    if (path.contains(QChar(QChar::Null)))
        return RejectNotFound;
    // The first stat() is made without the lock. A disk that has to spin up, or a server that does
    // not answer, then blocks this thread but not the GUI thread, which needs the lock in a run.
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
    // Emitted without jobMutex: the connection is a blocking one, and the GUI thread may be waiting
    // for jobMutex to remove a finished row. The Emission keeps the order: no row is removed from
    // the table before this one is in it.
    emit addRowToMainTable(path);
    return 0;
}

/// The first reason, in the order of the tests, not to admit @p path; 0 when there is none.
RejectReasons Walle::refusalOf(const QString &path) const
{
    const QFileInfo info(path);
    const bool isLink = info.isSymLink();
    // The link itself is shredded, so it is admitted dangling and whatever its target permits.
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
    const std::optional<QStringList> names = takeOldest(chosenBatches);
    if (!names)
        return 0;
    RejectReasons reasons = 0;
    for (const QString &name : *names)
        reasons |= admitPath(name);
    refreshAfterBatch();
    return reasons;
}

/// A drop, unlike a batch from the file dialog, ends at the first refusal for the limit.
RejectReasons Walle::admitDropped()
{
    const std::optional<QList<QUrl>> urls = takeOldest(droppedBatches);
    if (!urls)
        return 0;
    RejectReasons reasons = 0;
    const QStringList paths = localPathsOf(*urls);
    for (const QString &path : paths) {
        const RejectReasons refusal = admitPath(path);
        reasons |= refusal;
        if (refusal == RejectOverLimit)
            break;
    }
    refreshAfterBatch();
    return reasons;
}

void Walle::refreshAfterBatch()
{
    // jobMutex keeps finishOneWalle() out. Otherwise the run could end in between, and its control
    // signals would reach the window before these, which are older.
    const QMutexLocker locker(&jobMutex);
    const DeliveryFence::Emission emission(fence);
    refreshControls(ControlSituation::BatchAdmitted);
}

void Walle::reportRefusals(RejectReasons reasons)
{
    if (reasons == 0)
        return;
    // Everything must be delivered before alertDialog is posted. A slot of the GUI thread that
    // calls deliverPending() would otherwise open the dialog within itself and block the run.
    fence.waitUntilDelivered();
    emit alertDialog(reasons);
}
