// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// One row of the history table: time, name and folder side by side, elided at the
// right, with the whole text as tooltip. Lives in the GUI thread; owned by the table
// that it is put into.

#pragma once

#include <QFrame>
#include <QString>

class PlainLabel;

class HistoryRowFrame : public QFrame
{
    Q_OBJECT

public:
    explicit HistoryRowFrame(QWidget *parent);

    /// Shows another entry; does nothing when it shows that one already.
    void setTexts(const QString &time, const QString &fileName, const QString &path);

private:
    PlainLabel *timeLabel;
    PlainLabel *nameLabel;
    PlainLabel *pathLabel;
};
