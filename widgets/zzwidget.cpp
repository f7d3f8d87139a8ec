// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "zzwidget.h"

ZZWidget::ZZWidget(QWidget *parent)
    : QWidget(parent)
{
}
