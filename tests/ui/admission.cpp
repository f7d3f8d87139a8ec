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
#include <QMimeData>
#include <QTableWidget>
#include <QThread>
#include <QtTest>

using testsupport::Answer;
using testsupport::DialogDriver;
using testsupport::testHome;
using testsupport::WindowTest;

namespace
{

/// Of the offscreen platform, about a window that is not of a fixed size: the file dialog.
void ignoreSizeHintWarning()
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
    void listOfUrlsIsTakenAsACopy();
    void dropIsNotAccepted();
    void dropWithoutUrlsPostsNothing();
    void everyReasonIsReported();
    void allRowsAreThereBeforeTheRefusalReport();
    void controllerWaitsUntilEachRowIsThere();
    void controllerWaitsUntilTheRefusalReportIsClosed();

private:
    /// Drops @p paths and returns what the report says below its header; empty when there is none.
    QStringList reportOf(const QStringList &paths);
    /// The window with a row and its select-all box disabled, until the next batch is performed.
    void disableSelectAllBox();
};

QStringList TestAdmission::reportOf(const QStringList &paths)
{
    dialogs->next(Answer::Ok);
    window->drop(paths);
    if (!window->settle() || dialogs->seen().size() != 1)
        return {};
    return dialogs->seen().first().text.split(QLatin1Char('\n')).mid(1);
}

void TestAdmission::disableSelectAllBox()
{
    dropFiles(1);
    QVERIFY(window->isEnabled("selectAllCheckBox"));
    mainWindow->setSelectAllCheckBoxEnabledEva(false);
}

void TestAdmission::cancelledFileDialogPostsAnEmptyBatch()
{
    disableSelectAllBox();
    ignoreSizeHintWarning();
    bool isFileDialog = false;
    dialogs->next([&](QDialog &dialog) {
        isFileDialog = qobject_cast<QFileDialog *>(&dialog) != nullptr;
        DialogDriver::press(dialog, Answer::Escape);
    });
    window->click("addButton");
    QVERIFY(isFileDialog);
    PROMPTLY_VERIFY(window->isEnabled("selectAllCheckBox"));
    QCOMPARE(window->table()->rowCount(), 1);
    QCOMPARE(dialogs->seen().size(), 1);
}

void TestAdmission::chosenFilesBecomeRows()
{
    const QStringList files = {tree->makeFile(QStringLiteral("一.txt"), 1),
                               tree->makeFile(QStringLiteral("two words"), 1)};
    ignoreSizeHintWarning();
    QFileDialog::FileMode mode = QFileDialog::AnyFile;
    dialogs->next([&](QDialog &dialog) {
        mode = qobject_cast<QFileDialog *>(&dialog)->fileMode();
        auto *name = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        name->setText(QStringLiteral("\"%1\" \"%2\"").arg(files.at(0), files.at(1)));
        QTest::keyClick(name, Qt::Key_Return);
    });
    press("addButton");
    QCOMPARE(mode, QFileDialog::ExistingFiles);
    QCOMPARE(window->rows(), files);
    QCOMPARE(window->tickedRows(), files);
}

void TestAdmission::plainTextIsRefusedAtDragEnter()
{
    QMimeData text;
    text.setText(QStringLiteral("/etc/passwd"));
    QVERIFY(!window->drop(text).entered);
    settle();
    QCOMPARE(window->table()->rowCount(), 0);
}

void TestAdmission::listOfUrlsIsTakenAsACopy()
{
    QMimeData urls;
    urls.setUrls({QUrl::fromLocalFile(makeFiles(1).first())});
    const auto answerTo = [&](Qt::DropActions offered, Qt::KeyboardModifiers modifiers) {
        QDragEnterEvent enter(QPoint(400, 300), offered, &urls, Qt::LeftButton, modifiers);
        enter.ignore();
        QApplication::sendEvent(mainWindow, &enter);
        return enter.isAccepted() ? enter.dropAction() : Qt::IgnoreAction;
    };
    const Qt::DropActions all = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    QCOMPARE(answerTo(all, Qt::NoModifier), Qt::CopyAction);
    QCOMPARE(answerTo(all, Qt::ShiftModifier), Qt::CopyAction); // proposes a move
    QCOMPARE(answerTo(all, Qt::ControlModifier | Qt::ShiftModifier), Qt::CopyAction); // a link
    // What cannot be answered with a copy would be a move.
    QCOMPARE(answerTo(Qt::MoveAction, Qt::NoModifier), Qt::IgnoreAction);
}

void TestAdmission::dropIsNotAccepted()
{
    QMimeData urls;
    urls.setUrls({QUrl::fromLocalFile(makeFiles(1).first())});
    const auto outcome = window->drop(urls);
    QVERIFY(outcome.entered);
    QVERIFY(!outcome.accepted);
    PROMPTLY_COMPARE(window->table()->rowCount(), 1);
}

void TestAdmission::dropWithoutUrlsPostsNothing()
{
    disableSelectAllBox();
    QMimeData nothing;
    nothing.setData(QStringLiteral("text/uri-list"), QByteArray());
    QVERIFY(window->drop(nothing).entered);
    settle();
    QVERIFY(!window->isEnabled("selectAllCheckBox"));
}

void TestAdmission::everyReasonIsReported()
{
    const QString file = makeFiles(1).first();
    const QString fifo = tree->makeFifo(QStringLiteral("fifo"));
    QCOMPARE(reportOf({file, file, fifo, tree->path(QStringLiteral("missing"))}),
             (QStringList{QStringLiteral("1.文件或目录不存在"),
                          QStringLiteral("2.不能确定文件或目录的类型"),
                          QStringLiteral("3.重复添加文件或目录")}));
    QCOMPARE(window->rows(), QStringList(file));
}

void TestAdmission::allRowsAreThereBeforeTheRefusalReport()
{
    const QStringList files = makeFiles(20);
    QStringList rowsDuringReport;
    bool crushEnabledDuringReport = false;
    dialogs->next([&](QDialog &report) {
        rowsDuringReport = window->rows();
        crushEnabledDuringReport = window->isEnabled("crushButton");
        DialogDriver::press(report, Answer::Ok);
    });
    window->drop(files + QStringList(tree->path(QStringLiteral("missing"))));
    PROMPTLY_COMPARE(dialogs->seen().size(), 1);
    PROMPTLY_VERIFY(dialogs->isDone());
    QCOMPARE(rowsDuringReport, files);
    QVERIFY(crushEnabledDuringReport);
}

void TestAdmission::controllerWaitsUntilEachRowIsThere()
{
    testHome().writeHistory("2026-01-02 03:04:05\nname\n/folder\n");
    window->drop(makeFiles(1));
    mainWindow->removeAllFromHistoryEva();
    // No event is served meanwhile, so no row is added.
    const auto isCleared = [] { return !QFile::exists(testHome().historyFile()); };
    constexpr int manyTurns = 300; // milliseconds
    for (const QDeadlineTimer deadline(manyTurns); !deadline.hasExpired() && !isCleared();)
        QThread::msleep(1);
    QVERIFY(!isCleared());
    PROMPTLY_VERIFY(isCleared());
    QCOMPARE(window->table()->rowCount(), 1);
}

void TestAdmission::controllerWaitsUntilTheRefusalReportIsClosed()
{
    bool removedDuringReport = false;
    dialogs->next([&](QDialog &report) {
        mainWindow->removeSomeFilesEva();
        // Long enough for many turns of a controller that would not wait.
        constexpr int manyTurns = 300; // milliseconds
        removedDuringReport =
            testsupport::eventually([&] { return window->rows().isEmpty(); }, manyTurns);
        DialogDriver::press(report, Answer::Ok);
    });
    window->drop(makeFiles(1) + QStringList(tree->path(QStringLiteral("missing"))));
    PROMPTLY_COMPARE(dialogs->seen().size(), 1);
    PROMPTLY_VERIFY(window->rows().isEmpty());
    QVERIFY(!removedDuringReport);
}

TEST_SUITE(admission, TestAdmission)
#include "admission.moc"
