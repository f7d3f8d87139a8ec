// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "shredderuser.h"

#include "tiedprocess.h"

#include <QFile>
#include <QFileInfo>

namespace testsupport
{

ShredderUser::ShredderUser(uid_t id)
    : uid(id)
{
    for (const QString &folder : {directory.makeFolder("home"), directory.makeFolder("runtime")})
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QByteArray number = QByteArray::number(uid);
    writeAccounts("shredder:x:" + number + ":" + number + "::" + home().toUtf8() + ":/bin/sh\n");
    directory.makeFile("group", "shredder:x:" + number + ":\n");
}

QByteArray ShredderUser::history() const
{
    return entryExists(historyFile()) ? TemporaryTree::contentsOf(historyFile()) : QByteArray();
}

QStringList ShredderUser::historyLines() const
{
    QStringList lines = QString::fromUtf8(history()).split(QLatin1Char('\n'));
    lines.removeLast(); // behind the last newline
    return lines;
}

void ShredderUser::writeHistory(int entries) const
{
    QString history;
    for (int i = 0; i < entries; ++i)
        history += "2026-01-02 03:04:05\n信件 %1.txt\n/home/某人/%1\n"_s.arg(i);
    directory.makeFile("home/.fileshredderEx.dat", history.toUtf8());
}

QString ShredderUser::reachable(const QString &program) const
{
    if (!isSomebodyElse())
        return program;
    QString copy = directory.path(QFileInfo(program).fileName());
    QFile::copy(program, copy);
    outputOf({"chown"_s, "-R"_s, "%1:%1"_s.arg(uid), directory.path()},
             QProcessEnvironment::systemEnvironment());
    return copy;
}

QProcessEnvironment ShredderUser::environment(QProcessEnvironment base) const
{
    base.insert(wishes);
    base.insert("HOME"_s, home());
    base.insert("XDG_RUNTIME_DIR"_s, directory.path("runtime"));
    base.insert("NSS_WRAPPER_PASSWD"_s, directory.path("passwd"));
    base.insert("NSS_WRAPPER_GROUP"_s, directory.path("group"));
    // A sanitizer's runtime has to come first, whatever else is preloaded.
    base.insert("LD_PRELOAD"_s, QStringLiteral(SANITIZER_RUNTIME " libnss_wrapper.so").trimmed());
    return base;
}

void ShredderUser::writeAccounts(const QByteArray &entry) const
{
    // An account that is always there keeps the file from being empty.
    directory.makeFile("passwd", "somebody:x:4000:4000::/nonexistent:/bin/sh\n" + entry);
}

} // namespace testsupport
