# Reads the help of a program and, each after a line "@ COMMAND", those of its commands; prints the
# completion for a shell. What is not known of a value is left to the user.

/^@ / { context = $2; heading = ""; next }
tolower($0) ~ /^(options|positionals|subcommands):/ { heading = substr(tolower($1), 1, 1); next }
/^[^ ]/ { heading = "" }
heading != "" && /^  [^ ]/ {
  entry[++count] = heading
  inContext[count] = context
  about[count] = ""
  rest = substr($0, 3)
  # Names and the kind of the value, then, two spaces on or in the next line, what it is about.
  at = match(rest, /  +/)
  head = at ? substr(rest, 1, at - 1) : rest
  if (at) about[count] = substr(rest, at + RLENGTH)
  space = index(head, " ")
  names[count] = space ? substr(head, 1, space - 1) : head
  kind[count] = space ? substr(head, space + 1) : ""
  next
}
heading != "" && /^   / {
  sub(/^ +/, "")
  about[count] = about[count] (about[count] == "" ? "" : " ") $0
}

function choices(i,    words) {
  if (match(kind[i], /\{[^}]*\}/)) {
    words = substr(kind[i], RSTART + 1, RLENGTH - 2)
    gsub(/,/, " ", words)
  } else if (match(about[i], /^[a-z]+(, [a-z]+)* or [a-z]+/)) {
    words = substr(about[i], 1, RLENGTH)
    gsub(/, | or /, " ", words)
  }
  return words
}
function isFile(i) { return (kind[i] about[i] names[i]) ~ /FILE|[Ff]ile|program/ && choices(i) == "" }
function quoted(text) { gsub(/'/, "'\\''", text); return "'" text "'" }

# The words of one kind in a context, the options with all their names.
function words(wanted, where,    i, all) {
  for (i = 1; i <= count; i++)
    if (entry[i] == wanted && inContext[i] == where) all = all " " names[i]
  gsub(/,/, " ", all)
  return substr(all, 2)
}

function bash(    i, n, list, j) {
  printf "_%s() {\n", id
  print "  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command= each"
  print "  COMPREPLY=()"
  if (commands != "") {
    print "  for each in \"${COMP_WORDS[@]:1:COMP_CWORD - 1}\"; do"
    pattern = commands
    gsub(/ /, " | ", pattern)
    print "    case $each in " pattern ") command=$each; break ;; esac"
    print "  done"
  }
  print "  case \"$command $before\" in"
  for (i = 1; i <= count; i++) {
    if (entry[i] != "o" || kind[i] == "") continue
    n = split(names[i], list, ",")
    for (j = 1; j <= n; j++) printf "    %s) %s; return ;;\n", quoted(inContext[i] " " list[j]), bashValue(i)
  }
  print "  esac"
  print "  case $command in"
  bashWords("", commands)
  n = split(commands, list, " ")
  for (i = 1; i <= n; i++) bashWords(list[i], "")
  print "  esac"
  printf "}\ncomplete -F _%s %s\n", id, program
}
function bashValue(i) {
  if (choices(i) != "") return "COMPREPLY=($(compgen -W " quoted(choices(i)) " -- \"$word\"))"
  return isFile(i) ? "compopt -o default" : ":"
}
function bashWords(where, more,    all) {
  all = words("o", where) (more == "" ? "" : " " more)
  printf "    %s) COMPREPLY=($(compgen -W %s -- \"$word\"))", quoted(where), quoted(all)
  if (words("p", where) != "") printf "; [ ${#COMPREPLY[@]} -gt 0 ] || compopt -o default"
  print " ;;"
}

function zsh(    i, n, list) {
  printf "#compdef %s\n", program
  if (commands != "") print "local line state"
  printf "_arguments%s%s", (commands == "" ? "" : " -C"), zshArguments("")
  if (commands == "") { print ""; return }
  printf " \\\n  '1: :(("
  for (i = 1; i <= count; i++)
    if (entry[i] == "s") printf "%s\\:\"%s\" ", names[i], zshText(about[i])
  print "))' \\\n  '*:: :->argument' && return"
  print "case $line[1] in"
  n = split(commands, list, " ")
  for (i = 1; i <= n; i++) printf "  %s) _arguments%s ;;\n", list[i], zshArguments(list[i])
  print "esac"
}
function zshText(text) { gsub(/[\[\]:'"]/, "", text); return text }
function zshArguments(where,    i, j, n, list, all, value) {
  for (i = 1; i <= count; i++) {
    if (inContext[i] != where || entry[i] == "s") continue
    value = choices(i) != "" ? ":value:(" choices(i) ")" : isFile(i) ? ":file:_files" : ":value:"
    n = split(names[i], list, ",")
    for (j = 1; j <= n; j++)
      all = all " \\\n  '" (entry[i] == "p" ? ":file:_files" : \
        list[j] "[" zshText(about[i]) "]" (kind[i] == "" ? "" : value)) "'"
  }
  return all
}

function fish(    i, j, n, list, when) {
  printf "complete -c %s -f\n", program
  for (i = 1; i <= count; i++) {
    when = commands == "" ? "" : inContext[i] == "" ? " -n __fish_use_subcommand" : \
      " -n '__fish_seen_subcommand_from " inContext[i] "'"
    printf "complete -c %s%s", program, when
    if (entry[i] == "s") printf " -a %s", names[i]
    n = split(names[i], list, ",")
    for (j = 1; entry[i] == "o" && j <= n; j++)
      printf list[j] ~ /^--/ ? " -l %s" : " -s %s", substr(list[j], list[j] ~ /^--/ ? 3 : 2)
    if (entry[i] == "p") printf " -F"
    else if (kind[i] != "") printf "%s", choices(i) != "" ? " -x -a " quoted(choices(i)) : isFile(i) ? " -r -F" : " -x"
    printf " -d %s\n", fishText(about[i])
  }
}
function fishText(text) { gsub(/\\/, "\\\\", text); gsub(/'/, "\\'", text); return "'" text "'" }

END {
  commands = words("s", "")
  id = program
  gsub(/-/, "_", id)
  if (shell == "bash") bash()
  else if (shell == "zsh") zsh()
  else fish()
}
