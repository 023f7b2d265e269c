#!/bin/sh
# SPDX-License-Identifier: MIT
# Two workstations at one shared database: on a real SMB share, mounted twice, and on a local folder. Shows that what one
# learns is on the other at its next tested job, that an unchanged database is copied once, that what the share no longer has
# stands under Kept, that no read gives a cut or mixed term file while others save it, and that two who teach one extension at once lose
# nothing, also when one of them is killed in the middle.
# Usage: bench/share.sh [SAVES] [READS] [ROUNDS]     10000 saves, 100000 reads and 1000 rounds by default
# Needs root, /dev/fuse and a network namespace: the server is out of reach of anything but this script.
set -eu
cd "$(dirname "$0")/.."
. scripts/packages.sh
saves=${1:-10000}
reads=${2:-100000}
rounds=${3:-1000}
dev=build/dev

# shellcheck disable=SC2086  # a list of words
install_missing $BUILD_PACKAGES $TEST_PACKAGES samba smbnetfs unzip iproute2
configure dev
cmake --build --preset dev --target app_folder quillon_bench_save_storm quillon_bench_teach_rounds
storm=$PWD/$dev/bench/quillon_bench_save_storm
teach=$PWD/$dev/bench/quillon_bench_teach_rounds
work=$(mktemp -d)
space=quillon-$$
server=
# shellcheck disable=SC2317  # called by the trap
clean_up() {
    for mount in "$work"/mount1 "$work"/mount2; do fusermount -uz "$mount" 2>/dev/null || true; done
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    ip netns delete "$space" 2>/dev/null || true
    rm -rf "$work"
}
trap clean_up EXIT
within() { nsenter --net=/run/netns/"$space" "$@"; }

start_server() {
    ip netns add "$space"
    within ip link set lo up
    for folder in data private state lock pid cache rpc; do mkdir "$work/$folder"; done
    cat >"$work/smb.conf" <<END
[global]
 server role = standalone server
 map to guest = Bad User
 guest account = root
 private dir = $work/private
 state directory = $work/state
 lock directory = $work/lock
 pid directory = $work/pid
 cache directory = $work/cache
 ncalrpc dir = $work/rpc
 log file = $work/smbd.log
 load printers = no
 disable netbios = yes
 smb ports = 445
[quillon]
 path = $work/data
 writable = yes
 guest ok = yes
END
    nsenter --net=/run/netns/"$space" smbd -F -s "$work/smb.conf" </dev/null >"$work/smbd.out" 2>&1 &
    server=$!
}

# mount_share NUMBER: a mount with nothing held back, as each workstation has its own
mount_share() {
    mkdir -p "$work/mount$1" "$work/home/.smb"
    echo 'auth "guest" ""' >"$work/home/.smb/smbnetfs.conf"
    printf '[global]\n client min protocol = SMB2\n' >"$work/home/.smb/smb.conf"
    chmod 600 "$work/home/.smb/smbnetfs.conf"
    HOME=$work/home within smbnetfs "$work/mount$1" -o direct_io,attr_timeout=0,entry_timeout=0
    tries=0
    until ls "$work/mount$1/127.0.0.1/quillon" >/dev/null 2>&1; do
        tries=$((tries + 1))
        [ $tries -lt 50 ] || { echo "the share cannot be mounted" >&2; exit 1; }
        sleep 0.2
    done
}

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

# teach_both SHARE1 SHARE2 FOLDER: both teach at once, and a third one is killed on its way; FOLDER is where the server keeps it all
teach_both() {
    rm -rf "$work"/teach* "$1/taught"
    mkdir -p "$1/taught"
    "$teach" teach "$work/teach1" "$1/taught" $((rounds / 2)) 1 >"$work/taught1" &
    first=$!
    "$teach" teach "$work/teach3" "$2/taught" "$rounds" 3 >"$work/taught3" &
    killed=$!
    "$teach" teach "$work/teach2" "$2/taught" $((rounds / 2)) 2 >"$work/taught2" || failed=1
    kill -KILL $killed 2>/dev/null || true
    wait $killed || true
    wait $first || failed=1
    # Whoever opens the database next sees to what the killed one has left.
    "$teach" teach "$work/teach4" "$1/taught" 1 4 >"$work/taught4" || failed=1
    "$teach" check "$3/taught" "1=$(tail -n 1 "$work/taught1")" "2=$(tail -n 1 "$work/taught2")" \
        "3=$(tail -n 1 "$work/taught3")" 4=1 || failed=1
}

echo "Local folder"
mkdir -p "$work/local"
road "$work/local" "$work/local"
"$storm" "$work/local/Database" "$saves" "$reads" || failed=1
teach_both "$work/local" "$work/local" "$work/local"
echo "SMB share, mounted twice"
start_server
mount_share 1
mount_share 2
one=$work/mount1/127.0.0.1/quillon two=$work/mount2/127.0.0.1/quillon
road "$one" "$two"
"$storm" "$one/Database" $((saves / 2)) $((reads / 2)) 1 &
other=$!
"$storm" "$two/Database" $((saves / 2)) $((reads / 2)) 2 || failed=1
wait $other || failed=1
teach_both "$one" "$two" "$work/data"
exit $failed
