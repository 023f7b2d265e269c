#!/bin/sh
# SPDX-License-Identifier: MIT
# Two computers with names of their own, LAB7 and DESK2, as network namespaces joined by a cable: a job on LAB7 sends its
# report to a messenger on DESK2. Exit status 77 when the machine does not allow namespaces.
#
#   namespaces_test.sh QUILLON_JOB QUILLON_MESSENGER LIST_COMPUTERS DB_ZIP
set -u

if [ "${QUILLON_INSIDE:-}" != yes ]; then
    for tool in unshare nsenter ip mount hostname; do
        command -v "$tool" >/dev/null 2>&1 || { echo "skipped: no $tool"; exit 77; }
    done
    as_root=
    [ "$(id -u)" = 0 ] || as_root=--map-root-user
    # shellcheck disable=SC2086
    set -- unshare $as_root --net --mount --uts --pid --fork --kill-child --mount-proc -- \
        env QUILLON_INSIDE=yes sh "$0" "$@"
    # shellcheck disable=SC2086
    unshare $as_root --net --mount --uts --pid --fork --mount-proc -- \
        sh -c 'hostname probe && ip link add cable type veth peer name other' >/dev/null 2>&1 ||
        { echo "skipped: network namespaces are not allowed here"; exit 77; }
    exec "$@"
fi

job=$1 messenger=$2 list=$3 db=$4
data=$(cd "$(dirname "$0")/../../data" && pwd)
work=$(mktemp -d)
failures=0
trap 'rm -rf "$work"' EXIT

fail() { echo "FAILED: $*"; failures=$((failures + 1)); }
has() { # file pattern what
    LC_ALL=C grep -qa -e "$2" "$1" || { fail "$3"; echo "--- $1"; cat -v "$1"; }
}
wait_for() { # file pattern
    tries=0
    until LC_ALL=C grep -qa -e "$2" "$1" 2>/dev/null; do
        tries=$((tries + 1))
        [ $tries -lt 200 ] || { fail "no \"$2\" in $1"; return 1; }
        sleep 0.05
    done
}
there() { nsenter --target "$there_pid" --net --mount --uts -- "$@"; }

# This computer is LAB7. Both know both names from the hosts database; there is no name server.
printf '127.0.0.1 localhost\n10.77.0.1 LAB7\n10.77.0.2 DESK2\n' >"$work/hosts"
printf '127.0.0.1 localhost\n10.77.0.2 DESK2\n' >"$work/hosts_without_lab7"
: >"$work/resolv.conf"
hostname LAB7
mount --make-rprivate /
mount --bind "$work/hosts" /etc/hosts
mount --bind "$work/resolv.conf" /etc/resolv.conf
unshare --net --mount --uts -- sh -c 'hostname DESK2; echo ready; exec sleep 600' >"$work/there" &
there_pid=$!
wait_for "$work/there" ready
ip link add cable type veth peer name cable netns "$there_pid"
ip link set lo up
ip addr add 10.77.0.1/24 dev cable
ip link set cable up
there ip link set lo up
there ip addr add 10.77.0.2/24 dev cable
there ip link set cable up

# An installation with one small tree to test.
mkdir -p "$work/app" "$work/source/folder"
cp "$db" "$work/app/db.zip"
printf 'x' >"$work/source/folder/small.txt"
logs="$work/app/Data/Settings/Messaging logs/logs.dat"
run_job() { # job-id exit-status [recipient]; sets $seconds
    started=$(date +%s%N)
    LC_ALL=C "$job" --app "$work/app" --source "$work/source" --job "$1" --alert "${3:-DESK2}" --yes \
        >"$work/job.out" 2>"$work/job.err"
    status=$?
    seconds=$(( ($(date +%s%N) - started) / 1000000000 ))
    [ $status -eq "$2" ] || { fail "job $1 ended with $status"; cat "$work/job.err"; }
}

# A notification program that notes how it was called.
mkdir "$work/bin"
printf '#!/bin/sh\nprintf "%%s\\n" "$@" >>"%s/notified"\n' "$work" >"$work/bin/notify-send"
chmod +x "$work/bin/notify-send"

echo "1. alert, acknowledgement, log lines"
# Not through the function: the shell would put a process of its own between, and signals would end there.
nsenter --target "$there_pid" --net --mount --uts -- env PATH="$work/bin:$PATH" LC_ALL=C "$messenger" --log "$work/alerts.log" --notify \
    >"$work/messenger.out" 2>"$work/messenger.err" &
messenger_pid=$!
wait_for "$work/messenger.err" listening
# The first run sets the installation up, which takes its time on a slow disk.
LC_ALL=C "$job" --app "$work/app" --source "$work/source" --job setup --yes >"$work/setup.out" 2>&1 ||
    { fail "the installation cannot be set up"; cat "$work/setup.out"; }
run_job 1234 0
[ "$seconds" -lt 8 ] || fail "the acknowledgement took $seconds s"
LC_ALL=C grep -q "could not send notification" "$work/job.err" && fail "the job says that nobody was told"
has "$logs" ';Logs:\\1234\\[0-9][0-9]-[0-9][0-9]-[0-9]*\\LAB7\\DESK2,File list complete for Job ID : 1234,[0-9:]*,0, 1,File list complete for job ID : 1234 on LAB7' \
    "no line of an acknowledged alert in the messaging log"
[ "$(wc -l <"$logs")" -eq 1 ] || fail "the record is not one line"
wait_for "$work/alerts.log" LAB7
has "$work/alerts.log" "	LAB7	message	.* | File list complete for Job ID : 1234	.* | File list complete for job ID : 1234 on LAB7 | Total Files : 1 " \
    "the messenger has not stored the report"
has "$work/messenger.out" '    Total Files : 1 ' "the messenger has not printed the report"
wait_for "$work/notified" 'LAB7: '
has "$work/notified" 'Small Files (&lt;512 bytes): 1' "the notification is mark-up"

echo "2. the sender's name is unknown to the receiver: shown, but not acknowledged"
there mount --bind "$work/hosts_without_lab7" /etc/hosts
run_job 1235 4
[ "$seconds" -ge 10 ] && [ "$seconds" -le 12 ] || fail "the wait took $seconds s"
has "$work/job.err" 'File list complete: File listing complete, but could not send notification to DESK2' "no warning"
has "$logs" 'Job ID : 1235,[0-9:]*,0, 0,' "no line of an unacknowledged alert"
has "$work/messenger.out" 'Job ID : 1235' "the alert has not arrived"
there umount /etc/hosts

echo "3. a messenger on the sending computer takes the port and the acknowledgement"
LC_ALL=C "$messenger" >"$work/here.out" 2>"$work/here.err" &
here_pid=$!
wait_for "$work/here.err" listening
run_job 1236 4
has "$logs" 'Job ID : 1236,[0-9:]*,[^,]*in use, 0,' "the log does not tell the taken port"
wait_for "$work/here.err" 'an acknowledgement for a program on this computer has arrived here'
kill -INT "$here_pid"; wait "$here_pid" || fail "the messenger ended with $?"
has "$work/here.err" '0 alerts (0 problems), 0 acknowledged, 0 could not be acknowledged, 0 bad datagrams' "no summary"

kill -INT "$messenger_pid"; wait "$messenger_pid" || fail "the messenger ended with $?"
has "$work/messenger.err" '3 alerts (0 problems), 2 acknowledged, 1 could not be acknowledged, 0 bad datagrams' "no summary"

echo "4. a name server that never answers holds nobody up longer than the wait"
# A messenger on its port takes every question and answers none.
nsenter --target "$there_pid" --net --mount --uts -- env LC_ALL=C "$messenger" --port 53 \
    >"$work/dead.out" 2>"$work/dead.err" &
dead_pid=$!
wait_for "$work/dead.err" listening
echo 'nameserver 10.77.0.2' >"$work/resolv.conf"
run_job 1237 4 NOBODY
[ "$seconds" -ge 10 ] && [ "$seconds" -le 12 ] || fail "the wait took $seconds s"
has "$work/job.err" 'could not send notification to NOBODY' "no warning"
has "$logs" '\\NOBODY,File list complete for Job ID : 1237,[0-9:]*,0, 0,' "no line of an alert whose name was never found"
kill -TERM "$dead_pid"; wait "$dead_pid" || fail "the messenger ended with $?"
has "$work/dead.err" '0 alerts (0 problems), 0 acknowledged, 0 could not be acknowledged, [1-9][0-9]* bad datagrams' \
    "nobody was asked for the name"
: >"$work/resolv.conf"

echo "5. the computers of the network"
[ "$("$list")" = '\\LAB7,\\DESK2,' ] || fail "the hosts database gives $("$list")"

if ! command -v avahi-daemon >/dev/null 2>&1 || ! command -v dbus-daemon >/dev/null 2>&1; then
    echo "   announcements: skipped, no avahi-daemon or dbus-daemon"
else
    cat >"$work/bus.conf" <<BUS
<busconfig><type>system</type><listen>unix:path=/run/dbus/system_bus_socket</listen><auth>EXTERNAL</auth>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow receive_sender="*"/><allow own="*"/>
<allow user="*"/></policy></busconfig>
BUS
    # One computer announces itself as such, the other by the file that comes with the messenger.
    for name in labpc-a labpc-b; do
        printf '[server]\nhost-name=%s\nuse-ipv6=no\n[publish]\npublish-workstation=no\n' "$name" >"$work/$name.conf"
    done
    sed -i 's/workstation=no/workstation=yes/' "$work/labpc-a.conf"
    there mount --bind "$data/avahi" /etc/avahi/services
    announce='mount -t tmpfs tmpfs /run && mkdir -p /run/dbus /run/avahi-daemon &&
        dbus-daemon --config-file="$1/bus.conf" --nofork & sleep 0.5
        exec avahi-daemon --no-drop-root --no-chroot --no-rlimits -f "$1/$2.conf"'
    # The tmpfs has to be there for this shell too, so that the programs under test find the bus.
    mount -t tmpfs tmpfs /run
    there mount -t tmpfs tmpfs /run
    announce=${announce#*&& }
    sh -c "$announce" announce "$work" labpc-a >"$work/avahi-a.err" 2>&1 &
    there sh -c "$announce" announce "$work" labpc-b >"$work/avahi-b.err" 2>&1 &
    wait_for "$work/avahi-a.err" 'startup complete'
    wait_for "$work/avahi-b.err" 'startup complete'
    tries=0
    while :; do
        started=$(date +%s%N)
        found=$("$list")
        milliseconds=$(( ($(date +%s%N) - started) / 1000000 ))
        [ $milliseconds -le 3000 ] || fail "the query took $milliseconds ms"
        case $found in *'\\labpc-a,'*'\\labpc-b,'* | *'\\labpc-b,'*'\\labpc-a,'*) break ;; esac
        tries=$((tries + 1))
        [ $tries -lt 10 ] || { fail "announced computers not found: $found"; cat "$work"/avahi-*.err; break; }
        sleep 0.5
    done
    printf "   %s in %s ms\n" "$found" "$milliseconds"
    [ "$("$list" labpc-b)" = 10.77.0.2 ] || fail "labpc-b is $("$list" labpc-b)"
fi

[ $failures -eq 0 ] && echo "two computers: all well"
exit $((failures > 0))
