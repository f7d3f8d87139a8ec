// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Every situation against every kind of list: which controls are told, and in
// which order.

#include "sandboxhome.h"
#include "suites.h"
#include "temporarytree.h"
#include "walleharness.h"

#include <QtTest>

using testsupport::SignalRecord;
using testsupport::SignalRecords;
using testsupport::WalleHarness;

namespace
{

enum ListKind { Empty, AllChecked, NoneChecked, Mixed };

SignalRecord box(bool enabled)
{
    return {"setSelectAllCheckBoxEnabled", {enabled}};
}

SignalRecord tick(bool state)
{
    return {"setSelectAllCheckBoxState", {state}};
}

SignalRecord crush(bool enabled)
{
    return {"setCrushButtonEnabled", {enabled}};
}

SignalRecord removal(bool enabled)
{
    return {"setRemoveButtonEnabled", {enabled}};
}

} // namespace

Q_DECLARE_METATYPE(ListKind)
Q_DECLARE_METATYPE(SignalRecords)

class TestWalleControls : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY2(home.isInForce(), home.advice()); }
    void situationTellsTheControls_data();
    void situationTellsTheControls();
    void unknownSituationTellsNothing_data();
    void unknownSituationTellsNothing();

private:
    static void rows(int situation, const SignalRecords &empty, const SignalRecords &allChecked,
                     const SignalRecords &noneChecked, const SignalRecords &mixed);
    static void makeList(WalleHarness &harness, const testsupport::TemporaryTree &tree,
                         ListKind kind);

    testsupport::SandboxHome home;
};

void TestWalleControls::rows(int situation, const SignalRecords &empty,
                             const SignalRecords &allChecked, const SignalRecords &noneChecked,
                             const SignalRecords &mixed)
{
    QTest::addRow("%d, no rows", situation) << situation << Empty << empty;
    QTest::addRow("%d, all checked", situation) << situation << AllChecked << allChecked;
    QTest::addRow("%d, none checked", situation) << situation << NoneChecked << noneChecked;
    QTest::addRow("%d, some checked", situation) << situation << Mixed << mixed;
}

void TestWalleControls::makeList(WalleHarness &harness, const testsupport::TemporaryTree &tree,
                                 ListKind kind)
{
    if (kind == Empty)
        return;
    harness.choose({tree.makeFile(QStringLiteral("a"), 1), tree.makeFile(QStringLiteral("b"), 1)});
    if (kind == NoneChecked)
        harness.post(CommandUncheckAll);
    if (!harness.performed())
        return;
    if (kind == Mixed)
        harness.click(0);
    harness.performed();
    harness.takeLog();
}

void TestWalleControls::situationTellsTheControls_data()
{
    QTest::addColumn<int>("situation");
    QTest::addColumn<ListKind>("kind");
    QTest::addColumn<SignalRecords>("expected");

    const SignalRecords nothing;
    rows(ControlSituation::BatchAdmitted, nothing,
         {box(true), crush(true), removal(true), tick(true)}, {box(true)},
         {box(true), crush(true), removal(true)});
    rows(ControlSituation::RowsRemoved, {crush(false), removal(false), tick(false), box(false)},
         nothing, {crush(false), removal(false)}, nothing);

    const SignalRecords allOn{tick(true), crush(true), removal(true)};
    rows(ControlSituation::AllChecked, allOn, allOn, allOn, allOn);
    const SignalRecords allOff{tick(false), crush(false), removal(false)};
    rows(ControlSituation::NoneChecked, allOff, allOff, allOff, allOff);
    const SignalRecords buttonsOn{crush(true), removal(true)};
    rows(ControlSituation::RowChecked, buttonsOn, buttonsOn, buttonsOn, buttonsOn);
    const SignalRecords unticked{tick(false)};
    rows(ControlSituation::RowUnchecked, unticked, unticked, unticked, unticked);
    const SignalRecords noCrush{crush(false)};
    rows(ControlSituation::StopAsked, noCrush, noCrush, noCrush, noCrush);

    rows(ControlSituation::Stopped, {box(false), crush(false), removal(false)},
         {box(true), crush(true), removal(true), tick(true)},
         {box(true), crush(false), removal(false), tick(false)},
         {box(true), crush(true), removal(true), tick(false)});
}

void TestWalleControls::situationTellsTheControls()
{
    QFETCH(int, situation);
    QFETCH(ListKind, kind);
    QFETCH(SignalRecords, expected);
    const testsupport::TemporaryTree tree;
    WalleHarness harness;
    makeList(harness, tree, kind);
    harness.walle().refreshControls(situation);
    QCOMPARE(harness.log(), expected);
}

void TestWalleControls::unknownSituationTellsNothing_data()
{
    QTest::addColumn<int>("situation");
    QTest::addColumn<ListKind>("kind");
    QTest::addColumn<SignalRecords>("expected");
    for (const int situation : {-1, 0, 9, 1000})
        rows(situation, {}, {}, {}, {});
}

void TestWalleControls::unknownSituationTellsNothing()
{
    situationTellsTheControls();
}

TEST_SUITE(controls, TestWalleControls)
#include "controls.moc"
