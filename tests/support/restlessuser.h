// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Somebody in front of the real window who does whatever comes to mind, in an order
// that is the same for the same seed. Says OK to every dialog.

#pragma once

#include "dialogdriver.h"
#include "model/randomtree.h"
#include "shownwindow.h"
#include "temporarytree.h"

#include <QObject>
#include <QStringList>

#include <future>
#include <memory>

namespace testsupport
{

class RestlessUser : public QObject
{
    Q_OBJECT

public:
    static constexpr int mostRows = 200;

    explicit RestlessUser(quint32 seed);
    ~RestlessUser() override;

    /// Leaves the files of the last round behind and begins one with none.
    void beginRound();
    /// Does one thing, and waits a little or not.
    void doSomething();
    /// Ends what is going on, and waits until nothing moves any more.
    void comeToRest();

    ShownWindow &window() { return shown; }
    DialogDriver &dialogs() { return answers; }
    Dice &dice() { return chance; }
    /// The files and folders that the window was shown in this round.
    const QStringList &files() const { return shownFiles; }
    /// A file it was not shown.
    const QString &bystander() const { return neverShown; }
    int requests() const { return made; }

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
    bool isHistoryOpen() const { return shown.find("historyWindow")->isVisible(); }
    QString runState() const { return shown.textOf("crushButton"); }

    Dice chance;
    ShownWindow shown;
    DialogDriver answers;
    std::unique_ptr<TemporaryTree> tree;
    std::future<void> leavingFiles;
    QStringList shownFiles;
    QStringList chosen; ///< for the file dialog that opens next
    QString neverShown;
    int names = 0;
    int made = 0;
};

} // namespace testsupport
