#!/bin/bash
# When velmora-desktop asks again by itself: the network comes, the keyring is unlocked, a folder
# for its pictures is there again; and that nothing wakes it otherwise. On X11, in a network of its
# own. Argument: the folder of the built programs.
if [ -z "${OWN_NETWORK:-}" ]; then
  # Root needs no user namespace, which a chroot does not allow.
  for own in "unshare --net" "unshare --net --map-root-user"; do
    $own -- true 2>/dev/null && OWN_NETWORK=1 exec $own -- "$0" "$@"
  done
  echo "skipped: a network of its own is not to be had here"
  exit 77
fi
BIN=$1
. "$(dirname "$0")/session.sh"
. "$(dirname "$0")/screens.sh"
own_surroundings
own_programs
ip link set lo up
start_openbox
widget_picture small 1 "$work/small.png"
export XDG_RUNTIME_DIR=$work/run TMPDIR=$work/gone
touch "$work/asked"
stand_in counting '[ "$1" = timeline ] && date +%s >>"$work/asked"; exec "$real" "$@"'
asked() { test "$(wc -l <"$work/asked")" = "$1"; }

# Neither folder is there; a minute later one is.
start_host --widget "$work/counting"
says() { grep -q "$1" "$work/errors"; }
check "a folder that is missing is named" eventually says "no folder for its picture ($work/run: No such"
mkdir "$XDG_RUNTIME_DIR"
started=$SECONDS
: >"$work/asked"

# Meanwhile, beside it: asked without a network, then one comes within the minute.
check "it waits" asked 0
ip route add default dev lo
sleep 0.5
check "the network alone does not hurry what was asked a moment ago" asked 0
until asked 1 || [ $((SECONDS - started)) -gt 75 ]; do sleep 0.2; done
check "a minute later it tries again" eventually shows "$work/small.png" 830 24
check "and not before" test $((SECONDS - started)) -ge 50
stop_host TERM

switches() { cat /proc/"$host"/task/*/status | awk '/^voluntary/ {sum += $2} END {print sum}'; }
asleep() { local before && before=$(switches) && sleep 2 && test "$(switches)" = "$before"; }

ip route del default dev lo
: >"$work/asked"
start_host --widget "$work/counting"
eventually asked 1
ip route add default dev lo
sleep 1
check "it is not asked twice within a minute" asked 1
check "it sleeps" eventually asleep
started=$SECONDS
until asked 2 || [ $((SECONDS - started)) -gt 75 ]; do sleep 0.2; done
check "but when the minute is over" asked 2
check "once" awk 'NR > 1 && $1 - last < 59 {bad = 1} {last = $1} END {exit bad}' "$work/asked"
ip link add one type dummy 2>/dev/null && ip link set one up && ip route add 192.0.2.0/24 dev one
check "nothing wakes it while all is well" eventually asleep
stop_host TERM

# The widget finds nobody signed in while the keyring is locked.
: >"$work/asked"
unset SECRET_BACKEND
mkdir -p "$work/.local/share/keyrings" "$XDG_RUNTIME_DIR/keyring"
locked() {
  gdbus call --session --dest org.freedesktop.secrets \
    --object-path /org/freedesktop/secrets/aliases/default \
    --method org.freedesktop.DBus.Properties.Get org.freedesktop.Secret.Collection Locked 2>&1 |
    grep -q "$1"
}
/usr/bin/python3 "$(dirname "$0")/keyring.py" >"$work/keyring.log" 2>&1 &
keyring=$!
children+=("$keyring")
eventually grep -qs ready "$work/keyring.log" # before anybody starts another one by asking
check "the keyring is locked" locked true
start_host --widget "$work/counting"
eventually asked 1
asked_at=$SECONDS
sleep 1
check "it sleeps while the keyring is locked" eventually asleep
kill -USR1 "$keyring"
check "then it is not" eventually locked false
until asked 2 || [ $((SECONDS - asked_at)) -gt 70 ]; do sleep 0.2; done
check "it asks again once the keyring is unlocked" asked 2
check "a minute after the last time" test $((SECONDS - asked_at)) -ge 55
stop_host TERM
finish_test
