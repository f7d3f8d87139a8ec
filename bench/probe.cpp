// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "probe.h"

#include "controller/walle.h"

#include <QByteArray>
#include <QFile>

#include <chrono>
#include <iostream>

namespace probe
{

void tell(const char *name, double value)
{
    std::cout << name << ' ' << value << std::endl;
}

double now()
{
    const auto sinceBoot = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double, std::milli>(sinceBoot).count();
}

double statusKibibytes(const char *field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(field))
            return line.mid(line.indexOf(':') + 1).trimmed().split(' ').first().toDouble();
    }
    return -1;
}

void insistOnSandbox()
{
    if (!Walle::historyFilePath().contains(QStringLiteral("sandbox")))
        qFatal("the home directory is no sandbox; start this with scripts/bench");
}

} // namespace probe
