// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Start-up: pin the user, go home, be the only instance, show the window.

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

/// File names are UTF-8 whatever the locale says; Qt would else write "?" for Chinese names in
/// the C locale, and another file could be called that.
void readFileNamesAsUtf8()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

/// Qt's own dialogs speak Chinese like the rest, where their translation is installed.
void installTranslation(QApplication &application, QTranslator &translator)
{
    if (translator.load(QStringLiteral("qtbase_zh_CN"),
                        QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&translator);
    Q_UNUSED(application)
}

/// A font that the user put into the home directory, which is the current one, is preferred.
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
    installTranslation(*application, translator);
    applyUserFont();
    MainWindow window;
    window.show();
    QObject::connect(&window, &MainWindow::quit, application.get(), &QApplication::quit);
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    // A set-user-id installation runs with the rights of whoever started it from here on.
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
    // Controller and worker still run and are never joined. Leaving without the destructors of
    // static objects takes nothing away under them.
    std::_Exit(status);
}
