// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "walletest.h"

#include "promptly.h"

#include <QFile>
#include <QFileInfo>
#include <QtTest>

namespace testsupport
{

void WalleTest::initTestCase()
{
    QVERIFY2(home.isInForce(), home.advice());
}

void WalleTest::init()
{
    home.forgetHistory();
    tree = std::make_unique<TemporaryTree>();
    harness = std::make_unique<WalleHarness>();
}

void WalleTest::cleanup()
{
    const QStringList faults = harness->faults();
    held.reset();
    harness.reset();
    tree.reset();
    QCOMPARE(faults, QStringList());
}

QString WalleTest::make(const char *name, qint64 size) const
{
    return tree->makeFile(QString::fromUtf8(name), size);
}

QStringList WalleTest::makeFiles(const char *prefix, int count) const
{
    QStringList paths;
    for (int number = 0; number < count; ++number)
        paths.append(tree->makeFile(QLatin1String(prefix) + QString::number(number), 3));
    return paths;
}

QString WalleTest::makeStubborn(const char *name) const
{
    tree->makeFolder(QLatin1String(name));
    tree->makeFifo(QLatin1String(name) + QStringLiteral("/fifo"));
    return tree->path(QLatin1String(name));
}

void WalleTest::becomeFifo(const QString &path) const
{
    QVERIFY(QFile::remove(path));
    tree->makeFifo(QFileInfo(path).fileName());
}

void WalleTest::becomeFile(const QString &path) const
{
    QVERIFY(QFile::remove(path));
    tree->makeFile(QFileInfo(path).fileName(), 10);
}

void WalleTest::addRows(int count)
{
    QVERIFY(harness->admitted(makeFiles("row", count)));
    QCOMPARE(harness->rows().size(), count);
}

SignalRecords WalleTest::answerTo(const QList<int> &codes)
{
    return harness->answerTo([&] {
        for (const int code : codes)
            harness->post(code);
    });
}

SignalRecords WalleTest::answerToClick(int row)
{
    return harness->answerTo([&] { harness->click(row); });
}

SignalRecords WalleTest::answerToRun()
{
    return harness->answerTo([this] {
        harness->post(CommandStartCrush);
        if (!harness->finished())
            qFatal("the run does not end");
    });
}

SignalRecords WalleTest::runLog() const
{
    return harness->log({"setCrushStarted", "finishAll", "showResultDialog"});
}

void WalleTest::holdIdleWorker()
{
    held = std::make_unique<HeldWorker>(harness->walle());
    harness->post(CommandStopCrush);
    PROMPTLY_VERIFY(held->stands());
    QVERIFY(harness->performed());
    harness->takeLog();
}

void WalleTest::startAndHoldAt(int verdict)
{
    held = std::make_unique<HeldWorker>(harness->walle(), verdict);
    harness->post(CommandStartCrush);
    PROMPTLY_VERIFY(held->stands());
    QVERIFY(harness->performed());
    harness->takeLog();
}

void WalleTest::onNext(const char *name, const std::function<void()> &step)
{
    harness->onSignal = [this, name, step](const SignalRecord &signal) {
        if (signal.name != name)
            return;
        const auto once = step; // the next line destroys this function
        harness->onSignal = nullptr;
        once();
    };
}

} // namespace testsupport
