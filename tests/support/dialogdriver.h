// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The person who answers the modal dialogs. A dialog runs its own event loop, so
// what happens in it is planned before it opens and done from within that loop.
// Lives in the GUI thread; answers every dialog that opens during its life.

#pragma once

#include <QList>
#include <QObject>
#include <QRect>
#include <QString>
#include <QStringList>

#include <functional>

class QDialog;

namespace testsupport
{

enum class Answer { Ok, Cancel, Escape };

/// What a dialog showed when it was on screen.
struct SeenDialog {
    QString text;
    QString iconSheet;
    QStringList buttons; ///< captions of those to be seen, from left to right
    QRect place;
};

class DialogDriver : public QObject
{
    Q_OBJECT

public:
    using Action = std::function<void(QDialog &)>;

    DialogDriver();

    /// Plans the answer to the next dialog without a plan, a real click or key, and what is done
    /// before it.
    void next(Answer answer, const Action &before = {}) { plans.append({answer, before}); }

    /// The dialogs met so far, in order. One that nobody planned is here too, ended with Escape.
    const QList<SeenDialog> &seen() const { return met; }
    /// True once every plan was carried out and the last dialog has gone.
    bool isDone() const { return plans.isEmpty() && open == 0; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void meet(QDialog &dialog);

    QList<QPair<Answer, Action>> plans;
    QList<SeenDialog> met;
    int open = 0;
};

} // namespace testsupport
