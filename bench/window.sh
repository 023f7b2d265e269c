#!/bin/sh
# SPDX-License-Identifier: MIT
# Measures a job in the window, "Show Progress" on, against quillon-job over the same tree, on a display of its own (Xvfb).
# Usage: bench/window.sh [COUNT] [ROUNDS]      100000 files and 5 rounds by default; medians are shown
set -eu
cd "$(dirname "$0")/.."
. bench/prepare.sh
# shellcheck disable=SC2086  # a list of words
prepare "${1:-100000}" $WINDOW_PACKAGES time xvfb xauth
rounds=${2:-5}
grep -qs '^QUILLON_GUI:[A-Z]*=ON' build/release/CMakeCache.txt || configure release -DQUILLON_GUI=ON
cmake --build --preset release --target quillon_bench_window

# window [TARGET]: a job in the window. The untimed pass goes over the tree when the display is there, which takes some seconds.
window() {
    # shellcheck disable=SC2016  # for the inner shell
    xvfb-run -a -s "-screen 0 1280x800x24" env QT_QPA_PLATFORM=xcb sh -c \
        '"$1" "$2" "$3" data/starter/Database >/dev/null; program=$4 app=$5 tree=$2; shift 5; exec "$program" "$app" "$tree" "$@"' \
        sh $release/bench/quillon_bench_limit "$tree" "$work/rows" $release/bench/quillon_bench_window "$app" "$@"
}
# A line of user and system seconds for each run of quillon-job, one of names and figures for each run in the window. An untimed
# pass goes right ahead of each, since the system pages out what was not touched for some seconds.
rm -f "$work"/window-*.times
round=0
while [ $round -lt "$rounds" ]; do
    round=$((round + 1))
    echo "Round $round of $rounds"
    limit >/dev/null
    job /usr/bin/time -a -o "$work/window-job.times" -f '%U %S' >/dev/null 2>&1
    window >>"$work/window-test.times"
done
# A copying job tells of the heart alone: what a copy costs is the disk's.
rm -rf "$work/target"
mkdir -p "$work/target"
window "$work/target" >"$work/window-copy.times"
rm -rf "$work/target"

figure() { # NAME [FILE]: median of the figure behind this name
    awk -v name="$1" '{ for (i = 1; i < NF; i++) if ($i == name) print $(i + 1) }' "$work/window-${2:-test}.times" >"$work/figures"
    median "$work/figures" 1
}
job_cpu=$(median "$work/window-job.times" 1,2)
echo
echo "$count files, $(nproc) processors, $(uname -r), $(git describe --always --dirty), medians of $rounds rounds"
awk -v job="$job_cpu" -v window="$(figure job-cpu-ms)" 'BEGIN {
    printf "CPU seconds: quillon-job %.2f, window %.2f, ratio %.2f (limit 1.25)\n", job, window / 1000, window / 1000 / job }'
echo "until the window shows: $(figure start-cpu-ms) ms CPU (limit 400)"
echo "longest gap of the 20 ms heartbeat: $(figure gap-ms) ms, of it own CPU $(figure gap-cpu-ms) ms (limit 100)"
echo "  in a job that copies: $(figure gap-ms copy) ms, of it own CPU $(figure gap-cpu-ms copy) ms"
echo "memory behind the job: $(figure rss-kib) KiB, at most $(figure peak-kib) KiB"
