// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// One walk through the program with a real pointer, which says what it finds: files are
// dropped from another process, one is unticked, the rest is shredded. A second hard
// link keeps the blocks of a removed file, and shows what was written over them. Where
// FILESHREDDER_TOUR names a folder, a picture of each step is left there.

#include "endtoendtest.h"
#include "expectedbytes.h"
#include "suites.h"

#include <QTextStream>

#include <ctime>

using namespace testsupport;

class TestEndToEndTour : public EndToEndTest
{
    Q_OBJECT

private slots:
    void tickedFilesAreOverwrittenAndUntickedOnesSurvive();

private:
    /// Prints @p words when it @p holds.
    static bool claim(bool holds, const QString &words);
    void step(const char *what);
    /// Whether what the last click opened is drawn.
    bool isDrawn(const std::optional<WindowId> &window) const;
    bool shred();
    bool lookAtHistory();

    const QString pictureFolder = qEnvironmentVariable("FILESHREDDER_TOUR");
    int pictures = 0;
};

void TestEndToEndTour::tickedFilesAreOverwrittenAndUntickedOnesSurvive()
{
    // Blocks and a tail, a tail alone, nothing to overwrite, and more where somebody watches the
    // row darken.
    constexpr int mebibyte = 1024 * 1024;
    const QMap<QString, int> sizes{{"film.mkv"_s, pictureFolder.isEmpty() ? 16411 : 128 * mebibyte},
                                   {"letter.txt"_s, 100},
                                   {"notes.txt"_s, 0},
                                   {"tax/2024/return.ods"_s, 3 * 4096 + 17}};
    tree->makeFolder("second-links");
    for (auto file = sizes.cbegin(); file != sizes.cend(); ++file)
        tree->makeHardLink("second-links/"_s + file.key().section(QLatin1Char('/'), -1),
                           tree->makeFile(file.key(), file.value()));
    const QStringList victims{tree->path("letter.txt"), tree->path("film.mkv"),
                              tree->path("notes.txt"), tree->path("tax")};
    const QString spared = tree->makeFile("cat.jpg", 5000);
    const int row = victims.size();

    QVERIFY(claim(shredder->openWindow(), "the window opens"_s));
    step("window opened");
    const bool dropped = shredder->drop(victims + QStringList{spared});
    QVERIFY(claim(dropped && eventually([&] { return shredder->rowsShown() == row + 1; }),
                  "a drop from another process puts a row in for each item"_s));
    step("files dropped");
    const std::optional<QImage> unticked = shredder->untick(row);
    step("one file unticked");
    QVERIFY(claim(unticked.has_value(), "a click unticks a row"_s));

    const std::time_t begin = std::time(nullptr);
    QVERIFY(shred());
    const std::time_t end = std::time(nullptr);
    for (const QString &victim : victims)
        QVERIFY(claim(!entryExists(victim), "destroyed: "_s + victim));
    for (auto file = sizes.cbegin(); file != sizes.cend(); ++file) {
        const QString name = file.key().section(QLatin1Char('/'), -1);
        const QByteArray blocks = TemporaryTree::contentsOf(tree->path("second-links/"_s + name));
        QVERIFY(claim(blocks.size() == file.value() && wasOverwritten(blocks, begin, end),
                      "overwritten, as a second hard link shows: %1 (%2 bytes)"_s.arg(name).arg(
                          blocks.size())));
    }
    QVERIFY(claim(isAsMade(spared, 5000), "survived byte for byte: "_s + spared));
    QVERIFY(claim(eventually([&] {
                      return shredder->rowsShown() == 1
                             && shredder->picture(mainwindow::rowTickBox(0)) == unticked;
                  }),
                  "its row is left, unticked"_s));
    QVERIFY(claim(shredder->hasChanged(mainwindow::subtitle), "the window tells the number"_s));
    step("after the run");

    // Three files, and a folder with a folder and a file in it.
    QVERIFY(claim(user->historyLines().size() == 3 * 6,
                  "the history has an entry for each removed item"_s));
    QVERIFY(lookAtHistory());
    QVERIFY(claim(closeEndsWell(), "the close button ends the program with status 0"_s));
    QVERIFY(claim(shredder->complaints().isEmpty(), "the program never complained"_s));
}

bool TestEndToEndTour::shred()
{
    shredder->click(mainwindow::crushButton);
    if (!claim(isDrawn(shredder->waitForDialog()), "the crush button asks first"_s))
        return false;
    step("question");
    shredder->clickIn(*shredder->waitForDialog(), dialog::questionOk);
    eventually([&] { return !entryExists(tree->path("letter.txt")); });
    step("shredding");
    const bool reported = isDrawn(shredder->waitForDialog());
    step("result");
    return claim(reported && shredder->answerDialog(dialog::reportOk),
                 "the run ends with a report"_s);
}

bool TestEndToEndTour::lookAtHistory()
{
    const std::optional<WindowId> history = openBy(mainwindow::historyLink);
    if (!claim(isDrawn(history), "the history window opens"_s))
        return false;
    step("history");
    shredder->clickIn(*history, historywindow::closeButton);
    return claim(isAlone(), "the history window closes"_s);
}

bool TestEndToEndTour::claim(bool holds, const QString &words)
{
    QTextStream(stdout) << (holds ? "  ok   " : "WRONG  ") << words << '\n';
    return holds;
}

void TestEndToEndTour::step(const char *what)
{
    if (pictureFolder.isEmpty())
        return;
    const QString name =
        "%1-%2.png"_s.arg(++pictures)
            .arg(QString::fromLatin1(what).replace(QLatin1Char(' '), QLatin1Char('-')));
    desktop.savePicture(pictureFolder + QLatin1Char('/') + name);
    QTextStream(stdout) << "       " << name << '\n';
}

bool TestEndToEndTour::isDrawn(const std::optional<WindowId> &window) const
{
    return window && !shredder->drawnWindow(*window).isNull();
}

TEST_SUITE(tour, TestEndToEndTour)
#include "tour.moc"
