// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A restless user in front of the real window with many tiny files: drops, the file
// dialog, clicks, select all, removals, starts, stops and the history, in an order that
// is the same for the same seed. From time to time everything comes to rest, and then
// table, job list and disk must agree. All the while the window must move.
// FILESHREDDER_SOAK_SECONDS says how long it lasts, FILESHREDDER_SOAK_SEED what is done.

#include "dialogdriver.h"
#include "guiwatchdog.h"
#include "model/randomtree.h"
#include "promptly.h"
#include "shownwindow.h"
#include "temporarytree.h"
#include "widgets/zztablecell.h"
#include "windowtestmain.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLineEdit>
#include <QTableWidget>
#include <QtTest>

#include <atomic>
#include <memory>

#include <unistd.h>

using testsupport::Answer;
using testsupport::DialogDriver;
using testsupport::Dice;
using testsupport::entryExists;
using testsupport::promptly;
using testsupport::ShownWindow;
using testsupport::TemporaryTree;

namespace
{

constexpr int usualSeconds = 8;
constexpr int requestsARound = 60;
constexpr int mostRows = 200;
/// A sanitizer slows everything down by so much.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr int longestStandstill = 10000;
#else
constexpr int longestStandstill = 1000;
#endif

QString idleText()
{
    return QStringLiteral("粉碎文件");
}

QString runningText()
{
    return QStringLiteral("停止粉碎");
}

std::atomic<int> workerPasses{0};
QtMessageHandler testsHandler = nullptr;

/// The offscreen platform complains, once or more, about every file dialog.
void hearMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!text.contains(QLatin1String("propagateSizeHints")))
        testsHandler(type, context, text);
}

int fromEnvironment(const char *name, int usual)
{
    bool isSet = false;
    const int value = qEnvironmentVariableIntValue(name, &isSet);
    return isSet ? value : usual;
}

} // namespace

/// Takes the place of Qt's in this program: controller and worker, which sleep nowhere else, go
/// ten times as fast and meet the user that much more often.
void QThread::msleep(unsigned long milliseconds)
{
    constexpr unsigned long workersPause = 40;
    constexpr unsigned long microseconds = 100;
    if (milliseconds == workersPause)
        ++workerPasses;
    ::usleep(static_cast<useconds_t>(milliseconds * microseconds));
}

class TestSoak : public QObject
{
    Q_OBJECT

private slots:
    void restlessUserMeetsAgreement();

private:
    void doSomething();
    void doSomethingInTheHistory();
    void startOrStop();
    void clickSomeRow();
    void dropSome();
    void chooseSome();
    QStringList someFiles();
    void answerEveryDialog();

    void comeToRest();
    void letTheWorkerAnswer();
    void checkFiles();
    void checkRows();
    void checkRun();

    bool isHistoryOpen() const { return window->find("historyWindow")->isVisible(); }
    QString runState() const { return window->textOf("crushButton"); }

    Dice dice{1};
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<ShownWindow> window;
    std::unique_ptr<DialogDriver> dialogs;
    QStringList files;     ///< made so far in this round
    QStringList chosen;    ///< for the file dialog that opens next
    QStringList bystander; ///< never shown to the window
    int made = 0;
    int requests = 0;
    int copiesToCome = 0; ///< asked for by the user and not on the clipboard yet
};

void TestSoak::restlessUserMeetsAgreement()
{
    const int seed = fromEnvironment("FILESHREDDER_SOAK_SEED", 1);
    const int seconds = fromEnvironment("FILESHREDDER_SOAK_SECONDS", usualSeconds);
    dice = Dice(static_cast<quint32>(seed));
    testsHandler = qInstallMessageHandler(hearMessage);
    window = std::make_unique<ShownWindow>();
    dialogs = std::make_unique<DialogDriver>();
    answerEveryDialog();
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this,
            [this] { copiesToCome = qMax(0, copiesToCome - 1); });
    const testsupport::GuiWatchdog watchdog(longestStandstill);
    int rounds = 0;
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < seconds * 1000LL) {
        tree = std::make_unique<TemporaryTree>();
        files.clear();
        bystander = QStringList{tree->makeFile(QStringLiteral("bystander"), 5000)};
        for (int number = 0; number < requestsARound; ++number) {
            doSomething();
            QCoreApplication::processEvents();
            if (dice.onceIn(3))
                promptly([left = dice.upTo(20)]() mutable { return --left < 0; });
        }
        comeToRest();
        checkFiles();
        dice.onceIn(2) ? checkRows() : checkRun();
        if (QTest::currentTestFailed()) {
            qInfo("seed %d, round %d", seed, rounds);
            return;
        }
        ++rounds;
    }
    qInfo("seed %d: %d requests in %d rounds, longest standstill %d ms", seed, requests, rounds,
          watchdog.longest());
    dialogs.reset();
    window.reset();
    qInstallMessageHandler(testsHandler);
}

/// OK to every question and every report, the wanted names to the file dialog.
void TestSoak::answerEveryDialog()
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

void TestSoak::doSomething()
{
    ++requests;
    if (isHistoryOpen())
        return doSomethingInTheHistory();
    switch (dice.upTo(16)) {
    case 0:
    case 1:
    case 2:
        return dropSome();
    case 3:
        return dice.onceIn(8) ? chooseSome() : dropSome();
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
void TestSoak::doSomethingInTheHistory()
{
    switch (dice.upTo(5)) {
    case 0:
        return window->click("clearHistoryButton");
    case 1:
        if (window->isEnabled("copyButton"))
            ++copiesToCome;
        return window->click("copyButton");
    case 2:
        return dropSome();
    default:
        return window->click("historyCloseButton");
    }
}

/// A start waits until the last stop was answered: a run that is stopped may end with its report
/// before that, and the answer would then be taken for one to the next run.
void TestSoak::startOrStop()
{
    if (runState() == runningText()) {
        if (!window->isEnabled("crushButton"))
            return;
        window->click("crushButton");
        PROMPTLY_VERIFY(runState() != runningText());
    } else if (runState() == idleText()) {
        letTheWorkerAnswer();
        window->click("crushButton");
    }
}

/// Waits until every command is performed and the worker has been through its loop after that.
void TestSoak::letTheWorkerAnswer()
{
    PROMPTLY_COMPARE(copiesToCome, 0); // settle() waits for a copy, and must wait for its own
    QVERIFY(window->settle());
    const int before = workerPasses;
    PROMPTLY_VERIFY(workerPasses > before + 1);
}

void TestSoak::clickSomeRow()
{
    const int rows = window->table()->rowCount();
    if (rows == 0)
        return;
    const int row = dice.upTo(qMin(rows, 10));
    if (!window->cell(row)->visibleRegion().isEmpty()) // the table may have been scrolled
        window->clickRow(row);
}

QStringList TestSoak::someFiles()
{
    QStringList some;
    for (int number = dice.upTo(12); number >= 0; --number) {
        if (!files.isEmpty() && dice.onceIn(4)) {
            some.append(dice.oneOf(files));
            continue;
        }
        const QString name = QString::number(++made);
        if (dice.onceIn(12)) { // a fifo stays, and so does its folder
            tree->makeFolder(name);
            some.append(tree->path(name));
            tree->makeFifo(name + QStringLiteral("/fifo"));
        } else if (dice.onceIn(8)) {
            tree->makeFile(name + QStringLiteral("/one"), 3);
            tree->makeFile(name + QStringLiteral("/two"), 5000);
            some.append(tree->path(name));
        } else {
            some.append(tree->makeFile(name, dice.onceIn(10) ? 40000 : dice.upTo(5)));
        }
        files.append(some.last());
    }
    return some;
}

void TestSoak::dropSome()
{
    if (window->table()->rowCount() < mostRows - 15 || dice.onceIn(4))
        window->drop(someFiles());
}

void TestSoak::chooseSome()
{
    chosen = someFiles();
    window->click("addButton");
}

/// Ends what is going on, as a user would, and waits until nothing moves any more.
void TestSoak::comeToRest()
{
    if (isHistoryOpen())
        window->click("historyCloseButton");
    letTheWorkerAnswer();
    if (runState() == runningText() && !window->isEnabled("crushButton")) {
        // The last ticks went while the worker had a file in hand: nothing follows that file, and
        // only with something ticked the run can be stopped.
        files.append(tree->makeFile(QString::number(++made), 1));
        window->drop({files.last()});
        QVERIFY(window->settle());
    }
    if (runState() == runningText())
        window->click("crushButton");
    PROMPTLY_COMPARE(runState(), idleText());
    letTheWorkerAnswer();
    QVERIFY(window->settle()); // a report that was open kept the first from being performed
    QCOMPARE(runState(), idleText());
}

/// What is there was not touched, and what is gone the user had in the list.
void TestSoak::checkFiles()
{
    QCOMPARE(TemporaryTree::contentsOf(bystander.first()), QByteArray(5000, 'x'));
    for (const QString &file : qAsConst(files)) {
        if (QFileInfo(file).isFile()) {
            const QByteArray bytes = TemporaryTree::contentsOf(file);
            QCOMPARE(bytes, QByteArray(bytes.size(), 'x'));
        }
    }
    const QStringList rows = window->rows();
    for (const QString &row : rows)
        QVERIFY2(files.contains(row), qPrintable(row));
    QCOMPARE(rows.toSet().size(), rows.size());
}

/// Takes everything out and puts back what is left: the list refuses what it still holds.
void TestSoak::checkRows()
{
    // Ticks first: a row that failed in a run that was stopped is drawn with one and has none.
    (*window)->selectAllEva(true);
    QVERIFY(window->settle());
    QCOMPARE(window->tickedRows(), window->rows());
    (*window)->selectAllEva(false);
    QVERIFY(window->settle());
    QCOMPARE(window->tickedRows(), QStringList());
    (*window)->selectAllEva(true);
    (*window)->removeSomeFilesEva();
    QVERIFY(window->settle());
    QCOMPARE(window->rows(), QStringList());

    QStringList left;
    for (const QString &file : qAsConst(files)) {
        if (entryExists(file) && left.size() < mostRows)
            left.append(file);
    }
    const int reports = dialogs->seen().size();
    window->drop(left);
    QVERIFY(window->settle());
    QCOMPARE(window->rows(), left);
    QCOMPARE(dialogs->seen().size(), reports);
    (*window)->selectAllEva(true);
    (*window)->removeSomeFilesEva();
    QVERIFY(window->settle());
    QCOMPARE(window->rows(), QStringList());
}

/// Shreds everything in the list to the end.
void TestSoak::checkRun()
{
    (*window)->selectAllEva(true);
    QVERIFY(window->settle());
    const QStringList rows = window->rows();
    QCOMPARE(window->tickedRows(), rows);
    QStringList failing;
    for (const QString &row : rows) {
        if (entryExists(row + QStringLiteral("/fifo")))
            failing.append(row);
    }
    if (!rows.isEmpty()) {
        const int reports = dialogs->seen().size();
        window->click("crushButton");
        PROMPTLY_COMPARE(dialogs->seen().size(), reports + 2);
        QVERIFY(window->settle());
    }
    QCOMPARE(window->rows(), failing);
    QCOMPARE(window->tickedRows(), QStringList());
    for (const QString &row : rows)
        QCOMPARE(entryExists(row), failing.contains(row));
    (*window)->selectAllEva(true);
    (*window)->removeSomeFilesEva();
    QVERIFY(window->settle());
    QCOMPARE(window->rows(), QStringList());
}

WINDOW_TEST_MAIN(TestSoak)
#include "tst_soak.moc"
