#!/bin/sh
# SPDX-License-Identifier: MIT
# What .ci/run has no time for: some hours on two processors. Usage: longer_checks.sh [STEP...]      without one, all of them
set -eu
cd "$(dirname "$0")/.."
exec </dev/null
. scripts/steps.sh

step "Packages" scripts/install_packages.sh
[ $# -gt 0 ] || set -- coverage asan tsan clang tidy fuzz
for name; do
    case $name in
        coverage) step "Coverage of the whole, screens included" scripts/coverage.sh coverage ;;
        asan) step "Every test under the address and undefined behaviour sanitizers" scripts/test.sh asan ;;
        tsan) step "Core tests under the thread sanitizer" scripts/test.sh tsan ;;
        clang) step "Every test, built by Clang" scripts/test.sh clang ;;
        tidy) step "clang-tidy, every file" scripts/tidy.sh ;;
        fuzz) step "Fuzz targets, two minutes each" scripts/fuzz.sh 120 ;;
        *) echo "Usage: $0 [coverage] [asan] [tsan] [clang] [tidy] [fuzz]" >&2; exit 2 ;;
    esac
done
finish_steps
