#!/bin/bash
# velmora-desktop on sway while what surrounds it changes: two outputs, a panel, a locker, sizes and
# scales of the output. Argument: the folder of the built programs.
BIN=$1
. "$(dirname "$0")/session.sh"
. "$(dirname "$0")/screens.sh"
own_surroundings
own_programs
layout="1824 768"
export WLR_HEADLESS_OUTPUTS=2
start_sway 1 1024 768 'output HEADLESS-1 position 0 0
output HEADLESS-2 resolution 800x600 position 1024 0
focus_follows_mouse no
bar {
  id panel
  output HEADLESS-1
  position top
  height 60
  tray_output none
  swaybar_command true
}'
for picture in 1 2; do widget_picture small $picture "$work/small-$picture.png"; done
no_menu_runs() { ! pgrep -f '/velmora-desktop-menu ' >/dev/null; }

# Whether the right button opens the menu where the pointer is.
menu_opens() { # x y
  input mousemove 900 700 mousemove "$1" "$2" sleep 0.15
  local beneath opened=1
  beneath=$(pixel $(($1 + 6)) $(($2 + 6)))
  input click 3
  eventually pixel_is_not $(($1 + 6)) $(($2 + 6)) "$beneath" &&
    pixel_is_not $(($1 + 40)) $(($2 + 20)) "$beneath" && opened=0
  input key Escape
  eventually no_menu_runs
  return $opened
}

start_host --family small --corner top-left --margin 24 --monitor HEADLESS-2
check "it stands on the named output" eventually shows "$work/small-1.png" 1048 24
check "the menu opens on that one" menu_opens 1084 60
# The panel is started by hand, later. It takes its room at the top, and what is anchored at the bottom stays.
"$BIN/velmora-desktop" --monitor HEADLESS-1 --corner bottom-left --margin 400
eventually shows "$work/small-1.png" 400 198
swaybar -b panel 2>/dev/null &
panel=$!
children+=("$panel")
eventually pixel_is 1000 50 000000 || { echo "no panel"; exit 1; }
check "a panel that comes leaves it where it is" shows "$work/small-1.png" 400 198
check "and the menu opens at the pointer" menu_opens 440 240
"$BIN/velmora-desktop" --corner top-left --margin 24
check "a new place is clear of the panel" eventually shows "$work/small-1.png" 24 84
kill "$panel"
check "it takes the room of a panel that goes" eventually shows "$work/small-1.png" 24 24

# A locker takes the pointer away, and the button is let go where nobody sees it.
input mousemove 60 60 sleep 0.15 mousedown 1 mousemove 66 63 mousemove 160 200 mousemove 460 324
check "it follows the pointer" eventually shows "$work/small-1.png" 424 288
swaylock -c 102030 2>/dev/null &
locker=$!
children+=("$locker")
eventually pixel_is 900 700 102030 || { echo "no locker"; exit 1; }
input mousemove 500 400 mouseup 1
kill -USR1 "$locker"
wait "$locker"
check "a locker ends the drag" eventually shows "$work/small-1.png" 24 24
input mousemove 300 300 mousemove 60 60 mousemove 100 100
check "no button is held any more" shows "$work/small-1.png" 24 24
input mousedown 1 mousemove 106 103 mousemove 260 260 mousemove 400 364 mouseup 1
check "and it can be dragged again" eventually shows "$work/small-1.png" 324 288

# What a user placed far from the edges no longer fits, and fits again.
swaymsg output HEADLESS-1 scale 2 >/dev/null
scale=2
check "it stays on an output whose scale grows" eventually shows "$work/small-2.png" 324 214
swaymsg output HEADLESS-1 scale 1 >/dev/null
scale=1
check "and goes back with it" eventually shows "$work/small-1.png" 324 288
swaymsg output HEADLESS-1 resolution 480x360 >/dev/null
check "it stays on an output that shrinks" eventually shows "$work/small-1.png" 310 190
stop_host TERM
check "it ends cleanly" test "$status" = 0

# The menu by itself: what is in force now, and what is chosen instead.
menu=$BIN/../libexec/velmora/velmora-desktop-menu
for now in show hide; do
  "$menu" --display-kind wayland --at 40 20 --output 0 0 480 360 --family small --amounts $now \
    >"$work/chosen" 2>"$work/said" &
  eventually pixel_is_not 46 26 7A8592
  input key Up key Up key Up key Return
  wait $!
  check "from $now the amounts change" \
    grep -qx "amounts $([ $now = show ] && echo hide || echo show)" "$work/chosen"
done
for wrong in --family --amounts=maybe --at=1 --display-kind=x12 extra; do
  "$menu" $wrong 2>"$work/said"
  check "wrong call: $wrong" test "$?/$(wc -l <"$work/said")" = 2/1
done
finish_test
