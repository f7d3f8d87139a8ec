// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A child process that does not outlive this one, even when this one crashes:
// an X server or a shredder left behind by a failed test would spoil the next.

#pragma once

#include <QProcess>

namespace testsupport
{

class TiedProcess : public QProcess
{
    Q_OBJECT

public:
    ~TiedProcess() override { end(); }

    void launch(const QProcessEnvironment &environment, const QStringList &command);
    /// Waits for the first line that the process prints; empty when it ends without one.
    QByteArray firstLine();
    /// Asks the process to end, waits, and kills it if it does not.
    void end();

protected:
    void setupChildProcess() override;
};

bool isInstalled(const QString &program);

/// Runs a short command to its end and returns what it printed.
QByteArray outputOf(const QStringList &command, const QProcessEnvironment &environment);

/// The words of a command, which are apart by blanks, with @p values in its places.
template <typename... Values>
QStringList wordsOf(QString command, Values... values)
{
    ((command = command.arg(values)), ...);
    return command.split(QLatin1Char(' '));
}

} // namespace testsupport
