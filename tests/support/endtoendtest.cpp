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

void EndToEndTest::keepPicture(const char *name) const
{
    desktop.savePicture(QStringLiteral(PICTURE_FOLDER "/%1.png").arg(QString::fromLatin1(name)));
}

bool EndToEndTest::openWith(const QStringList &paths)
{
    return shredder->openWindow() && (paths.isEmpty() || shredder->drop(paths))
           && eventually([&] { return shredder->rowsShown() == paths.size(); });
}

} // namespace testsupport
