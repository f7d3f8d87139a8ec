// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// For tests to which the kind of a call is enough; see systemcalls.h.

#pragma once

#include "systemcalls.h"

#include <utility>

namespace testsupport
{

using FileCall = CallKind;

class FileCallWatch : public CallHook
{
public:
    explicit FileCallWatch(std::function<CallFate(FileCall)> watch)
        : CallHook([watch = std::move(watch)](const SystemCall &call) { return watch(call.kind); })
    {
    }
};

} // namespace testsupport
