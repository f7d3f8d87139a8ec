// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "endtoendtest.h"

#include <QTest>

namespace testsupport
{

void EndToEndTest::initTestCase()
{
    QVERIFY2(desktop.start(), qPrintable(desktop.problem()));
}

void EndToEndTest::init()
{
    user = std::make_unique<ShredderUser>();
    tree = std::make_unique<TemporaryTree>();
    shredder = std::make_unique<RunningShredder>(desktop, *user);
}

void EndToEndTest::cleanup()
{
    if (QTest::currentTestFailed()) {
        const QString picture = QStringLiteral(PICTURE_FOLDER "/%1-%2.png")
                                    .arg(QString::fromLatin1(metaObject()->className()),
                                         QString::fromLatin1(QTest::currentTestFunction()));
        desktop.savePicture(picture);
        qInfo("screen at the failure: %s", qPrintable(picture));
    }
    const QStringList complaints = shredder->complaints();
    shredder.reset();
    user.reset();
    tree.reset();
    QVERIFY2(complaints.isEmpty(), qPrintable(complaints.join(QLatin1Char('\n'))));
}

bool EndToEndTest::openWith(const QStringList &paths)
{
    return shredder->openWindow() && (paths.isEmpty() || shredder->drop(paths))
           && eventually([&] { return shredder->rowsShown() == paths.size(); });
}

bool EndToEndTest::runToItsReport()
{
    return shredder->startShredding() && shredder->answerDialog(dialog::reportOk);
}

std::optional<WindowId> EndToEndTest::openBy(const QRect &button)
{
    shredder->click(button);
    const std::optional<WindowId> opened = shredder->waitForOtherWindow();
    return opened && desktop.givesKeyboardTo(*opened) ? opened : std::nullopt;
}

bool EndToEndTest::isAlone() const
{
    return eventually([this] { return shredder->onlyMainWindowIsOpen(); });
}

bool EndToEndTest::escape()
{
    return eventually([this] {
        desktop.pressKey("Escape"_s);
        return shredder->onlyMainWindowIsOpen();
    });
}

bool EndToEndTest::closeEndsWell()
{
    shredder->click(mainwindow::closeButton);
    return shredder->waitForEnd() == 0;
}

std::optional<HeardNode> EndToEndTest::openAndHear(const QStringList &paths)
{
    return openWith(paths) ? hear(mainwindow::title()) : std::nullopt;
}

QString EndToEndTest::makeBusyFolder(int names) const
{
    constexpr int eachOwn = 50;
    const QString shared = tree->makeFile("shared", 8192);
    for (int i = 0; i < names; ++i) {
        if (i % eachOwn == 0)
            tree->makeFile("folder/own-%1"_s.arg(i), 8192);
        else
            tree->makeHardLink("folder/%1"_s.arg(i), shared);
    }
    return tree->path("folder");
}

} // namespace testsupport
