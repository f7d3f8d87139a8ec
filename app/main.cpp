// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Start-up: real user id, home directory, instance lock, application font, window.

#include "app/instancelock.h"
#include "controller/homedirectory.h"
#include "ui/application.h"
#include "ui/mainwindow.h"

#include <QApplication>
#include <QDir>
#include <QFont>
#include <QFontDatabase>
#include <QLibraryInfo>
#include <QTextCodec>
#include <QTranslator>

#include <cstdlib>
#include <memory>

#include <unistd.h>

namespace
{

constexpr int fontPointSize = 9;

/// File names are UTF-8 in every locale. In the C locale Qt would encode Chinese names as "?",
/// which could be the name of another file.
void readFileNamesAsUtf8()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

/// Qt's own dialogs are in Chinese like the rest where Qt's translation is installed.
void installTranslation(QTranslator &translator)
{
    const QString folder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
    // Some versions of Qt, Debian 11's for one, have the words of all parts in one file.
    if (translator.load(QStringLiteral("qtbase_zh_CN"), folder)
        || translator.load(QStringLiteral("qt_zh_CN"), folder))
        QApplication::installTranslator(&translator);
}

/// A font file in the user's home directory, which is the current one, replaces the default font.
void applyUserFont()
{
    const int id =
        QFontDatabase::addApplicationFont(QStringLiteral("./img/NotoSansCJKsc-DemiLight.otf"));
    if (id == -1)
        return;
    const QStringList families = QFontDatabase::applicationFontFamilies(id);
    if (families.isEmpty())
        return;
    QFont font(families.first());
    font.setPointSize(fontPointSize);
    QApplication::setFont(font);
}

int runApplication(int &argc, char **argv)
{
    const std::unique_ptr<QApplication> application = makeApplication(argc, argv);
    QTranslator translator;
    installTranslation(translator);
    applyUserFont();
    MainWindow window;
    window.show();
    QObject::connect(&window, &MainWindow::quit, application.get(), &QApplication::quit);
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    // From the setreuid() below on, a set-user-id installation has the rights of its caller only.
    const uid_t user = getuid();
    const QString home = homeDirectoryOf(user);
    if (setreuid(user, user) != 0)
        return EXIT_FAILURE;
    readFileNamesAsUtf8();
    QDir::setCurrent(home);
    if (instancelock::acquireInstanceLock(home + QStringLiteral("/.fileshredder.pid"))
        == instancelock::HeldByAnother)
        return EXIT_SUCCESS;

    const int status = runApplication(argc, argv);
    // Controller and worker still run and are never joined. _Exit() runs no destructors of static
    // objects, which they may still use.
    std::_Exit(status);
}
