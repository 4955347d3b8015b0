#!/usr/bin/env bash
# The way from README.md to an installed Velmora and to its next version, on a real screen, and what
# is left when it goes. It changes the system that it runs on: for root in a chroot.
set -u
[ "${IN_A_CHROOT:-}" = yes ] || { echo "only in a chroot, see script/other-release" >&2; exit 2; }
tree=$(cd "$(dirname "$0")/.." && pwd)
BIN=/usr/bin
case $(echo "$tree"/out/velmora_*.deb) in
  *~*) ;;
  *) echo "skipped: no release yet, for which nothing is published"; exit ;;
esac
export DEBIAN_FRONTEND=noninteractive GNUPGHOME
. "$tree/tests/desktop/session.sh"
. "$tree/tests/desktop/screens.sh"
patience=60
GNUPGHOME=$work/gnupg
own_surroundings
mkdir -m 700 "$GNUPGHOME"
mkdir "$work/tree" "$work/served"
cp -r "$tree/script" "$tree/docs" "$tree/out" "$work/tree"
package=$(echo "$work"/tree/out/velmora_*.deb)
said=$work/errors

python3 -u -m http.server 0 --bind 127.0.0.1 --directory "$work/served" >"$work/server" 2>/dev/null &
children+=($!)
eventually grep -q port "$work/server"
url=http://127.0.0.1:$(grep -oE 'port [0-9]+' "$work/server" | cut -c6-)
gpg --batch --quiet --passphrase '' --quick-generate-key "o <o@example.com>" ed25519 sign 2>>"$said"
quietly() { "$@" >>"$said" 2>&1; }
publish() { quietly timeout 120 "$work/tree/script/repository" "$work/served" --url "$url"; }

# Files of the system that are nobody's cache, list or log.
system_files() {
  find / -xdev \( -path /proc -o -path /sys -o -path /dev -o -path /tmp -o -path /root -o -path /run \
    -o -path /var/cache -o -path /var/log -o -path /var/lib/apt -o -path /var/lib/dpkg \
    -o -path /var/lib/swcatalog \
    -o -path /etc/apt -o -path "$tree" -o -path "$work" \) -prune -o ! -name '*cache' -print | sort
}

# The way in: the lines of the page that name the source, for this server.
way_in() {
  sed -n '/^```/,/^```/{/velmora\.gpg\|VERSION_CODENAME\|apt install velmora$/p}' "$tree/README.md" |
    sed "s|https://velmora.brenvik.com/debian|$url|; s/sudo //g"
}
printf '%s\n' 'APT::Get::Assume-Yes "true";' 'APT::Install-Recommends "false";' \
  'Acquire::http::Proxy::127.0.0.1 "DIRECT";' >/etc/apt/apt.conf.d/99upgrade-test
export no_proxy=127.0.0.1
check "the folder is made" publish
system_files >"$work/before"
check "the way in has three lines" test "$(way_in | wc -l)" = 3
way_in >"$work/way-in"
check "they install" quietly timeout 300 bash -e "$work/way-in"
check "the programs are there" quietly velmora-widget describe

# Somebody is signed in, and the widget runs.
printf 1//0-token | secret-tool store --label=Velmora service com.brenvik.velmora \
  account google.refresh_token access-group Q7M2K9D4XW.com.brenvik.velmora.shared
velmora goals --daily 7 --monthly 70 >/dev/null
start_openbox
start_host --family small --corner top-left --margin 24
widget_picture small 1 "$work/small.png"
check "the widget is shown" eventually shows "$work/small.png" 24 24
status() { velmora status; cat "$XDG_CONFIG_HOME/velmora-desktop/placement.json"; }
status >"$work/status"
check "somebody is signed in" grep -q '"isSignedIn":true' "$work/status"

# The next version, whose widget program says that it was asked.
next_version() {
  local root=$work/next bin
  bin=$root/usr/bin
  dpkg-deb -R "$package" "$root"
  sed -i 's/^Version: [^~]*/Version: 99.0.1/' "$root/DEBIAN/control"
  mv "$bin/velmora-widget" "$bin/velmora-widget-2"
  printf '#!/bin/sh\necho $1 >>%s/asked\nexec velmora-widget-2 "$@"\n' "$work" >"$bin/velmora-widget"
  chmod 755 "$bin/velmora-widget"
  dpkg-deb --root-owner-group --build "$root" "$work/tree/out/$(basename "$package" | sed 's/_[^~]*/_99.0.1/')" >/dev/null
}
next_version
check "the folder takes the next version" publish
upgrade() { timeout 60 apt-get -q update && timeout 120 apt-get -q upgrade; }
check "apt upgrades" quietly upgrade
check "to the next version" grep -q '^99' <<<"$(dpkg-query -W -f '${Version}' velmora)"
check "the running widget goes on" kill -0 "$host"
check "and is shown" shows "$work/small.png" 24 24
status >"$work/status-after"
check "nothing of the user's is lost" cmp "$work/status" "$work/status-after"
rm -f "$work/asked"
velmora-desktop --refresh
check "it shows with the new program" eventually grep -qs timeline "$work/asked"
program() { readlink "/proc/$host/exe"; }
check "it is the old one itself" grep -q deleted <<<"$(program)"
velmora-desktop --quit
wait "$host"
start_host
check "the next login runs the new one" test "$(program)" = /usr/bin/velmora-desktop
check "at its place" eventually shows "$work/small.png" 24 24
velmora-desktop --quit
wait "$host"

check "it is removed" quietly apt-get -q remove velmora
check "and purged" quietly apt-get -q purge velmora
system_files >"$work/after"
check "the system is as it was" diff "$work/before" "$work/after"
check "software centres go on offering it" grep -q 'Package: velmora$' \
  <<<"$(timeout 60 appstreamcli get com.brenvik.velmora 2>>"$said")"
check "what is the user's stays" test -s "$XDG_CONFIG_HOME/velmora-desktop/placement.json" -a -s "$work/keyring"
rm -f /etc/apt/apt.conf.d/99upgrade-test /etc/apt/sources.list.d/velmora.sources /etc/apt/keyrings/velmora.gpg
gpgconf --kill all
finish_test
