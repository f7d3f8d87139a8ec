// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// What the measuring programs share: each measures one thing once, in a process
// of its own, and prints "name value" lines that bench/compare.py reads.

#pragma once

#include <QString>

namespace probe
{

/// Prints one measured value.
void tell(const char *name, double value);
/// Milliseconds of the monotonic clock, which all processes share.
double now();
/// A value of /proc/self/status in KiB, VmHWM (the most that was ever resident) for one.
double statusKibibytes(const char *field);
/// Ends the program when the history of a real home folder would be written.
void insistOnSandbox();

} // namespace probe
