#!/bin/bash
# The window on X11, driven by the names of its controls, with the sandbox as provider. Arguments:
# the folder of the built programs, the window and the widget program under test, a language.
BIN=$1
window=$2 widget=$3
export LANGUAGE=$4
here=$(dirname "$0")
. "$here/../desktop/session.sh"
. "$here/../desktop/screens.sh"
language=$LANGUAGE
own_surroundings
bus_starts org.a11y.Bus org.gnome.keyring.SystemPrompter
start_openbox
export LANGUAGE=$language XDG_DATA_HOME=$work/data XDG_RUNTIME_DIR=$work/run WORK=$work BIN
mkdir -m 700 "$XDG_RUNTIME_DIR"

# A tree of its own, whose programs can be exchanged.
mkdir -p "$work/root/bin" "$work/root/libexec/velmora" "$work/root/share/velmora-widget"
cp "$window" "$work/root/libexec/velmora/velmora-window"
ln -s "$BIN/../share/velmora-widget/locale" "$work/root/share/velmora-widget/locale"
ln -s "$BIN/../share/icons" "$work/root/share/icons"
cp "$BIN/velmora-desktop" "$work/root/bin"
ln -s "$widget" "$work/root/bin/velmora-widget"

# The user's browser, who presses Allow as soon as the sandbox asks.
mkdir -p "$work/data/applications"
printf '[Desktop Entry]\nType=Application\nName=B\nExec=%s %%u\nMimeType=x-scheme-handler/http;\n' \
  "$work/browser" >"$work/data/applications/browser.desktop"
printf '[Default Applications]\nx-scheme-handler/http=browser.desktop\n' \
  >"$work/data/applications/mimeapps.list"
printf '#!/bin/sh\necho "$1" >>%q\n[ -e %q ] || curl -sL "$1" >%q\n' \
  "$work/visited" "$work/absent" "$work/page" >"$work/browser"
chmod +x "$work/browser"

/usr/bin/python3 "$here/window_test.py" || failures=1
finish_test
