// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

namespace testsupport
{

/// Everything below @p folder, one line an entry in the order of the names: path, kind and mode,
/// inode, number of names, time of the last change, and the bytes of a file or the target of a
/// link. Two inventories are the same when nothing has been touched in between.
QStringList inventoryOf(const QString &folder);

/// How many files and folders this process holds open.
int openDescriptors();

} // namespace testsupport
