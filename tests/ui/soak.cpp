// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A restless user in front of the real window with many tiny files, in an order that is the same
// for the same seed. From time to time everything comes to rest, and then table, job list and disk
// must agree. CONTRIBUTING.md names the environment variables that say how long, and what.

#include "guiwatchdog.h"
#include "model/randomtree.h"
#include "suites.h"
#include "windowtest.h"

#include <QDeadlineTimer>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QtTest>

#include <algorithm>
#include <future>
#include <iterator>

using namespace testsupport;

namespace
{

constexpr int requestsARound = 60;
constexpr int mostRows = 200;

int fromEnvironment(const char *name, int usual)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariableIntValue(name) : usual;
}

const int seed = fromEnvironment("FILESHREDDER_SOAK_SEED", 1);

QtMessageHandler testsHandler = nullptr;

/// The offscreen platform complains, once or more, about every file dialog.
void hearMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!text.contains(QLatin1String("propagateSizeHints")))
        testsHandler(type, context, text);
}

} // namespace

class TestSoak : public WindowTest
{
    Q_OBJECT

private slots:
    void restlessUserMeetsAgreement();

private:
    void beginRound();
    void doSomething();
    void doSomethingInTheHistory();
    void answerEveryDialog();
    void startOrStop();
    void clickSomeRow();
    void dropSome();
    QStringList someFiles();
    QString someFile();
    void comeToRest();
    void checkFiles() const;
    void emptyTheList();
    void checkRows();
    void checkRun();
    QString nextName() { return QString::number(++names); }
    bool isHistoryOpen() const { return find("historyWindow")->isVisible(); }
    QString runState() const { return textOf("crushButton"); }

    Dice chance{static_cast<quint32>(seed)};
    QStringList shownFiles; ///< the files and folders that the window was shown in this round
    QString neverShown;     ///< a file it was not shown
    QStringList chosen;     ///< for the file dialog that opens next
    int names = 0;
    std::future<void> leavingFiles;
};

void TestSoak::restlessUserMeetsAgreement()
{
    testsHandler = qInstallMessageHandler(hearMessage);
    const auto restore = qScopeGuard([] { qInstallMessageHandler(testsHandler); });
    answerEveryDialog();
    const GuiWatchdog watchdog(fromEnvironment("FILESHREDDER_SOAK_STANDSTILL", patience));
    const QDeadlineTimer end(fromEnvironment("FILESHREDDER_SOAK_SECONDS", 8) * 1000LL);
    int rounds = 0;
    for (; !end.hasExpired() && !QTest::currentTestFailed(); ++rounds) {
        beginRound();
        for (int number = 0; number < requestsARound; ++number) {
            doSomething();
            QCoreApplication::processEvents();
            if (chance.onceIn(3))
                promptly([left = chance.upTo(20)]() mutable { return --left < 0; });
        }
        comeToRest();
        checkFiles();
        chance.onceIn(2) ? checkRows() : checkRun();
    }
    qInfo("seed %d: %d requests in %d rounds, longest standstill %d ms", seed,
          rounds * requestsARound, rounds, watchdog.longest());
}

/// Leaves the files of the last round behind and begins one with none.
void TestSoak::beginRound()
{
    // Not in this thread, whose event loop would stand still meanwhile on a busy disk.
    leavingFiles = std::async(std::launch::async, [left = std::move(tree)] {});
    tree = std::make_unique<TemporaryTree>();
    shownFiles.clear();
    neverShown = tree->makeFile("bystander", 5000);
}

/// OK to every question and every report, the wanted names to the file dialog.
void TestSoak::answerEveryDialog()
{
    dialogs->next(Answer::Ok, [this](QDialog &dialog) {
        answerEveryDialog();
        if (qobject_cast<QFileDialog *>(&dialog) == nullptr)
            return;
        auto *name = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        name->setText(QLatin1Char('"') + chosen.join(QStringLiteral("\" \"")) + QLatin1Char('"'));
        QTest::keyClick(name, Qt::Key_Return);
    });
}

void TestSoak::doSomething()
{
    const int choice = chance.upTo(16);
    if (isHistoryOpen()) {
        doSomethingInTheHistory();
    } else if (choice == 0 && chance.onceIn(8)) {
        chosen = someFiles();
        click("addButton");
    } else if (choice <= 3) {
        dropSome();
    } else if (choice <= 6) {
        startOrStop();
    } else if (choice <= 8) {
        click("selectAllCheckBox");
    } else if (choice == 9) {
        click("removeButton");
    } else if (choice == 10) {
        click("historyLink");
    } else {
        clickSomeRow();
    }
}

/// The history window keeps its user from the main window, but not from dropping files there.
void TestSoak::doSomethingInTheHistory()
{
    switch (chance.upTo(5)) {
    case 0:
        return click("clearHistoryButton");
    case 1:
        return settle(); // copies
    case 2:
        return dropSome();
    default:
        return click("historyCloseButton");
    }
}

void TestSoak::startOrStop()
{
    const bool stops = isEnabled("crushButton") && runState() == runningText();
    click("crushButton");
    if (stops)
        PROMPTLY_VERIFY(runState() != runningText());
}

void TestSoak::clickSomeRow()
{
    const int count = table()->rowCount();
    if (count == 0)
        return;
    const int row = chance.upTo(qMin(count, 10));
    if (!cell(row)->visibleRegion().isEmpty()) // the table may have been scrolled
        clickRow(row);
}

void TestSoak::dropSome()
{
    if (table()->rowCount() < mostRows - 15 || chance.onceIn(4))
        letGo(someFiles());
}

QStringList TestSoak::someFiles()
{
    QStringList some;
    for (int number = chance.upTo(12); number >= 0; --number) {
        const bool isKnown = !shownFiles.isEmpty() && chance.onceIn(4);
        some.append(isKnown ? chance.oneOf(shownFiles) : someFile());
        if (!isKnown)
            shownFiles.append(some.last());
    }
    return some;
}

QString TestSoak::someFile()
{
    const QString name = nextName();
    if (chance.onceIn(12)) { // a fifo stays, and so does its folder
        tree->makeFifo(name + QStringLiteral("/fifo"));
    } else if (chance.onceIn(8)) {
        tree->makeFile(name + QStringLiteral("/one"), 3);
        tree->makeFile(name + QStringLiteral("/two"), 5000);
    } else {
        tree->makeFile(name, chance.onceIn(10) ? 40000 : chance.upTo(5));
    }
    return tree->path(name);
}

/// Ends what is going on, as a user would, and waits until nothing moves any more.
void TestSoak::comeToRest()
{
    if (isHistoryOpen())
        click("historyCloseButton");
    settle();
    if (runState() == runningText()) {
        // Only with something ticked a run can be stopped; the last ticks may have gone.
        shownFiles.append(tree->makeFile(nextName(), 1));
        letGo({shownFiles.last()});
        settle();
    }
    if (runState() == runningText())
        click("crushButton");
    PROMPTLY_COMPARE(runState(), idleText());
    settle();
    settle(); // a report that was open kept the first from being performed
    QCOMPARE(runState(), idleText());
}

/// What is there was not touched, and what is gone the user had in the list.
void TestSoak::checkFiles() const
{
    QVERIFY(isAsMade(neverShown, 5000));
    for (const QString &file : shownFiles) {
        const QFileInfo info(file);
        QVERIFY(!info.isFile() || isAsMade(file, static_cast<int>(info.size())));
    }
    QStringList shown = rows();
    for (const QString &row : qAsConst(shown))
        QVERIFY2(shownFiles.contains(row), qPrintable(row));
    QCOMPARE(shown.removeDuplicates(), 0);
}

/// Ticks every row and removes it.
void TestSoak::emptyTheList()
{
    window->selectAllEva(true);
    settle();
    QCOMPARE(tickedRows(), rows());
    window->removeSomeFilesEva();
    settle();
    QCOMPARE(rows(), QStringList());
}

/// Takes everything out and puts back what is left: the list refuses what it still holds.
void TestSoak::checkRows()
{
    emptyTheList();
    QStringList left;
    std::copy_if(shownFiles.cbegin(), shownFiles.cend(), std::back_inserter(left), entryExists);
    const int reports = dialogs->seen().size();
    drop(left.mid(0, mostRows));
    QCOMPARE(dialogs->seen().size(), reports);
    window->selectAllEva(false);
    settle();
    QCOMPARE(tickedRows(), QStringList());
    emptyTheList();
}

/// Shreds everything in the list to the end.
void TestSoak::checkRun()
{
    // A row that failed in a run that was stopped is drawn with a tick and has none.
    window->selectAllEva(true);
    settle();
    const QStringList shown = rows();
    QStringList failing;
    std::copy_if(shown.cbegin(), shown.cend(), std::back_inserter(failing),
                 [](const QString &row) { return entryExists(row + QStringLiteral("/fifo")); });
    if (!shown.isEmpty()) {
        const int reports = dialogs->seen().size();
        click("crushButton");
        PROMPTLY_COMPARE(dialogs->seen().size(), reports + 2);
        settle();
    }
    QCOMPARE(rows(), failing);
    QCOMPARE(tickedRows(), QStringList());
    for (const QString &row : shown)
        QCOMPARE(entryExists(row), failing.contains(row));
    emptyTheList();
}

TEST_SUITE(soak, TestSoak)
#include "soak.moc"
