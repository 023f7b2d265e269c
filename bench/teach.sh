#!/bin/sh
# SPDX-License-Identifier: MIT
# Two workstations teach one extension at once, ROUNDS times each, at random moments; a third one does so, too, and is killed
# once a minute, wherever it is. First on a local folder, then on a real SMB share that each has mounted for itself. At
# the end every term that anyone has saved has to be there once, the history has to hold each change once, without a gap,
# and no list may be torn.
# Usage: bench/teach.sh [ROUNDS] [SMB_ROUNDS]     1000 each by default; 0 leaves a road out
# Needs root, /dev/fuse and a network namespace. TEACH=PROGRAM takes another build of quillon_bench_teach_rounds.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh
. bench/smb_share.sh
rounds=${1:-1000}
smb_rounds=${2:-$rounds}
# shellcheck disable=SC2086  # a list of words
install_missing $SHARE_PACKAGES
if [ -z "${TEACH:-}" ]; then
    # shellcheck disable=SC2086  # a list of words
    install_missing $BUILD_PACKAGES $TEST_PACKAGES
    configure ci
    cmake --build --preset ci --target quillon_bench_teach_rounds
    TEACH=$PWD/build/ci/bench/quillon_bench_teach_rounds
fi
work=$(mktemp -d)
failed=0
# shellcheck disable=SC2317  # called by the trap
clean_up() {
    rm -f "$work/both_teach"
    close_share
    rm -rf "$work"
}
trap clean_up EXIT
trap "exit 1" INT TERM

# saved NUMBER: how many terms the workstation says that it has saved
saved() { tail -n 1 "$work/taught$1" | grep . || echo 0; }

# teach NUMBER SHARE ROUNDS: becomes the program, so that the number of the shell behind & is the program's
teach() { exec "$TEACH" teach "$work/teach$1" "$2/taught" "$3" "$1" >"$work/taught$1" 2>"$work/said$1"; }

# killed_ones SHARE: workstations from number 4 on, one behind the other, none of which comes to its end. Each goes down with
# its mount, if it has one: a client that serves others, too, may hang for all of them when one is killed.
killed_ones() {
    number=4
    share=$1
    while [ -e "$work/both_teach" ]; do
        [ "$1" = "$work/local" ] || { mount_share $number; share=$mounted; }
        teach $number "$share" 1000000 &
        sleep $((number * 17 % 31 + 30))
        kill -KILL $! 2>/dev/null || true
        [ "$1" = "$work/local" ] || drop_mount $number
        wait $! 2>/dev/null || true
        number=$((number + 1))
    done
}

# teach_both SHARE1 SHARE2 FOLDER ROUNDS: FOLDER is where the server keeps it all
teach_both() {
    mkdir -p "$1/taught"
    touch "$work/both_teach"
    teach 1 "$1" "$4" &
    first=$!
    killed_ones "$2" &
    killer=$!
    (teach 2 "$2" "$4") || failed=1
    wait $first || failed=1
    rm "$work/both_teach"
    wait $killer
    # Whoever opens the database next sees to what the killed ones have left.
    (teach 3 "$1" 1) || failed=1
    set -- "$3/taught"
    for file in "$work"/taught*; do
        number=${file#"$work/taught"}
        set -- "$@" "$number=$(saved "$number")"
    done
    cat "$work"/said[123]
    "$TEACH" check "$@" || failed=1
    echo "killed: $(($# - 4)) workstations"
    rm -rf "$work"/teach* "$work"/taught* "$work"/said*
}

if [ "$rounds" != 0 ]; then
    echo "Local folder"
    mkdir "$work/local"
    teach_both "$work/local" "$work/local" "$work/local" "$rounds"
fi
if [ "$smb_rounds" != 0 ]; then
    echo "SMB share, mounted twice"
    start_server
    mount_share 1
    one=$mounted
    mount_share 2
    teach_both "$one" "$mounted" "$work/data" "$smb_rounds"
fi
exit $failed
