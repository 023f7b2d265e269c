#!/bin/sh
# SPDX-License-Identifier: MIT
# Two users at the share that README.md tells how to set up: with the lines of its smb.conf and the rights of its folder, each
# replaces and deletes what the other has put there, as saves of term files do.
# Usage: bench/share_users.sh
# Needs root: users, mounts and network are in namespaces of their own, out of reach of anything but this script.
set -eu
cd "$(dirname "$0")/.."
if [ "${1:-}" != inside ]; then
    . scripts/packages.sh
    install_missing samba smbclient iproute2
    exec unshare --mount --net "$0" inside
fi

work=$(mktemp -d)
server=
# shellcheck disable=SC2317  # called by the trap
clean_up() {
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    umount /etc/passwd /etc/group 2>/dev/null || true
    rm -rf "$work"
}
trap clean_up EXIT
ip link set lo up
chmod 755 "$work"

# Users that this machine does not get.
cp /etc/passwd /etc/group "$work/"
printf 'alice:x:5001:5001::/nonexistent:/usr/sbin/nologin\nbob:x:5002:5002::/nonexistent:/usr/sbin/nologin\n' >>"$work/passwd"
printf 'alice:x:5001:\nbob:x:5002:\nquillon:x:5003:alice,bob\n' >>"$work/group"
mount --bind "$work/passwd" /etc/passwd
mount --bind "$work/group" /etc/group

for folder in private state lock pid cache rpc; do mkdir "$work/$folder"; done
mkdir "$work/share"
chgrp quillon "$work/share"
chmod 2775 "$work/share"
{
    cat <<END
[global]
 server role = standalone server
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
END
    sed -n '/^   \[quillon\]/,/^   ```/p' README.md | sed "/\`\`\`/d; s|/srv/quillon|$work/share|"
} >"$work/smb.conf"
for user in alice bob; do printf 'word\nword\n' | smbpasswd -c "$work/smb.conf" -s -a "$user" >/dev/null; done
smbd -F --no-process-group -s "$work/smb.conf" </dev/null >"$work/smbd.out" 2>&1 &
server=$!

# as USER COMMANDS: what this user does at the share
as() { smbclient //127.0.0.1/quillon -s "$work/smb.conf" -U "$1%word" -c "$2" >"$work/said" 2>&1; }
tries=0
until as alice ls; do
    tries=$((tries + 1))
    [ $tries -lt 50 ] || { cat "$work/said" >&2; exit 1; }
    sleep 0.2
done

failed=0
# expect TEXT USER COMMANDS
expect() {
    if as "$2" "$3" && ! grep -q NT_STATUS "$work/said"; then
        printf '%-70s yes\n' "$1"
    else
        printf '%-70s no: %s\n' "$1" "$(cat "$work/said")"
        failed=1
    fi
}
cd "$work"
echo one >first
echo two >second
expect "the first user fills the share" alice 'mkdir Database; mkdir Settings; put first Database\jpg.dat'
expect "the second one teaches beside it" bob 'put second Database\new'
expect "and puts it in the first one's place" bob 'rename Database\new Database\jpg.dat -f'
expect "the first one deletes the second one's file" alice 'del Database\jpg.dat'
expect "both write on in one log" alice 'put first Settings\logs.dat'
expect "  the other too" bob 'put second Settings\logs.dat'
exit $failed
