#!/bin/bash
# What velmora-desktop posts: with a notification service that does well, hangs, refuses, floods and
# dies, and a companion that fails. Argument: the folder of the programs.
BIN=$1
here=$(dirname "$0")
. "$here/session.sh"
. "$here/screens.sh"
own_surroundings
own_programs
start_openbox
widget_picture small 1 "$work/small.png"

# A companion whose news are in a file, and a widget that finds its user signed in or not.
printf '#!/bin/bash\nwork=%q\n%s\n' "$work" '
if [ "${1:-}" = news ]; then echo >>"$work/asked"; cat "$work/news"; exit "$(cat "$work/exit")"; fi
echo "${XDG_ACTIVATION_TOKEN:-none}" >>"$work/opened"' >"$BIN/velmora"
stand_in widget '[ "$1" = timeline ] && echo >>"$work/timelines"
"$real" "$@" | sed "s/\"isConnected\":false/\"isConnected\":$(cat "$work/connected")/"'
echo true >"$work/connected"
echo 0 >"$work/exit"
touch "$work/asked" "$work/opened" "$work/posted" "$work/timelines"
mkfifo "$work/orders"
exec 7<>"$work/orders"

lines() { wc -l <"$work/$1"; }
has_lines() { test "$(lines "$1")" -ge "$2"; }
entry() { printf '{"id":"%s","kind":"k","title":"%s","body":"%s","urgency":"%s"}' "$@"; }
news() { printf '{"news":[%s],"over":[%s]}\n' "$1" "${2:-}" >"$work/news"; }
refresh() {
  local before
  before=$(lines timelines)
  "$BIN/velmora-desktop" --refresh
  eventually has_lines timelines $((before + 1))
}
named() { gdbus call --session --dest org.freedesktop.DBus --object-path / \
  --method org.freedesktop.DBus.NameHasOwner org.freedesktop.Notifications | grep -q "$1"; }
start_service() { # behaviour
  "$here/notification_service.py" "$work" "$1" &
  service=$!
  children+=("$service")
  eventually named true || { echo "no service"; exit 1; }
}
stop_service() {
  kill "$service"
  wait "$service"
  eventually named false
}
posted() { tail -n "${2:-1}" "$work/posted" | grep -qF -- "$1"; }
answers() { "$BIN/velmora-desktop" --corner top-left; }

news "$(entry one 'A goal' 'Today: 5 < 6 & more' low)"
start_host --widget "$work/widget" --corner top-left --margin 24
eventually shows "$work/small.png" 24 24
eventually has_lines timelines 1
sleep 1
check "nobody is asked while nobody can be told" test "$(lines asked)" = 0

start_service well
refresh
check "news are posted" eventually posted '["Notify", "Velmora", 0, "com.brenvik.velmora", "A goal"'
check "as plain text" posted '"Today: 5 &lt; 6 &amp; more"'
check "with their urgency, for the right application" \
  posted '{"urgency": 0, "desktop-entry": "com.brenvik.velmora"}'
echo click 1 >&7
check "a click opens the companion" eventually has_lines opened 1
check "which may come to the front" grep -qx token-1 "$work/opened"

news "$(entry two T B critical),$(entry three T B normal)"
refresh
eventually posted '"Notify"' 2
eventually has_lines posted 6
news '' '"two"'
refresh
check "what is over is closed" eventually posted '["CloseNotification", 2]'
echo false >"$work/connected"
refresh
check "and everything once nobody is signed in" eventually posted '["CloseNotification", 3]' 3
echo true >"$work/connected"

: >"$work/opened"
news "$(entry four T B normal)"
refresh
eventually posted '"Notify"'
echo flood 4 >&7
check "a flood of clicks is one" eventually has_lines opened 1
check "and the host still answers" answers
check "to which nothing is added" test "$(lines opened)" = 1

echo 1 >"$work/exit"
asked=$(lines asked)
count=$(grep -c Notify "$work/posted")
refresh
eventually has_lines asked $((asked + 1))
check "a companion that fails has nothing posted" test "$(grep -c Notify "$work/posted")" = "$count"
echo 0 >"$work/exit"
stop_service

for behaviour in hang refuse; do
  start_service $behaviour
  asked=$(lines asked)
  refresh
  check "the host answers while the service does not: $behaviour" answers
  [ $behaviour = refuse ] && eventually has_lines asked $((asked + 1))
  check "the picture stays: $behaviour" shows "$work/small.png" 24 24
  [ $behaviour = refuse ] || check "nobody is asked: $behaviour" test "$(lines asked)" = "$asked"
  kill -KILL "$service"
  wait "$service" 2>/dev/null
  eventually named false
done

# Another service counts anew: its first notification is not ours.
start_service well
: >"$work/opened"
news ''
refresh
echo click 1 >&7
sleep 0.5
check "a click on somebody else's is none of ours" test "$(lines opened)" = 0
check "nothing was said" test ! -s "$work/errors"
stop_host TERM
check "it ends well" test "$status" = 0
finish_test
