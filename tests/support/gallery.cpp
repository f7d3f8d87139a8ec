// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Takes a picture of the program in every state it has.
//
//     gallery PICTURE-FOLDER [FONT-FAMILY [SCALE]]
//
// The program starts a virtual desktop and on it, as another user with a home of
// their own, itself again; that second process has the windows. The font family
// is the desktop's default, however it is set up outside. The scale, 1 if none is
// given, is how many pixels a unit of the windows has.

#include "desktopsession.h"
#include "gallerystage.h"
#include "shredderuser.h"
#include "tiedprocess.h"

#include "controller/walle.h"
#include "ui/application.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTextStream>

#include <cstdlib>
#include <memory>

using namespace testsupport;

namespace
{

const char *const onTheDesktop = "--on-the-desktop";

/// A desktop whose every text is in one family, drawn in grey levels.
const char *const fontSetup = R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <dir>/usr/share/fonts</dir>
  <cachedir prefix="xdg">fontconfig</cachedir>
  <match target="pattern">
    <edit name="family" mode="prepend" binding="strong"><string>%1</string></edit>
  </match>
  <match target="font">
    <edit name="antialias" mode="assign"><bool>true</bool></edit>
    <edit name="hinting" mode="assign"><bool>true</bool></edit>
    <edit name="hintstyle" mode="assign"><const>hintslight</const></edit>
    <edit name="rgba" mode="assign"><const>none</const></edit>
  </match>
</fontconfig>
)";

bool writeFontSetup(const QString &path, const QString &family)
{
    QFile file(path);
    const QByteArray text = QString::fromLatin1(fontSetup).arg(family.toHtmlEscaped()).toUtf8();
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

int takePictures(const QString &folder)
{
    QDir::setCurrent(folder);
    if (!Walle::historyFilePath().startsWith(qEnvironmentVariable("HOME"))) {
        QTextStream(stderr) << "The history would go to a real home folder.\n";
        return EXIT_FAILURE;
    }
    showTables();
    showButtons();
    showRun();
    showDialogs();
    showHistory();
    return EXIT_SUCCESS;
}

int directPhotographer(const QString &program, const QString &folder, const QString &family,
                       qreal scale)
{
    constexpr QSize screen(1920, 1080);
    constexpr int dotsPerInch = 96;
    DesktopSession desktop;
    const ShredderUser user;
    const QString fonts = user.inHome(QStringLiteral("fonts.conf"));
    if (!QDir().mkpath(folder) || !desktop.start(screen * scale, qRound(dotsPerInch * scale))
        || !writeFontSetup(fonts, family)) {
        QTextStream(stderr) << "No desktop to take pictures of. " << desktop.problem() << '\n';
        return EXIT_FAILURE;
    }
    QProcessEnvironment environment = user.environment(desktop.environment());
    environment.insert(QStringLiteral("FONTCONFIG_FILE"), fonts);
    TiedProcess photographer;
    photographer.setProcessEnvironment(environment);
    photographer.setProcessChannelMode(QProcess::ForwardedChannels);
    photographer.start(program, {QString::fromLatin1(onTheDesktop), folder});
    constexpr int noLimit = -1;
    photographer.waitForFinished(noLimit);
    return photographer.exitStatus() == QProcess::NormalExit ? photographer.exitCode()
                                                             : EXIT_FAILURE;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 3 && qstrcmp(argv[1], onTheDesktop) == 0) {
        const std::unique_ptr<QApplication> application = makeApplication(argc, argv);
        const int status = takePictures(QString::fromLocal8Bit(argv[2]));
        // The controllers of the windows still run and are never joined.
        QTextStream(stdout).flush();
        std::_Exit(status);
    }
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const qreal scale = arguments.value(3, QStringLiteral("1")).toDouble();
    if (arguments.size() < 2 || arguments.size() > 4 || scale < 1) {
        QTextStream(stderr) << "usage: gallery PICTURE-FOLDER [FONT-FAMILY [SCALE]]\n";
        return EXIT_FAILURE;
    }
    return directPhotographer(QCoreApplication::applicationFilePath(),
                              QDir(arguments.at(1)).absolutePath(),
                              arguments.value(2, QStringLiteral("Noto Sans CJK SC")), scale);
}
