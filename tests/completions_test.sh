#!/usr/bin/env bash
# What shells offer for the programs. Argument: the folder of the completions.
set -u
folder=$1
failures=0
expect() { # wanted, what was offered
  [ "$1" = "$2" ] && return
  echo "FAIL '$2' instead of '$1'"
  failures=1
}

# compopt works while a word is being completed only.
compopt() { echo "$*"; }
in_bash() { # words, of which the last is being completed
  COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
  . "$folder/bash/$1"
  "_${1//-/_}"
  echo "${COMPREPLY[*]}"
}
in_fish() { # command line
  fish --no-config -c "source $folder/fish/${1%% *}.fish; complete -C '$1'" | cut -f 1 | sort | paste -sd ' '
}

expect 'sign-in sign-out' "$(in_bash velmora sign)"
expect '--timeout' "$(in_bash velmora sign-in --ti)"
expect '' "$(in_bash velmora sign-in --timeout 6)"
expect '--daily' "$(in_bash velmora goals --monthly 300 --d)"
expect '-o default' "$(in_bash velmora client ~/Down | head -n 1)"
expect 'top-left top-right' "$(in_bash velmora-desktop --corner top)"
expect 'small medium large' "$(in_bash velmora-widget snapshot --family '')"
expect '-o default' "$(in_bash velmora-widget snapshot --output x | head -n 1)"
expect 'sign-in sign-out' "$(in_fish 'velmora sign')"
expect '--timeout' "$(in_fish 'velmora sign-in --ti')"
expect 'bottom-left bottom-right' "$(in_fish 'velmora-desktop --corner bottom')"
expect 'large medium small' "$(in_fish 'velmora-widget snapshot --family ')"
for file in "$folder"/zsh/_velmora*; do zsh -n "$file" || failures=1; done
for file in "$folder"/*/*velmora*; do [ -s "$file" ] || expect "content in $file" nothing; done
exit $failures
