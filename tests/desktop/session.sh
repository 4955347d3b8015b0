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

# Tries a command for up to ten seconds, or $patience of them.
eventually() {
  local end=$((SECONDS + ${patience:-10}))
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
  export ASAN_OPTIONS=detect_leaks=0 TMPDIR=$work/tmp GSETTINGS_BACKEND=memory
  mkdir "$TMPDIR"
  unset DBUS_SESSION_BUS_ADDRESS
  mkdir "$work/services"
  cp "$(dirname "${BASH_SOURCE[0]}")/../support/bus.conf" "$work"
  dbus-daemon --config-file="$work/bus.conf" --nofork --print-address=1 >"$work/bus" 2>/dev/null &
  children+=($!)
  eventually test -s "$work/bus"
  DBUS_SESSION_BUS_ADDRESS=$(cat "$work/bus")
  export DBUS_SESSION_BUS_ADDRESS
}

# Has the bus start these services of the machine's when they are asked for; it starts no others.
bus_starts() { # names
  local name
  for name in "$@"; do
    ln -s "/usr/share/dbus-1/services/$name.service" "$work/services"
  done
  gdbus call --session --dest org.freedesktop.DBus --object-path / \
    --method org.freedesktop.DBus.ReloadConfig >/dev/null
}

# The programs in a tree of their own, with a stand-in for the companion.
own_programs() {
  local built=$BIN
  BIN=$work/installed/bin
  mkdir -p "$BIN"
  cp "$built/velmora-desktop" "$BIN"
  ln -s "$built/velmora-widget" "$BIN"
  ln -s "$built/../lib" "$built/../libexec" "$built/../share" "$work/installed"
  printf '#!/bin/sh\necho "$$ ${XDG_ACTIVATION_TOKEN:-none} $*" >>%q\n' "$work/opened" >"$BIN/velmora"
  chmod +x "$BIN/velmora"
  touch "$work/opened"
}

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

# The context switches of a process, by the threads that are there all the time; those of a pool end
# while it rests.
switches() { awk '/^Pid/ {id = $2} /ctxt_switches/ {print id, $2}' /proc/"$1"/task/*/status; }
added() { # before after
  awk 'NR == FNR {before[$1] += $2; next} $1 in before {sum += $2; seen[$1]}
       END {for (id in seen) sum -= before[id]; print sum + 0}' <(echo "$1") <(echo "$2")
}

no_child_left() { ! pgrep -f "$work/[a-zA-Z/-]+ (snapshot|timeline) " >/dev/null; }

# Whether the screen shows a picture at a place in points. The rounded corners are left out.
shows() { # picture x y
  screenshot "$work/screen.png" || return 1
  local size difference
  size=$(identify -format '%wx%h' "$1")
  convert "$work/screen.png" +repage -crop "$size+$(device "$2")+$(device "$3")" +repage \
    -shave 20x20 "$work/seen.png" 2>/dev/null
  convert "$1" -alpha off -shave 20x20 "$work/wanted.png"
  difference=$(compare -metric AE -fuzz 1% "$work/seen.png" "$work/wanted.png" null: 2>&1)
  [ "${difference%% *}" = 0 ] # newer ones say more than the count
}

# Device pixels for points.
scale=1
device() { bc <<<"($1 * $scale + 0.5) / 1"; }

pixel() { # x y
  screenshot "$work/screen.png" &&
    convert "$work/screen.png" -format "%[hex:p{$(device "$1"),$(device "$2")}]" info: | cut -c1-6
}

pixel_is() { test "$(pixel "$1" "$2")" = "$3"; }
pixel_is_not() { ! pixel_is "$@"; }

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
