// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Somebody in front of the real window who does whatever comes to mind, in an order
// that is the same for the same seed. Says OK to every dialog.

#pragma once

#include "model/randomtree.h"
#include "windowtest.h"

#include <QStringList>

#include <future>

namespace testsupport
{

class RestlessUser : public WindowTest
{
    Q_OBJECT

protected slots:
    void init();
    void cleanup();

protected:
    static constexpr int mostRows = 200;

    explicit RestlessUser(quint32 seed)
        : chance(seed)
    {
    }

    /// Leaves the files of the last round behind and begins one with none.
    void beginRound();
    /// Does one thing, and waits a little or not.
    void doSomething();
    /// Ends what is going on, and waits until nothing moves any more.
    void comeToRest();

    Dice chance;
    QStringList shownFiles; ///< the files and folders that the window was shown in this round
    QString neverShown;     ///< a file it was not shown
    int requests = 0;

private:
    void act();
    void actInTheHistory();
    void startOrStop();
    void clickSomeRow();
    void dropSome();
    void chooseSome();
    QStringList someFiles();
    QString nextName();
    void answerEveryDialog();
    bool isHistoryOpen() const { return window->find("historyWindow")->isVisible(); }
    QString runState() const { return window->textOf("crushButton"); }

    std::future<void> leavingFiles;
    QStringList chosen; ///< for the file dialog that opens next
    int names = 0;
};

} // namespace testsupport
