#!/bin/busybox sh
# SPDX-License-Identifier: MIT
# Interrupted firmware copies on a real file system, run inside the test machine:
#   copy-scenarios.sh VANTOR MOUNTPOINT unnamed|named
# "unnamed": the file system makes unnamed temporary files (ext4), so nothing may be
# left behind; "named": it cannot (vfat), so one .NAME.part may stay until the next
# copy to that target. Every case ends with the old target intact and a later copy whole.
vantor=$1
dir=$2
kind=$3
target="$dir/fw.img"
failures=0

fail() {
    echo "FAIL: $*"
    failures=$((failures + 1))
}

# Ours in the directory, apart from what mkfs put there.
listing() {
    ls -A "$dir" | grep -v '^lost+found$' | tr '\n' ' '
}

written() {
    awk '/^wchar/ {print $2}' "/proc/$1/io" 2> /dev/null || echo 0
}

# Stops the copy once it has written its first megabytes, so that the signal $1 finds
# it mid-copy whatever the machine's speed, then lets it go on to meet the signal.
signal_mid_copy() {
    until [ -s /tmp/copier.pid ]; do usleep 1000; done
    copier=$(cat /tmp/copier.pid)
    for tick in $(seq 10000); do
        [ "$(written "$copier")" -gt 4194304 ] && break
        usleep 1000
    done
    kill -STOP "$copier"
    [ "$(written "$copier")" -lt 50331648 ] || echo "the copy was over before SIG$1" > /tmp/late
    kill "-$1" "$copier"
    kill -CONT "$copier" 2> /dev/null
}

# $1: the signal; $2: the status vantor must end with; $3: what may be left beside the
# target afterwards. The copy runs in the foreground: a script's background jobs
# ignore SIGINT, and vantor rightly keeps a signal ignored.
interrupt() {
    for attempt in 1 2 3; do
        printf 'old firmware' > "$target"
        sync
        rm -f /tmp/copier.pid /tmp/late
        signal_mid_copy "$1" &
        sh -c 'echo $$ > /tmp/copier.pid; exec "$0" copy --device /dev/fb9 /tmp/source "$1"' \
            "$vantor" "$target" 2> /tmp/copy.err
        status=$?
        wait
        [ -f /tmp/late ] || break
    done
    [ -f /tmp/late ] && fail "$(cat /tmp/late), three times"
    [ "$status" = "$2" ] || fail "SIG$1: status $status, not $2 ($(cat /tmp/copy.err))"
    [ "$(cat "$target")" = "old firmware" ] || fail "SIG$1: the old target is not intact"
    [ "$(listing)" = "$3" ] || fail "SIG$1: left '$(listing)', expected '$3'"
    echo "SIG$1 mid-copy: status $status, old target intact, directory holds: $(listing)"
}

head -c 67108864 /dev/urandom > /tmp/source
left="fw.img "
[ "$kind" = named ] && left=".fw.img.part fw.img "
for signal in TERM INT HUP; do
    interrupt "$signal" $((128 + $(kill -l "$signal"))) "fw.img "
done
# A kill leaves at most the one temporary file, however often it happens.
interrupt KILL 137 "$left"
interrupt KILL 137 "$left"
"$vantor" copy --device /dev/fb9 /tmp/source "$target" 2> /tmp/copy.err ||
    fail "the copy after the kills failed: $(cat /tmp/copy.err)"
cmp -s /tmp/source "$target" || fail "the copy after the kills differs from its source"
[ "$(listing)" = "fw.img " ] || fail "after a whole copy: '$(listing)'"
echo "a whole copy after the kills: target equals the source, directory holds: $(listing)"
rm -f /tmp/source
[ "$failures" = 0 ]
