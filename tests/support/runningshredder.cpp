// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "runningshredder.h"

#include "eventually.h"

#include <QRegularExpression>

namespace testsupport
{

namespace
{

/// Whether no window is on the screen; the pointer may be in its corner.
bool isBare(const QImage &screen)
{
    constexpr int pointer = 64;
    const QImage picture = screen.copy(screen.rect().adjusted(pointer, pointer, 0, 0));
    QImage bare = picture;
    bare.fill(Qt::black);
    return samePixels(picture, bare);
}

} // namespace

void RunningShredder::start()
{
    QStringList command{user.reachable(QStringLiteral(SHREDDER_PROGRAM))};
    QProcessEnvironment environment = user.environment(desktop.environment());
    if (user.isSomebodyElse()) {
        // The change of user is made outside the sandbox's passwd file; what the
        // program is to see comes after it.
        command = wordsOf("setpriv --reuid=%1 --regid=%1 --clear-groups --pdeathsig=KILL env"_s,
                          user.id())
                  + environment.toStringList() + command;
        environment = desktop.environment();
        process.setWorkingDirectory(user.home());
    }
    process.setStandardErrorFile(user.messagesFile(), QIODevice::Append);
    process.launch(environment, command);
}

bool RunningShredder::openWindow()
{
    // The window of a shredder that has just ended may still be on the screen, and
    // would look like this one, already drawn.
    desktop.movePointer(QPoint(0, 0));
    if (!eventually([this] { return isBare(desktop.picture()); }))
        return false;
    desktop.movePointer(restingPlace());
    screenBefore = desktop.picture();
    start();
    const bool shown = eventually([this] {
        window = desktop.windowsOf(process.processId(), mainwindow::title()).value(0);
        return window != 0 || !isRunning();
    });
    if (!shown || window == 0)
        return false;
    freshWindow = drawnWindow(window);
    windowOnScreen = desktop.geometryOf(window);
    return !freshWindow.isNull();
}

std::optional<int> RunningShredder::waitForEnd()
{
    if (!eventually([this] { return !isRunning(); }))
        return std::nullopt;
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -process.exitCode();
}

QStringList RunningShredder::complaints() const
{
    if (!entryExists(user.messagesFile()))
        return {};
    return QString::fromUtf8(TemporaryTree::contentsOf(user.messagesFile()))
        .split(QLatin1Char('\n'))
        .filter(QRegularExpression("^Q|Sanitizer|runtime error"_s));
}

void RunningShredder::click(const QRect &placeInMainWindow)
{
    screenBefore = desktop.picture();
    clickAt(windowOnScreen.topLeft() + placeInMainWindow.center());
}

void RunningShredder::clickAt(const QPoint &place) const
{
    desktop.run("xdotool mousemove %1 %2 click 1 mousemove %3 %4"_s, place.x(), place.y(),
                restingPlace().x(), restingPlace().y());
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
    constexpr int longestTable = 12;
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
    if (!eventually([&] { return !samePixels(picture(box), ticked); }))
        return std::nullopt;
    return picture(box);
}

bool RunningShredder::drop(const QStringList &dragArguments)
{
    const QByteArray outcome = drag(dragArguments, patience);
    if (outcome != "end CopyAction\n")
        qInfo("the drop came to: %s", outcome.constData());
    return outcome == "end CopyAction\n";
}

bool RunningShredder::refuses(const QStringList &dragArguments)
{
    // A target that refuses a drag never says so; there is nothing to wait for but time.
    constexpr int hoverTime = 500;
    return drag(dragArguments, hoverTime) == "end IgnoreAction\n";
}

QByteArray RunningShredder::drag(const QStringList &dragArguments, int waitForConsent)
{
    TiedProcess &source = desktop.dragSource();
    QByteArray printed;
    const auto prints = [&](const char *words, int milliseconds = patience) {
        const auto printedSoFar = [&] {
            printed += source.readAllStandardOutput();
            return printed.contains(words);
        };
        return eventually(printedSoFar, milliseconds);
    };
    source.write(dragArguments.join(QLatin1Char('\t')).toUtf8() + '\n');
    if (!prints("ready"))
        return "no source";

    // Where the source is, far left of the main window, so that nothing lies over it.
    constexpr QPoint grip{140, 140};
    desktop.press(grip);
    desktop.movePointer(grip + QPoint(30, 0));
    const bool begun = prints("begin");
    // Where the empty table's hint is not, so that pictures of it are not spoilt.
    desktop.carryPointer(grip, windowOnScreen.topLeft() + QPoint(500, 400));
    prints("over CopyAction", waitForConsent);
    screenBefore = desktop.picture();
    desktop.releaseButton();
    if (!begun || !prints("end "))
        return "no drag";
    desktop.movePointer(restingPlace());
    return printed.mid(printed.indexOf("end "));
}

QVector<WindowId> RunningShredder::dialogs() const
{
    return desktop.windowsOf(process.processId(), dialog::title());
}

std::optional<WindowId> RunningShredder::waitForDialog() const
{
    QVector<WindowId> open;
    eventually([&] { return !(open = dialogs()).isEmpty(); });
    return open.isEmpty() ? std::nullopt : std::make_optional(open.first());
}

bool RunningShredder::answerDialog(const QRect &button) const
{
    const std::optional<WindowId> question = waitForDialog();
    if (!question)
        return false;
    clickIn(*question, button);
    // Another dialog may follow at once, the report of a short run for one.
    return eventually([&] { return !dialogs().contains(*question); });
}

std::optional<WindowId> RunningShredder::waitForOtherWindow() const
{
    QVector<WindowId> others;
    eventually([&] {
        others = desktop.windowsOf(process.processId());
        others.removeAll(window);
        return !others.isEmpty();
    });
    return others.isEmpty() ? std::nullopt : std::make_optional(others.last());
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

bool RunningShredder::askToShred()
{
    constexpr int oneTry = 2000;
    return eventually([this] {
        click(mainwindow::crushButton);
        return eventually([this] { return dialogIsOpen(); }, oneTry);
    });
}

bool RunningShredder::startShredding()
{
    return askToShred() && answerDialog(dialog::questionOk);
}

} // namespace testsupport
