// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

#include "suites.h"

#include <algorithm>
#include <cstring>

namespace testsupport
{

std::vector<Suite> &suites()
{
    static std::vector<Suite> ofThisProgram;
    return ofThisProgram;
}

bool addSuite(const Suite &suite)
{
    suites().push_back(suite);
    return true;
}

const Suite *suiteNamed(const char *name)
{
    const auto found = std::find_if(suites().cbegin(), suites().cend(), [name](const Suite &suite) {
        return std::strcmp(suite.name, name) == 0;
    });
    return found == suites().cend() ? nullptr : &*found;
}

} // namespace testsupport
