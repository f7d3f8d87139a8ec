// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the window's class declares, and in which order: whoever talks to it by
// meta-object counts on both.

#include "dialogdriver.h"
#include "eventually.h"
#include "promptly.h"
#include "shownwindow.h"
#include "suites.h"
#include "temporarytree.h"
#include "windowtesthome.h"

#include <QMetaMethod>
#include <QTableWidget>
#include <QtTest>

using testsupport::Answer;
using testsupport::DialogDriver;
using testsupport::ShownWindow;
using testsupport::TemporaryTree;

namespace
{

/// The declaration as it can be read back: name, types and the parameters' names.
QByteArray declarationOf(const QMetaMethod &method)
{
    QByteArrayList parameters;
    for (int index = 0; index < method.parameterCount(); ++index) {
        const QByteArray parameter = method.parameterNames().at(index);
        const QByteArray separator = parameter.isEmpty() ? QByteArray() : QByteArray(" ");
        parameters.append(method.parameterTypes().at(index) + separator + parameter);
    }
    return method.name() + '(' + parameters.join(", ") + ')';
}

QByteArrayList declarationsOf(QMetaMethod::MethodType type)
{
    const QMetaObject &meta = MainWindow::staticMetaObject;
    QByteArrayList declarations;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        if (meta.method(index).methodType() == type)
            declarations.append(declarationOf(meta.method(index)));
    }
    return declarations;
}

} // namespace

class TestMainWindowSlots : public QObject
{
    Q_OBJECT

private slots:
    void slotsAreDeclaredInOrder();
    void quitIsTheOnlySignal();
    void windowIsAFrame();
    void allRowsAreThereBeforeTheRefusalReport();
    void controllerWaitsUntilTheRefusalReportIsClosed();
};

void TestMainWindowSlots::slotsAreDeclaredInOrder()
{
    const QByteArrayList expected = {
        "windowQuit()",
        "windowMaxi()",
        "windowMini()",
        "slotShowHistoryEva()",
        "copyToClipboardEva()",
        "addEva()",
        "removeSomeFilesEva()",
        "setSelectAllCheckBoxEnabledEva(bool)",
        "setSelectAllCheckBoxStateEva(bool)",
        "setRemoveButtonEnabledEva(bool)",
        "setCrushButtonEnabledEva(bool)",
        "addRowToMainTableEva(QString fullName)",
        "removeRowFromMainTableEva(int rowIndex)",
        "selectAllEva(bool state)",
        "setTableItemCheckBoxStateEva(int, bool)",
        "crushFilesEva()",
        "removeAllFromHistoryEva()",
        "historyTableAddItemEva(QString, QString fileName, QString)",
        "removeRowFromHistoryTableEva(int rowIndex)",
        "setTableRowHeightEva(int, int percent)",
        "finishOneFileEva(QString)",
        "finishAllEva(int)",
        "setCrushStartedEva(int b)",
        "slotMoveTable(int x, int y)",
        "slotClipboardSetTextEva(QString text)",
        "setHistoryButtonEnabledEva(bool, int n)",
        "tableCellClickedEva(int r, int c)",
        "alertDialogEva(uint)",
        "showResultDialogEva(uint, uint, uint)",
    };
    const QByteArrayList declared = declarationsOf(QMetaMethod::Slot);
    for (int index = 0; index < qMin(declared.size(), expected.size()); ++index)
        QCOMPARE(declared.at(index), expected.at(index));
    QCOMPARE(declared.size(), expected.size());
}

void TestMainWindowSlots::quitIsTheOnlySignal()
{
    QCOMPARE(declarationsOf(QMetaMethod::Signal), QByteArrayList{"quit()"});
}

void TestMainWindowSlots::windowIsAFrame()
{
    QCOMPARE(MainWindow::staticMetaObject.superClass(), &QFrame::staticMetaObject);
}

void TestMainWindowSlots::allRowsAreThereBeforeTheRefusalReport()
{
    const TemporaryTree tree;
    QStringList paths;
    for (int index = 0; index < 20; ++index)
        paths.append(tree.makeFile(QString::number(index), 1));
    ShownWindow window;
    DialogDriver dialogs;
    QStringList rowsDuringReport;
    bool crushEnabledDuringReport = false;
    dialogs.next([&](QDialog &report) {
        rowsDuringReport = window.rows();
        crushEnabledDuringReport = window.isEnabled("crushButton");
        DialogDriver::press(report, Answer::Ok);
    });
    window.drop(paths + QStringList(tree.path(QStringLiteral("missing"))));
    PROMPTLY_COMPARE(dialogs.seen().size(), 1);
    PROMPTLY_VERIFY(dialogs.isDone());
    QCOMPARE(rowsDuringReport, paths);
    QVERIFY(crushEnabledDuringReport);
}

void TestMainWindowSlots::controllerWaitsUntilTheRefusalReportIsClosed()
{
    const TemporaryTree tree;
    ShownWindow window;
    DialogDriver dialogs;
    bool removedDuringReport = false;
    dialogs.next([&](QDialog &report) {
        window->removeSomeFilesEva();
        // Long enough for many turns of a controller that would not wait.
        constexpr int manyTurns = 300;
        removedDuringReport =
            testsupport::eventually([&] { return window.table()->rowCount() == 0; }, manyTurns);
        DialogDriver::press(report, Answer::Ok);
    });
    window.drop({tree.makeFile(QStringLiteral("a"), 1), tree.path(QStringLiteral("missing"))});
    PROMPTLY_COMPARE(dialogs.seen().size(), 1);
    PROMPTLY_COMPARE(window.table()->rowCount(), 0);
    QVERIFY(!removedDuringReport);
}

TEST_SUITE(windowslots, TestMainWindowSlots)
#include "windowslots.moc"
