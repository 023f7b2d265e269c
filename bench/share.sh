#!/bin/sh
# SPDX-License-Identifier: MIT
# Two workstations at one shared database: on a real SMB share, mounted twice, and on a local folder. Shows that what one
# learns is on the other at its next tested job, that an unchanged database is copied once, that what the share no longer has
# stands under Kept, and that no read gives a cut or mixed term file while others save it.
# Usage: bench/share.sh [SAVES] [READS]     10000 saves and 100000 reads by default
# Needs root, /dev/fuse and a network namespace: the server is out of reach of anything but this script.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh
. bench/smb_share.sh
saves=${1:-10000}
reads=${2:-100000}
dev=build/dev

# shellcheck disable=SC2086  # a list of words
install_missing $BUILD_PACKAGES $TEST_PACKAGES $SHARE_PACKAGES unzip
configure dev
cmake --build --preset dev --target app_folder quillon_bench_save_storm
storm=$PWD/$dev/bench/quillon_bench_save_storm
work=$(mktemp -d)
# shellcheck disable=SC2317  # called by the trap
clean_up() {
    close_share
    rm -rf "$work"
}
trap clean_up EXIT
# field TEXT: 512 bytes, filled up with blanks
field() { printf '%-512s' "$1"; }

# workstation NUMBER SHARE: an application folder with sharing on, as the wizard writes its settings
workstation() {
    app=$work/station$1/app data=$work/station$1/data
    mkdir -p "$app" "$data/Database" "$data/Settings" "$data/Archives"
    ln "$dev/Quillon/quillon-job" "$app/quillon-job" 2>/dev/null || cp "$dev/Quillon/quillon-job" "$app/"
    {
        printf '\001\000\001\000'
        field "$data"
        field "$data/Archives"
        field Query
        field Query
        field ''
        printf '\001\000\001\000'
        field "$2"
        printf '\000\000\000\000\000\000\000\000-\000\000'
    } >"$app/settings.dat"
}
run_job() {
    "$work/station$1/app/quillon-job" --app "$work/station$1/app" --job "road$1" --source "$work/source" --yes --quiet \
        >"$work/report$1" 2>&1 || { cat "$work/report$1" >&2; exit 1; }
}
say() { printf '%-70s %s\n' "$1" "$2"; }
expect() { [ "$2" = "$3" ] && say "$1" yes || { say "$1" "no: $2, not $3"; failed=1; }; }
stamps() { find "$work/station$1/data/Database" -type f -printf '%f %i %C@\n' | sort | cksum; }
failed=0

# road SHARE1 SHARE2: what two workstations have to see, each through its own path
road() {
    rm -rf "$work"/station*
    mkdir -p "$1/Database" "$1/Settings" "$work/source"
    printf 'abcdefghij%0600d' 0 >"$work/source/file.xyz"
    unzip -qo "$dev/Quillon/db.zip" 'Settings/*' 'Database/j*' 'Database/p*' -d "$1"
    workstation 1 "$1"
    workstation 2 "$2"
    run_job 1
    run_job 2
    expect "  both have all term files" "$(ls "$work/station1/data/Database")" "$(ls "$work/station2/data/Database")"
    before=$(stamps 1)
    run_job 1
    expect "  an unchanged database is not copied again" "$(stamps 1)" "$before"
    printf '1,abcdef,T\r\n' >"$1/Database/xyz.dat"
    run_job 2
    expect "  what one was taught is on the other" "$(cat "$work/station2/data/Database/xyz.dat")" "$(printf '1,abcdef,T\r')"
    cp "$work/station2/data/Database/png.dat" "$work/png.before"
    rm "$1/Database/png.dat"
    run_job 2
    expect "  what the share lost is gone" "$(ls "$work/station2/data/Database/png.dat" 2>/dev/null || echo gone)" gone
    kept=$(find "$work/station2/data/Kept" -name png.dat)
    expect "  and stands under Kept, byte for byte" "$(cksum <"${kept:-/dev/null}")" "$(cksum <"$work/png.before")"
}

echo "Local folder"
mkdir -p "$work/local"
road "$work/local" "$work/local"
"$storm" "$work/local/Database" "$saves" "$reads" || failed=1
echo "SMB share, mounted twice"
start_server
mount_share 1
one=$mounted
mount_share 2
two=$mounted
road "$one" "$two"
"$storm" "$one/Database" $((saves / 2)) $((reads / 2)) 1 &
other=$!
"$storm" "$two/Database" $((saves / 2)) $((reads / 2)) 2 || failed=1
wait $other || failed=1
exit $failed
