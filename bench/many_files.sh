#!/bin/sh
# SPDX-License-Identifier: MIT
# Measures jobs over many files that never were (bench/made_files.cpp): counts, seconds of each phase, processor seconds and peak memory.
# Usage: bench/many_files.sh [COUNT...]      1000000 and 10000000 by default; 10000000 take some 7 minutes without evidence, and more with it
# OPTIONS in the environment: further options of quillon-job, such as --no-evidence
set -eu
cd "$(dirname "$0")/.."
. bench/prepare.sh
prepare 1000 time python3 fuse3 libfuse3-dev
cmake --build --preset release --target quillon_bench_made_files
point=$work/made
mkdir -p "$point"
[ $# -gt 0 ] || set -- 1000000 10000000
trap 'fusermount3 -u "$point" 2>/dev/null || true' EXIT

for files; do
    "$release/bench/quillon_bench_made_files" "$point" "$files" &
    while ! grep -q " $point fuse" /proc/self/mounts; do sleep 0.1; done
    # shellcheck disable=SC2086  # a list of words
    /usr/bin/time -o "$work/time" -f '%M %e %U %S' "$app/quillon-job" --app "$app" --job "made-$files" --source "$point" --yes --quiet \
        --json ${OPTIONS:-} 2>/dev/null >"$work/made.json"
    fusermount3 -u "$point"
    wait
    python3 - "$work/made.json" "$work/time" "$app/Data/made-$files" "$files" <<'PYTHON'
import json, os, sys
job = json.load(open(sys.argv[1]))
peak, wall, user, system = open(sys.argv[2]).read().split()
counters = job["counters"]
wanted = int(sys.argv[4])
folders = -(-wanted // 100)
assert counters["files"] == wanted and counters["graded"] == wanted, counters
assert counters["folders"] in (folders + -(-folders // 100) + d for d in (0, 1)), counters
seconds = ", ".join(f"{name} {value:.1f}" for name, value in job["seconds"].items())
print(f"{wanted:,} files, {counters['total_bytes']:,} bytes, {counters['good']:,} good: {float(wall):.0f} s ({seconds}), "
      f"CPU {float(user) + float(system):.0f} s, peak {int(peak) / 1024:.0f} MB")
for end in ".csv", ".sqlite":
    if os.path.exists(sys.argv[3] + end):
        print(f"  {end[1:]}: {os.path.getsize(sys.argv[3] + end) / 1e6:,.0f} MB")
PYTHON
done
