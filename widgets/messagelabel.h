// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// The message of a dialog, shown whole whatever font the desktop has: its lines are 20
// pixels apart, or closer where they would not all fit. Lives in the GUI thread and
// belongs to its dialog.

#pragma once

#include <QLabel>

class MessageLabel : public QLabel
{
    Q_OBJECT

public:
    explicit MessageLabel(QWidget *dialog);

protected:
    void paintEvent(QPaintEvent *event) override;
};
