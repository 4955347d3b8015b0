#!/bin/bash
# velmora-desktop on X11 against those who take its window away or move it, and compositors that
# come and go. With metacity, which makes an icon of a window of any type. Argument: the folder of
# the built programs.
BIN=$1
. "$(dirname "$0")/session.sh"
. "$(dirname "$0")/screens.sh"
own_surroundings
own_programs
start_x11 metacity --no-composite
for size in 1 2; do widget_picture small $size "$work/small-$size.png"; done
stand_in hang '[ -e "$work/hangs" ] && sleep 1000; exec "$real" "$@"'

# Its newest window; those before it may not have gone yet.
window() { xdotool search --onlyvisible --class velmora-desktop 2>/dev/null | tail -1; }
is_there() { shows "$work/small-1.png" "${1:-24}" "${1:-24}"; }
is_another() { local now && now=$(window) && [ -n "$now" ] && [ "$now" != "$1" ]; }
is_replaced() { xdotool "$1" "$2" 2>/dev/null; sleep 0.1; is_another "$2"; }
comes_back_after() { # command of xdotool, which a window manager that is busy may miss
  local before
  before=$(window)
  eventually is_replaced "$1" "$before" && eventually is_there
}

start_host --corner top-left --margin 24 --widget "$work/hang"
eventually is_there
touch "$work/hangs" # what follows needs no picture of the widget program's
check "it comes back when it is made an icon" comes_back_after windowminimize
check "and when it is unmapped" comes_back_after windowunmap
check "and when it is destroyed" comes_back_after windowclose
state=$(xprop -id "$(window)" _NET_WM_STATE)
check "below windows, as before" grep -q STATE_BELOW <<<"$state"
taken=0
end=$((SECONDS + 5))
while [ $SECONDS -lt $end ]; do
  now=$(window)
  [ -n "$now" ] && xdotool windowunmap "$now" 2>/dev/null && [ "$now" != "${last:-}" ] && taken=$((taken + 1))
  last=$now
done
check "ever later when it is taken away each time ($taken)" test $taken -le 2
check "until nobody does" eventually is_there

xdotool windowmove "$(window)" 400 400
eventually is_there 400
"$BIN/velmora-desktop" --corner top-left
check "a choice puts it back that somebody else has moved" eventually is_there

shape() { local now && now=$(window) && [ -n "$now" ] && xwininfo -id "$now" -shape 2>/dev/null | grep -q "$1"; }
picom --backend xrender >/dev/null 2>&1 &
picom=$!
children+=("$picom")
check "a compositor that comes leaves it its picture" eventually shape "No window shape defined"
check "seen with it" eventually is_there
kill "$picom"
check "so does one that goes" eventually shape "Window shape extents"
check "seen without it" eventually is_there

rm "$work/hangs"
xrdb -merge <<<'Xft.dpi: 192'
check "it grows with the scale" eventually shows "$work/small-2.png" 48 48
xdotool mousemove 100 100 sleep 0.15 mousedown 1 mousemove 110 110 sleep 0.1 mouseup 1
check "a hand that trembles clicks, whatever the scale" eventually test -s "$work/opened"
xdotool mousemove 100 100 sleep 0.15 mousedown 1 mousemove 120 120 mousemove 300 300 sleep 0.1 mouseup 1
check "and one that does not drags" eventually shows "$work/small-2.png" 248 248
stop_host TERM
check "it ends cleanly" test "$status" = 0
finish_test
