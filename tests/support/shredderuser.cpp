// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "shredderuser.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

namespace testsupport
{

namespace
{

constexpr auto onlyOwner = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

void write(const QString &file, const QByteArray &contents)
{
    QFile out(file);
    if (!out.open(QIODevice::WriteOnly) || out.write(contents) != contents.size())
        qFatal("cannot write %s", qPrintable(file));
}

} // namespace

ShredderUser::ShredderUser()
    : ShredderUser(::getuid())
{
}

ShredderUser::ShredderUser(uid_t id)
    : uid(id)
    , homePath(QFileInfo(directory.path()).canonicalFilePath() + QStringLiteral("/home"))
{
    for (const QString &folder : {homePath, directory.filePath(QStringLiteral("runtime"))}) {
        QDir().mkpath(folder);
        QFile::setPermissions(folder, onlyOwner);
        giveToUser(folder);
    }
    writeAccounts(true);
    giveToUser(directory.path());
}

bool ShredderUser::isSomebodyElse() const
{
    return uid != ::getuid();
}

QStringList ShredderUser::historyLines() const
{
    QFile file(historyFile());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    lines.removeLast(); // behind the last newline
    return lines;
}

bool ShredderUser::writeHistory(int entries) const
{
    QFile file(historyFile());
    if (!file.open(QIODevice::WriteOnly))
        return false;
    for (int i = 0; i < entries; ++i) {
        file.write(
            QStringLiteral("2026-01-02 03:04:05\n信件 %1.txt\n/home/某人/%1\n").arg(i).toUtf8());
    }
    return file.flush();
}

QString ShredderUser::reachable(const QString &program) const
{
    if (!isSomebodyElse())
        return program;
    QString copy = directory.filePath(QFileInfo(program).fileName());
    if (!QFile::exists(copy)) {
        QFile::copy(program, copy);
        giveToUser(copy);
    }
    return copy;
}

void ShredderUser::forgetPasswdEntry() const
{
    writeAccounts(false);
}

QProcessEnvironment ShredderUser::environment(QProcessEnvironment base) const
{
    base.insert(wishes);
    base.insert(QStringLiteral("HOME"), homePath);
    base.insert(QStringLiteral("XDG_RUNTIME_DIR"), directory.filePath(QStringLiteral("runtime")));
    base.insert(QStringLiteral("NSS_WRAPPER_PASSWD"), directory.filePath(QStringLiteral("passwd")));
    base.insert(QStringLiteral("NSS_WRAPPER_GROUP"), directory.filePath(QStringLiteral("group")));
    // A sanitizer's runtime has to come first, whatever else is preloaded.
    base.insert(QStringLiteral("LD_PRELOAD"),
                QStringLiteral(SANITIZER_RUNTIME " libnss_wrapper.so").trimmed());
    return base;
}

void ShredderUser::giveToUser(const QString &path) const
{
    if (isSomebodyElse() && ::chown(path.toUtf8().constData(), uid, uid) != 0)
        qFatal("cannot give %s away", qPrintable(path));
}

void ShredderUser::writeAccounts(bool listed) const
{
    // An account that is always there keeps the file from being empty.
    QByteArray passwd("somebody:x:4000:4000::/nonexistent:/bin/sh\n");
    const QByteArray id = QByteArray::number(uid);
    if (listed)
        passwd += "shredder:x:" + id + ":" + id + "::" + homePath.toUtf8() + ":/bin/sh\n";
    write(directory.filePath(QStringLiteral("passwd")), passwd);
    write(directory.filePath(QStringLiteral("group")), "shredder:x:" + id + ":\n");
    giveToUser(directory.filePath(QStringLiteral("passwd")));
    giveToUser(directory.filePath(QStringLiteral("group")));
}

} // namespace testsupport
