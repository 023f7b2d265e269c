#!/bin/sh
# SPDX-License-Identifier: MIT
# Measures the copy pass of a job against cp -a: many small files, one large one, and a tenth of the small files to targets that take
# 100 ms for each flush: an ext4 volume on such a disk, and a volume that a program serves, which has to be asked for each file. For
# these the script has to run as root; it tells how many flushes there were, too.
# Usage: bench/copy.sh [COUNT] [ROUNDS] [MEBIBYTES]     20000 files, 5 rounds and 2048 MiB by default; medians are shown
# Every round copies to a place of its own, and all of them are removed at the end: a copy made soon after a like tree was deleted takes
# several times as long.
set -eu
cd "$(dirname "$0")/.."
. bench/prepare.sh
prepare 1000 time python3 fuse3 libfuse3-dev e2fsprogs
cmake --build --preset release --target quillon_bench_faulty_files
files=${1:-20000}
rounds=${2:-5}
mebibytes=${3:-2048}
copies=$work/copies
trap 'leave' EXIT
leave() {
    umount "$copies/volume" 2>/dev/null || true
    [ -z "${loop:-}" ] || losetup -d "$loop" 2>/dev/null || true
    fusermount3 -u "$copies/slow" 2>/dev/null || true
    rm -rf "$copies"
}
rm -rf "$copies"
mkdir -p "$copies/large"

small_files() { # FOLDER COUNT
    python3 - "$1" "$2" <<'END'
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
copy_pass() { # SOURCE TARGET [OPTION]...
    source=$1
    target=$2
    shift 2
    "$app/quillon-job" --app "$app" --job copies --source "$source" --target "$target" --yes --quiet --json "$@" 2>/dev/null |
        python3 -c 'import json, sys; job = json.load(sys.stdin); print(job["seconds"]["copying"] if job["end"] == "complete" else "failed")'
}
cp_archive() {
    /usr/bin/time -o "$work/time" -f %e cp -a "$1" "$2"
    cat "$work/time"
}

cp_and_sync() {
    # shellcheck disable=SC2016  # for the inner shell
    /usr/bin/time -o "$work/time" -f %e sh -c 'cp -a "$1" "$2" && sync -f "$2"' sh "$1" "$2"
    cat "$work/time"
}
no_sync() { copy_pass "$@" --no-sync; }
verified() { copy_pass "$@" --verify; }

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

# slowly VOLUME NAME: one copy to a disk whose flushes wait; seconds, and how many flushes there were until it was put away
slowly() {
    disk=$copies/disk
    rm -rf "$disk"
    mkdir -p "$disk" "$copies/slow" "$copies/volume"
    if [ "$1" = ext4 ]; then
        truncate -s 2G "$disk/image"
        mkfs.ext4 -q "$disk/image"
    fi
    $release/bench/quillon_bench_faulty_files "$disk" "$copies/slow" --flush-wait 100 >"$work/flushes" &
    while ! grep -q " $copies/slow fuse" /proc/self/mounts; do sleep 0.1; done
    place=$copies/slow
    if [ "$1" = ext4 ]; then
        place=$copies/volume
        loop=$(losetup -f --show "$copies/slow/image")
        mount "$loop" "$place"
    fi
    seconds=$($2 "$copies/few" "$place/copy")
    if [ "$1" = ext4 ]; then
        umount "$place"
        losetup -d "$loop"
        loop=
    fi
    fusermount3 -u "$copies/slow"
    wait
    printf '%-8s %-12s %s s   %s\n' "$1" "$2" "$seconds" "$(cat "$work/flushes")"
}

small_files "$copies/small" "$files"
head -c "${mebibytes}M" /dev/urandom >"$copies/large/file.bin"
echo "$files files of 4 KiB, $(git describe --always --dirty), medians of $rounds rounds"
measure "$copies/small"
echo "One file of $mebibytes MiB"
measure "$copies/large"
[ "$(id -u)" = 0 ] || exit 0
echo "$((files / 10)) files of 4 KiB, 100 ms for each flush"
small_files "$copies/few" "$((files / 10))"
for volume in ext4 served; do
    for name in cp_and_sync copy_pass no_sync verified; do slowly $volume $name; done
done
