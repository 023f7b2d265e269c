#!/bin/sh
# SPDX-License-Identifier: MIT
# Builds the libFuzzer targets and runs each for some seconds (60, or the number given). New inputs that reach new code go to
# build/fuzz/corpus; a finding stops the run, and its input belongs into fuzz/corpus/<name> together with the mending.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh
seconds=${1:-60}
# shellcheck disable=SC2086  # a list of words
install_missing $BUILD_PACKAGES clang
configure fuzz
cmake --build --preset fuzz
for program in build/fuzz/fuzz/quillon_fuzz_*; do
    name=${program##*/quillon_fuzz_}
    echo "Fuzzing $name for $seconds s"
    mkdir -p "build/fuzz/corpus/$name"
    "$program" -max_total_time="$seconds" -timeout=5 -rss_limit_mb=1024 -verbosity=0 -print_final_stats=1 \
        -artifact_prefix="build/fuzz/$name-" "build/fuzz/corpus/$name" "fuzz/corpus/$name"
done
