#!/usr/bin/env bash
# Whether the packages in out/ come out the same, byte for byte, when the tree is built in another
# folder, at another time and with other settings.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}

copy=$work/another/folder
mkdir -p "$copy"
git ls-files -z --cached --others --exclude-standard |
  tar -c --null --no-recursion --ignore-failed-read -T - | tar -x -m -C "$copy" --no-same-owner
(
  cd "$copy"
  umask 077
  # What was compiled before, here, would be taken as it is.
  CCACHE_DISABLE=1 TZ=Asia/Tokyo LC_ALL=C.UTF-8 HOME=$work timeout 3000 script/package
)
for package in "$copy"/out/*.deb; do
  cmp "$package" "out/${package##*/}"
  echo "ok   ${package##*/} is the same"
done
