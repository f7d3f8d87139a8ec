// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "restlessuser.h"

#include "widgets/zztablecell.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QTableWidget>
#include <QtTest>

namespace
{

QtMessageHandler testsHandler = nullptr;

/// The offscreen platform complains, once or more, about every file dialog.
void hearMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!text.contains(QLatin1String("propagateSizeHints")))
        testsHandler(type, context, text);
}

} // namespace

namespace testsupport
{

void RestlessUser::init()
{
    WindowTest::init();
    testsHandler = qInstallMessageHandler(hearMessage);
    answerEveryDialog();
}

void RestlessUser::cleanup()
{
    qInstallMessageHandler(testsHandler);
    WindowTest::cleanup();
}

void RestlessUser::beginRound()
{
    // Not in this thread, whose event loop would stand still meanwhile on a busy disk.
    leavingFiles = std::async(std::launch::async, [left = std::move(tree)] {});
    tree = std::make_unique<TemporaryTree>();
    shownFiles.clear();
    neverShown = tree->makeFile(QStringLiteral("bystander"), 5000);
}

QString RestlessUser::nextName()
{
    return QString::number(++names);
}

void RestlessUser::doSomething()
{
    ++requests;
    act();
    QCoreApplication::processEvents();
    if (chance.onceIn(3))
        promptly([left = chance.upTo(20)]() mutable { return --left < 0; });
}

/// OK to every question and every report, the wanted names to the file dialog.
void RestlessUser::answerEveryDialog()
{
    dialogs->next([this](QDialog &dialog) {
        answerEveryDialog();
        if (qobject_cast<QFileDialog *>(&dialog) == nullptr)
            return DialogDriver::press(dialog, Answer::Ok);
        auto *name = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        name->setText(QLatin1Char('"') + chosen.join(QStringLiteral("\" \"")) + QLatin1Char('"'));
        QTest::keyClick(name, Qt::Key_Return);
    });
}

void RestlessUser::act()
{
    if (isHistoryOpen())
        return actInTheHistory();
    switch (chance.upTo(16)) {
    case 0:
    case 1:
    case 2:
        return dropSome();
    case 3:
        return chance.onceIn(8) ? chooseSome() : dropSome();
    case 4:
    case 5:
    case 6:
        return startOrStop();
    case 7:
    case 8:
        return window->click("selectAllCheckBox");
    case 9:
        return window->click("removeButton");
    case 10:
        return window->click("historyLink");
    default:
        return clickSomeRow();
    }
}

/// The history window keeps its user from the main window, but not from dropping files there.
void RestlessUser::actInTheHistory()
{
    switch (chance.upTo(5)) {
    case 0:
        return window->click("clearHistoryButton");
    case 1:
        settle(); // copies
        return;
    case 2:
        return dropSome();
    default:
        return window->click("historyCloseButton");
    }
}

void RestlessUser::startOrStop()
{
    if (runState() == runningText()) {
        if (!window->isEnabled("crushButton"))
            return;
        window->click("crushButton");
        PROMPTLY_VERIFY(runState() != runningText());
    } else if (runState() == idleText()) {
        window->click("crushButton");
    }
}

void RestlessUser::clickSomeRow()
{
    const int rows = window->table()->rowCount();
    if (rows == 0)
        return;
    const int row = chance.upTo(qMin(rows, 10));
    if (!window->cell(row)->visibleRegion().isEmpty()) // the table may have been scrolled
        window->clickRow(row);
}

QStringList RestlessUser::someFiles()
{
    QStringList some;
    for (int number = chance.upTo(12); number >= 0; --number) {
        if (!shownFiles.isEmpty() && chance.onceIn(4)) {
            some.append(chance.oneOf(shownFiles));
            continue;
        }
        const QString name = nextName();
        if (chance.onceIn(12)) { // a fifo stays, and so does its folder
            tree->makeFolder(name);
            some.append(tree->path(name));
            tree->makeFifo(name + QStringLiteral("/fifo"));
        } else if (chance.onceIn(8)) {
            tree->makeFile(name + QStringLiteral("/one"), 3);
            tree->makeFile(name + QStringLiteral("/two"), 5000);
            some.append(tree->path(name));
        } else {
            some.append(tree->makeFile(name, chance.onceIn(10) ? 40000 : chance.upTo(5)));
        }
        shownFiles.append(some.last());
    }
    return some;
}

void RestlessUser::dropSome()
{
    if (window->table()->rowCount() < mostRows - 15 || chance.onceIn(4))
        window->drop(someFiles());
}

void RestlessUser::chooseSome()
{
    chosen = someFiles();
    window->click("addButton");
}

/// Ends what is going on, as a user would, and waits until nothing moves any more.
void RestlessUser::comeToRest()
{
    if (isHistoryOpen())
        window->click("historyCloseButton");
    settle();
    if (runState() == runningText()) {
        // Only with something ticked a run can be stopped; the last ticks may have gone.
        shownFiles.append(tree->makeFile(nextName(), 1));
        window->drop({shownFiles.last()});
        settle();
    }
    if (runState() == runningText())
        window->click("crushButton");
    PROMPTLY_COMPARE(runState(), idleText());
    settle();
    settle(); // a report that was open kept the first from being performed
    QCOMPARE(runState(), idleText());
}

} // namespace testsupport
