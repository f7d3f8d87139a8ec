// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The worker's loop: queue, verdict, stop.

#include "engine/filecrusher.h"

#include <QMutexLocker>

namespace
{

constexpr unsigned long pollMilliseconds = 40;

} // namespace

FileCrusher::FileCrusher(QObject *parent)
    : QThread(parent)
{
    setObjectName(QStringLiteral("FileCrusher"));
}

FileCrusher::~FileCrusher() = default;

void FileCrusher::addPath(const QString &path)
{
    const QMutexLocker locker(&queueMutex);
    pathQueue.append(path);
}

bool FileCrusher::takeBackPaths()
{
    const QMutexLocker locker(&queueMutex);
    const bool anyTaken = !pathQueue.isEmpty();
    pathQueue.clear();
    return anyTaken;
}

void FileCrusher::requestStop(bool value)
{
    stopRequested = value;
}

void FileCrusher::run()
{
    while (keepRunning) {
        QString path;
        while (takeFirstPath(path) && path.isEmpty()) {
            if (!keepRunning)
                return;
        }
        if (!path.isEmpty())
            report(path, shred(path));

        // One path a pass, and every pass pauses, so a stop is honoured between any two paths.
        msleep(pollMilliseconds);
        // The queue is left as it is: what follows a stop is the controller's business.
        if (stopRequested.exchange(false))
            emit stopped();
    }
}

bool FileCrusher::takeFirstPath(QString &path)
{
    const QMutexLocker locker(&queueMutex);
    if (pathQueue.isEmpty()) {
        path.clear();
        return false;
    }
    path = pathQueue.takeFirst();
    return true;
}

qint64 FileCrusher::shred(const QString &path)
{
    const QFileInfo info(path);
    if (info.isFile() || info.isSymLink())
        return shredFile(path.toUtf8().constData());
    if (info.isDir())
        return shredDirectory(path.toUtf8().constData());
    // Vanished, or of a kind that is never shredded: there is nothing to do.
    return CrushResult::Success;
}

void FileCrusher::report(const QString &path, qint64 result)
{
    // The verdict is read off the low 32 bits, as the stop code of a directory walk shares the
    // range of byte counts: a file of exactly 255 bytes is reported by neither signal, and one
    // whose size has bit 31 set counts as failed although it is gone.
    const auto verdict = static_cast<qint32>(static_cast<quint32>(result));
    if (verdict < 0)
        emit failedOne(path);
    else if (verdict != CrushResult::Stopped)
        emit finishOne(path);
}
