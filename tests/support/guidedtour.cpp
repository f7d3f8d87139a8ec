// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// One walk through the program with a real pointer, for machines without a
// display: on a virtual desktop and in a home folder of its own, files are
// dropped from another process, one is unticked, the rest is shredded.
//
//     guidedtour PICTURE-FOLDER
//
// It prints what it did and found, leaves a picture of each step in the folder,
// and its exit status is 0 only if everything was as it should be.

#include "eventually.h"
#include "expectedbytes.h"
#include "runningshredder.h"
#include "temporarytree.h"
#include "windowmap.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <ctime>
#include <unistd.h>

using namespace testsupport;

namespace
{

// Long enough for the picture taken meanwhile to show the row darkening.
constexpr int filmSize = 128 * 1024 * 1024;
constexpr int letterSize = 10000;

class GuidedTour
{
public:
    explicit GuidedTour(const QString &folder)
        : pictureFolder(folder)
    {
    }

    /// True when the whole walk went as it should.
    bool walk();

private:
    void makeVictims();
    bool dropAndUntick();
    bool shred();
    bool lookAtHistory();
    void takeStock();
    bool leave();

    QString makeFile(const QString &name, int size);
    void step(const char *what);
    bool check(bool holds, const QString &claim);

    QString pictureFolder;
    int pictures = 0;
    bool allTrue = true;
    DesktopSession desktop;
    ShredderUser user;
    RunningShredder shredder{desktop, user};
    QStringList victims;
    QString spared;
    std::time_t begin = 0;
    std::time_t end = 0;
};

bool GuidedTour::walk()
{
    if (!check(desktop.start(), QStringLiteral("a virtual desktop starts")))
        return false;
    makeVictims();
    if (!check(shredder.openWindow(), QStringLiteral("the window opens")))
        return false;
    step("window opened");
    if (!dropAndUntick() || !shred())
        return false;
    takeStock();
    return lookAtHistory() && leave() && allTrue;
}

void GuidedTour::makeVictims()
{
    victims = QStringList{makeFile(QStringLiteral("letter.txt"), letterSize),
                          makeFile(QStringLiteral("film.mkv"), filmSize),
                          user.inHome(QStringLiteral("tax"))};
    makeFile(QStringLiteral("tax/2024/return.ods"), letterSize);
    spared = makeFile(QStringLiteral("cat.jpg"), letterSize);
}

bool GuidedTour::dropAndUntick()
{
    // The spared file is dropped last, so its row is the one behind the victims.
    const int last = victims.size();
    shredder.drop(victims + QStringList{spared});
    if (!check(eventually([&] { return shredder.rowsShown() == last + 1; }),
               QStringLiteral("a drop from another process puts a row in for each item")))
        return false;
    step("files dropped");
    const bool unticked = shredder.untick(last).has_value();
    step("one file unticked");
    return check(unticked, QStringLiteral("a click unticks a row"));
}

bool GuidedTour::shred()
{
    shredder.click(mainwindow::crushButton);
    shredder.rest();
    const std::optional<WindowId> question = shredder.waitForDialog();
    if (!check(question && !shredder.drawnWindow(*question).isNull(),
               QStringLiteral("the crush button asks first")))
        return false;
    step("question");
    begin = std::time(nullptr);
    desktop.clickIn(*question, dialog::questionOk);
    eventually([&] { return !entryExists(victims.first()); });
    step("shredding");
    shredder.rest();
    const std::optional<WindowId> report = shredder.waitForDialog();
    const bool reported = report && !shredder.drawnWindow(*report).isNull();
    end = std::time(nullptr);
    step("result");
    return check(reported && shredder.answerDialog(dialog::reportOk),
                 QStringLiteral("the run ends with a report"));
}

void GuidedTour::takeStock()
{
    step("after the run");
    for (const QString &victim : std::as_const(victims))
        check(!entryExists(victim), QStringLiteral("destroyed: ") + victim);
    for (const QString &name :
         {QStringLiteral("letter.txt"), QStringLiteral("film.mkv"), QStringLiteral("return.ods")}) {
        const QByteArray blocks =
            TemporaryTree::contentsOf(user.inHome(QStringLiteral(".second-links/") + name));
        check(wasOverwritten(blocks, begin, end),
              QStringLiteral("overwritten, as a second hard link shows: %1 (%2 bytes)")
                  .arg(name)
                  .arg(blocks.size()));
    }
    check(TemporaryTree::contentsOf(spared) == QByteArray(letterSize, 'x'),
          QStringLiteral("survived byte for byte: ") + spared);
}

bool GuidedTour::lookAtHistory()
{
    // Two files, and a folder with a folder and a file in it.
    constexpr int removed = 5;
    check(user.historyLines().size() == 3 * removed,
          QStringLiteral("the history has an entry for each removed item"));
    shredder.click(mainwindow::historyLink);
    const std::optional<WindowId> history = shredder.waitForOtherWindow();
    if (!check(history && !shredder.drawnWindow(*history).isNull(),
               QStringLiteral("the history window opens")))
        return false;
    step("history");
    desktop.clickIn(*history, historywindow::closeButton);
    return check(eventually([&] { return shredder.onlyMainWindowIsOpen(); }),
                 QStringLiteral("the history window closes"));
}

bool GuidedTour::leave()
{
    shredder.click(mainwindow::closeButton);
    const bool ended = shredder.waitForEnd() && shredder.exitStatus() == 0;
    const QStringList complaints = shredder.complaints();
    check(complaints.isEmpty(),
          QStringLiteral("the program never complained ") + complaints.join(QLatin1Char('\n')));
    return check(ended, QStringLiteral("the close button ends the program with status 0"));
}

QString GuidedTour::makeFile(const QString &name, int size)
{
    QString file = user.inHome(name);
    const QString links = user.inHome(QStringLiteral(".second-links"));
    QDir().mkpath(QFileInfo(file).path());
    QDir().mkpath(links);
    QFile out(file);
    if (!out.open(QIODevice::WriteOnly) || out.write(QByteArray(size, 'x')) != size)
        qFatal("cannot write %s", qPrintable(file));
    const QString second = links + QLatin1Char('/') + QFileInfo(file).fileName();
    if (::link(file.toUtf8().constData(), second.toUtf8().constData()) != 0)
        qFatal("cannot link %s", qPrintable(second));
    return file;
}

void GuidedTour::step(const char *what)
{
    const QString name =
        QStringLiteral("%1-%2.png")
            .arg(++pictures)
            .arg(QString::fromLatin1(what).replace(QLatin1Char(' '), QLatin1Char('-')));
    desktop.savePicture(pictureFolder + QLatin1Char('/') + name);
    QTextStream(stdout) << "       " << QString::fromLatin1(what).leftJustified(20) << name << '\n';
}

bool GuidedTour::check(bool holds, const QString &claim)
{
    QTextStream(stdout) << (holds ? "  ok   " : "WRONG  ") << claim << '\n';
    allTrue = allTrue && holds;
    return holds;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc != 2) {
        QTextStream(stderr) << "usage: guidedtour PICTURE-FOLDER\n";
        return 2;
    }
    const bool good = GuidedTour(QString::fromLocal8Bit(argv[1])).walk();
    QTextStream(stdout) << (good ? "all of it true" : "NOT all of it true") << "; pictures are in "
                        << argv[1] << '\n';
    return good ? 0 : 1;
}
