// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// How files come into the table, and how the program says no.

#include "endtoendtest.h"
#include "suites.h"

#include <QTest>

#include <unistd.h>

using namespace testsupport;

class TestEndToEndAdmission : public EndToEndTest
{
    Q_OBJECT

private slots:
    void windowOpensInTheMiddleOfTheScreen();
    void droppedFileAndFolderBecomeTickedRows();
    void textIsRefusedWhileItHovers();
    void sourceThatProposesAMoveIsToldCopy();
    void sourceThatOffersOnlyAMoveIsRefused();
    void dropOfAWebAddressAddsNothing();
    void pathTypedIntoTheFileDialogBecomesARow();
    void escapeFromTheFileDialogAddsNothing();
    void missingPathIsReported();
    void pathAddedTwiceIsReported();
    void systemFolderIsReported();
    void severalReasonsMakeAnotherReport();
    void rowsAreNeitherEditedNorShifted();
    void selectAllTicksAndUnticksEveryRow();
    void removeButtonTakesOnlyTickedRows();

private:
    bool openFileDialog();
    /// Drops @p paths, keeps what the report's message looks like, closes it with @p button.
    QImage reportAfterDropping(const QStringList &paths, const QRect &button);
};

void TestEndToEndAdmission::windowOpensInTheMiddleOfTheScreen()
{
    QVERIFY(openWith());
    QCOMPARE(shredder->mainWindowOnScreen(), mainwindow::onScreen);
    // Nothing to shred yet: the crush button asks nothing. The file dialog, opened
    // afterwards, is then the only other window.
    shredder->click(mainwindow::crushButton);
    QVERIFY(openFileDialog());
    QVERIFY(!shredder->dialogIsOpen());
}

void TestEndToEndAdmission::droppedFileAndFolderBecomeTickedRows()
{
    QVERIFY(openWith({tree->makeFile(QStringLiteral("letter.txt"), 10),
                      tree->makeFolder(QStringLiteral("letters"))}));
    QVERIFY(shredder->hasChanged(mainwindow::emptyPanel));
    QVERIFY(!samePixels(shredder->picture(mainwindow::rowIcon(0)),
                        shredder->picture(mainwindow::rowIcon(1))));
    const QImage ticked = shredder->picture(mainwindow::rowTickBox(0));
    QCOMPARE(shredder->picture(mainwindow::rowTickBox(1)), ticked);
    // The buttons come to life with the first row.
    QTRY_VERIFY_WITH_TIMEOUT(shredder->hasChanged(mainwindow::crushButton), patience);
    QTRY_VERIFY_WITH_TIMEOUT(shredder->hasChanged(mainwindow::removeButton), patience);
    QTRY_VERIFY_WITH_TIMEOUT(shredder->hasChanged(mainwindow::selectAllBox), patience);

    shredder->click(mainwindow::rowTickBox(1));
    shredder->rest();
    QTRY_VERIFY_WITH_TIMEOUT(!samePixels(shredder->picture(mainwindow::rowTickBox(1)), ticked),
                             patience);
    QCOMPARE(shredder->picture(mainwindow::rowTickBox(0)), ticked);
}

void TestEndToEndAdmission::textIsRefusedWhileItHovers()
{
    QVERIFY(openWith());
    const QString path = tree->makeFile(QStringLiteral("kept"), 10);
    QVERIFY(shredder->refuses({QStringLiteral("--text"), path}));
    // The same motion with a file is taken, so the refusal was for the text.
    QVERIFY(shredder->drop({path}));
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 1, patience);
}

/// Told of a move it would delete the files itself, the refused ones too.
void TestEndToEndAdmission::sourceThatProposesAMoveIsToldCopy()
{
    QVERIFY(openWith());
    const QString path = tree->makeFile(QStringLiteral("file"), 10);
    QVERIFY(shredder->drop({QStringLiteral("--propose-move"), path}));
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 1, patience);
    QVERIFY(entryExists(path));
}

void TestEndToEndAdmission::sourceThatOffersOnlyAMoveIsRefused()
{
    QVERIFY(openWith());
    const QString path = tree->makeFile(QStringLiteral("file"), 10);
    QVERIFY(shredder->refuses({QStringLiteral("--offer-move"), path}));
    QVERIFY(shredder->drop({QStringLiteral("--propose-move"), path}));
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 1, patience);
}

void TestEndToEndAdmission::dropOfAWebAddressAddsNothing()
{
    QVERIFY(openWith());
    const QString local = QStringLiteral("file://") + tree->makeFile(QStringLiteral("file"), 10);
    QVERIFY(shredder->drop(
        {QStringLiteral("--url"), QStringLiteral("http://brenvale.example/file"), local}));
    // The address ends the drop without a word; the next drop finds an empty table.
    QVERIFY(shredder->drop({tree->makeFolder(QStringLiteral("folder"))}));
    QTRY_VERIFY_WITH_TIMEOUT(shredder->rowsShown() > 0, patience);
    QCOMPARE(shredder->rowsShown(), 1);
    QVERIFY(shredder->onlyMainWindowIsOpen());
}

void TestEndToEndAdmission::pathTypedIntoTheFileDialogBecomesARow()
{
    QVERIFY(openWith());
    const QString path = tree->makeFile(QStringLiteral("chosen"), 10);
    QVERIFY(openFileDialog());
    desktop.type(path);
    desktop.pressKey(QStringLiteral("Return"));
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 1, patience);
    QVERIFY(shredder->onlyMainWindowIsOpen());
}

void TestEndToEndAdmission::escapeFromTheFileDialogAddsNothing()
{
    QVERIFY(openWith());
    QVERIFY(openFileDialog());
    desktop.type(tree->makeFile(QStringLiteral("spared"), 10));
    // The first Escape closes the list of completions, if there is one.
    QVERIFY(eventually([this] {
        desktop.pressKey(QStringLiteral("Escape"));
        return shredder->onlyMainWindowIsOpen();
    }));
    QVERIFY(shredder->drop({tree->makeFolder(QStringLiteral("folder"))}));
    QTRY_VERIFY_WITH_TIMEOUT(shredder->rowsShown() > 0, patience);
    QCOMPARE(shredder->rowsShown(), 1);
}

void TestEndToEndAdmission::missingPathIsReported()
{
    QVERIFY(openWith());
    QVERIFY(
        !reportAfterDropping({tree->path(QStringLiteral("nothing"))}, dialog::reportOk).isNull());
    QCOMPARE(shredder->rowsShown(), 0);
    QVERIFY(!shredder->hasChanged(mainwindow::emptyPanel));
}

void TestEndToEndAdmission::pathAddedTwiceIsReported()
{
    const QString path = tree->makeFile(QStringLiteral("twin"), 10);
    QVERIFY(openWith({path}));
    QVERIFY(!reportAfterDropping({path}, dialog::closeButton).isNull());
    QCOMPARE(shredder->rowsShown(), 1);
}

void TestEndToEndAdmission::systemFolderIsReported()
{
    if (::getuid() != 0)
        QSKIP("only root may write to a system folder; others hear about permissions instead");
    QVERIFY(openWith());
    QVERIFY(!reportAfterDropping({QStringLiteral("/etc")}, dialog::reportOk).isNull());
    QCOMPARE(shredder->rowsShown(), 0);
}

void TestEndToEndAdmission::severalReasonsMakeAnotherReport()
{
    QVERIFY(openWith());
    const QString missing = tree->path(QStringLiteral("nothing"));
    const QString fifo = tree->makeFifo(QStringLiteral("fifo"));
    const QImage one = reportAfterDropping({missing}, dialog::reportOk);
    const QImage other = reportAfterDropping({fifo}, dialog::reportOk);
    const QImage both = reportAfterDropping({missing, fifo}, dialog::reportOk);
    QVERIFY(!samePixels(one, other));
    QVERIFY(!samePixels(one, both));
    QVERIFY(!samePixels(other, both));
    QCOMPARE(shredder->rowsShown(), 0);
    // The reason is named once, however many paths have it.
    QCOMPARE(reportAfterDropping({missing, missing}, dialog::reportOk), one);
}

void TestEndToEndAdmission::rowsAreNeitherEditedNorShifted()
{
    constexpr int sidewaysWheel = 7;
    QVERIFY(openWith({tree->makeFile(QStringLiteral("file"), 1)}));
    const QImage table = shredder->picture(mainwindow::table);
    const QImage button = shredder->picture(mainwindow::crushButton);
    const QPoint window = mainwindow::onScreen.topLeft();
    const QPoint endOfRow = window + mainwindow::rowOrigin(0) + QPoint(790, 15);
    desktop.click(endOfRow);
    desktop.click(endOfRow);
    desktop.pressKey(QStringLiteral("F2"));
    desktop.type(QStringLiteral("typed"));
    desktop.pressButton(sidewaysWheel);
    desktop.releaseButton(sidewaysWheel);
    // A button that lights up tells that all this has arrived, and takes no focus.
    desktop.movePointer(window + mainwindow::crushButton.center());
    QTRY_VERIFY_WITH_TIMEOUT(!samePixels(shredder->picture(mainwindow::crushButton), button),
                             patience);
    keepPicture("rows-after-keys");
    QVERIFY(samePixels(shredder->picture(mainwindow::table), table));
}

void TestEndToEndAdmission::selectAllTicksAndUnticksEveryRow()
{
    QVERIFY(openWith(
        {tree->makeFile(QStringLiteral("one"), 1), tree->makeFile(QStringLiteral("two"), 1)}));
    const QImage ticked = shredder->picture(mainwindow::rowTickBox(0));
    const auto tickedRows = [&] {
        return int(shredder->picture(mainwindow::rowTickBox(0)) == ticked)
               + int(shredder->picture(mainwindow::rowTickBox(1)) == ticked);
    };
    QTRY_VERIFY_WITH_TIMEOUT(shredder->hasChanged(mainwindow::selectAllBox), patience);
    for (const int expected : {0, 2, 0}) {
        shredder->click(mainwindow::selectAllBox);
        shredder->rest();
        QTRY_COMPARE_WITH_TIMEOUT(tickedRows(), expected, patience);
    }
    // With nothing ticked there is nothing to shred, as at the start.
    QTRY_VERIFY_WITH_TIMEOUT(!shredder->hasChanged(mainwindow::crushButton), patience);
}

void TestEndToEndAdmission::removeButtonTakesOnlyTickedRows()
{
    const QString taken = tree->makeFolder(QStringLiteral("taken"));
    const QString kept = tree->makeFile(QStringLiteral("kept"), 10);
    QVERIFY(openWith({taken, kept}));
    const QImage ticked = shredder->picture(mainwindow::rowTickBox(1));
    const QImage fileIcon = shredder->picture(mainwindow::rowIcon(1));
    shredder->click(mainwindow::rowTickBox(1));
    shredder->rest();
    QTRY_VERIFY_WITH_TIMEOUT(!samePixels(shredder->picture(mainwindow::rowTickBox(1)), ticked),
                             patience);
    shredder->click(mainwindow::removeButton);
    shredder->rest();
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 1, patience);
    QCOMPARE(shredder->picture(mainwindow::rowIcon(0)), fileIcon);
    QVERIFY(entryExists(taken) && entryExists(kept));
}

bool TestEndToEndAdmission::openFileDialog()
{
    shredder->click(mainwindow::addButton);
    shredder->rest();
    return shredder->waitForOtherWindow().has_value();
}

QImage TestEndToEndAdmission::reportAfterDropping(const QStringList &paths, const QRect &button)
{
    if (!shredder->drop(paths))
        return QImage();
    const QImage message = shredder->pictureOfDialog(dialog::message);
    return shredder->answerDialog(button) ? message : QImage();
}

TEST_SUITE(admission, TestEndToEndAdmission)
#include "admission.moc"
