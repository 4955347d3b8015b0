#!/bin/bash
# script/demo, as a newcomer tries it: without a screen, then the walk through the sign-in on one.
cd "$(dirname "$0")/.." || exit 1
BIN=build/demo/bin
. tests/desktop/session.sh
. tests/desktop/screens.sh
unset DISPLAY WAYLAND_DISPLAY
rm -f out/velmora-*.png
check "it prints a refresh" grep -q '"isConnected":true' <<<"$(timeout 1500 script/demo)"
check "and leaves pictures" identify out/velmora-{small,medium,large}.png
own_surroundings
start_openbox
timeout --kill-after=5 180 script/demo --sign-in &
window() { xdotool search --onlyvisible --name '^Velmora$' >/dev/null 2>&1; }
patience=120 check "the window opens" eventually window
xdotool key ctrl+w
wait $!
check "its end ends the walk" test $? = 0
finish_test
