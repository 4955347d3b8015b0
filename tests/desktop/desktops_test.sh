#!/bin/bash
# velmora-desktop beside the programs that draw an X11 desktop: it stays, whatever is clicked or
# started. Arguments: the folder of the built programs, a window manager, a desktop program.
BIN=$1
. "$(dirname "$0")/session.sh"
. "$(dirname "$0")/screens.sh"
own_surroundings
own_programs
case $2 in
  kwin_x11) KWIN_COMPOSE=N start_x11 kwin_x11 ;;
  *) start_x11 "$2" ;;
esac
widget_picture small 1 "$work/small.png"
bare=$(pixel 500 400)
work_area=$(xprop -root _NET_WORKAREA)

start_desktop() { # name
  case $1 in
    pcmanfm) pcmanfm --desktop ;;
    caja) caja --no-default-window --force-desktop ;;
    xfdesktop) xfdesktop ;;
    stand-in) exec "$TOOLS/x11_stand_in" desktop ;;
  esac >"$work/desktop.log" 2>&1 &
  desktop=$!
  children+=("$desktop")
  eventually pixel_is_not 500 400 "$bare" || { echo "no desktop"; exit 1; }
}

# In the place where it always is; long enough for those who raise their windows late.
is_there() { shows "$work/small.png" 24 24; }
stays() { eventually is_there && sleep 0.3 && is_there; }
click() { input mousemove "$1" "$2" sleep 0.1 click 1 sleep 0.2; }
opened() { test "$(wc -l <"$work/opened")" = "$1"; }

start_desktop "$3"
start_host --corner top-left --margin 24
check "it is seen" eventually is_there
click 600 500
check "after a click on the wallpaper" stays
click 60 60
check "it can be clicked" eventually opened 1
check "the work area is as large as before" test "$(xprop -root _NET_WORKAREA)" = "$work_area"

"$TOOLS/x11_stand_in" window 10 10 300 300 &
children+=($!)
check "a window covers it" eventually pixel_is 100 100 C03030
click 25 250
check "also when that is clicked" pixel_is 100 100 C03030
"$TOOLS/x11_stand_in" show-desktop 1
eventually pixel_is_not 280 280 C03030
check "show desktop leaves it alone" stays
click 60 60
check "it can be clicked then" eventually opened 2
"$TOOLS/x11_stand_in" show-desktop 0
kill "${children[-1]}"
eventually is_there

kill "$desktop"
wait "$desktop" 2>/dev/null
xsetroot -solid '#7a8592' # some leave their picture on the root window
eventually pixel_is 500 400 "$bare"
start_desktop "$3"
check "a desktop program that starts later leaves it alone" stays
click 600 500
check "and so does a click on that" stays
finish_test
