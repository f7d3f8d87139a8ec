// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "controller/homedirectory.h"

#include <cstdlib>
#include <memory>

#include <pwd.h>
#include <unistd.h>

namespace
{

constexpr long fallbackBufferSize = 16384;

struct Freer {
    void operator()(void *memory) const { std::free(memory); }
};

} // namespace

QString homeDirectoryOf(uid_t uid)
{
    const long suggested = sysconf(_SC_GETPW_R_SIZE_MAX);
    const auto size = static_cast<std::size_t>(suggested == -1 ? fallbackBufferSize : suggested);
    const std::unique_ptr<char, Freer> buffer(static_cast<char *>(std::malloc(size)));
    if (!buffer)
        return QString();
    passwd entry = {};
    passwd *found = nullptr;
    if (getpwuid_r(uid, &entry, buffer.get(), size, &found) != 0 || found == nullptr)
        return QString();
    return QString::fromUtf8(found->pw_dir);
}
