// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// A plain container that adds only its type name, by which a style sheet can
// select it. Lives in the GUI thread and belongs to its parent. Part of the widget
// set; no window uses it at present.

#pragma once

#include <QWidget>

class ZZScrollArea : public QWidget
{
    Q_OBJECT

public:
    explicit ZZScrollArea(QWidget *parent)
        : QWidget(parent)
    {
    }
};
