#!/bin/bash
# velmora-desktop on X11: openbox under Xvfb. Argument: the folder of the built programs.
BIN=$1
. "$(dirname "$0")/session.sh"
own_surroundings

start_x11
window() { xdotool search --onlyvisible --name '^Velmora$' 2>/dev/null | head -1; }
for family in small medium large; do widget_picture $family 1 "$work/$family.png"; done

start_host --family large
check "the picture appears in the top right corner" eventually shows "$work/large.png" 636 24
check "corners are cut without a compositor" test "$(pixel 637 25)" = 7A8592
state=$(xprop -id "$(window)" _NET_WM_STATE _NET_WM_DESKTOP)
for word in STATE_BELOW STATE_SKIP_TASKBAR STATE_SKIP_PAGER 'DESKTOP(CARDINAL) = 4294967295'; do
  check "below, out of task bar and pager, on every workspace: $word" grep -qF "$word" <<<"$state"
done
xprop -root -f _NET_SHOWING_DESKTOP 32c -set _NET_SHOWING_DESKTOP 1
check "show desktop keeps it" shows "$work/large.png" 636 24

"$BIN/velmora-desktop" --family medium --corner bottom-left --margin 10
check "a second call changes the running one" eventually shows "$work/medium.png" 10 588
"$BIN/velmora-desktop" --widget /nowhere 2>"$work/said"
check "a second call without a program is refused" test "$?/$(wc -l <"$work/said")" = 1/1
check "only one window is there" test "$(xdotool search --onlyvisible --name '^Velmora$' | wc -l)" = 1
check "the screen reader's text follows" grep -q 'Open Velmora to sign in' <<<"$(/usr/bin/python3 - <<'P'
import gi
gi.require_version('Atspi', '2.0')
from gi.repository import Atspi
desktop = Atspi.get_desktop(0)
for i in range(desktop.get_child_count()):
    application = desktop.get_child_at_index(i)
    for j in range(application.get_child_count()):
        print(application.get_child_at_index(j).get_name())
P
)"

xdotool mousemove 100 650 mousedown 1 sleep 0.2 mousemove 140 500 sleep 0.2 \
  mousemove 300 400 sleep 0.2 mouseup 1
check "it can be dragged" eventually shows "$work/medium.png" 210 338
xdotool mousemove 300 400 click 3 sleep 0.5 key Down sleep 0.2 key Return mousemove 900 700
check "its menu changes the size" eventually shows "$work/small.png" 210 338
xdotool mousemove 300 450 click 1 sleep 0.3 key Menu sleep 0.5 key Down key Down sleep 0.2 \
  key Return mousemove 900 700
check "so does the menu key" eventually shows "$work/large.png" 210 338
"$BIN/velmora-desktop" --family small
eventually shows "$work/small.png" 210 338
stop_host TERM
check "it ends cleanly on SIGTERM" test "$status" = 0
check "it leaves no child" no_child_left

start_host
check "choices are kept" eventually shows "$work/small.png" 210 338
"$BIN/velmora-desktop" --monitor away-1 --corner top-left --margin 24
check "a monitor that is away is stood in for" eventually shows "$work/small.png" 24 24

# Hostile programs: the last good picture stays, and so does the host.
stand_in crash 'kill -SEGV $$'
stand_in rubbish 'echo "{rubbish"'
stand_in flood 'yes | head -c 200000000'
stand_in noPicture 'exec "$real" placeholder'
stand_in badPicture '"$real" placeholder; for last; do :; done; head -c 3000 /dev/urandom >"$last"'
stand_in hang 'touch "$work/hanging"; sleep 1000'
for program in crash rubbish flood noPicture badPicture; do
  "$BIN/velmora-desktop" --widget "$work/$program"
  sleep 0.7
  check "the picture survives: $program" shows "$work/small.png" 24 24
done
check "failures are said" grep -q 'signal Segmentation fault' "$work/errors"
"$BIN/velmora-desktop" --widget "$work/hang"
eventually test -e "$work/hanging"
check "the picture survives: hang" shows "$work/small.png" 24 24
check "the host survives" kill -0 "$host"
stop_host INT
check "it ends cleanly on SIGINT while a program hangs" test "$status" = 0
check "a hanging program is taken along" no_child_left

# The reload date of the stand-in's timelines is two seconds ahead.
stand_in brief '[ "$1" = timeline ] && date +%s >>"$work/asked"
"$real" "$@" | sed -E "s/\"after\":\"[^\"]*\"/\"after\":\"$(date -u -d "+2 seconds" +%FT%T.000Z)\"/"'
touch "$work/asked"
start_host --widget "$work/brief"
check "it asks again once the reload date has passed" \
  eventually bash -c "[ \$(wc -l <'$work/asked') -ge 3 ]"
check "and not before" awk 'NR > 1 && $1 - last < 1 {bad = 1} {last = $1} END {exit bad}' "$work/asked"
stop_host TERM

echo '{damaged' >"$work/config/velmora-desktop/placement.json"
start_host
check "a damaged file of choices gives the defaults" eventually shows "$work/small.png" 830 24
check "and is set aside" test -e "$work/config/velmora-desktop/placement.json.damaged"
kill "$xvfb"
wait "$host"
check "losing the display leaves no child" no_child_left

# One clear line each.
for wrong in --family=huge --margin=x --corner=middle extra; do
  "$BIN/velmora-desktop" $wrong 2>"$work/said"
  check "wrong call: $wrong" test "$?/$(wc -l <"$work/said")" = 2/1
done
rm -f "$work/config/velmora-desktop/placement.json"
env -u DISPLAY "$BIN/velmora-desktop" --corner top-left 2>"$work/said"
check "no display" test "$?/$(wc -l <"$work/said")" = 1/1
"$BIN/velmora-desktop" --widget /nowhere 2>"$work/said"
check "no widget program" test "$?/$(wc -l <"$work/said")" = 1/1
check "calls that fail keep no choice" test ! -e "$work/config/velmora-desktop/placement.json"
finish_test
