// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "modelengine.h"

namespace testsupport
{

namespace
{

constexpr quint64 block = 4096;
constexpr qint64 stoppedPartWay = 255;

/// A name that is no UTF-8 becomes another one on its way, and nothing is found under that.
bool isPresentable(const QByteArray &name)
{
    return ('/' + name) == QString::fromUtf8('/' + name).toUtf8();
}

} // namespace

ModelEngine::ModelEngine(ModelDisk &picture, const std::function<void(const SignalRecord &)> &hear)
    : disk(picture)
    , emitSignal(hear)
{
}

/// Removes the entry @p path and says so.
bool ModelEngine::remove(const QString &path)
{
    const bool removed = disk.remove(path.toUtf8());
    if (removed)
        emitSignal({"addToHistory", {path}});
    return removed;
}

qint64 ModelEngine::shredFile(const QString &path)
{
    const QByteArray file = path.toUtf8();
    if (disk.isLink(file))
        return remove(path) ? 0 : -5; // the size is asked for when the link is gone
    if (!disk.exists(file))
        return 0;
    if (disk.isDirectory(file))
        return -4;
    const quint64 size = disk.sizeOf(file);
    if (size == 0)
        return remove(path) ? 0 : -7;
    if (!disk.isOpenToUser(file))
        return -2;

    disk.overwrite(file);
    const int blocks = static_cast<int>(size / block);
    int last = 0;
    for (int toCome = blocks - 1; toCome >= 0; --toCome) {
        const int percent = 100 - toCome * 100 / blocks;
        if (percent - last >= 2) {
            emitSignal({"finishPercent", {path, percent}});
            last = percent;
        }
    }
    emitSignal({"finishPercent", {path, 99}});
    return remove(path) ? static_cast<qint64>(size) : -7;
}

qint64 ModelEngine::shredFileInDirectory(const QString &path, quint64 totalBytes, quint64 doneBytes,
                                         const QString &topDirectory)
{
    const QByteArray file = path.toUtf8();
    if (topDirectory.isEmpty())
        return -4;
    if (!disk.exists(file))
        return 0;
    if (totalBytes == 0)
        return remove(QString::fromUtf8(cleaned(file))) ? 0 : -7;
    if (!disk.isOpenToUser(file))
        return -2;

    const auto report = [&](quint64 bytes) {
        emitSignal({"finishPercent", {topDirectory, static_cast<int>(bytes * 100 / totalBytes)}});
    };
    const quint64 size = disk.sizeOf(file);
    disk.overwrite(file);
    quint64 last = doneBytes * 100 / totalBytes;
    for (quint64 toCome = size / block; toCome-- > 0;) {
        const quint64 bytes = doneBytes + toCome * block;
        if (bytes * 100 / totalBytes > last + 5) {
            report(bytes);
            last = bytes * 100 / totalBytes;
        }
    }
    if (!disk.remove(file))
        return -7;
    report(doneBytes + size);
    emitSignal({"addToHistory", {path}});
    return static_cast<qint64>(size);
}

/// Visits everything below @p top but folders, folder by folder in the order in which they are
/// found. Returns the folders. Entries are told by absolute paths without detours.
QStringList ModelEngine::walk(const QString &top,
                              const std::function<void(const QString &entry)> &visit) const
{
    QStringList directories{top};
    for (int index = 0; index < directories.size(); ++index) {
        const QByteArray directory = directories.at(index).toUtf8();
        const QByteArrayList names = disk.namesIn(directory);
        for (const QByteArray &name : names) {
            const QByteArray path = cleaned(directory + '/' + name);
            if (!isPresentable(name))
                continue;
            if (disk.isDirectory(path) && !disk.isLink(path))
                directories.append(QString::fromUtf8(path));
            else
                visit(QString::fromUtf8(path));
        }
    }
    return directories;
}

quint64 ModelEngine::directorySize(const QString &path) const
{
    quint64 bytes = 0;
    if (disk.isDirectory(path.toUtf8()))
        walk(path, [&](const QString &entry) { bytes += disk.sizeOf(entry.toUtf8()); });
    return bytes;
}

qint64 ModelEngine::shredDirectory(const QString &path)
{
    if (!disk.isDirectory(path.toUtf8()))
        return -3;
    const quint64 totalBytes = directorySize(path);
    quint64 doneBytes = 0;
    QStringList directories = walk(path, [&](const QString &entry) {
        const QByteArray name = entry.toUtf8();
        if (stopRequested)
            return;
        if (disk.isLink(name)) {
            remove(entry);
        } else if (disk.isFile(name)) {
            const qint64 result = shredFileInDirectory(entry, totalBytes, doneBytes, path);
            doneBytes += static_cast<quint64>(qMax(qint64{0}, result));
        }
    });
    if (stopRequested) {
        emitSignal({"finishPercent", {path, 0}});
        return stoppedPartWay;
    }
    while (directories.size() > 1) {
        if (!remove(directories.takeLast()))
            return -3;
    }
    if (!disk.remove(path.toUtf8()))
        return -3;
    emitSignal({"finishPercent", {path, 100}});
    emitSignal({"addToHistory", {path}});
    return 0;
}

void ModelEngine::takeFromQueue(const QString &path)
{
    if (path.isEmpty())
        return;
    const QByteArray name = path.toUtf8();
    qint64 result = 0;
    if (disk.isFile(name) || disk.isLink(name))
        result = shredFile(path);
    else if (disk.isDirectory(name))
        result = shredDirectory(path);
    if (result < 0)
        emitSignal({"failedOne", {path}});
    else if (result != stoppedPartWay)
        emitSignal({"finishOne", {path}});
    endPass();
}

void ModelEngine::endPass()
{
    if (!stopRequested)
        return;
    stopRequested = false;
    emitSignal({"stopped"});
}

} // namespace testsupport
