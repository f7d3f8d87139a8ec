// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the user does in the main window, and what becomes of it. What the window
// posts shows in what the controller does: any batch that is admitted, an empty
// one too, enables the select-all box while there are rows.

#include "dialogdriver.h"
#include "promptly.h"
#include "shownwindow.h"
#include "suites.h"
#include "temporarytree.h"
#include "windowtesthome.h"

#include <QDragEnterEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMimeData>
#include <QTableWidget>
#include <QWindow>
#include <QtTest>

#include <memory>

using testsupport::Answer;
using testsupport::DialogDriver;
using testsupport::ShownWindow;
using testsupport::TemporaryTree;

namespace
{

QString idle()
{
    return QStringLiteral("粉碎文件");
}

QString running()
{
    return QStringLiteral("停止粉碎");
}

QString stopping()
{
    return QStringLiteral("正在停止");
}

/// Of the offscreen platform, about a window that is not of a fixed size: the file dialog.
void ignoreSizeHintWarning()
{
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support propagateSizeHints()");
}

} // namespace

class TestMainWindowActions : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void cancelledFileDialogPostsAnEmptyBatch();
    void chosenFilesBecomeRows();
    void plainTextIsRefusedAtDragEnter();
    void listOfUrlsIsTakenAtDragEnter();
    void proposedMoveIsAnsweredWithACopy_data();
    void proposedMoveIsAnsweredWithACopy();
    void moveAloneIsRefusedAtDragEnter();
    void dropWithoutUrlsPostsNothing();
    void dropIsNotAccepted();
    void questionStandsOverTheWindow();
    void declinedQuestionPostsNothing_data();
    void declinedQuestionPostsNothing();
    void enterDoesNotAnswerTheQuestion();
    void crushButtonDoesNothingWhileStopping();
    void crushButtonStopsWithoutAQuestion();

private:
    /// Drops a file, waits until it is a row and says which.
    QString dropFile();
    void disableSelectAllBox();

    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<ShownWindow> window;
};

void TestMainWindowActions::init()
{
    tree = std::make_unique<TemporaryTree>();
    window = std::make_unique<ShownWindow>();
}

void TestMainWindowActions::cleanup()
{
    window.reset();
    tree.reset();
}

QString TestMainWindowActions::dropFile()
{
    const QString file = tree->makeFile(QStringLiteral("file"), 10);
    window->drop({file});
    window->settle();
    return file;
}

void TestMainWindowActions::disableSelectAllBox()
{
    dropFile();
    QVERIFY(window->isEnabled("selectAllCheckBox"));
    (*window)->setSelectAllCheckBoxEnabledEva(false);
}

void TestMainWindowActions::cancelledFileDialogPostsAnEmptyBatch()
{
    disableSelectAllBox();
    ignoreSizeHintWarning();
    DialogDriver dialogs;
    bool isFileDialog = false;
    dialogs.next([&](QDialog &dialog) {
        isFileDialog = qobject_cast<QFileDialog *>(&dialog) != nullptr;
        DialogDriver::press(dialog, Answer::Escape);
    });
    window->click("addButton");
    QVERIFY(dialogs.isDone());
    QVERIFY(isFileDialog);
    PROMPTLY_VERIFY(window->isEnabled("selectAllCheckBox"));
    QCOMPARE(window->table()->rowCount(), 1);
    QCOMPARE(dialogs.seen().size(), 1);
}

void TestMainWindowActions::chosenFilesBecomeRows()
{
    const QStringList files = {tree->makeFile(QStringLiteral("一.txt"), 1),
                               tree->makeFile(QStringLiteral("two words"), 1)};
    ignoreSizeHintWarning();
    DialogDriver dialogs;
    QFileDialog::FileMode mode = QFileDialog::AnyFile;
    dialogs.next([&](QDialog &dialog) {
        const auto *chooser = qobject_cast<QFileDialog *>(&dialog);
        mode = chooser->fileMode();
        auto *name = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        name->setText(QStringLiteral("\"%1\" \"%2\"").arg(files.at(0), files.at(1)));
        QTest::keyClick(name, Qt::Key_Return);
    });
    window->click("addButton");
    QVERIFY(window->settle());
    QCOMPARE(mode, QFileDialog::ExistingFiles);
    QCOMPARE(window->rows(), files);
    QCOMPARE(window->tickedRows(), files);
}

void TestMainWindowActions::plainTextIsRefusedAtDragEnter()
{
    QMimeData text;
    text.setText(QStringLiteral("/etc/passwd"));
    QVERIFY(!window->drop(text).entered);
    QVERIFY(window->settle());
    QCOMPARE(window->table()->rowCount(), 0);
}

void TestMainWindowActions::listOfUrlsIsTakenAtDragEnter()
{
    QMimeData urls;
    urls.setUrls({QUrl::fromLocalFile(tree->makeFile(QStringLiteral("a"), 1))});
    QVERIFY(window->drop(urls).entered);
    PROMPTLY_COMPARE(window->table()->rowCount(), 1);
}

void TestMainWindowActions::proposedMoveIsAnsweredWithACopy_data()
{
    QTest::addColumn<int>("modifiers");
    QTest::newRow("copy proposed") << static_cast<int>(Qt::NoModifier);
    QTest::newRow("move proposed") << static_cast<int>(Qt::ShiftModifier);
    QTest::newRow("link proposed") << static_cast<int>(Qt::ControlModifier | Qt::ShiftModifier);
}

void TestMainWindowActions::proposedMoveIsAnsweredWithACopy()
{
    QFETCH(int, modifiers);
    QMimeData urls;
    urls.setUrls({QUrl::fromLocalFile(tree->makeFile(QStringLiteral("a"), 1))});
    const Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    QDragEnterEvent enter(QPoint(400, 300), offered, &urls, Qt::LeftButton,
                          static_cast<Qt::KeyboardModifiers>(modifiers));
    QApplication::sendEvent(&**window, &enter);
    QVERIFY(enter.isAccepted());
    QCOMPARE(enter.dropAction(), Qt::CopyAction);
}

/// What cannot be answered with a copy would be a move.
void TestMainWindowActions::moveAloneIsRefusedAtDragEnter()
{
    QMimeData urls;
    urls.setUrls({QUrl::fromLocalFile(tree->makeFile(QStringLiteral("a"), 1))});
    QDragEnterEvent enter(QPoint(400, 300), Qt::MoveAction, &urls, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(&**window, &enter);
    QVERIFY(!enter.isAccepted());
}

void TestMainWindowActions::dropWithoutUrlsPostsNothing()
{
    disableSelectAllBox();
    QMimeData nothing;
    nothing.setData(QStringLiteral("text/uri-list"), QByteArray());
    QVERIFY(window->drop(nothing).entered);
    QVERIFY(window->settle());
    QVERIFY(!window->isEnabled("selectAllCheckBox"));
}

void TestMainWindowActions::dropIsNotAccepted()
{
    QMimeData urls;
    urls.setUrls({QUrl::fromLocalFile(tree->makeFile(QStringLiteral("a"), 1))});
    QVERIFY(!window->drop(urls).accepted);
}

void TestMainWindowActions::questionStandsOverTheWindow()
{
    dropFile();
    (*window)->move(100, 20);
    DialogDriver dialogs;
    dialogs.next(Answer::Cancel);
    window->click("crushButton");
    QCOMPARE(dialogs.seen().size(), 1);
    const testsupport::SeenDialog &seen = dialogs.seen().first();
    QCOMPARE(seen.text, QStringLiteral("选中的内容将被彻底删除，确定要粉碎选定的内容吗？"));
    QCOMPARE(seen.iconSheet, QStringLiteral("background-image:url(:/images/ico_war4)"));
    QCOMPARE(seen.buttons, (QStringList{QStringLiteral("确定"), QStringLiteral("取消")}));
    QCOMPARE(seen.place, QRect(100 + 190, 20 + 160, 420, 230));
}

void TestMainWindowActions::declinedQuestionPostsNothing_data()
{
    QTest::addColumn<int>("answer");
    QTest::newRow("cancel") << static_cast<int>(Answer::Cancel);
    QTest::newRow("close") << static_cast<int>(Answer::Close);
    QTest::newRow("escape") << static_cast<int>(Answer::Escape);
}

void TestMainWindowActions::declinedQuestionPostsNothing()
{
    QFETCH(int, answer);
    const QString file = dropFile();
    const QString subtitle = window->textOf("subtitleLabel");
    DialogDriver dialogs;
    dialogs.next(static_cast<Answer>(answer));
    window->click("crushButton");
    QVERIFY(window->settle());
    QCOMPARE(dialogs.seen().size(), 1);
    QCOMPARE(TemporaryTree::contentsOf(file), QByteArray(10, 'x'));
    QCOMPARE(window->tickedRows(), QStringList(file));
    QCOMPARE(window->textOf("crushButton"), idle());
    QCOMPARE(window->textOf("subtitleLabel"), subtitle);
}

void TestMainWindowActions::enterDoesNotAnswerTheQuestion()
{
    const QString file = dropFile();
    DialogDriver dialogs;
    bool stillOpen = false;
    dialogs.next([&](QDialog &dialog) {
        QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
        QTest::keyClick(dialog.windowHandle(), Qt::Key_Space);
        stillOpen = dialog.isVisible();
        DialogDriver::press(dialog, Answer::Cancel);
    });
    window->click("crushButton");
    QVERIFY(window->settle());
    QVERIFY(stillOpen);
    QVERIFY(testsupport::entryExists(file));
}

void TestMainWindowActions::crushButtonDoesNothingWhileStopping()
{
    dropFile();
    (*window)->setCrushStartedEva(3);
    DialogDriver dialogs;
    window->click("crushButton");
    QVERIFY(window->settle());
    QVERIFY(dialogs.seen().isEmpty());
    QCOMPARE(window->textOf("crushButton"), stopping());
    // A posted stop would have been answered by disabling the button.
    QVERIFY(window->isEnabled("crushButton"));
}

void TestMainWindowActions::crushButtonStopsWithoutAQuestion()
{
    dropFile();
    (*window)->setCrushStartedEva(2);
    DialogDriver dialogs;
    window->click("crushButton");
    QVERIFY(window->settle());
    QVERIFY(dialogs.seen().isEmpty());
    // The controller was asked to stop and says so, there being no run to stop.
    QVERIFY(window->textOf("crushButton") != running());
}

TEST_SUITE(actions, TestMainWindowActions)
#include "actions.moc"
