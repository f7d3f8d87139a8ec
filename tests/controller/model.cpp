// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The controller and a plain model of it with the same random requests: batches,
// clicks, removals, runs, stops, the history, also while the worker is at work, and
// with files that change behind the list. Signals in their order with their arguments,
// the rows and what is left on the disk must be the same. A difference names its seed.

#include "model/seeds.h"
#include "model/twincontrollers.h"
#include "ordinaryuser.h"
#include "promptly.h"
#include "suites.h"
#include "systemcalls.h"
#include "walleharness.h"

using testsupport::TwinControllers;
using testsupport::WalleHarness;
using testsupport::WalleTest;

class TestModelController : public WalleTest
{
    Q_OBJECT

private slots:
    void controllerAgreesWithTheModel();

private:
    QString differenceIn(quint32 seed);
    void beginAnew();
};

/// Leaves a controller as it was at the start: no rows, no history, nothing counted. One serves
/// all cases, since its threads never end.
void TestModelController::beginAnew()
{
    home.forgetHistory();
    harness->post(CommandStopCrush); // a run that nothing but a stop ends
    harness->performed();
    testsupport::promptly([this] { return harness->runState() == RunState::Idle; });
    answerTo({CommandCheckAll, CommandRemoveChecked, CommandStartCrush, CommandLoadHistory});
    harness->finished();
    harness->takeLog();
}

QString TestModelController::differenceIn(quint32 seed)
{
    beginAnew();
    const QString found = TwinControllers(seed, *harness).differenceInCase();
    if (!found.isEmpty()) // nobody knows what this one still does
        harness = std::make_unique<WalleHarness>();
    return found;
}

void TestModelController::controllerAgreesWithTheModel()
{
    constexpr int usualCases = 1000;
    const testsupport::ShortPauses quickly;
    const testsupport::OrdinaryUser user; // whatever goes wrong, it has no more rights than that
    const QString found = testsupport::firstDifference(
        usualCases, [this](quint32 seed) { return differenceIn(seed); });
    QVERIFY2(found.isEmpty(), qPrintable(found));
}

TEST_SUITE(model, TestModelController)
#include "model.moc"
