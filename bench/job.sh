#!/bin/sh
# SPDX-License-Identifier: MIT
# Measures a whole job over a made tree against the bare loop of bench/limit.cpp and against two tools of the system.
# Usage: bench/job.sh [COUNT] [ROUNDS]      100000 files and 5 rounds by default; medians are shown
set -eu
cd "$(dirname "$0")/.."
. bench/prepare.sh
prepare "${1:-100000}" time strace file
rounds=${2:-5}

# file(1) reads up to 1 MiB of each file and is so slow that it gets a sample of every k-th file only.
find "$tree" -type f | awk -v step=$(((count + 4999) / 5000)) 'NR % step == 0' >"$work/names"
find_rows() { "$@" find "$tree" -type f -printf '%p,%t, %s\n'; }
file_types() { "$@" file -b -f "$work/names"; }

# measure NAME: one timed run, with an untimed pass over the tree right before it, since the system pages out what was not
# touched for some seconds. A line of wall seconds, user and system seconds and peak KiB goes to a file for each NAME.
measure() {
    limit >/dev/null
    "$1" /usr/bin/time -o "$work/time" -f '%e %U %S %M' >/dev/null 2>"$work/$1.errors" || { cat "$work/$1.errors" >&2; exit 1; }
    tail -n 1 "$work/time" >>"$work/$1.times"
}

rm -f "$work"/*.times
round=0
while [ $round -lt "$rounds" ]; do
    round=$((round + 1))
    echo "Round $round of $rounds"
    for name in limit job find_rows; do measure $name; done
done
measure file_types # one run tells enough

# calls NAME: system calls for each file, without the calls of the untimed passes
calls() {
    "$1" strace -f -c -o "$work/calls" >/dev/null 2>&1 || true
    awk -v files="$count" '$NF == "total" { printf "%.2f", $4 / files }' "$work/calls"
}

limit_cpu=$(median "$work/limit.times" 2,3)
echo
echo "$count files, $(nproc) processors, $(uname -r), $(git describe --always --dirty), medians of $rounds rounds (file_types: one run over a sample)"
printf '%-12s %10s %8s %8s %10s %12s %14s\n' '' files/s wall-s CPU-s peak-KiB calls/file CPU-to-limit
for name in limit job find_rows file_types; do
    times=$work/$name.times
    files=$count
    calls=-
    case $name in
        limit | job) calls=$(calls $name) ;;
        file_types) files=$(wc -l <"$work/names") ;;
    esac
    awk -v name="$name" -v files="$files" -v count="$count" -v wall="$(median "$times" 1)" -v cpu="$(median "$times" 2,3)" \
        -v memory="$(median "$times" 4)" -v calls="$calls" -v limit="$limit_cpu" 'BEGIN {
            printf "%-12s %10d %8.2f %8.2f %10d %12s %14.2f\n", name, files / wall, wall, cpu, memory, calls, cpu / files / (limit / count) }'
done
