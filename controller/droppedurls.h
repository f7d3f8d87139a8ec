// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// From what is dropped, which any program may have put together, to paths.

#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>

/// The local paths that @p urls name, neither cleaned nor resolved, up to the first URL that is
/// no local file: that one ends a drop silently. Any thread; asks no disk.
QStringList localPathsOf(const QList<QUrl> &urls);
