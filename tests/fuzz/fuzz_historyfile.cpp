// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The history file lies in a home folder, where anybody may have edited it: it is
// loaded and copied whatever it holds. And a file may have any name: its entry has
// three lines whatever that is.

#include "controller/historyfile.h"

#include <QBuffer>

#include <atomic>
#include <cstdint>
#include <cstdlib>

namespace
{

void require(bool holds)
{
    if (!holds)
        std::abort();
}

QStringList load(const QByteArray &contents)
{
    QBuffer file;
    file.setData(contents);
    require(file.open(QIODevice::ReadOnly | QIODevice::Text));
    const std::atomic<bool> aborted{false};
    return historyfile::linesOf(file, aborted);
}

void checkLoading(const QByteArray &contents)
{
    const QStringList lines = load(contents);
    const int ends = contents.count('\n');
    require(lines.size() == ends || lines.size() == ends + 1);
    for (const QString &line : lines)
        require(line == line.trimmed() && !line.contains(QLatin1Char('\n')));

    // Labels and line ends are in no line, so the text has one line for each whole entry.
    const QString text = historyfile::clipboardText(lines);
    require(text.count(QLatin1Char('\n')) == lines.size() / historyfile::linesPerEntry);
}

void checkEntry(const QByteArray &name)
{
    const QString path = QStringLiteral("/folder/") + QString::fromUtf8(name);
    const QByteArray entry =
        historyfile::entryFor(path, QDateTime(QDate(2024, 1, 2), QTime(3, 4, 5)));
    const QStringList lines = load(entry);
    require(lines.size() == historyfile::linesPerEntry);
    require(lines.first() == QLatin1String("2024-01-02 03:04:05"));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<int>(size));
    checkLoading(input);
    checkEntry(input);
    return 0;
}
