#!/bin/bash
# velmora-desktop on Wayland: sway without a screen, at scale 1 and 2. Argument: the folder of the
# built programs.
BIN=$1
. "$(dirname "$0")/session.sh"
own_surroundings
screenshot() { grim "$1"; }

export XDG_RUNTIME_DIR=$work/run
mkdir -m 700 "$XDG_RUNTIME_DIR"
as_user=()
if [ "$(id -u)" = 0 ]; then # sway refuses to run as root
  chown 65534:65534 "$XDG_RUNTIME_DIR"
  as_user=(setpriv --reuid 65534 --regid 65534 --clear-groups)
fi
printf 'output HEADLESS-1 resolution 1024x768 scale 1\noutput * bg #7a8592 solid_color\n' >"$work/sway"
WLR_BACKENDS=headless WLR_LIBINPUT_NO_DEVICES=1 WLR_RENDERER=pixman "${as_user[@]}" \
  sway -c "$work/sway" >/dev/null 2>&1 &
sway=$!
children+=("$sway")
unset DISPLAY
sway_listens() {
  find "$XDG_RUNTIME_DIR" -name 'sway-ipc*.sock' | grep -q . &&
    find "$XDG_RUNTIME_DIR" -name 'wayland-?' | grep -q .
}
eventually sway_listens || { echo "no sway"; exit 1; }
WAYLAND_DISPLAY=$(basename "$(find "$XDG_RUNTIME_DIR" -name 'wayland-?')")
SWAYSOCK=$(find "$XDG_RUNTIME_DIR" -name 'sway-ipc*.sock')
export WAYLAND_DISPLAY SWAYSOCK
eventually wallpaper_shows || { echo "no wallpaper"; exit 1; }
for scale in 1 2; do widget_picture medium $scale "$work/medium-$scale.png"; done
widget_picture small 2 "$work/small-2.png"

start_host --family medium --corner bottom-left --margin 20
check "the picture appears at scale 1" eventually shows "$work/medium-1.png" 20 578
check "corners are transparent" test "$(pixel 21 579)" = 7A8592
swaymsg output HEADLESS-1 scale 2 >/dev/null
check "it is drawn anew for scale 2" eventually shows "$work/medium-2.png" 40 388
"$BIN/velmora-desktop" --corner top-right --family small
check "a second call moves it" eventually shows "$work/small-2.png" 644 40
stop_host TERM
check "it ends cleanly" test "$status" = 0

start_host
check "choices are kept, with the first picture at scale 2" eventually shows "$work/small-2.png" 644 40
kill "$sway"
wait "$host"
check "losing the compositor leaves no child" no_child_left
finish_test
