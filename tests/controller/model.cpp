// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The controller and a plain model of it with the same random requests: batches,
// clicks, removals, runs, stops, the history, also while the worker is at work, and
// with files that change behind the list. Signals in their order with their arguments,
// the rows and what is left on the disk must be the same. A difference names its seed.

#include "engine/filecrusher.h"
#include "model/modelwalle.h"
#include "model/randomtree.h"
#include "model/seeds.h"
#include "suites.h"
#include "systemcalls.h"
#include "walleharness.h"

#include <QAbstractEventDispatcher>
#include <QRegularExpression>
#include <QUrl>

#include <ctime>

#include <sys/stat.h>
#include <unistd.h>

using testsupport::Dice;
using testsupport::ModelEntry;
namespace ModelKind = testsupport::ModelKind;
using testsupport::ModelWalle;
using testsupport::promptly;
using testsupport::RandomTree;
using testsupport::SignalLog;
using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::WalleHarness;
using testsupport::WalleTest;

namespace
{

/// The same request to both; it is only posted to the controller.
struct Request {
    template <class Ask>
    Request(const Ask &ask)
        : toProduct(ask)
        , toModel(ask)
    {
    }

    std::function<void(WalleHarness &)> toProduct;
    std::function<void(ModelWalle &)> toModel;
};

Request command(int code)
{
    return [code](auto &twin) { twin.post(code); };
}

struct Step {
    QList<Request> requests;
    /// All of them come before the worker has begun anything: it is held at its answer to a stop.
    bool workerIsHeld = false;
    /// Comes when the signal does for the at-th time.
    Request another = command(-1);
    QByteArray signal;
    int at = 0;
};

/// One case of random requests.
class TwinControllers
{
public:
    /// @p product has performed everything and has neither rows nor a history nor an open run;
    /// @p reported is what its worker reports.
    TwinControllers(quint32 seed, WalleHarness &product, SignalLog &reported);

    /// Returns the first difference, empty when there is none.
    QString differenceInCase();

private:
    QString differenceAfter(const Step &step);
    Step randomStep();
    Request randomRequest();
    Request randomRunRequest();
    Request batch();
    Request clickOnSome();
    QString somePath();
    void changeSomeFile();

    Dice dice;
    RandomTree tree;
    ModelWalle model;
    WalleHarness &harness;
    SignalLog &reports;
    QByteArrayList entries; ///< what can be listed
};

TwinControllers::TwinControllers(quint32 seed, WalleHarness &product, SignalLog &reported)
    : dice(seed)
    , tree(dice)
    , model(tree.root())
    , harness(product)
    , reports(reported)
{
    constexpr int depth = 2;
    constexpr int rowLimit = 200;
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
    Step first;
    first.requests.append([everything](auto &twin) { twin.choose(everything); });
    QString found = differenceAfter(first);
    for (int step = 3 + dice.upTo(6); step > 0 && found.isEmpty(); --step) {
        if (dice.onceIn(3))
            changeSomeFile();
        found = differenceAfter(randomStep());
    }
    return found;
}

Step TwinControllers::randomStep()
{
    Step step;
    if (dice.onceIn(8)) { // alone, or it would perform what was meant for the next command
        const QList<int> empty{CommandAddChosen, CommandAddDropped, CommandToggleRow};
        step.requests.append(command(dice.oneOf(empty)));
        return step;
    }
    for (int number = dice.upTo(4); number > 0; --number)
        step.requests.append(randomRequest());
    switch (dice.upTo(6)) {
    case 0:
        step.requests.append(command(CommandStopCrush));
        break;
    case 1:
        step.requests.append(command(CommandLoadHistory));
        if (dice.onceIn(3)) {
            step.another = [](auto &twin) { twin.abortHistoryLoad(); };
            step.signal = "addRowToHistoryTable";
            step.at = 1 + dice.upTo(6);
        }
        break;
    case 2:
        step.workerIsHeld = true;
        for (int starts = 1 + dice.upTo(2); starts > 0; --starts)
            step.requests.append(command(CommandStartCrush));
        step.requests.append(command(CommandStopCrush));
        break;
    case 3:
        step.requests.append(command(CommandStopCrush));
        // Whether a start finds a stop answered that ends a run, nobody can tell.
        if (!model.isRunning())
            step.requests.append(command(CommandStartCrush));
        break;
    default:
        step.requests.append(command(CommandStartCrush));
        if (dice.onceIn(2)) {
            step.another = randomRunRequest();
            step.signal = "setTableRowHeight";
            step.at = 1 + dice.upTo(10);
        }
    }
    return step;
}

/// Waits until the controller has said as much as the model, and has nothing more to do.
QString TwinControllers::differenceAfter(const Step &step)
{
    const std::time_t first = std::time(nullptr);
    reports.clear();
    model.reports = 0;
    if (step.workerIsHeld) {
        model.post(CommandStopCrush);
        model.work();
        harness.holdWorkerAfter(CommandStopCrush);
    }
    model.onSignal = [&, heard = 0](const SignalRecord &record) mutable {
        if (record.name == step.signal && ++heard == step.at)
            step.another.toModel(model);
    };
    harness.onSignal = [&, heard = 0](const SignalRecord &record) mutable {
        if (record.name != step.signal || ++heard != step.at)
            return;
        step.another.toProduct(harness);
        // The controller waits for the window while it loads and performs nothing then.
        if (step.signal != "addRowToHistoryTable")
            harness.performed();
    };
    for (const Request &request : step.requests)
        request.toModel(model);
    model.work();
    for (const Request &request : step.requests)
        request.toProduct(harness);
    if (step.workerIsHeld) {
        harness.performed();
        harness.releaseWorker();
    }
    promptly([this] { return harness.log().size() >= model.said.size(); });
    harness.performed();
    // What the worker reports of a row that was removed meanwhile is not told to the window.
    const bool hasReported = promptly([this] { return reports.count() >= model.reports; });
    harness.onSignal = nullptr;
    model.onSignal = nullptr;

    SignalRecords said = harness.takeLog();
    static const QRegularExpression time(
        QStringLiteral("(^|日期：)20\\d\\d-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d"));
    for (SignalRecord &record : said) {
        if (record.name == "addRowToHistoryTable" || record.name == "clipboardSetText")
            record.arguments[0] = record.arguments.at(0).toString().replace(
                time, QStringLiteral("\\1") + ModelWalle::someTime());
    }
    QString found = testsupport::differenceBetween(std::exchange(model.said, {}), said);
    if (!hasReported)
        found += QStringLiteral("; the worker reports less");
    if (harness.paths() != model.paths())
        found += QStringLiteral("; other rows");
    if (found.isEmpty())
        found = model.disk().differenceFromDisk(first, std::time(nullptr));
    model.lookAtDisk(); // what was overwritten now is no matter of the next seconds
    return found;
}

Request TwinControllers::clickOnSome()
{
    const QStringList rows = model.paths();
    if (rows.isEmpty())
        return command(-1);
    return [path = dice.oneOf(rows)](auto &twin) { twin.click(path); };
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
        return QString::fromUtf8(
            dice.oneOf(QByteArrayList{"/", "/etc", "/usr/bin", "/proc", "/dev/null"}));
    default:
        return QString::fromUtf8(entry);
    }
}

Request TwinControllers::batch()
{
    QStringList paths;
    QList<QUrl> urls;
    for (int number = dice.upTo(4); number > 0; --number) {
        paths.append(somePath());
        urls.append(QUrl::fromLocalFile(paths.last()));
    }
    if (dice.onceIn(2))
        return [paths](auto &twin) { twin.choose(paths); };
    if (dice.onceIn(6))
        urls.insert(dice.upTo(urls.size() + 1), QUrl(QStringLiteral("http://localhost/file")));
    return [urls](auto &twin) { twin.drop(urls); };
}

Request TwinControllers::randomRequest()
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
Request TwinControllers::randomRunRequest()
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

} // namespace

class TestModelController : public WalleTest
{
    Q_OBJECT

private slots:
    void controllerAgreesWithTheModel();

private:
    void beginAnew();

    std::unique_ptr<SignalLog> reports; ///< the worker's, as long as that may report
};

/// Leaves a controller as it was at the start: no rows, no history, nothing counted. One serves
/// all cases, since its threads never end.
void TestModelController::beginAnew()
{
    home.forgetHistory();
    answerToStop(); // a run that nothing but a stop ends
    answerTo({CommandCheckAll, CommandRemoveChecked, CommandStartCrush, CommandLoadHistory});
}

void TestModelController::controllerAgreesWithTheModel()
{
    constexpr int usualCases = 1000;
    const testsupport::ShortPauses quickly;
    const testsupport::OrdinaryUser user; // whatever goes wrong, it has no more rights than that
    reports = std::make_unique<SignalLog>(worker);
    reports->onRecord = [](const SignalRecord &) {
        QCoreApplication::eventDispatcher()->wakeUp(); // promptly() looks again
    };
    const QString found = testsupport::firstDifference(usualCases, [this](quint32 seed) {
        beginAnew();
        return TwinControllers(seed, *this, *reports).differenceInCase();
    });
    QVERIFY2(found.isEmpty(), qPrintable(found));
}

TEST_SUITE(model, TestModelController)
#include "model.moc"
