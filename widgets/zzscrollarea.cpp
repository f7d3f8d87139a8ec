// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "zzscrollarea.h"

ZZScrollArea::ZZScrollArea(QWidget *parent)
    : QWidget(parent)
{
}
