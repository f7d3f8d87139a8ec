// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What an overwritten file has to hold, as a second hard link shows it.

#pragma once

#include <QByteArray>

#include <ctime>

namespace testsupport
{

/// The bytes of a file of @p size that was overwritten within the second @p second.
QByteArray expectedBytes(int size, std::time_t second);

/// True when every block of @p found was overwritten in some second from
/// @p first to @p last; a run may cross from one second into the next anywhere.
bool wasOverwritten(const QByteArray &found, std::time_t first, std::time_t last);

} // namespace testsupport
