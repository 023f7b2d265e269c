#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs the tests of a preset that counts (coverage: everything; core-only: the core) and holds what they reach in src to a floor
# that may rise, never fall. Lines and branches by file: build/<preset>/coverage.txt, with the lines that no test reaches.
# Tests that fail or kill a program at each of its system calls are left out (the presets say so): the counters' own calls
# would fail with the others and spoil what was counted.
# Usage: coverage.sh [PRESET]
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh
preset=${1:-coverage}
install_missing gcovr
if [ -d "build/$preset" ]; then
    find "build/$preset" -name '*.gcda' -delete  # counts of earlier runs
fi
scripts/test.sh "$preset"

# A branch that only an exception takes, and one that the compiler proves to be dead, is none that a test could take: GCC counts
# one of the former beside nearly every call.
gcovr --root . --filter src/ --object-directory "build/$preset" --exclude-throw-branches --exclude-unreachable-branches \
    --fail-under-line 95 --fail-under-branch 82 --txt "build/$preset/coverage.txt" --print-summary -j "$(nproc)" "build/$preset"
