#!/usr/bin/env bash
# Runs each command that docs/elsewhere.md offers, with sample figures: recipes_test.sh BIN PAGE
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
printf '#!/bin/sh\nshift\nexec %s placeholder "$@"\n' "$1/velmora-widget" >"$folder/velmora-widget"
printf '#!/bin/sh\nexec %s "$@" --offline\n' "$1/velmora" >"$folder/velmora"
chmod +x "$folder/velmora-widget" "$folder/velmora"
state=$folder/home/.local/state/velmora-widget
mkdir -p "$folder/home/.cache" "$state"
export PATH=$folder:$PATH HOME=$folder/home LANGUAGE=en XDG_STATE_HOME=$folder/home/.local/state
cat >"$state/history.json" <<'END'
{"account":"accounts/pub-1","currency":"EUR","updatedAt":1,"days":[{"date":"2026-05-21",
"earnings":9.21,"pageViews":1,"impressions":1,"clicks":1,"rpm":1,"cpc":1,"ctr":1}]}
END
python3 - "$state/defaults.sqlite3" <<'END'
import sqlite3, sys
with sqlite3.connect(sys.argv[1]) as store:
    store.execute("CREATE TABLE defaults(key TEXT PRIMARY KEY, value)")
    store.execute("INSERT INTO defaults VALUES('adsense.account', 'accounts/pub-1')")
END
page=$2
cd "$folder"

# The fenced blocks of a language.
blocks() { awk -v start="\`\`\`$1" '/^```/ { inside = $0 == start; next } inside' "$page"; }
commands() {
  blocks sh
  blocks json | jq -r '."custom/velmora".exec'
  blocks ini | sed -n 's/^exec = //p'
  blocks lua | sed -nE 's/^\$\{execi 1800 (.*)\}$/\1/p'
  blocks tmux | sed -nE 's/.*#\((.*)\)"$/\1/p'
}
count=0
while read -r command; do
  output=$(bash -o pipefail -c "$command")
  [[ $command == *--output\ [a-z]* || $output == *9.21* || $output == 203 ]] ||
    { echo "$command: $output"; exit 1; }
  count=$((count + 1))
done < <(commands)
[ "$count" -eq 12 ] || { echo "$count commands instead of 12"; exit 1; }
for file in velmora.png home/.cache/velmora.png days.csv chart.png; do [ -s "$file" ]; done
