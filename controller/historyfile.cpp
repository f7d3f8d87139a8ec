// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/historyfile.h"

#include "controller/historyrecorder.h"
#include "controller/homedirectory.h"

#include <QFileInfo>

#include <algorithm>

#include <unistd.h>

namespace historyfile
{

namespace
{

constexpr QChar visibleLineBreak(0x2424);

/// Everything that some program takes for the end of a line.
bool isLineBreak(QChar character)
{
    switch (character.unicode()) {
    case '\n':
    case '\v':
    case '\f':
    case '\r':
    case 0x0085:
    case 0x2028:
    case 0x2029:
        return true;
    default:
        return false;
    }
}

} // namespace

QByteArray line(QString text)
{
    std::replace_if(text.begin(), text.end(), isLineBreak, visibleLineBreak);
    return text.toUtf8() + '\n';
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
    while (!device.atEnd() && !aborted)
        lines.append(QString::fromUtf8(device.readLine()).trimmed());
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
