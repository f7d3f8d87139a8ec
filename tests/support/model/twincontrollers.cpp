// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "twincontrollers.h"

#include "seeds.h"

#include "engine/filecrusher.h"
#include "promptly.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QUrl>

#include <ctime>
#include <memory>

#include <sys/stat.h>
#include <unistd.h>

namespace testsupport
{

namespace
{

constexpr int depth = 2;
constexpr int rowLimit = 200;

/// Calls @p react at the @p at-th signal of the name @p signal.
std::function<void(const SignalRecord &)> atSignal(const QByteArray &signal, int at,
                                                   const std::function<void()> &react)
{
    return [signal, at, react, heard = 0](const SignalRecord &record) mutable {
        if (record.name == signal && ++heard == at)
            react();
    };
}

} // namespace

TwinControllers::TwinControllers(quint32 seed, WalleHarness &product)
    : dice(seed)
    , tree(dice)
    , model(tree.root())
    , harness(product)
    , reports(*new SignalLog(product.walle().findChild<FileCrusher *>()))
{
    reports.onRecord = [](const SignalRecord &) {
        QCoreApplication::eventDispatcher()->wakeUp(); // whoever waits looks again
    };
    for (int number = dice.upTo(6); number >= 0; --number)
        entries.append(tree.makeEntry(depth));
    if (dice.onceIn(2))
        entries.append(tree.makeFile(255)); // no verdict comes for this one
    if (dice.onceIn(3))
        entries.append(tree.makeFolder(depth));
    if (dice.onceIn(60)) {
        for (int number = rowLimit - dice.upTo(6); number > 0; --number)
            entries.append(tree.makeFile(1));
    }
    model.lookAtDisk();
}

QString TwinControllers::differenceInCase()
{
    QStringList everything;
    for (const QByteArray &entry : qAsConst(entries))
        everything.append(QString::fromUtf8(entry));
    const Request all{[everything](WalleHarness &product) { product.choose(everything); },
                      [everything](ModelWalle &twin) { twin.choose(everything); }};
    QString found = differenceAfter({all});
    for (int step = 3 + dice.upTo(6); step > 0 && found.isEmpty(); --step)
        found = differenceInStep();
    return found;
}

QString TwinControllers::differenceInStep()
{
    if (dice.onceIn(3))
        changeSomeFile();
    if (dice.onceIn(8)) { // alone, or it would perform what was meant for the next command
        const QList<int> idle{CommandAddChosen, CommandAddDropped, CommandToggleRow};
        return differenceAfter({command(dice.oneOf(idle))});
    }
    QList<Request> requests;
    for (int number = dice.upTo(4); number > 0; --number)
        requests.append(randomRequest());
    switch (dice.upTo(6)) {
    case 0:
        requests.append(command(CommandStopCrush));
        break;
    case 1: {
        // The user wants no more of a history that is being loaded.
        const Request abort{[](WalleHarness &product) { product.walle().abortHistoryLoad(); },
                            [](ModelWalle &twin) { twin.historyLoadAborted = true; }};
        requests.append(command(CommandLoadHistory));
        return differenceAfter(requests, dice.onceIn(3) ? &abort : nullptr, "addRowToHistoryTable",
                               1 + dice.upTo(6));
    }
    case 2:
        return differenceAfterStopInTime(requests);
    case 3:
        requests.append(command(CommandStopCrush));
        // Whether a start finds a stop answered that ends a run, nobody can tell.
        if (!model.isRunning())
            requests.append(command(CommandStartCrush));
        break;
    default: {
        const Request during = randomRunRequest();
        requests.append(command(CommandStartCrush));
        return differenceAfter(requests, dice.onceIn(2) ? &during : nullptr, "setTableRowHeight",
                               1 + dice.upTo(10));
    }
    }
    return differenceAfter(requests);
}

/// A run after @p requests that is stopped before the worker has begun anything: it is held at its
/// answer to an earlier stop.
QString TwinControllers::differenceAfterStopInTime(QList<Request> requests)
{
    std::unique_ptr<HeldWorker> held;
    const Request hold{[&held](WalleHarness &product) {
                           held = std::make_unique<HeldWorker>(product.walle());
                           product.post(CommandStopCrush);
                           promptly([&held] { return held->stands(); });
                       },
                       [](ModelWalle &twin) {
                           twin.stop();
                           twin.work();
                       }};
    const Request release{[&held](WalleHarness &product) {
                              product.performed();
                              held.reset();
                          },
                          [](ModelWalle &) {}};
    requests.prepend(hold);
    for (int starts = 1 + dice.upTo(2); starts > 0; --starts)
        requests.append(command(CommandStartCrush));
    requests.append(command(CommandStopCrush));
    requests.append(release);
    return differenceAfter(requests);
}

/// Makes @p requests, and @p another one when the signal @p signal comes for the @p at-th time.
QString TwinControllers::differenceAfter(const QList<Request> &requests, const Request *another,
                                         const QByteArray &signal, int at)
{
    if (another != nullptr) {
        model.onSignal = atSignal(signal, at, [this, another] { another->toModel(model); });
        harness.onSignal = atSignal(signal, at, [this, another, signal] {
            another->toProduct(harness);
            // The controller waits for the window while it loads and performs nothing then.
            if (signal != "addRowToHistoryTable")
                harness.performed();
        });
    }
    const std::time_t first = std::time(nullptr);
    for (const Request &request : requests)
        request.toModel(model);
    model.work();
    for (const Request &request : requests)
        request.toProduct(harness);
    QString found = differenceInSaid();
    harness.onSignal = nullptr;
    model.onSignal = nullptr;
    if (found.isEmpty() && harness.paths() != model.paths())
        found = QStringLiteral("other rows");
    if (found.isEmpty())
        found = model.disk().differenceFromDisk(first, std::time(nullptr));
    model.lookAtDisk(); // what was overwritten now is no matter of the next seconds
    return found;
}

/// Waits until the controller has said as much as the model, and has nothing more to do.
QString TwinControllers::differenceInSaid()
{
    promptly([this] { return harness.log().size() >= model.said.size(); });
    harness.performed();
    // What the worker reports of a row that was removed meanwhile is not told to the window.
    if (!promptly([this] { return reports.count() >= model.reports; }))
        return QStringLiteral("the worker reports less");
    return differenceBetween(std::exchange(model.said, {}), withSomeTime(harness.takeLog()));
}

/// A command without further data; nothing comes of those that are not below.
TwinControllers::Request TwinControllers::command(int code)
{
    const auto toProduct = [code](WalleHarness &product) {
        code == CommandCopyHistory ? product.copyHistory() : product.post(code);
    };
    const auto toModel = [code](ModelWalle &twin) {
        switch (code) {
        case CommandRemoveChecked:
            return twin.removeChecked();
        case CommandStartCrush:
            return twin.start();
        case CommandStopCrush:
            return twin.stop();
        case CommandCheckAll:
        case CommandUncheckAll:
            return twin.setAllChecked(code == CommandCheckAll);
        case CommandLoadHistory:
            return twin.loadHistory();
        case CommandCopyHistory:
            return twin.copyHistory();
        case CommandClearHistory:
            return twin.clearHistory();
        default:
            return;
        }
    };
    return {toProduct, toModel};
}

TwinControllers::Request TwinControllers::clickOnSome()
{
    const QStringList rows = model.paths();
    if (rows.isEmpty())
        return command(-1);
    const QString path = dice.oneOf(rows);
    return {[path](WalleHarness &product) {
                product.walle().postCellToggle(CellToggle{0, true, path});
                product.post(CommandToggleRow);
            },
            [path](ModelWalle &twin) { twin.click(path); }};
}

/// A path for a batch: mostly one that is there, by some spelling.
QString TwinControllers::somePath()
{
    const QByteArray entry = dice.oneOf(entries);
    const int slash = entry.lastIndexOf('/');
    switch (dice.upTo(12)) {
    case 0:
        return QString::fromUtf8(tree.freePath());
    case 1:
        return QString::fromUtf8(entry.left(slash) + "//" + entry.mid(slash + 1));
    case 2:
        return QString::fromUtf8(model.disk().isLink(entry) ? entry : entry + '/');
    case 3:
        return dice.oneOf(QStringList{QStringLiteral("/"), QStringLiteral("/etc"),
                                      QStringLiteral("/usr/bin"), QStringLiteral("/proc"),
                                      QStringLiteral("/dev/null")});
    default:
        return QString::fromUtf8(entry);
    }
}

TwinControllers::Request TwinControllers::batch()
{
    QStringList paths;
    for (int number = dice.upTo(4); number > 0; --number)
        paths.append(somePath());
    if (dice.onceIn(2))
        return {[paths](WalleHarness &product) { product.choose(paths); },
                [paths](ModelWalle &twin) { twin.choose(paths); }};
    if (dice.onceIn(6))
        paths.insert(dice.upTo(paths.size() + 1), QString());
    QList<QUrl> urls;
    for (const QString &path : qAsConst(paths))
        urls.append(path.isEmpty() ? QUrl(QStringLiteral("http://localhost/file"))
                                   : QUrl::fromLocalFile(path));
    return {[urls](WalleHarness &product) { product.drop(urls); },
            [paths](ModelWalle &twin) { twin.drop(paths); }};
}

TwinControllers::Request TwinControllers::randomRequest()
{
    const int kind = dice.upTo(12);
    if (kind < 7)
        return command(
            dice.oneOf(QList<int>{-1, 11, CommandCheckAll, CommandUncheckAll, CommandRemoveChecked,
                                  CommandCopyHistory, CommandClearHistory, CommandLoadHistory}));
    return kind < 9 ? batch() : clickOnSome();
}

/// What can be asked for while the worker waits for a report to be handled. Clearing the history
/// is not among it, as that waits for the report of a failure to be over.
TwinControllers::Request TwinControllers::randomRunRequest()
{
    const int kind = dice.upTo(9);
    if (kind < 6) // a start is dropped
        return command(dice.oneOf(QList<int>{CommandStopCrush, CommandStopCrush, CommandStopCrush,
                                             CommandStartCrush, CommandCheckAll, CommandUncheckAll,
                                             CommandRemoveChecked}));
    return kind < 7 ? batch() : clickOnSome();
}

/// Something happens to a file behind the list's back.
void TwinControllers::changeSomeFile()
{
    const QByteArray entry = dice.oneOf(entries);
    const ModelEntry *found = model.disk().find(entry, false);
    if (found == nullptr)
        return;
    const bool isFile = found->kind == ModelKind::File;
    if (isFile && dice.onceIn(2)) {
        ::unlink(entry.constData());
        if (dice.onceIn(2))
            ::mkfifo(entry.constData(), S_IRUSR | S_IWUSR);
    } else if (isFile) {
        ::chmod(entry.constData(), S_IRUSR);
    } else if (found->kind == ModelKind::Directory) {
        ::chmod(entry.constData(), dice.onceIn(3) ? S_IRWXU : S_IRUSR | S_IXUSR);
    }
    model.lookAtDisk();
}

} // namespace testsupport
