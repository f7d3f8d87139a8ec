// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "runningshredder.h"

#include "eventually.h"
#include "windowmap.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

namespace testsupport
{

namespace
{

/// Far left of the main window, so that nothing lies over it.
constexpr QPoint dragSourcePlace{100, 100};
constexpr QPoint dragGrip{140, 140};
constexpr int hoverTime = 500;
constexpr int longestTable = 12;

/// Whether no window is on the screen; the pointer may be in its corner.
bool isBare(const QImage &screen)
{
    constexpr int pointer = 64;
    const QImage picture = screen.copy(screen.rect().adjusted(pointer, pointer, 0, 0));
    QImage bare = picture;
    bare.fill(Qt::black);
    return samePixels(picture, bare);
}

QStringList linesOf(const QString &file)
{
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(in.readAll()).split(QLatin1Char('\n'));
}

} // namespace

RunningShredder::RunningShredder(const DesktopSession &onDesktop, const ShredderUser &asUser)
    : desktop(onDesktop)
    , user(asUser)
{
}

void RunningShredder::start()
{
    const QString program = user.reachable(QStringLiteral(SHREDDER_PROGRAM));
    const QProcessEnvironment environment = user.environment(desktop.environment());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(user.messagesFile(), QIODevice::Append);
    if (!user.isSomebodyElse()) {
        process.setProcessEnvironment(environment);
        process.start(program, QStringList());
    } else {
        // The change of user is made outside the sandbox's passwd file; what the
        // program is to see comes after it.
        const QString id = QString::number(user.id());
        QStringList command{QStringLiteral("--reuid=") + id, QStringLiteral("--regid=") + id,
                            QStringLiteral("--clear-groups"), QStringLiteral("--pdeathsig=KILL"),
                            QStringLiteral("env")};
        process.setProcessEnvironment(desktop.environment());
        process.setWorkingDirectory(user.home());
        process.start(QStringLiteral("setpriv"),
                      command + environment.toStringList() + QStringList{program});
    }
    process.waitForStarted();
}

bool RunningShredder::openWindow()
{
    // The window of a shredder that has just ended may still be on the screen, and
    // would look like this one, already drawn.
    desktop.movePointer(QPoint(0, 0));
    if (!eventually([this] { return isBare(desktop.picture()); }))
        return false;
    desktop.movePointer(mainwindow::onScreen.topLeft() + mainwindow::restingPlace);
    screenBefore = desktop.picture();
    start();
    const auto shown = [this] {
        const QVector<WindowId> windows =
            desktop.windowsOf(process.processId(), mainwindow::title());
        if (!windows.isEmpty())
            window = windows.first();
        return window != 0 || process.state() == QProcess::NotRunning;
    };
    if (!eventually(shown) || window == 0)
        return false;
    freshWindow = drawnWindow(window);
    windowOnScreen = desktop.geometryOf(window);
    return !freshWindow.isNull();
}

bool RunningShredder::waitForEnd()
{
    return eventually([this] { return process.state() == QProcess::NotRunning; });
}

int RunningShredder::exitStatus() const
{
    const bool ended = process.state() == QProcess::NotRunning;
    return ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

QStringList RunningShredder::complaints() const
{
    return linesOf(user.messagesFile())
        .filter(QRegularExpression(QStringLiteral("^Q|Sanitizer|runtime error")));
}

void RunningShredder::click(const QRect &placeInMainWindow)
{
    screenBefore = desktop.picture();
    desktop.click(windowOnScreen.topLeft() + placeInMainWindow.center());
}

void RunningShredder::rest() const
{
    desktop.movePointer(windowOnScreen.topLeft() + mainwindow::restingPlace);
}

QImage RunningShredder::picture(const QRect &placeInMainWindow) const
{
    return desktop.picture(placeInMainWindow.translated(windowOnScreen.topLeft()));
}

bool RunningShredder::hasChanged(const QRect &placeInMainWindow) const
{
    return !samePixels(picture(placeInMainWindow), freshWindow.copy(placeInMainWindow));
}

int RunningShredder::rowsShown() const
{
    int rows = 0;
    while (rows < longestTable && hasChanged(mainwindow::rowIcon(rows)))
        ++rows;
    return rows;
}

std::optional<QImage> RunningShredder::untick(int row)
{
    const QRect box = mainwindow::rowTickBox(row);
    const QImage ticked = picture(box);
    click(box);
    rest();
    if (!eventually([&] { return !samePixels(picture(box), ticked); }))
        return std::nullopt;
    return picture(box);
}

bool RunningShredder::drop(const QStringList &dragArguments)
{
    const QString outcome = drag(dragArguments, patience);
    if (outcome == QLatin1String("copy"))
        return true;
    qInfo("the drop came to: %s", qPrintable(outcome));
    return false;
}

bool RunningShredder::refuses(const QStringList &dragArguments)
{
    // A target that refuses a drag never says so; there is nothing to wait for but time.
    return drag(dragArguments, hoverTime) == QLatin1String("ignore");
}

QString RunningShredder::drag(const QStringList &dragArguments, int waitForConsent)
{
    QByteArray printed;
    const auto prints = [&](const char *words, int milliseconds) {
        const auto printedSoFar = [&] {
            printed += dragSource->readAllStandardOutput();
            return printed.contains(words);
        };
        return eventually(printedSoFar, milliseconds);
    };
    // The last drag's source has been asked for its data, and may go.
    dragSource = std::make_unique<TiedProcess>();
    dragSource->setProcessEnvironment(desktop.environment());
    const QStringList place{QString::number(dragSourcePlace.x()),
                            QString::number(dragSourcePlace.y())};
    dragSource->start(QStringLiteral(DRAG_SOURCE_PROGRAM), place + dragArguments);
    if (!prints("ready", patience))
        return QStringLiteral("no source");

    desktop.movePointer(dragGrip);
    desktop.pressButton();
    desktop.movePointer(dragGrip + QPoint(30, 0));
    const bool begun = prints("begin", patience);
    // Where the empty table's hint is not, so that pictures of it are not spoilt.
    const QPoint target = windowOnScreen.topLeft() + QPoint(500, 400);
    desktop.carryPointer(dragGrip, target);
    prints("over copy", waitForConsent);
    screenBefore = desktop.picture();
    desktop.releaseButton();
    if (!begun || !prints("end ", patience))
        return QStringLiteral("no drag");
    rest();
    if (!printed.contains("end copy"))
        return printed.contains("end move") ? QStringLiteral("move") : QStringLiteral("ignore");
    // The target fetches the data after the drag is over, so the source stays until
    // the next drag.
    return prints("given", patience) ? QStringLiteral("copy") : QStringLiteral("no interest");
}

std::optional<WindowId> RunningShredder::waitForDialog() const
{
    QVector<WindowId> dialogs;
    const bool opened = eventually([&] {
        dialogs = desktop.windowsOf(process.processId(), dialog::title());
        return !dialogs.isEmpty();
    });
    return opened ? std::make_optional(dialogs.first()) : std::nullopt;
}

bool RunningShredder::dialogIsOpen() const
{
    return !desktop.windowsOf(process.processId(), dialog::title()).isEmpty();
}

bool RunningShredder::answerDialog(const QRect &button) const
{
    const std::optional<WindowId> question = waitForDialog();
    if (!question)
        return false;
    desktop.clickIn(*question, button);
    rest();
    // Another dialog may follow at once, the report of a short run for one.
    return eventually([&] {
        return !desktop.windowsOf(process.processId(), dialog::title()).contains(*question);
    });
}

std::optional<WindowId> RunningShredder::waitForOtherWindow() const
{
    QVector<WindowId> others;
    const bool opened = eventually([&] {
        others = desktop.windowsOf(process.processId());
        others.removeAll(window);
        return !others.isEmpty();
    });
    return opened ? std::make_optional(others.last()) : std::nullopt;
}

bool RunningShredder::onlyMainWindowIsOpen() const
{
    return desktop.windowsOf(process.processId()) == QVector<WindowId>{window};
}

QImage RunningShredder::drawnWindow(WindowId id) const
{
    // A window is there before it is drawn, and shows what it covers until then.
    // Drawn means: another picture than before, and two looks in a row find the same.
    QImage before;
    const bool settled = eventually([&] {
        const QRect area = desktop.geometryOf(id);
        const QImage now = desktop.picture(area);
        const bool same = samePixels(now, before) && !samePixels(now, screenBefore.copy(area));
        before = now;
        return same;
    });
    return settled ? before : QImage();
}

bool RunningShredder::startShredding()
{
    click(mainwindow::crushButton);
    return answerDialog(dialog::questionOk);
}

} // namespace testsupport
