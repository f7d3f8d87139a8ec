// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What every end-to-end test starts from: one desktop per test program, and for
// each test function a new user, a new folder of victims and no shredder yet.
// At its end the shredder is ended, and a Qt warning or a sanitizer report it
// left behind fails the function. A failed function leaves a picture of the
// screen in the build folder.

#pragma once

#include "desktopsession.h"
#include "eventually.h"
#include "runningshredder.h"
#include "shredderuser.h"
#include "temporarytree.h"
#include "windowmap.h"

#include <QObject>

#include <memory>

namespace testsupport
{

class EndToEndTest : public QObject
{
    Q_OBJECT

protected slots:
    void initTestCase();
    void init();
    void cleanup();

protected:
    /// Opens the window and drops the files and folders @p paths, if any, on it.
    bool openWith(const QStringList &paths = {});
    /// Leaves a picture of the screen in the build folder, for whoever wants to look.
    void keepPicture(const char *name) const;

    DesktopSession desktop;
    std::unique_ptr<ShredderUser> user;
    std::unique_ptr<TemporaryTree> tree;
    std::unique_ptr<RunningShredder> shredder;
};

} // namespace testsupport
