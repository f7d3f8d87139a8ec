// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the worker says of a row that is not as it was admitted, or of another
// row than the one in hand, or does not say at all.

#include "sandboxhome.h"
#include "suites.h"
#include "temporarytree.h"
#include "walleharness.h"

#include <QtTest>

#include <memory>

#include <sys/stat.h>

using testsupport::entryExists;
using testsupport::OrdinaryUser;
using testsupport::SignalRecords;
using testsupport::TemporaryTree;
using testsupport::WalleHarness;

class TestWalleVerdicts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void init();
    void cleanup();
    void rowsAddedDuringARunBelongToIt();
    void rowThatVanishedCountsAsShredded();
    void rowThatLostItsPermissionFails();
    void rowThatBecameAFifoHoldsTheRunOpen();
    void fileOf255BytesHoldsTheRunOpen();
    void successOfAnotherPathRemovesNothingButGoesOn();
    void failureOfAnotherPathUnchecksTheLowestRow();
    void reportWithNothingCheckedChangesNothing();

private:
    QString make(const QString &name) const { return tree->makeFile(name, 10); }
    /// What was admitted as a file becomes a fifo, which the controller does not hand over.
    static void hold(const QString &path);
    void release(const QString &path) const;

    testsupport::SandboxHome home;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<WalleHarness> harness;
};

void TestWalleVerdicts::init()
{
    tree = std::make_unique<TemporaryTree>();
    harness = std::make_unique<WalleHarness>();
}

void TestWalleVerdicts::cleanup()
{
    QCOMPARE(harness->faults(), QStringList());
    harness.reset();
    tree.reset();
}

void TestWalleVerdicts::hold(const QString &path)
{
    if (!QFile::remove(path) || ::mkfifo(path.toUtf8().constData(), S_IRUSR | S_IWUSR) != 0)
        qFatal("cannot replace %s", qPrintable(path));
}

void TestWalleVerdicts::release(const QString &path) const
{
    if (!QFile::remove(path))
        qFatal("cannot replace %s", qPrintable(path));
    make(QFileInfo(path).fileName());
}

void TestWalleVerdicts::rowsAddedDuringARunBelongToIt()
{
    const QString held = make(QStringLiteral("held"));
    const QString added = make(QStringLiteral("added"));
    QVERIFY(harness->admitted({held}));
    hold(held);
    harness->post(CommandStartCrush);
    QVERIFY(harness->admitted({added}));
    release(held);
    harness->walle().finishOneWalle(QString());
    QVERIFY(harness->finished());
    QVERIFY(!entryExists(held) && !entryExists(added));
    QCOMPARE(harness->log({"showResultDialog"}), (SignalRecords{{"showResultDialog", {1, 2, 0}}}));
}

void TestWalleVerdicts::rowThatVanishedCountsAsShredded()
{
    const QString file = make(QStringLiteral("file"));
    QVERIFY(harness->admitted({file}));
    QVERIFY(QFile::remove(file));
    home.forgetHistory();
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    QVERIFY(harness->rows().isEmpty());
    QCOMPARE(harness->log({"showResultDialog"}), (SignalRecords{{"showResultDialog", {1, 1, 0}}}));
    QCOMPARE(home.history(), QByteArray());
}

void TestWalleVerdicts::rowThatLostItsPermissionFails()
{
    const QString file = make(QStringLiteral("file"));
    OrdinaryUser::give(tree->path());
    OrdinaryUser::give(file);
    QVERIFY(harness->admitted({file}));
    QVERIFY(QFile::setPermissions(file, {}));
    const OrdinaryUser user;
    harness->post(CommandStartCrush);
    QVERIFY(harness->finished());
    QVERIFY(entryExists(file));
    QCOMPARE(harness->paths(), QStringList{file});
    QCOMPARE(harness->log({"showResultDialog"}), (SignalRecords{{"showResultDialog", {1, 0, 1}}}));
}

void TestWalleVerdicts::rowThatBecameAFifoHoldsTheRunOpen()
{
    const QString file = make(QStringLiteral("file"));
    QVERIFY(harness->admitted({file, make(QStringLiteral("behind"))}));
    hold(file);
    harness->post(CommandStartCrush);
    QVERIFY(harness->performed());
    harness->post(CommandStopCrush);
    QVERIFY(WalleHarness::waitFor([this] { return harness->count("setCrushStarted") == 3; }));
    QCOMPARE(harness->rows().size(), 2);
    QCOMPARE(harness->checkedPaths().size(), 2);
    QCOMPARE(harness->count("showResultDialog"), 0);
}

void TestWalleVerdicts::fileOf255BytesHoldsTheRunOpen()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 255);
    const QString behind = make(QStringLiteral("behind"));
    QVERIFY(harness->admitted({file, behind}));
    home.forgetHistory();
    harness->post(CommandStartCrush);
    QVERIFY(WalleHarness::waitFor([this] { return !home.history().isEmpty(); }));
    harness->post(CommandStopCrush);
    QVERIFY(WalleHarness::waitFor([this] { return harness->count("setCrushStarted") == 3; }));
    QVERIFY(!entryExists(file));
    QVERIFY(entryExists(behind));
    QCOMPARE(harness->paths(), (QStringList{file, behind}));
    QCOMPARE(harness->count("showResultDialog"), 0);
}

void TestWalleVerdicts::successOfAnotherPathRemovesNothingButGoesOn()
{
    const QString held = make(QStringLiteral("held"));
    const QString second = make(QStringLiteral("second"));
    QVERIFY(harness->admitted({held, second}));
    hold(held);
    harness->post(CommandStartCrush);
    QVERIFY(harness->performed());
    harness->takeLog();
    release(held);
    harness->walle().finishOneWalle(second);
    QCOMPARE(harness->log(), SignalRecords());
    QVERIFY(harness->finished());
    QVERIFY(!entryExists(held) && !entryExists(second));
    QCOMPARE(harness->log({"removeRowFromMainTable", "finishAll"}),
             (SignalRecords{
                 {"removeRowFromMainTable", {0}},
                 {"removeRowFromMainTable", {0}},
                 {"finishAll", {2}},
             }));
}

void TestWalleVerdicts::failureOfAnotherPathUnchecksTheLowestRow()
{
    const QString held = make(QStringLiteral("held"));
    const QString second = make(QStringLiteral("second"));
    QVERIFY(harness->admitted({held, second}));
    hold(held);
    harness->post(CommandStartCrush);
    QVERIFY(harness->performed());
    harness->takeLog();
    harness->walle().failedOneWalle(second);
    QCOMPARE(harness->log(), (SignalRecords{{"setTableRowHeight", {1, 0}}}));
    QVERIFY(harness->finished());
    QVERIFY(entryExists(held));
    QVERIFY(!entryExists(second));
    QCOMPARE(harness->log({"showResultDialog"}), (SignalRecords{{"showResultDialog", {1, 1, 1}}}));
}

void TestWalleVerdicts::reportWithNothingCheckedChangesNothing()
{
    const QString file = make(QStringLiteral("file"));
    QVERIFY(harness->admitted({file}));
    harness->click(0);
    QVERIFY(harness->performed());
    harness->takeLog();
    harness->walle().finishOneWalle(file);
    harness->walle().failedOneWalle(file);
    QVERIFY(harness->performed());
    QCOMPARE(harness->log(), SignalRecords());
    QVERIFY(entryExists(file));
}

TEST_SUITE(verdicts, TestWalleVerdicts)
#include "verdicts.moc"
