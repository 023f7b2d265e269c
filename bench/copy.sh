#!/bin/sh
# SPDX-License-Identifier: MIT
# Measures the copy pass of a job against cp -a: many small files, and one large one.
# Usage: bench/copy.sh [COUNT] [ROUNDS] [MEBIBYTES]     20000 files, 5 rounds and 2048 MiB by default; medians are shown
# Every round copies to a place of its own, and all of them are removed at the end: a copy made soon after a like tree was deleted takes
# several times as long.
set -eu
cd "$(dirname "$0")/.."
. bench/prepare.sh
prepare 1000 time python3
files=${1:-20000}
rounds=${2:-5}
mebibytes=${3:-2048}
copies=$work/copies
trap 'rm -rf "$copies"' EXIT
rm -rf "$copies"
mkdir -p "$copies/large"

small_files() {
    python3 - "$copies/small" "$files" <<'END'
import os, sys
folder, count = sys.argv[1], int(sys.argv[2])
for number in range(count):
    if number % 100 == 0:
        os.makedirs(f"{folder}/{number // 100:05}")
    with open(f"{folder}/{number // 100:05}/{number % 100:02}.txt", "wb") as file:
        file.write(os.urandom(4096))
END
}

# Seconds of the copy pass alone, as the job tells them.
copy_pass() { # SOURCE TARGET
    "$app/quillon-job" --app "$app" --job copies --source "$1" --target "$2" --yes --quiet --json 2>/dev/null |
        python3 -c 'import json, sys; job = json.load(sys.stdin); print(job["seconds"]["copying"] if job["end"] == "complete" else "failed")'
}
cp_archive() {
    /usr/bin/time -o "$work/time" -f %e cp -a "$1" "$2"
    cat "$work/time"
}

measure() { # SOURCE
    rm -f "$work"/*.seconds
    round=0
    while [ $round -lt "$rounds" ]; do
        round=$((round + 1))
        for name in copy_pass cp_archive; do
            find "$1" -type f -exec cat {} + >/dev/null # pages that were not touched for some seconds may be gone
            $name "$1" "$copies/$name-$(basename "$1")-$round" >>"$work/$name.seconds"
        done
    done
    for name in copy_pass cp_archive; do
        printf '%-12s %s s   (%s)\n' $name "$(median "$work/$name.seconds" 1)" "$(tr '\n' ' ' <"$work/$name.seconds")"
    done
}

small_files
head -c "${mebibytes}M" /dev/urandom >"$copies/large/file.bin"
echo "$files files of 4 KiB, $(git describe --always --dirty), medians of $rounds rounds"
measure "$copies/small"
echo "One file of $mebibytes MiB"
measure "$copies/large"
