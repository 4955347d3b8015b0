#!/usr/bin/env bash
# The folder that script/repository makes, as an apt of its own sees it over http, with made-up
# packages. Argument: the tree.
set -u
tree=$1
work=$(mktemp -d)
chmod 755 "$work"
failures=0
export GNUPGHOME=$work/gnupg

finish() {
  kill "$server"
  gpgconf --kill all
  rm -rf "$work"
}

check() { # description, command...
  if "${@:2}"; then
    echo "ok   $1"
  else
    echo "FAIL $1"
    failures=$((failures + 1))
    cat "$work/said"
  fi
}
fails() { ! "$@"; }

make_package() { # version architecture, content
  local root=$work/package
  rm -rf "$root"
  mkdir -p "$root/DEBIAN" "$root/usr/bin"
  printf 'Package: velmora\nVersion: %s\nArchitecture: %s\nMaintainer: N <n@example.com>\nDescription: D\n' \
    "$1" "$2" >"$root/DEBIAN/control"
  for file in applications:desktop metainfo:metainfo.xml icons/hicolor/scalable/apps:svg; do
    install -D -m 644 -t "$root/usr/share/${file%:*}" "$tree/packaging/com.brenvik.velmora.${file#*:}"
  done
  printf '%s' "${3:-$1}" >"$root/usr/bin/velmora"
  chmod +x "$root/usr/bin/velmora"
  mkdir -p "$work/tree/out"
  dpkg-deb --root-owner-group --build "$root" "$work/tree/out/velmora_$1_$2.deb" >/dev/null
}

make_key() { # name
  gpg --batch --quiet --passphrase '' --quick-generate-key "$1 <$1@example.com>" ed25519 sign 2>/dev/null
}

repository() { timeout 120 "$work/tree/script/repository" "$@" >"$work/said" 2>&1; }
says() { grep -qE "$1" "$work/said"; }

# An apt with nothing of this machine's but its programs.
make_apt() { # suite
  local root=$work/apt-$1
  mkdir -p "$root"/etc/{sources.list.d,preferences.d,apt.conf.d} "$root"/{lib/lists,cache/archives}/partial
  touch "$root/status"
  sed "s|^Signed-By:.*|Signed-By: $folder/velmora.gpg|" "$folder/velmora-$1.sources" \
    >"$root/etc/sources.list.d/velmora.sources"
  printf '%s "%s";\n' Dir::Etc "$root/etc" Dir::State "$root/lib" Dir::State::status "$root/status" \
    Dir::Cache "$root/cache" APT::Architecture amd64 APT::Architectures:: amd64 APT::Sandbox::User '' \
    Acquire::http::Proxy DIRECT Acquire::Retries 0 Acquire::http::Timeout 20 \
    APT::Update::Error-Mode any >"$root/conf"
}

apt_for() { # suite, command...
  (cd "$work/apt-$1" && APT_CONFIG=conf timeout 60 apt-get -q "${@:2}") >"$work/said" 2>&1
}

# apt keeps what it has when an update fails, and calls most failures warnings.
update() { apt_for "$1" update && ! says '^[WE]:'; }
update_is_refused() { # suite, reason
  fails update "$1" && says "$2"
}
can_have() { # suite version
  rm -f "$work/apt-$1"/velmora_*.deb
  apt_for "$1" download "velmora=$2" && test -e "$work/apt-$1/velmora_$2_amd64.deb"
}
newest_is() { # suite version
  rm -f "$work/apt-$1"/velmora_*.deb
  apt_for "$1" download velmora && test -e "$work/apt-$1/velmora_$2_amd64.deb"
}
contents() { (cd "$folder" && find . -type f ! -name .lock -exec sha256sum {} + | sort); }

mkdir -p "$work/tree/docs"
folder=$work/served
mkdir -m 700 "$GNUPGHOME" && mkdir "$folder"
cp -r "$tree/script" "$work/tree"
cp -r "$tree/docs/pictures" "$work/tree/docs"
python3 -u -m http.server 0 --bind 127.0.0.1 --directory "$folder" >"$work/server" 2>"$work/requests" &
server=$!
trap finish EXIT
until grep -q port "$work/server" || [ $SECONDS -gt 20 ]; do sleep 0.05; done
url=http://127.0.0.1:$(grep -oE 'port [0-9]+' "$work/server" | cut -c6-)
make_key own
make_key foreign

repository
check "a call without a folder is wrong" test $? = 2
repository "$folder" own
check "nothing to publish is said" says 'there is no package'
make_package 1.0.0~deb12 amd64
make_package 1.0.0~deb12 arm64
make_package 1.0.0~deb13 amd64
check "the folder is made" repository "$folder" own --url "$url"

for suite in bookworm trixie; do
  make_apt $suite
  check "apt reads $suite" update $suite
done
check "by digests" grep -q 'GET /dists/bookworm/main/binary-amd64/by-hash/SHA256/' "$work/requests"
check "Debian 12 gets its package" newest_is bookworm 1.0.0~deb12
check "Debian 13 gets its own" newest_is trixie 1.0.0~deb13
check "there is arm64 too" grep -q '^Architecture: arm64' "$folder/dists/bookworm/main/binary-arm64/Packages"
catalogue=$folder/dists/bookworm/main/dep11
check "software centres find the texts" grep -q '^ID: com.brenvik.velmora' "$catalogue/Components-amd64.yml"
check "and the package" grep -q '^Package: velmora' "$catalogue/Components-amd64.yml"
picture=$(grep -o "$url/pictures/[a-z-]*.png" "$catalogue/Components-amd64.yml" | head -n 1)
check "pictures" test -s "$folder${picture#"$url"}"
check "and icons" grep -q 'com.brenvik.velmora.png' <<<"$(tar -tzf "$catalogue/icons-64x64.tar.gz")"

# A newer package, with neither key nor address named again.
contents >"$work/before"
make_package 1.0.1~deb12 amd64
check "a newer package is added" repository "$folder"
update bookworm
check "it is the one that is installed" newest_is bookworm 1.0.1~deb12
check "the older one stays" can_have bookworm 1.0.0~deb12
contents >"$work/after"
lost=$(comm -23 "$work/before" "$work/after" | grep -vE '/(In)?Release(\.gpg)?$|bookworm/main/(binary|dep11/Components)-')
check "and nothing else changes" test -z "$lost"

contents >"$work/before"
make_package 1.0.1~deb12 amd64 other
repository "$folder"
check "what is published is not replaced" says 'raise the version'
rm "$work/tree/out/velmora_1.0.1~deb12_amd64.deb"
repository "$folder" foreign
check "nor the key that others trust" says 'trust no other key'
contents >"$work/after"
check "and a refusal changes nothing" cmp -s "$work/before" "$work/after"

# What apt must not take.
sign() { # key, words of sed for the release
  sed -i "$2" "$folder/dists/bookworm/Release"
  gpg --batch --quiet --yes --local-user "$1" --output "$folder/dists/bookworm/InRelease" \
    --clear-sign "$folder/dists/bookworm/Release" 2>/dev/null
}
package=$folder/pool/bookworm/velmora_1.0.1~deb12_amd64.deb
cp "$package" "$work/whole.deb"
printf x | dd of="$package" bs=1 seek=200 conv=notrunc status=none
check "a changed byte of a package" fails newest_is bookworm 1.0.1~deb12
check "is told" says 'Hash Sum mismatch'
cp "$work/whole.deb" "$package"
check "and not held against the whole one" newest_is bookworm 1.0.1~deb12
sign foreign ''
check "a foreign key" update_is_refused bookworm 'NO_PUBKEY|Missing key'
sign own 's/^Valid-Until:.*/Valid-Until: Sun, 22 Nov 2020 00:00:00 UTC/; s/^Date:.*/Date: Sat, 21 Nov 2020 00:00:00 UTC/'
check "what has expired" update_is_refused bookworm 'expired'
sign own 's/^Codename/X-Changed: 1\nCodename/'
sed -i 's/^Origin: .*/Origin: Changed/' "$folder/dists/bookworm/InRelease"
check "a changed release" update_is_refused bookworm 'BADSIG|manipulated'
check "the next run mends it" repository "$folder"
check "for apt too" update bookworm
exit $((failures > 0))
