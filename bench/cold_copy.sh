#!/bin/sh
# SPDX-License-Identifier: MIT
# Measures copies of many small files between cold disks: source and target are ext4 volumes of their own on loop devices past the
# page cache, and the caches are dropped before each run. Root only.
# Usage: bench/cold_copy.sh [COUNT] [ROUNDS] [QUILLON_JOB...]      20000 files of 4 KiB and 5 rounds by default; medians are shown.
# QUILLON_JOB: programs of other versions, each with its application folder, for the copying pass of a job.
# WARM=1 in the environment: the source is read ahead of each run, and the target alone is cold.
# Beside `cp -a` and `sync -f`, which together are the measure for `quillon-list copy`, since all of them read the source cold; the
# copying pass of a job comes behind its tests, which leave small files in memory.
set -eu
cd "$(dirname "$0")/.."
. bench/prepare.sh
prepare 1000 time python3 e2fsprogs
files=${1:-20000}
rounds=${2:-5}
[ $# -lt 2 ] || shift 2
disks=$work/cold-copy
loops=
trap 'finish' EXIT
finish() {
    umount "$disks/source" "$disks/target" 2>/dev/null || true
    for loop in $loops; do losetup -d "$loop" 2>/dev/null || true; done
    rm -rf "$disks"
}
rm -rf "$disks"
mkdir -p "$disks/source" "$disks/target"

# disk NAME: makes a volume and mounts it
disk() {
    rm -f "$disks/$1.img"
    fallocate -l "$((files * 12 / 1024 + 256))M" "$disks/$1.img"
    mkfs.ext4 -q -N "$((files * 2))" "$disks/$1.img"
    loop=$(losetup -f --show --direct-io=on "$disks/$1.img")
    loops="$loops $loop"
    mount "$loop" "$disks/$1"
}
# put_away NAME
put_away() {
    used=$(findmnt -n -o SOURCE "$disks/$1")
    umount "$disks/$1"
    losetup -d "$used"
}
cold() {
    sync
    echo 3 >/proc/sys/vm/drop_caches
    [ -z "${WARM:-}" ] || find "$disks/source/tree" -type f -exec cat {} + >/dev/null
}

disk source
python3 - "$disks/source/tree" "$files" <<'END_OF_PROGRAM'
import os, sys
folder, count = sys.argv[1], int(sys.argv[2])
for number in range(count):
    if number % 100 == 0:
        os.makedirs(f"{folder}/{number // 100:05}")
    with open(f"{folder}/{number // 100:05}/{number % 100:02}.txt", "wb") as file:
        file.write(os.urandom(4096))
END_OF_PROGRAM
"$app/quillon-job" --app "$app" --job listed --source "$disks/source/tree" --yes --quiet >/dev/null 2>&1

timed() { /usr/bin/time -o "$work/time" -f %e "$@" >/dev/null 2>&1 && cat "$work/time" || echo failed; }
cp_and_sync() { timed sh -c 'cp -a "$1" "$2" && sync -f "$2"' sh "$disks/source/tree" "$disks/target/copy"; }
list_copy() { timed "$app/quillon-list" copy listed --app "$app" --to "$disks/target/copy" --yes "$@"; }
list_verify() { list_copy --verify; }
list_no_sync() { list_copy --no-sync; }
# job_pass JOB [OPTION]...: seconds of the copying pass alone, as the job tells them
job_pass() {
    program=$1
    shift
    "$program" --app "$(dirname "$program")" --job copies --source "$disks/source/tree" --target "$disks/target/copy" --yes --quiet \
        --json "$@" 2>/dev/null |
        python3 -c 'import json, sys; job = json.load(sys.stdin); print(job["seconds"]["copying"] if job["end"] == "complete" else "failed")'
}
job() { job_pass "$app/quillon-job"; }
job_verify() { job_pass "$app/quillon-job" --verify; }
job_no_sync() { job_pass "$app/quillon-job" --no-sync; }
others=
for other; do
    number=$((${number:-0} + 1))
    eval "other_$number() { job_pass '$other'; }"
    others="$others other_$number"
    echo "other_$number: copying pass of $other"
done

names="cp_and_sync list_copy list_no_sync list_verify job job_no_sync job_verify $others"
rm -f "$work"/*.seconds
round=0
while [ $round -lt "$rounds" ]; do
    round=$((round + 1))
    for name in $names; do
        disk target
        cold
        $name >>"$work/$name.seconds"
        put_away target
    done
done
echo "$files files of 4 KiB, $(nproc) processors, $(uname -r), $(git describe --always --dirty), medians of $rounds rounds, wall seconds"
limit=$(median "$work/cp_and_sync.seconds" 1)
for name in $names; do
    value=$(median "$work/$name.seconds" 1)
    printf '%-14s %6s  %s times cp -a and sync -f   (%s)\n' "$name" "$value" \
        "$(awk -v a="$value" -v b="$limit" 'BEGIN { printf "%.2f", a / b }')" "$(tr '\n' ' ' <"$work/$name.seconds")"
done
