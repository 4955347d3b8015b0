#!/bin/bash
# velmora-desktop as a user sees and handles it. Arguments: the folder of the built programs; the
# screen: openbox, xfwm4, metacity, kwin, or sway and a scale.
BIN=$1
. "$(dirname "$0")/session.sh"
. "$(dirname "$0")/screens.sh"
own_surroundings
own_programs
case "$2 ${3:-}" in
  "sway 1") start_sway 1 1024 768 ;;
  "sway 1.25") start_sway 1.25 1600 1000 ;;
  "sway 1.5") start_sway 1.5 1500 900 ;;
  "sway 2") start_sway 2 2048 1536 ;;
  *) "start_$2" ;;
esac
for family in small medium large; do widget_picture $family "$scale" "$work/$family.png"; done
empty=$(pixel 500 400)

opened() { test "$(wc -l <"$work/opened")" = "$1"; }
may_come_to_the_front() { ! grep -qE ' (none|not-granted.*) ' "$work/opened"; }
stays() { eventually "$@" && sleep 0.5 && "$@"; }
menu_runs() { pgrep -f '/velmora-desktop-menu ' >/dev/null; }
no_menu_runs() { ! menu_runs; }

# Opens the menu with the right button at a place on the widget, and waits until it is seen there.
open_menu() { # x y
  input mousemove 700 500 mousemove "$1" "$2" sleep 0.15
  local beneath
  beneath=$(pixel $(($1 + 6)) $(($2 + 6)))
  input click 3
  eventually pixel_is_not $(($1 + 6)) $(($2 + 6)) "$beneath"
}

start_host --family medium --corner top-left --margin 24
check "it shows the widget's own picture" eventually shows "$work/medium.png" 24 24
check "corners are not there" pixel_is 25 25 "$empty"
"$BIN/velmora-desktop" --family small
check "a second call changes it" eventually shows "$work/small.png" 24 24

input mousemove 60 60 sleep 0.15 mousedown 1 mousemove 66 63 mousemove 160 200 mousemove 360 324
check "it follows the pointer" eventually shows "$work/small.png" 324 288
check "nothing is left behind" eventually pixel_is 60 60 "$empty"
input mouseup 1
check "it stays where it was dragged" eventually shows "$work/small.png" 324 288
input mousemove 400 400 sleep 0.15 mousedown 1 mousemove 300 300 mousemove 2 2 mouseup 1
check "it cannot be dragged off the screen" eventually shows "$work/small.png" 0 0
check "dragging is no click" opened 0
case "$2 ${3:-}" in
  "sway 1.25" | "sway 2") # what follows knows no scale
    stop_host TERM
    finish_test
    ;;
  xfwm4* | metacity*)
    check "with a compositor it is transparent" grep -q 'Depth: 32' \
      <<<"$(xwininfo -id "$(xdotool search --onlyvisible --name '^Velmora$' | head -1)")"
    ;;
esac
input mousemove 40 50 sleep 0.15 click 1
check "a click opens the companion" eventually opened 1
check "which may come to the front" may_come_to_the_front

check "the right button opens the menu" open_menu 100 100
input key Escape
check "Escape closes it" eventually no_menu_runs
open_menu 100 100
input mousemove 700 500 sleep 0.15 click 1
check "so does a click beside it" eventually no_menu_runs
check "nothing was chosen" stays shows "$work/small.png" 0 0
open_menu 100 100
input key Down key Down key Down key Return mousemove 700 500
check "it changes the size" eventually shows "$work/medium.png" 0 0
open_menu 100 100
# Rows are as high as the theme wants them: the second stands between the first's and the fourth's.
input mousemove 130 144 sleep 0.2 click 1 mousemove 700 500
check "by a click too" eventually shows "$work/small.png" 0 0

open_menu 100 100
input mousemove 130 112 sleep 0.2 click 1 mousemove 700 500
check "it opens the companion" eventually opened 2
check "to the front too" may_come_to_the_front

if [ "$2" != kwin ]; then # which gives a surface below windows no keyboard
  input mousemove 40 50 sleep 0.15 click 1
  eventually opened 3
  input key Return
  check "with the focus, Return opens the companion" eventually opened 4
  check "to the front too" may_come_to_the_front
  beneath=$(pixel 91 91)
  input key Menu
  check "and the menu key the menu" eventually pixel_is_not 91 91 "$beneath"
  input key Up key Return
else
  open_menu 100 100
  input key Up key Return
fi
wait "$host"
check "its menu ends it" test $? = 0

start_host
check "the place is kept" eventually shows "$work/small.png" 0 0
"$BIN/velmora-desktop" --corner bottom-right --margin 30
"$BIN/velmora-desktop" --quit
wait "$host"
check "a further call ends it" test $? = 0
start_host --corner top-left --margin 24
eventually shows "$work/small.png" 24 24
kill "$server"
wait "$host"
check "it ends with its display" test $? = 1
check "and leaves no process behind" eventually no_child_left
check "nor a folder" test -z "$(find "$work" -maxdepth 2 -name 'velmora-desktop-??????')"
finish_test
