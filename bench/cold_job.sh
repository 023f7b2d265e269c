#!/bin/sh
# SPDX-License-Identifier: MIT
# Measures a job over a cold disk, an ext4 volume of its own on a loop device past the page cache, beside find, which only walks, and
# other versions of the program. The caches are dropped before each run. Root only.
# Usage: bench/cold_job.sh [COUNT] [ROUNDS] [QUILLON_JOB...]     100000 files and 5 rounds by default; medians of wall seconds are shown.
# QUILLON_JOB: programs of other versions, each with its application folder.
set -eu
cd "$(dirname "$0")/.."
. bench/prepare.sh
prepare 1000 time python3 e2fsprogs
files=${1:-100000}
rounds=${2:-5}
[ $# -lt 2 ] || shift 2
disk=$work/cold-disk
loop=
trap 'finish' EXIT
finish() {
    umount "$disk" 2>/dev/null || true
    [ -z "$loop" ] || losetup -d "$loop"
    rm -rf "$disk" "$disk.img"
}
mkdir -p "$disk"
fallocate -l "$((files * 6 / 1024 + 256))M" "$disk.img"
mkfs.ext4 -q -N "$((files * 2))" "$disk.img"
loop=$(losetup -f --show --direct-io=on "$disk.img")
mount "$loop" "$disk"
"$release/bench/quillon_bench_make_tree" "$disk/tree" "$files"

cold() {
    sync
    umount "$disk" # drops its caches, too
    echo 3 >/proc/sys/vm/drop_caches
    mount "$loop" "$disk"
}
# phases PROGRAM [OPTION]...: seconds of folder test, count and testing, as the job tells them, and of the whole
phases() {
    program=$1
    shift
    "$program" --app "$(dirname "$program")" --job cold --source "$disk/tree" --yes --quiet --json "$@" 2>/dev/null | python3 -c '
import json, sys
seconds = json.load(sys.stdin)["seconds"]
print(seconds["folder_tests"], seconds["file_count"], seconds["testing"], sum(seconds.values()))'
}
find_rows() {
    /usr/bin/time -o "$work/time" -f '0 %e 0 %e' find "$disk/tree" -type f -printf '%p,%t, %s\n' >/dev/null
    cat "$work/time"
}
job() { phases "$app/quillon-job"; }
job_bare() { phases "$app/quillon-job" --no-evidence; }
names="find_rows job job_bare"
for other; do
    number=$((${number:-0} + 1))
    eval "other_$number() { phases '$other'; }"
    names="$names other_$number"
    echo "other_$number: $other"
done

rm -f "$work"/*.phases
round=0
while [ $round -lt "$rounds" ]; do
    round=$((round + 1))
    for name in $names; do
        cold
        $name >>"$work/$name.phases"
    done
done
echo "$files files, $(nproc) processors, $(uname -r), $(git describe --always --dirty), medians of $rounds rounds"
printf '%-10s %8s %8s %8s %8s\n' "" folders count testing whole
for name in $names; do
    printf '%-10s' "$name"
    for column in 1 2 3 4; do printf ' %8.2f' "$(median "$work/$name.phases" $column)"; done
    echo
done
