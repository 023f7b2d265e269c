#!/bin/sh
# SPDX-License-Identifier: MIT
# Formats every C++ file; with --check, only tells which ones are not formatted (exit status 1).
set -eu
cd "$(dirname "$0")/.."
mode=-i
[ "${1:-}" != --check ] || mode=--dry-run
find src tests tools bench fuzz \( -name '*.cpp' -o -name '*.h' \) -print0 | xargs -0 -r clang-format $mode -Werror --style=file
