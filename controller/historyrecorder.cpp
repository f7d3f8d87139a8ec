// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/historyrecorder.h"

#include "controller/historyfile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

void HistoryRecorder::record(const QString &path)
{
    // Kept only while it leads somewhere: a home that could not be asked for once would else take
    // the history of the whole run with it.
    if (!history.isOpen())
        historyPath = historyfile::path();
    append(historyPath, entry.of(path, QDateTime::currentSecsSinceEpoch()));
}

void HistoryRecorder::append(const QString &file, const QByteArray &text)
{
    if (!isStill(QFile::encodeName(file)) && !open(file))
        return;
    // A single call, so a program killed at any moment leaves whole entries; only where a page of
    // the file ends within an entry may the kernel, on SIGKILL, stop there.
    const ssize_t written =
        ::write(history.get(), text.constData(), static_cast<std::size_t>(text.size()));
    if (written != text.size() && ::ftruncate(history.get(), status.st_size) != 0)
        release();
}

void HistoryRecorder::release()
{
    history = Descriptor();
    historyPath.clear();
    entry = HistoryEntry();
}

/// True when the open history is what @p name leads to, and may still be read and written.
bool HistoryRecorder::isStill(const QByteArray &name)
{
    if (!history.isOpen())
        return false;
    const struct stat before = status;
    return ::stat(name.constData(), &status) == 0 && status.st_dev == before.st_dev
           && status.st_ino == before.st_ino && ::access(name.constData(), R_OK | W_OK) == 0;
}

bool HistoryRecorder::open(const QString &file)
{
    const QByteArray name = QFile::encodeName(file);
    constexpr int flags = O_RDWR | O_APPEND | O_CLOEXEC | O_NONBLOCK;
    history = Descriptor();
    // Made without being cut off: a file that could not be looked at just now may be there. Made
    // for its owner alone, as it tells what was worth destroying; one that exists keeps its mode.
    if (!QFileInfo::exists(file))
        Descriptor(::open(name.constData(), flags | O_CREAT, S_IRUSR | S_IWUSR));
    if (!historyfile::isUsable(file))
        return false;
    history = Descriptor(::open(name.constData(), flags));
    return history.isOpen() && ::fstat(history.get(), &status) == 0;
}
