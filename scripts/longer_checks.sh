#!/bin/sh
# SPDX-License-Identifier: MIT
# What .ci/run leaves out: some hours on two processors. Usage: longer_checks.sh [STEP...]      without one, all of them
# The first four take about half an hour together.
set -eu
cd "$(dirname "$0")/.."
exec </dev/null
. scripts/steps.sh

step "Packages" scripts/install_packages.sh
[ $# -gt 0 ] || set -- core core-asan quick changed coverage asan tsan clang tidy fuzz package
for name; do
    case $name in
        core) step "Core without Qt, its tests and their coverage" scripts/coverage.sh core-only ;;
        core-asan) step "Core by Clang, its tests under the address and undefined behaviour sanitizers" scripts/test.sh core-asan ;;
        quick) step "Clang's warnings and the length of functions, every file" scripts/tidy.sh --quick ;;
        changed) step "clang-tidy, what changed since the last release, 5 minutes" scripts/tidy.sh --changed 300 ;;
        coverage) step "Coverage of the whole, screens included" scripts/coverage.sh coverage ;;
        asan) step "Every test under the address and undefined behaviour sanitizers" scripts/test.sh asan ;;
        tsan) step "Core tests under the thread sanitizer" scripts/test.sh tsan ;;
        clang) step "Every test, built by Clang" scripts/test.sh clang ;;
        tidy) step "clang-tidy, every file" scripts/tidy.sh ;;
        package) step "Packages, and what they hold" scripts/check_packages.sh ;;
        fuzz) step "Fuzz targets, two minutes each" scripts/fuzz.sh 120 ;;
        *) echo "Usage: $0 [core] [core-asan] [quick] [changed] [coverage] [asan] [tsan] [clang] [tidy] [fuzz] [package]" >&2; exit 2 ;;
    esac
done
finish_steps
