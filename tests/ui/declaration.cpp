// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the window's class declares, and in which order: whoever talks to it by
// meta-object counts on both.

#include "suites.h"
#include "ui/mainwindow.h"

#include <QMetaMethod>
#include <QtTest>

namespace
{

/// As they can be read back: name, types and the parameters' names.
QByteArrayList declarationsOf(QMetaMethod::MethodType type)
{
    const QMetaObject &meta = MainWindow::staticMetaObject;
    QByteArrayList declarations;
    for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
        const QMetaMethod method = meta.method(index);
        if (method.methodType() != type)
            continue;
        QByteArrayList parameters = method.parameterTypes();
        for (int number = 0; number < method.parameterCount(); ++number)
            parameters[number] =
                (parameters[number] + ' ' + method.parameterNames().at(number)).trimmed();
        declarations.append(method.name() + '(' + parameters.join(", ") + ')');
    }
    return declarations;
}

} // namespace

class TestDeclaration : public QObject
{
    Q_OBJECT

private slots:
    void windowIsAFrameWithItsSlotsAndOneSignalInOrder();
};

void TestDeclaration::windowIsAFrameWithItsSlotsAndOneSignalInOrder()
{
    const auto expected =
        QByteArray(
            "windowQuit()|windowMaxi()|windowMini()|slotShowHistoryEva()|copyToClipboardEva()|"
            "addEva()|removeSomeFilesEva()|setSelectAllCheckBoxEnabledEva(bool)|"
            "setSelectAllCheckBoxStateEva(bool)|setRemoveButtonEnabledEva(bool)|"
            "setCrushButtonEnabledEva(bool)|addRowToMainTableEva(QString fullName)|"
            "removeRowFromMainTableEva(int rowIndex)|selectAllEva(bool state)|"
            "setTableItemCheckBoxStateEva(int, bool)|crushFilesEva()|removeAllFromHistoryEva()|"
            "historyTableAddItemEva(QString, QString fileName, QString)|"
            "removeRowFromHistoryTableEva(int rowIndex)|setTableRowHeightEva(int, int percent)|"
            "finishOneFileEva(QString)|finishAllEva(int)|setCrushStartedEva(int b)|"
            "slotMoveTable(int x, int y)|slotClipboardSetTextEva(QString text)|"
            "setHistoryButtonEnabledEva(bool, int n)|tableCellClickedEva(int r, int c)|"
            "alertDialogEva(uint)|showResultDialogEva(uint, uint, uint)")
            .split('|');
    QCOMPARE(declarationsOf(QMetaMethod::Slot), expected);
    QCOMPARE(declarationsOf(QMetaMethod::Signal), QByteArrayList{"quit()"});
    QCOMPARE(MainWindow::staticMetaObject.superClass(), &QFrame::staticMetaObject);
}

TEST_SUITE(declaration, TestDeclaration)
#include "declaration.moc"
