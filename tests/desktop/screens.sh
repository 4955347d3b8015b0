# Sourced after session.sh: screens of their own. Each start_... sets `screenshot`, `input` (words of
# xdotool, places in points), `scale` and `server`.

start_xvfb() { # size
  exec 9>"$work/display"
  # Without -noreset the server forgets everything when its only client leaves.
  Xvfb -displayfd 9 -noreset -screen 0 "$1x24" >/dev/null 2>&1 &
  server=$!
  children+=("$server")
  eventually test -s "$work/display" || { echo "no Xvfb"; exit 1; }
}

# An X server with a window manager, its wallpaper in one colour.
start_x11() { # command of the window manager...
  screenshot() { import -silent -window root "$1" 2>/dev/null; }
  input() { xdotool "$@"; }
  start_xvfb 1024x768
  DISPLAY=:$(cat "$work/display")
  export DISPLAY
  unset WAYLAND_DISPLAY
  "$@" >/dev/null 2>&1 &
  children+=($!)
  eventually window_manager_runs || { echo "no window manager"; exit 1; }
  xsetroot -solid '#7a8592'
  # One with a compositor has a wallpaper of its own.
  eventually pixel_settles || { echo "no wallpaper"; exit 1; }
}

# xprop ends with 0 whether there is such a property or not.
window_manager_runs() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }
pixel_settles() { local seen && seen=$(pixel 500 400) && sleep 0.2 && pixel_is 500 400 "$seen"; }

start_openbox() { start_x11 openbox; }
start_xfwm4() { bus_starts org.xfce.Xfconf; start_x11 xfwm4 --compositor=on; }
start_metacity() { start_x11 metacity --composite; }

listening() { find "$XDG_RUNTIME_DIR" -name "$1" -type s | grep -q .; }

take_compositor() { # width height in points
  eventually listening 'wayland-?' || { echo "no compositor"; exit 1; }
  WAYLAND_DISPLAY=$(basename "$(find "$XDG_RUNTIME_DIR" -name 'wayland-?' -type s | sort | tail -1)")
  export WAYLAND_DISPLAY
  coproc INPUT { "$TOOLS/wayland_input" "$1" "$2"; }
  children+=("$INPUT_PID")
  input() { echo "$*" >&"${INPUT[1]}" && read -r -t 20 _ <&"${INPUT[0]}"; }
}

own_runtime_folder() {
  export XDG_RUNTIME_DIR=$work/run
  mkdir -m 700 "$XDG_RUNTIME_DIR"
  unset DISPLAY
  as_user=()
  if [ "$(id -u)" = 0 ]; then # sway refuses to run as root
    chown 65534:65534 "$XDG_RUNTIME_DIR"
    as_user=(setpriv --reuid 65534 --regid 65534 --clear-groups)
  fi
}

# A theme with one transparent pixel for every pointer, which grim would take with it.
no_cursor() {
  export XCURSOR_PATH=$work/icons XCURSOR_THEME=default XCURSOR_SIZE=24
  mkdir -p "$work/icons/default/cursors"
  printf 'Xcur\x10\0\0\0\0\0\1\0\1\0\0\0\2\0\xfd\xff\x18\0\0\0\x1c\0\0\0%b' \
    '\x24\0\0\0\2\0\xfd\xff\x18\0\0\0\1\0\0\0\1\0\0\0\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0' \
    >"$work/icons/default/cursors/left_ptr"
  for name in default grabbing; do cp "$work/icons/default/cursors/left_ptr" "$work/icons/default/cursors/$name"; done
}

# `layout` is the size of all outputs together, unless there is one alone. The wallpaper is one
# pixel, which sway would blur towards the edges at a fraction.
start_sway() { # scale, width and height in device pixels, more lines of configuration
  scale=$1
  if [[ $1 == *.* ]] && dpkg --compare-versions "$(dpkg-query -W -f '${Version}' sway)" ge 1.12; then
    echo "skipped: this sway ends at fractions without a graphics device"
    exit 77
  fi
  screenshot() { grim "$1"; }
  own_runtime_folder
  no_cursor
  printf 'output HEADLESS-1 resolution %sx%s scale %s scale_filter nearest\noutput * bg #7a8592 solid_color\n%s\n' \
    "$2" "$3" "$1" "${4:-}" >"$work/sway"
  WLR_BACKENDS=headless WLR_LIBINPUT_NO_DEVICES=1 WLR_RENDERER=pixman "${as_user[@]}" \
    sway -c "$work/sway" >"$work/sway.log" 2>&1 &
  server=$!
  children+=("$server")
  eventually listening 'sway-ipc*.sock' || { echo "no sway"; exit 1; }
  SWAYSOCK=$(find "$XDG_RUNTIME_DIR" -name 'sway-ipc*.sock')
  export SWAYSOCK
  # shellcheck disable=SC2086
  take_compositor ${layout:-$(bc <<<"$2 / $1") $(bc <<<"$3 / $1")}
  eventually pixel_is 500 400 7A8592 || { echo "no wallpaper"; exit 1; }
}

# In a window of its own X server, since without a graphics device it draws to nothing else that can
# be looked at. KWin 5 takes the scale from its command line, KWin 6 from what it remembers of the
# output. A copy of the program has no file capabilities, which a container refuses. It keeps its
# name, by which it knows itself.
start_kwin() {
  scale=1.5
  screenshot() { DISPLAY=$screen import -silent -window root "$1" 2>/dev/null; }
  own_runtime_folder
  start_xvfb 1536x960
  screen=:$(cat "$work/display")
  mkdir "$work/kwin" "$XDG_CONFIG_HOME"
  cp "$(command -v kwin_wayland)" "$work/kwin"
  jq -n '[{name: "outputs", data: [{connectorName: "X11-0", scale: 1.5}]}, {name: "setups", data:
    [{lidClosed: false, outputs: [{enabled: true, outputIndex: 0, position: {x: 0, y: 0}, priority: 0}]}]}]' \
    >"$XDG_CONFIG_HOME/kwinoutputconfig.json"
  KWIN_COMPOSE=Q KWIN_WAYLAND_NO_PERMISSION_CHECKS=1 "$work/kwin/kwin_wayland" \
    --x11-display "$screen" --width 1024 --height 640 --scale 1.5 --socket wayland-7 \
    --no-lockscreen >"$work/kwin.log" 2>&1 &
  server=$!
  children+=("$server")
  take_compositor 1024 640
  eventually window_of_kwin || { echo "no KWin"; exit 1; }
}

window_of_kwin() { DISPLAY=$screen xwininfo -root -tree | grep -q "KDE Wayland Compositor"; }
