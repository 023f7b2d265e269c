#!/bin/sh
# SPDX-License-Identifier: MIT
# Measures a job over a source whose calls take their time (bench/slow_files.cpp), beside find, which only walks.
# Usage: bench/slow.sh [QUILLON_JOB...]     programs of other versions to compare with, each with its application folder
set -eu
cd "$(dirname "$0")/.."
. bench/prepare.sh
prepare 1000 fuse3 libfuse3-dev
cmake --build --preset release --target quillon_bench_slow_files
source=$work/slow-source
point=$work/slow
mkdir -p "$point"

# 10,000 files in 400 folders, twenty in each of twenty.
if ! [ -e "$source.made" ]; then
    echo "Making 10000 files"
    rm -rf "$source"
    for first in $(seq 20); do
        for second in $(seq 20); do
            folder="$source/folder $first/folder $second"
            mkdir -p "$folder"
            for kind in jpg png pdf gif txt; do
                for number in 1 2 3 4 5; do
                    case $kind in
                        jpg) printf '\377\330\377\340\000\020JFIF\000' ;;
                        png) printf '\211PNG\r\n\032\n' ;;
                        pdf) printf '%%PDF-1.4\n' ;;
                        *) printf 'GIF89a' ;;
                    esac >"$folder/file $number.$kind"
                    truncate -s 1500 "$folder/file $number.$kind"
                done
            done
        done
    done
    : >"$source.made"
fi

# slowly WAITS COMMAND...: runs a command while the source is shown at the mount point; WAITS is one word list
slowly() {
    waits=$1
    shift
    # shellcheck disable=SC2086  # a list of words
    $release/bench/quillon_bench_slow_files "$source" "$point" $waits &
    while ! grep -q " $point fuse" /proc/self/mounts; do sleep 0.1; done
    "$@" || true
    fusermount3 -u "$point"
    wait
}

# phases APP PROGRAM: one job; wall seconds of the whole and of its three phases
phases() {
    without= # older versions make no evidence, and know no option against it
    ! "$2" --help | grep -q -e --no-evidence || without=--no-evidence
    start=$(date +%s%N)
    "$2" --app "$1" --job slow --source "$point" --yes --quiet $without --json 2>/dev/null >"$work/slow.json"
    end=$(date +%s%N)
    python3 - "$work/slow.json" "$((end - start))" <<'PYTHON'
import json, sys
result = json.load(open(sys.argv[1]))
row = "  ".join(f"{name} {value:.2f}" for name, value in result["seconds"].items())
print(f"whole {int(sys.argv[2]) / 1e9:.2f}  {row}")
PYTHON
}

walk_only() { /usr/bin/time -f 'whole %e' find "$point" -type f -printf '%p,%t, %s\n' 2>&1 >/dev/null; }

echo
echo "10,000 files in 400 folders, $(nproc) processors, $(uname -r), $(git describe --always --dirty); wall seconds"
for waits in "--wait 0" "--wait 500" "--wait 5000" "--every 50 --pause 300"; do
    printf '%-24s %-14s ' "$waits" find
    slowly "$waits" walk_only
    printf '%-24s %-14s ' "$waits" quillon-job
    slowly "$waits" phases "$app" "$app/quillon-job"
    for other; do
        printf '%-24s %-14s ' "$waits" "$other"
        slowly "$waits" phases "$(dirname "$other")" "$other"
    done
done
