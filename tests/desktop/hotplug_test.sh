#!/bin/bash
# velmora-desktop while outputs go and come. Argument: the folder of the built programs.
BIN=$1
. "$(dirname "$0")/session.sh"
. "$(dirname "$0")/screens.sh"
own_surroundings
own_programs

start_with_two_outputs() {
  WLR_HEADLESS_OUTPUTS=2 start_sway 1 1024 768
  output=HEADLESS
  close_output() { swaymsg output "$1" unplug >/dev/null; }
}

# An older one cannot take an output away: a sway inside another one, whose windows are its outputs.
start_nested() {
  start_sway 1 1024 768 'for_window [app_id=wlroots] floating enable, border none'
  outer=$WAYLAND_DISPLAY outer_socket=$SWAYSOCK
  printf 'output * bg #224466 solid_color\n' >"$work/inner"
  WLR_BACKENDS=wayland WLR_WL_OUTPUTS=2 WLR_RENDERER=pixman "${as_user[@]}" \
    sway -c "$work/inner" >"$work/inner.log" 2>&1 &
  children+=($!)
  eventually inner_listens || { echo "no inner sway"; exit 1; }
  export WAYLAND_DISPLAY=wayland-2
  SWAYSOCK=$(find "$XDG_RUNTIME_DIR" -name 'sway-ipc*.sock' ! -path "$outer_socket")
  output=WL
  close_output() { # its title names it
    WAYLAND_DISPLAY=$outer SWAYSOCK=$outer_socket swaymsg "[title=\"$1\"] kill" >/dev/null
  }
}
inner_listens() { listening 'wayland-2' && test "$(find "$XDG_RUNTIME_DIR" -name 'sway-ipc*.sock' | wc -l)" = 2; }

if dpkg --compare-versions "$(sway --version | grep -o '[0-9.]*' | head -n 1)" ge 1.10; then
  start_with_two_outputs
else
  start_nested
fi
outputs() { test "$(swaymsg -t get_outputs -r | grep -c "\"name\": \"$output-")" = "$1"; }
eventually outputs 2 || { echo "not two outputs"; exit 1; }
widget_picture small 1 "$work/small.png"

on_output() { # name: whether the widget is there alone
  local shown
  screenshot() { grim -o "$shown" "$1" 2>/dev/null; }
  shown=$1
  shows "$work/small.png" 24 24
}
start_host --family small --corner top-left --margin 24 --monitor $output-2
check "it stands on the named output" eventually on_output $output-2
close_output $output-2
check "on another one once that has gone" eventually on_output $output-1
close_output $output-1
check "that one goes too" eventually outputs 0
check "it outlives the last one" kill -0 "$host"
swaymsg create_output >/dev/null
new=$(swaymsg -t get_outputs -r | sed -n 's/.*"name": "\('$output'-[0-9]*\)".*/\1/p' | tail -1)
check "and stands on the next one" eventually on_output "$new"
stop_host TERM
check "it ends cleanly" test "$status" = 0
finish_test
