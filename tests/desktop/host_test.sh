#!/bin/bash
# velmora-desktop against its surroundings: hostile widget programs, files and calls, monitors and
# scales that change, a screen reader. On X11 with openbox. Argument: the folder of the programs.
BIN=$1
. "$(dirname "$0")/session.sh"
. "$(dirname "$0")/screens.sh"
own_surroundings
own_programs
bus_starts org.a11y.Bus
start_openbox
window() { xdotool search --onlyvisible --name '^Velmora$' 2>/dev/null | head -1; }
for family in small medium large; do widget_picture $family 1 "$work/$family.png"; done
widget_picture small 1.5 "$work/small-1.5.png"
widget_picture small 2 "$work/small-2.png"
choices=$work/config/velmora-desktop/placement.json
asked() { test "$(wc -l <"$work/asked")" -ge "$1"; }
touch "$work/asked"

gone() { ! kill -0 "$1" 2>/dev/null || grep -q '^State:.Z' "/proc/$1/status"; }

# A start with one widget program after another.
restart_host() { # options
  "$BIN/velmora-desktop" --quit
  wait "$host"
  start_host "$@"
}

# A call that only wants to reach a host takes nobody's place.
for _ in 1 2 3 4 5; do
  for _ in 1 2 3; do "$BIN/velmora-desktop" --refresh 2>/dev/null & done
  start_host --family small
  check "a host starts beside calls that look for one" eventually shows "$work/small.png" 830 24
  stop_host TERM
done
"$BIN/velmora-desktop" --refresh 2>"$work/said"
check "nothing can be refreshed yet" test "$?/$(wc -l <"$work/said")" = 1/1
check "nothing is there to quit" "$BIN/velmora-desktop" --quit
start_host --family small
eventually shows "$work/small.png" 830 24
state=$(xprop -id "$(window)" _NET_WM_STATE _NET_WM_DESKTOP)
for word in STATE_BELOW STATE_SKIP_TASKBAR STATE_SKIP_PAGER 'DESKTOP(CARDINAL) = 4294967295'; do
  check "below, out of task bar and pager, on every workspace: $word" grep -qF "$word" <<<"$state"
done
xprop -root -f _NET_SHOWING_DESKTOP 32c -set _NET_SHOWING_DESKTOP 1
check "show desktop keeps it" shows "$work/small.png" 830 24
check "only one window is there" test "$(xdotool search --onlyvisible --name '^Velmora$' | wc -l)" = 1
"$BIN/velmora-desktop" --widget "$BIN/velmora-widget" 2>"$work/said"
check "a further call does not choose the program" test "$?/$(wc -l <"$work/said")" = 1/1
"$BIN/velmora-desktop" --monitor away-1 --corner top-left
check "a monitor that is away is stood in for" eventually shows "$work/small.png" 24 24

# Calls by way of the session bus that no program of ours makes.
call() { # arguments
  gdbus call --session --dest com.brenvik.velmora.Desktop --object-path /com/brenvik/velmora/Desktop \
    --method com.brenvik.velmora.Desktop.Call "$@"
}
check "a call without words is none" test "$(call '@as []' /nowhere '' '')" = "(0, '')"
check "a wrong call is told" grep -q '^(2, ' <<<"$(call '["--nothing"]' / '' '')"
check "the host survives both" shows "$work/small.png" 24 24
check "and says nothing" test ! -s "$work/errors"
DISPLAY=:77 "$BIN/velmora-desktop" 2>"$work/said"
check "it is not shown on two displays" test "$?/$(wc -l <"$work/said")" = 1/1

# One that is stopped answers nobody, and holds nobody up for long.
kill -STOP "$host"
check "a call to a stopped host ends" test "$(timeout 20 "$BIN/velmora-desktop" --refresh 2>&1; echo $?)" = \
  "velmora-desktop: the running widget does not answer
1"
kill -CONT "$host"
kill -STOP "$server"
"$BIN/velmora-desktop" --corner bottom-left 2>/dev/null &
calling=$!
sleep 0.5
kill "$calling"
kill -TERM "$host"
check "while the display is silent it can be ended" eventually gone "$host"
kill -CONT "$server"
wait "$host"
start_host --corner top-left
eventually shows "$work/small.png" 24 24

# Hidden amounts are never seen sharp, also while the widget program hangs.
ink() { convert "$work/screen.png" +repage -crop 130x130+44+44 -colorspace gray -morphology edge diamond:1 -format '%[fx:mean]' info:; }
is_blurred() { screenshot "$work/screen.png" && [ "$(bc <<<"$(ink) < 0.02")" = 1 ]; }
is_sharp() { screenshot "$work/screen.png" && [ "$(bc <<<"$(ink) > 0.02")" = 1 ]; }
check "amounts can be read" is_sharp
"$BIN/velmora-desktop" --amounts hide
check "and hidden" eventually is_blurred
check "which is kept" grep -q '"amounts":"hide"' "$choices"
"$BIN/velmora-desktop" --refresh --family large
check "in every size" eventually is_blurred
"$BIN/velmora-desktop" --amounts show --family small
check "and shown again" eventually shows "$work/small.png" 24 24

# Monitors: the screen's two halves, and one of them goes.
xrandr --setmonitor left 512/130x768/195+0+0 none --setmonitor right 512/130x768/195+512+0 none
"$BIN/velmora-desktop" --monitor right --corner top-left --margin 24
check "it stands on the named monitor" eventually shows "$work/small.png" 536 24
xrandr --delmonitor right
check "and elsewhere once that is gone" eventually shows "$work/small.png" 24 24
xrandr --delmonitor left

# Scales, of which the later sources win; xsettingsd reads its file again on HUP.
xrdb -merge <<<'Xft.dpi: 144'
scale=1.5
check "it follows the resolution of the X resources" eventually shows "$work/small-1.5.png" 24 24
echo 'Gdk/WindowScalingFactor 2' >"$work/xsettings"
xsettingsd -c "$work/xsettings" 2>/dev/null &
xsettingsd=$!
children+=("$xsettingsd")
scale=2
check "and a settings manager that comes" eventually shows "$work/small-2.png" 24 24
echo 'Xft/DPI 147456' >"$work/xsettings"
kill -HUP "$xsettingsd"
scale=1.5
check "and its changes" eventually shows "$work/small-1.5.png" 24 24
xrdb -remove
kill "$xsettingsd"
scale=1
check "and goes back when it goes" eventually shows "$work/small.png" 24 24
picom --backend xrender >/dev/null 2>&1 &
picom=$!
children+=("$picom")
cut() { local id && id=$(window) && [ -n "$id" ] && xwininfo -id "$id" -shape 2>/dev/null | grep -q 'Window shape extents'; }
is_not_cut() { ! cut; }
check "a compositor makes it transparent" eventually is_not_cut
kill "$picom"
check "without one it is cut again" eventually cut
check "and shown" eventually shows "$work/small.png" 24 24

# Somebody listens: only then the bus that is there for that is used.
check "no bridge was loaded" test -z "$(grep screen-reader "/proc/$host/maps")"
phrases() { /usr/bin/python3 "$(dirname "$0")/accessible_phrases.py"; }
phrases >/dev/null # which starts that bus
gdbus call --session --dest org.a11y.Bus --object-path /org/a11y/bus \
  --method org.freedesktop.DBus.Properties.Set org.a11y.Status IsEnabled '<true>' >/dev/null
heard() { test "$(phrases)" = "label: Open Velmora to sign in"; }
check "a screen reader is told each phrase" eventually heard

# A change of size while a timeline is being fetched.
stand_in slow '[ "$1" = timeline ] && { echo >>"$work/asked"; sleep 1000; }; exec "$real" "$@"'
restart_host --widget "$work/slow"
eventually asked 1
"$BIN/velmora-desktop" --family large
check "the size changes beside a running timeline" eventually shows "$work/large.png" 24 24
"$BIN/velmora-desktop" --family small
eventually shows "$work/small.png" 24 24

# Hostile programs: the last good picture stays, and so does the host.
stand_in crash 'kill -SEGV $$'
stand_in rubbish 'echo "{rubbish"'
stand_in flood 'yes | head -c 200000000'
stand_in noPicture 'exec "$real" placeholder'
stand_in badPicture '"$real" placeholder; for last; do :; done; head -c 3000 /dev/urandom >"$last"'
stand_in pipe '"$real" placeholder; for last; do :; done; mkfifo "$last"'
stand_in hostile 'if [ -e "$work/hostile-now" ]; then echo >>"$work/asked"; exec "$work/$(cat "$work/hostile-now")"; fi; exec "$real" "$@"'
restart_host --widget "$work/hostile"
eventually shows "$work/small.png" 24 24
says() { (cat "$work/errors"; echo) | grep -q "$1"; }
for program in crash rubbish flood noPicture badPicture pipe; do
  echo "$program" >"$work/hostile-now"
  : >"$work/asked"
  "$BIN/velmora-desktop" --refresh
  eventually asked 1
  # The same failure is said once.
  case $program in
    crash) said='signal Segmentation fault' ;;
    rubbish) said='no answer$' ;;
    noPicture) said='no picture of the right size' ;;
    *) said='' ;;
  esac
  check "the failure is said: $program" eventually says "$said"
  check "the picture survives: $program" shows "$work/small.png" 24 24
done
stand_in hang 'touch "$work/hanging"; sleep 1000'
echo hang >"$work/hostile-now"
"$BIN/velmora-desktop" --refresh
eventually test -e "$work/hanging"
stop_host INT
check "it ends cleanly on SIGINT while a program hangs" test "$status" = 0
check "a hanging program is taken along" eventually no_child_left
rm "$work/hostile-now"

# The reload date of the stand-in's timelines is two seconds ahead.
stand_in brief '[ "$1" = timeline ] && date +%s >>"$work/asked"
"$real" "$@" | sed -E "s/\"after\":\"[^\"]*\"/\"after\":\"$(date -u -d "+2 seconds" +%FT%T.000Z)\"/"'
: >"$work/asked"
start_host --widget "$work/brief"
check "it asks again once the reload date has passed" eventually asked 3
check "and not before" awk 'NR > 1 && $1 - last < 1 {bad = 1} {last = $1} END {exit bad}' "$work/asked"
stop_host TERM

# Choices that cannot be read.
damage() {
  rm -rf "$choices" "$choices.damaged"
  case $1 in text) echo '{damaged' >"$choices" ;; folder) mkdir "$choices" ;; pipe) mkfifo "$choices" ;; esac
}
for kind in text folder pipe; do
  damage $kind
  start_host
  check "the defaults stand in for choices that are damaged: $kind" \
    eventually shows "$work/small.png" 830 24
  check "which are set aside" test -e "$choices.damaged"
  stop_host TERM
done

start_host
eventually shows "$work/small.png" 830 24
kill "$server"
wait "$host"
check "losing the display leaves no child" eventually no_child_left

# One clear line each.
for wrong in --family=huge --margin=x --corner=middle extra; do
  "$BIN/velmora-desktop" $wrong 2>"$work/said"
  check "wrong call: $wrong" test "$?/$(wc -l <"$work/said")" = 2/1
done
rm -f "$choices"
env -u DISPLAY "$BIN/velmora-desktop" --corner top-left 2>"$work/said"
check "no display" test "$?/$(wc -l <"$work/said")" = 1/1
"$BIN/velmora-desktop" --widget /nowhere 2>"$work/said"
check "no widget program" test "$?/$(wc -l <"$work/said")" = 1/1
check "calls that fail keep no choice" test ! -e "$choices"
finish_test
