// SPDX-FileCopyrightText: 2026 Brenvale
// SPDX-License-Identifier: MIT

int main()
{
    return 0;
}
