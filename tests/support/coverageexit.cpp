// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

// Linked into the program only where its lines are counted: writes the counts
// before it ends.

// NOLINTBEGIN(bugprone-reserved-identifier): the compiler and the linker chose these names
extern "C" {
void __gcov_dump();
[[noreturn]] void __real__Exit(int status);
[[noreturn]] void __wrap__Exit(int status);

void __wrap__Exit(int status)
{
    __gcov_dump();
    __real__Exit(status);
}
}
// NOLINTEND(bugprone-reserved-identifier)
