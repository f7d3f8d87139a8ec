// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// How files come into the window, through the file dialog or by dropping them, and what it
// says of those that it does not take. What the window posts shows in what the controller
// does: any batch, an empty one too, enables the select-all box while there are rows.

#include "suites.h"
#include "windowtest.h"

#include <QDeadlineTimer>
#include <QDragEnterEvent>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QThread>
#include <QtTest>

using namespace testsupport;

namespace
{

/// The offscreen platform warns of a window that is not of a fixed size.
void expectFileDialog()
{
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support propagateSizeHints()");
}

} // namespace

class TestAdmission : public WindowTest
{
    Q_OBJECT

private slots:
    void cancelledFileDialogPostsAnEmptyBatch();
    void chosenFilesBecomeRows();
    void plainTextIsRefusedAtDragEnter();
    void listOfUrlsIsTakenAsACopyAndItsDropNotAccepted();
    void dropWithoutUrlsPostsNothing();
    void allRowsAreThereBeforeTheRefusalReport();
    void controllerWaitsUntilEachRowIsThere();
    void controllerWaitsUntilTheRefusalReportIsClosed();

private:
    /// The window with a row and its select-all box disabled, until the next batch is performed.
    void disableSelectAllBox();
};

void TestAdmission::disableSelectAllBox()
{
    dropFiles(1);
    QVERIFY(isEnabled("selectAllCheckBox"));
    window->setSelectAllCheckBoxEnabledEva(false);
}

void TestAdmission::cancelledFileDialogPostsAnEmptyBatch()
{
    disableSelectAllBox();
    expectFileDialog();
    bool isFileDialog = false;
    dialogs->next(Answer::Escape, [&](QDialog &dialog) {
        isFileDialog = qobject_cast<QFileDialog *>(&dialog) != nullptr;
    });
    click("addButton");
    QVERIFY(isFileDialog);
    PROMPTLY_VERIFY(isEnabled("selectAllCheckBox"));
    QCOMPARE(table()->rowCount(), 1);
    QCOMPARE(dialogs->seen().size(), 1);
}

void TestAdmission::chosenFilesBecomeRows()
{
    const QStringList files = {tree->makeFile("一.txt", 1), tree->makeFile("two words", 1)};
    expectFileDialog();
    QFileDialog::FileMode mode = QFileDialog::AnyFile;
    dialogs->next(Answer::Escape, [&](QDialog &dialog) {
        mode = qobject_cast<QFileDialog *>(&dialog)->fileMode();
        auto *name = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        name->setText(QStringLiteral("\"%1\" \"%2\"").arg(files.at(0), files.at(1)));
        QTest::keyClick(name, Qt::Key_Return);
    });
    press("addButton");
    QCOMPARE(mode, QFileDialog::ExistingFiles);
    QCOMPARE(rows(), files);
    QCOMPARE(tickedRows(), files);
}

void TestAdmission::plainTextIsRefusedAtDragEnter()
{
    QMimeData text;
    text.setText(QStringLiteral("/etc/passwd"));
    QVERIFY(!letGo(text).entered);
    settle();
    QCOMPARE(table()->rowCount(), 0);
}

void TestAdmission::listOfUrlsIsTakenAsACopyAndItsDropNotAccepted()
{
    const auto urls = dragOf(makeFiles(1));
    const auto answerTo = [&](Qt::DropActions offered, Qt::KeyboardModifiers modifiers) {
        QDragEnterEvent enter(QPoint(400, 300), offered, urls.get(), Qt::LeftButton, modifiers);
        enter.ignore();
        QApplication::sendEvent(window.get(), &enter);
        return enter.isAccepted() ? enter.dropAction() : Qt::IgnoreAction;
    };
    const Qt::DropActions all = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    QCOMPARE(answerTo(all, Qt::NoModifier), Qt::CopyAction);
    QCOMPARE(answerTo(all, Qt::ShiftModifier), Qt::CopyAction); // proposes a move
    QCOMPARE(answerTo(all, Qt::ControlModifier | Qt::ShiftModifier), Qt::CopyAction); // a link
    // What cannot be answered with a copy would be a move.
    QCOMPARE(answerTo(Qt::MoveAction, Qt::NoModifier), Qt::IgnoreAction);
    QVERIFY(!letGo(*urls).accepted);
    PROMPTLY_COMPARE(table()->rowCount(), 1);
}

void TestAdmission::dropWithoutUrlsPostsNothing()
{
    disableSelectAllBox();
    QMimeData nothing;
    nothing.setData(QStringLiteral("text/uri-list"), QByteArray());
    QVERIFY(letGo(nothing).entered);
    settle();
    QVERIFY(!isEnabled("selectAllCheckBox"));
}

void TestAdmission::allRowsAreThereBeforeTheRefusalReport()
{
    const QStringList files = makeFiles(20);
    QStringList rowsDuringReport;
    bool crushEnabledDuringReport = false;
    dialogs->next(Answer::Ok, [&](QDialog &) {
        rowsDuringReport = rows();
        crushEnabledDuringReport = isEnabled("crushButton");
    });
    letGo(files + QStringList{files.first(), tree->path("missing")});
    PROMPTLY_COMPARE(dialogs->seen().size(), 1);
    PROMPTLY_VERIFY(dialogs->isDone());
    QCOMPARE(rowsDuringReport, files);
    QVERIFY(crushEnabledDuringReport);
    QVERIFY(reports().constFirst().endsWith(
        QStringLiteral("\n1.文件或目录不存在\n2.重复添加文件或目录")));
}

void TestAdmission::controllerWaitsUntilEachRowIsThere()
{
    testHome().writeHistory("2026-01-02 03:04:05\nname\n/folder\n");
    letGo(makeFiles(1));
    window->removeAllFromHistoryEva();
    // No event is served meanwhile, so no row is added.
    const auto isCleared = [] { return !QFile::exists(testHome().historyFile()); };
    constexpr int manyTurns = 300; // milliseconds
    for (const QDeadlineTimer deadline(manyTurns); !deadline.hasExpired() && !isCleared();)
        QThread::msleep(1);
    QVERIFY(!isCleared());
    PROMPTLY_VERIFY(isCleared());
    QCOMPARE(table()->rowCount(), 1);
}

void TestAdmission::controllerWaitsUntilTheRefusalReportIsClosed()
{
    bool removedDuringReport = false;
    dialogs->next(Answer::Ok, [&](QDialog &) {
        window->removeSomeFilesEva();
        // Long enough for many turns of a controller that would not wait.
        constexpr int manyTurns = 300; // milliseconds
        removedDuringReport = eventually([&] { return rows().isEmpty(); }, manyTurns);
    });
    letGo(makeFiles(1) + QStringList(tree->path("missing")));
    PROMPTLY_COMPARE(dialogs->seen().size(), 1);
    PROMPTLY_VERIFY(rows().isEmpty());
    QVERIFY(!removedDuringReport);
}

TEST_SUITE(admission, TestAdmission)
#include "admission.moc"
