// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A label in a table row for text that comes from the user's disk. Label and tooltip show
// it as plain text on one line, whatever it contains. Lives in the GUI thread and belongs
// to its row.

#pragma once

#include <QLabel>

class PlainLabel : public QLabel
{
    Q_OBJECT

public:
    PlainLabel(QWidget *row, const QString &objectName, const QRect &geometry);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void showPlainToolTip(const QPoint &position) const;
    void paintOnOneLine();
};
