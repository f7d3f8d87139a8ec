// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// How files come into the table by pointer and by drags from another program, and
// how the program says no.

#include "endtoendtest.h"
#include "suites.h"

#include <QTest>

using namespace testsupport;

class TestEndToEndAdmission : public EndToEndTest
{
    Q_OBJECT

private slots:
    void windowOpensInTheMiddleOfTheScreen();
    void droppedFileAndFolderBecomeTickedRows();
    void removeButtonTakesOnlyTickedRows();
    void sourceIsToldWhatBecomesOfItsDrag_data();
    void sourceIsToldWhatBecomesOfItsDrag();
    void refusedPathIsReported();
};

void TestEndToEndAdmission::windowOpensInTheMiddleOfTheScreen()
{
    QVERIFY(openWith());
    QCOMPARE(shredder->mainWindowOnScreen(), mainwindow::onScreen);
    // Nothing to shred yet: the crush button asks nothing. The file dialog, opened
    // afterwards, is then the only other window.
    shredder->click(mainwindow::crushButton);
    shredder->click(mainwindow::addButton);
    QVERIFY(shredder->waitForOtherWindow());
    QVERIFY(!shredder->dialogIsOpen());
}

void TestEndToEndAdmission::droppedFileAndFolderBecomeTickedRows()
{
    QVERIFY(openWith({tree->makeFile("letter.txt", 10), tree->makeFolder("letters")}));
    QVERIFY(shredder->hasChanged(mainwindow::emptyPanel));
    QVERIFY(!samePixels(shredder->picture(mainwindow::rowIcon(0)),
                        shredder->picture(mainwindow::rowIcon(1))));
    QCOMPARE(shredder->picture(mainwindow::rowTickBox(1)),
             shredder->picture(mainwindow::rowTickBox(0)));
    // The buttons come to life with the first row.
    for (const QRect &place :
         {mainwindow::crushButton, mainwindow::removeButton, mainwindow::selectAllBox})
        QTRY_VERIFY_WITH_TIMEOUT(shredder->hasChanged(place), patience);
}

void TestEndToEndAdmission::removeButtonTakesOnlyTickedRows()
{
    const QString taken = tree->makeFolder("taken");
    const QString kept = tree->makeFile("kept", 10);
    QVERIFY(openWith({taken, kept}));
    const QImage fileIcon = shredder->picture(mainwindow::rowIcon(1));
    QVERIFY(shredder->untick(1));
    shredder->click(mainwindow::removeButton);
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), 1, patience);
    QCOMPARE(shredder->picture(mainwindow::rowIcon(0)), fileIcon);
    QVERIFY(entryExists(taken) && entryExists(kept));
}

void TestEndToEndAdmission::sourceIsToldWhatBecomesOfItsDrag_data()
{
    QTest::addColumn<QStringList>("kind");
    QTest::addColumn<bool>("taken");
    QTest::addColumn<int>("rows");
    QTest::newRow("text is refused while it hovers") << QStringList{"--text"_s} << false << 0;
    // Told of a move it would delete the files itself, the refused ones too.
    QTest::newRow("proposed move is a copy") << QStringList{"--propose-move"_s} << true << 1;
    QTest::newRow("move alone is refused") << QStringList{"--offer-move"_s} << false << 0;
    // The address ends the drop without a word.
    QTest::newRow("web address ends the drop")
        << QStringList{"--url"_s, "http://brenvale.example/file"_s} << true << 0;
}

void TestEndToEndAdmission::sourceIsToldWhatBecomesOfItsDrag()
{
    QFETCH(QStringList, kind);
    QFETCH(bool, taken);
    QFETCH(int, rows);
    const QString path = tree->makeFile("file", 10);
    QVERIFY(openWith());
    const bool asUrl = kind.contains("--url"_s);
    const QStringList content = kind + QStringList{asUrl ? "file://"_s + path : path};
    QVERIFY(taken ? shredder->drop(content) : shredder->refuses(content));
    QTRY_COMPARE_WITH_TIMEOUT(shredder->rowsShown(), rows, patience);
    // The same motion with a plain folder is taken, and meets no other row.
    QVERIFY(shredder->drop({tree->makeFolder("folder")}));
    QTRY_VERIFY_WITH_TIMEOUT(shredder->rowsShown() > rows, patience);
    QCOMPARE(shredder->rowsShown(), rows + 1);
    QVERIFY(shredder->onlyMainWindowIsOpen() && entryExists(path));
}

void TestEndToEndAdmission::refusedPathIsReported()
{
    QVERIFY(openWith());
    for (const QRect &button : {dialog::reportOk, dialog::closeButton}) {
        QVERIFY(shredder->drop({tree->path("nothing")}));
        QVERIFY(shredder->answerDialog(button));
        QCOMPARE(shredder->rowsShown(), 0);
    }
    QVERIFY(!shredder->hasChanged(mainwindow::emptyPanel));
}

TEST_SUITE(admission, TestEndToEndAdmission)
#include "admission.moc"
