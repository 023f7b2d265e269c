# SPDX-License-Identifier: MIT
# shellcheck shell=sh disable=SC2154 # sourced: $work is set by whoever does so
# A real SMB share with a mount for each workstation, out of reach of anything but the script that sources this: needs root,
# /dev/fuse and a network namespace of its own. The script sets $work, an empty folder, and calls close_share at its end.

# shellcheck disable=SC2034  # for whoever sources this
SHARE_PACKAGES="samba smbnetfs iproute2"
space=quillon-$$
server=

within() { nsenter --net=/run/netns/"$space" "$@"; }

# The server keeps what it shares in $work/data.
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

# mount_share NUMBER: a mount with nothing held back, as each workstation has its own. Sets $mounted to its path.
mount_share() {
    mkdir -p "$work/mount$1" "$work/home/.smb"
    echo 'auth "guest" ""' >"$work/home/.smb/smbnetfs.conf"
    printf '[global]\n client min protocol = SMB2\n' >"$work/home/.smb/smb.conf"
    chmod 600 "$work/home/.smb/smbnetfs.conf"
    HOME=$work/home nsenter --net=/run/netns/"$space" smbnetfs "$work/mount$1" -f -o direct_io,attr_timeout=0,entry_timeout=0 \
        </dev/null >"$work/mount$1.out" 2>&1 &
    echo $! >"$work/mount$1.pid"
    mounted=$work/mount$1/127.0.0.1/quillon
    tries=0
    until ls "$mounted" >/dev/null 2>&1; do
        tries=$((tries + 1))
        [ $tries -lt 50 ] || { echo "the share cannot be mounted" >&2; exit 1; }
        sleep 0.2
    done
}

# drop_mount NUMBER: as a workstation that loses its power; whoever still waits for an answer gets an error.
drop_mount() {
    kill -KILL "$(cat "$work/mount$1.pid")" 2>/dev/null || true
    fusermount -uz "$work/mount$1" 2>/dev/null || true
}

close_share() {
    for mount in "$work"/mount*[0-9]; do fusermount -uz "$mount" 2>/dev/null || true; done
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    ip netns delete "$space" 2>/dev/null || true
}
