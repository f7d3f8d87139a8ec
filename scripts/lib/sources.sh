# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT
# shellcheck shell=bash

# Sourced by the scripts that work on the project's own files. They go by what
# lies in the folder, so they work before a commit and without git as well.

# Prints the path of every file of the project, each ended by NUL.
source_files() {
    find . \( -path ./.git -o -path ./build -o -path ./.cache -o -name __pycache__ \) -prune \
        -o -type f ! -name '*.user' ! -name compile_commands.json -print0 | sort --zero-terminated
}

# copy_sources FOLDER: puts a copy of the project there.
copy_sources() {
    mkdir -p "$1"
    source_files | xargs --null cp --parents --target-directory="$1"
}
