// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/historyfile.h"

#include "controller/historyrecorder.h"
#include "controller/homedirectory.h"

#include <QFileInfo>

#include <unistd.h>

namespace historyfile
{

namespace
{

constexpr QChar visibleLineFeed(0x2424);

} // namespace

QByteArray line(QString text)
{
    return text.replace(QLatin1Char('\n'), visibleLineFeed).toUtf8() + '\n';
}

QString path()
{
    return homeDirectoryOf(getuid()) + QStringLiteral("/.fileshredderEx.dat");
}

QString timeText(const QDateTime &time)
{
    return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QByteArray entryFor(const QString &path, const QDateTime &time)
{
    const QFileInfo info(path);
    return line(timeText(time)) + line(info.fileName()) + line(info.absolutePath());
}

bool isUsable(const QString &file)
{
    const QFileInfo info(file);
    return info.exists() && info.isFile() && info.isReadable() && info.isWritable();
}

void append(const QString &file, const QByteArray &entry)
{
    HistoryRecorder().append(file, entry);
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
