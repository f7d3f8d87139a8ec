// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/historyfile.h"

#include "engine/descriptor.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace historyfile
{

namespace
{

constexpr QChar visibleLineFeed(0x2424);

QByteArray lineOf(QString text)
{
    return text.replace(QLatin1Char('\n'), visibleLineFeed).toUtf8() + '\n';
}

/// Opens @p file with @p flags and fills @p status; not open unless it is a regular file.
/// O_NONBLOCK: a device that has the name must not keep the program waiting.
Descriptor openRegular(const QString &file, int flags, struct stat &status)
{
    Descriptor opened(::open(QFile::encodeName(file).constData(), O_CLOEXEC | O_NONBLOCK | flags,
                             S_IRUSR | S_IWUSR));
    if (!opened.isOpen() || ::fstat(opened.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return Descriptor();
    return opened;
}

} // namespace

QByteArray entryFor(const QString &path, const QDateTime &time)
{
    const QFileInfo info(path);
    return lineOf(time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))) + lineOf(info.fileName())
           + lineOf(info.absolutePath());
}

void append(const QString &file, const QByteArray &entry)
{
    struct stat before = {};
    const Descriptor history = openRegular(file, O_RDWR | O_APPEND | O_CREAT, before);
    if (!history.isOpen())
        return;
    // A single write(), so a program killed at any moment leaves whole entries. Only where a page
    // of the file ends within an entry may the kernel, on SIGKILL, stop there.
    const ssize_t written =
        ::write(history.get(), entry.constData(), static_cast<std::size_t>(entry.size()));
    if (written != entry.size()) {
        [[maybe_unused]] const int result = ::ftruncate(history.get(), before.st_size);
    }
}

QStringList load(const QString &file, const std::atomic<bool> &aborted)
{
    // Opened for writing, one with the append-only attribute (chattr +a) could not be read.
    if (!QFileInfo(file).isWritable())
        return QStringList();
    struct stat status = {};
    const Descriptor history = openRegular(file, O_RDONLY, status);
    QFile device;
    if (!history.isOpen() || !device.open(history.get(), QIODevice::ReadOnly | QIODevice::Text))
        return QStringList();
    return linesOf(device, aborted);
}

QStringList linesOf(QIODevice &device, const std::atomic<bool> &aborted)
{
    QStringList lines;
    while (!aborted) {
        const QByteArray line = device.readLine();
        // The end, or an error. atEnd() would not do: it stays false when a disk fails.
        if (line.isEmpty())
            break;
        lines.append(QString::fromUtf8(line).trimmed());
    }
    return lines;
}

void clear(const QString &file)
{
    // unlink() alone would also remove a history that is write-protected.
    if (QFileInfo(file).isWritable())
        QFile::remove(file);
}

QString clipboardText(const QStringList &lines)
{
    static const QByteArray timeLabel = QByteArrayLiteral("日期：");
    static const QByteArray nameLabel = QByteArrayLiteral("\t已粉碎的文件或目录名：");
    static const QByteArray folderLabel = QByteArrayLiteral("\t路径：");

    QByteArray text;
    for (int first = 0; first + linesPerEntry <= lines.size(); first += linesPerEntry) {
        text += timeLabel + lines.at(first).toUtf8();
        text += nameLabel + lines.at(first + 1).toUtf8();
        text += folderLabel + lines.at(first + 2).toUtf8();
        text += '\n';
    }
    return QString::fromUtf8(text);
}

} // namespace historyfile
