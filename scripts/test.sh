#!/bin/sh
# SPDX-License-Identifier: MIT
# Installs what is missing, builds everything with warnings as errors, and runs every test without a display.
# Usage: test.sh [PRESET]      a preset with tests; without one, ci
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh
mkdir -p build
preset=${1:-ci}

clang=
case $preset in clang | core-asan) clang="clang libclang-rt-dev" ;; esac
# shellcheck disable=SC2086  # lists of words
install_missing $BUILD_PACKAGES $WINDOW_PACKAGES $TEST_PACKAGES $clang
configure "$preset"
echo "Building build/$preset"
cmake --build --preset "$preset"

echo "Running the tests"
alone=
# The thread sanitizer needs the places of its own in memory, which a system that spreads addresses widely may have taken.
[ "$preset" != tsan ] || ! setarch -R true 2>/dev/null || alone="setarch -R"
status=0
# Without the two sizes ctest cuts the output of a test program, and its totals stand at the end.
$alone ctest --preset "$preset" --output-junit "$PWD/build/$preset/tests.xml" --test-output-size-passed 100000000 \
    --test-output-size-failed 100000000 || status=$?
awk -f scripts/count_tests.awk "build/$preset/tests.xml"
exit $status
