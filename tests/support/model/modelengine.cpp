// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "modelengine.h"

namespace testsupport
{

namespace
{

constexpr quint64 block = 4096;
constexpr qint64 stoppedPartWay = 255;

/// The entries of a folder are told by absolute paths without detours.
QString entryPath(const QString &folder, const QByteArray &name)
{
    return QString::fromUtf8(cleaned(folder.toUtf8() + '/' + name));
}

/// A name that is no UTF-8 becomes another one on its way, and nothing is found under that.
bool isPresentable(const QByteArray &name)
{
    return ('/' + name) == QString::fromUtf8('/' + name).toUtf8();
}

} // namespace

ModelEngine::ModelEngine(ModelDisk &picture, const std::function<void(const SignalRecord &)> &hear)
    : disk(picture)
    , report(hear)
{
}

void ModelEngine::emitSignal(const char *name, const QVariantList &arguments) const
{
    report(SignalRecord(name, arguments));
}

qint64 ModelEngine::shredFile(const QString &path)
{
    const QByteArray file = path.toUtf8();
    if (disk.isLink(file)) {
        if (!disk.remove(file))
            return -5;
        emitSignal("addToHistory", {path});
        return 0; // the size is asked for when the link is gone
    }
    if (!disk.exists(file))
        return 0;
    if (disk.isDirectory(file))
        return -4;
    const quint64 size = disk.sizeOf(file);
    if (size == 0) {
        if (!disk.remove(file))
            return -7;
        emitSignal("addToHistory", {path});
        return 0;
    }
    if (!disk.isOpenToUser(file))
        return -2;

    disk.overwrite(file);
    const int blocks = static_cast<int>(size / block);
    int last = 0;
    for (int index = 0; index < blocks; ++index) {
        const int percent = 100 - (blocks - 1 - index) * 100 / blocks;
        if (percent - last >= 2) {
            emitSignal("finishPercent", {path, percent});
            last = percent;
        }
    }
    emitSignal("finishPercent", {path, 99});
    if (!disk.remove(file))
        return -7;
    emitSignal("addToHistory", {path});
    return static_cast<qint64>(size);
}

qint64 ModelEngine::shredFileInDirectory(const QString &path, quint64 totalBytes, quint64 doneBytes,
                                         const QString &topDirectory)
{
    const QByteArray file = path.toUtf8();
    if (topDirectory.isEmpty())
        return -4;
    if (!disk.exists(file))
        return 0;
    if (totalBytes == 0) {
        if (!disk.remove(file))
            return -7;
        emitSignal("addToHistory", {QString::fromUtf8(cleaned(file))});
        return 0;
    }
    if (!disk.isOpenToUser(file))
        return -2;

    const quint64 size = disk.sizeOf(file);
    disk.overwrite(file);
    const quint64 blocks = size / block;
    quint64 last = doneBytes * 100 / totalBytes;
    for (quint64 written = 1; written <= blocks; ++written) {
        const quint64 toCome = blocks * block - written * block;
        const quint64 percent = (doneBytes + toCome) * 100 / totalBytes;
        if (percent > last + 5) {
            emitSignal("finishPercent", {topDirectory, static_cast<int>(percent)});
            last = percent;
        }
    }
    if (!disk.remove(file))
        return -7;
    emitSignal("finishPercent",
               {topDirectory, static_cast<int>((doneBytes + size) * 100 / totalBytes)});
    emitSignal("addToHistory", {path});
    return static_cast<qint64>(size);
}

/// The entries that can be told, in the order they are read.
QStringList ModelEngine::listDirectory(const QString &path) const
{
    QStringList entries;
    const QByteArrayList names = disk.namesIn(path.toUtf8());
    for (const QByteArray &name : names) {
        if (isPresentable(name))
            entries.append(entryPath(path, name));
    }
    return entries;
}

quint64 ModelEngine::directorySize(const QString &path) const
{
    if (!disk.isDirectory(path.toUtf8()))
        return 0;
    quint64 bytes = 0;
    QStringList directories{path};
    for (int index = 0; index < directories.size(); ++index) {
        const QStringList entries = listDirectory(directories.at(index));
        for (const QString &entry : entries) {
            const QByteArray name = entry.toUtf8();
            if (disk.isLink(name) || disk.isFile(name))
                bytes += disk.sizeOf(name);
            else if (disk.isDirectory(name))
                directories.append(entry);
        }
    }
    return bytes;
}

qint64 ModelEngine::shredDirectory(const QString &path)
{
    if (!disk.isDirectory(path.toUtf8()))
        return -3;
    const quint64 totalBytes = directorySize(path);
    quint64 doneBytes = 0;
    QStringList directories{path};
    for (int index = 0; index < directories.size() && !stopRequested; ++index)
        shredEntries(listDirectory(directories.at(index)), totalBytes, doneBytes, path,
                     directories);
    if (stopRequested) {
        emitSignal("finishPercent", {path, 0});
        return stoppedPartWay;
    }
    while (!directories.isEmpty()) {
        const QString directory = directories.takeLast();
        if (!disk.remove(directory.toUtf8()))
            return -3;
        if (directory != path)
            emitSignal("addToHistory", {directory});
    }
    emitSignal("finishPercent", {path, 100});
    emitSignal("addToHistory", {path});
    return 0;
}

void ModelEngine::shredEntries(const QStringList &entries, quint64 totalBytes, quint64 &doneBytes,
                               const QString &topDirectory, QStringList &directories)
{
    for (const QString &entry : entries) {
        if (stopRequested)
            return;
        const QByteArray name = entry.toUtf8();
        if (disk.isLink(name)) {
            if (disk.remove(name))
                emitSignal("addToHistory", {entry});
        } else if (disk.isDirectory(name)) {
            directories.append(entry);
        } else if (disk.isFile(name)) {
            const qint64 result = shredFileInDirectory(entry, totalBytes, doneBytes, topDirectory);
            doneBytes += static_cast<quint64>(qMax(qint64{0}, result));
        }
    }
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
        emitSignal("failedOne", {path});
    else if (result != stoppedPartWay)
        emitSignal("finishOne", {path});
    endPass();
}

void ModelEngine::endPass()
{
    if (!stopRequested)
        return;
    stopRequested = false;
    emitSignal("stopped");
}

} // namespace testsupport
