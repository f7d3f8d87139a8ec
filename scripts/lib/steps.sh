# SPDX-FileCopyrightText: 2026 Brenvale
# SPDX-License-Identifier: MIT
# shellcheck shell=bash

# Sourced by the scripts that go through all of their steps before they fail, and
# close with what came of each.

summary=()
failures=0

# step NAME COMMAND...: runs the command and notes its outcome and duration.
step() {
    local name=$1 started=$SECONDS outcome=passed
    shift
    printf '\n== %s\n' "$name"
    if ! "$@"; then
        outcome=FAILED
        failures=$((failures + 1))
    fi
    summary+=("$(printf '%-7s %4ds  %s' "$outcome" $((SECONDS - started)) "$name")")
}

# Prints the outcomes and ends the script, with 0 if every step passed.
finish_steps() {
    printf '\n== summary\n'
    printf '%s\n' "${summary[@]}"
    exit $((failures > 0))
}
