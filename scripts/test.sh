#!/bin/sh
# SPDX-License-Identifier: MIT
# Installs what is missing, builds everything with warnings as errors, and runs every test without a display.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh
mkdir -p build

# shellcheck disable=SC2086  # lists of words
install_missing $BUILD_PACKAGES $WINDOW_PACKAGES $TEST_PACKAGES
configure ci
echo "Building build/ci"
cmake --build --preset ci

echo "Running the tests"
status=0
# Without the two sizes ctest cuts the output of a test program, and its totals stand at the end.
ctest --preset ci --output-junit "$PWD/build/ci/tests.xml" --test-output-size-passed 100000000 \
    --test-output-size-failed 100000000 || status=$?
awk -f scripts/count_tests.awk build/ci/tests.xml
exit $status
