# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT
# shellcheck shell=bash

# Sourced by what runs clang's tools over the sources.

# write_compile_commands FOLDER: how the dev build compiles each source, without
# the headers that GCC precompiled for the tests, which clang cannot read.
write_compile_commands() {
    mkdir -p "$1"
    sed 's| -Winvalid-pch -include [^ ]*/cmake_pch\.hxx||' build/dev/compile_commands.json \
        >"$1/compile_commands.json"
}
