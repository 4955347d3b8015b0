# Sourced by the tests of velmora-desktop on a screen. BIN holds the built programs.
set -u
work=$(mktemp -d)
chmod 755 "$work"
failures=0
children=()

finish() {
  for child in "${children[@]}"; do kill "$child" 2>/dev/null; done
  wait 2>/dev/null
  rm -rf "$work"
}
trap finish EXIT

check() { # description, command...
  local what=$1
  shift
  if "$@"; then
    echo "ok   $what"
  else
    echo "FAIL $what"
    failures=$((failures + 1))
  fi
}

# Tries a command for up to ten seconds.
eventually() {
  local end=$((SECONDS + 10))
  while [ "$SECONDS" -lt "$end" ]; do
    "$@" && return 0
    sleep 0.05
  done
  return 1
}

# An own home, keyring and session bus, and the widget's own picture to compare with.
own_surroundings() {
  export HOME=$work XDG_CONFIG_HOME=$work/config XDG_STATE_HOME=$work/state LANGUAGE=en_US
  export SECRET_BACKEND=file SECRET_FILE_TEST_PATH=$work/keyring SECRET_FILE_TEST_PASSWORD=x
  export ASAN_OPTIONS=detect_leaks=0
  unset DBUS_SESSION_BUS_ADDRESS
  dbus-daemon --session --nofork --print-address=1 >"$work/bus" 2>/dev/null &
  children+=($!)
  eventually test -s "$work/bus"
  DBUS_SESSION_BUS_ADDRESS=$(cat "$work/bus")
  export DBUS_SESSION_BUS_ADDRESS
}

# An X server with a window manager, its wallpaper in one colour.
start_x11() {
  screenshot() { import -silent -window root "$1" 2>/dev/null; }
  exec 9>"$work/display"
  # Without -noreset the server forgets everything when its only client leaves.
  Xvfb -displayfd 9 -noreset -screen 0 1024x768x24 >/dev/null 2>&1 &
  xvfb=$!
  children+=("$xvfb")
  eventually test -s "$work/display" || { echo "no Xvfb"; exit 1; }
  DISPLAY=:$(cat "$work/display")
  export DISPLAY
  unset WAYLAND_DISPLAY
  openbox >/dev/null 2>&1 &
  children+=($!)
  eventually window_manager_runs || { echo "no window manager"; exit 1; }
  xsetroot -solid '#7a8592'
  eventually wallpaper_shows || { echo "no wallpaper"; exit 1; }
}

# xprop ends with 0 whether there is such a property or not.
window_manager_runs() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }

start_host() { # options
  "$BIN/velmora-desktop" "$@" 2>>"$work/errors" &
  host=$!
  children+=("$host")
}

stop_host() { # signal
  kill "-$1" "$host"
  wait "$host"
  status=$?
}

no_child_left() { ! pgrep -f "^$work/|velmora-widget (snapshot|timeline)" >/dev/null; }

# Whether the screen shows a picture at a place. The rounded corners are left out.
shows() { # picture x y
  screenshot "$work/screen.png" || return 1
  local size difference
  size=$(identify -format '%wx%h' "$1")
  convert "$work/screen.png" +repage -crop "$size+$2+$3" +repage -shave 14x14 "$work/seen.png" 2>/dev/null
  convert "$1" -alpha off -shave 14x14 "$work/wanted.png"
  difference=$(compare -metric AE -fuzz 2% "$work/seen.png" "$work/wanted.png" null: 2>&1)
  [ "$difference" = 0 ]
}

pixel() { # x y
  screenshot "$work/screen.png" && convert "$work/screen.png" -format "%[hex:p{$1,$2}]" info: | cut -c1-6
}

wallpaper_shows() { test "$(pixel 500 400)" = 7A8592; }

widget_picture() { # family scale file
  "$BIN/velmora-widget" snapshot --family "$1" --scale "$2" --output "$3" >/dev/null
}

# A stand-in for the widget program: what it does is in its argument, written as shell.
stand_in() { # name, shell
  printf '#!/bin/bash\nwork=%q; real=%q\n%s\n' "$work" "$BIN/velmora-widget" "$2" >"$work/$1"
  chmod +x "$work/$1"
}

finish_test() {
  [ "$failures" -eq 0 ] || cat "$work/errors"
  exit "$((failures > 0))"
}
