#!/usr/bin/env bash
# Runs each command that docs/elsewhere.md offers, with sample figures: recipes_test.sh BIN PAGE
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
printf '#!/bin/sh\nshift\nexec %s placeholder "$@"\n' "$1/velmora-widget" >"$folder/velmora-widget"
chmod +x "$folder/velmora-widget"
mkdir -p "$folder/home/.cache"
export PATH=$folder:$PATH HOME=$folder/home LANGUAGE=en
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
  [[ $command == *--output\ velmora.png* || $output == *9.21* || $output == 203 ]] ||
    { echo "$command: $output"; exit 1; }
  count=$((count + 1))
done < <(commands)
[ "$count" -eq 9 ] || { echo "$count commands instead of 9"; exit 1; }
for picture in velmora.png home/.cache/velmora.png; do [ -s "$picture" ]; done
