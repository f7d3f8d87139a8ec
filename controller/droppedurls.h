// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Converts what is dropped, which comes from any program, to paths.

#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>

/// The local paths that @p urls name, neither cleaned nor resolved, up to the first URL that is
/// not local: that one ends a drop without a message. Any thread; makes no system call.
QStringList localPathsOf(const QList<QUrl> &urls);
