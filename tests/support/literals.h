// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace testsupport
{

/// "文件"_s, as later versions of Qt have it.
inline QString operator""_s(const char *text, std::size_t length)
{
    return QString::fromUtf8(text, static_cast<int>(length));
}

} // namespace testsupport
