#!/usr/bin/env bash
# check-options.sh PROGRAM...: holds manual pages and completion of shells to what the programs say of themselves: every
# option that --help tells stands in each of them, and none beside; the inspector's commands likewise.
set -euo pipefail
mapfile -t programs < <(realpath "$@")
cd "$(dirname "$0")"
broken=0
complain() { echo "options: $*" >&2; broken=1; }
options_in() { grep -oE '(^|[^[:alnum:]-])(--[a-z][a-z-]*|-n[sv])' | sed 's/^[^-]//' | sort -u; }
same() {  # same WHAT HELP THERE
  local missing surplus
  missing=$(comm -23 <(echo "$2") <(echo "$3")) surplus=$(comm -13 <(echo "$2") <(echo "$3"))
  [ -z "$missing" ] || complain "$1 lacks" $missing
  [ -z "$surplus" ] || complain "$1 has what --help does not tell:" $surplus
}

for program in "${programs[@]}"; do
  name=$(basename "$program")
  help=$("$program" --help) || complain "$name --help ends with $?"
  options=$(options_in <<<"$help")
  page=$(echo man/"$name".[18])
  [ -e "$page" ] || { complain "$name has no manual page"; continue; }
  # Examples and other programs' options stand in the other parts.
  text=$(MANWIDTH=200 man --nh --nj -E ascii -l "$page" | col -b)
  parts() { awk -v parts="^($1)\$" '/^[A-Z]/ {part = $1} part ~ parts' <<<"$text" | options_in; }
  same "$page" "$options" "$(parts "OPTIONS|COMMANDS")"
  # The synopsis leaves out what only informs.
  same "$page, SYNOPSIS," "$options" "$({ parts "SYNOPSIS|COMMANDS"; printf '%s\n' --help; } | sort -u)"
  for file in completion/bash/"$name" completion/zsh/_"$name" completion/fish/"$name".fish; do
    # Nobody types the name of a program that the system starts.
    [ -e "$file" ] || [ "$name" = zendrix-act ] || [ "$name" = zendrix-mail ] || complain "$file is missing"
    [ -e "$file" ] || continue
    written=$(sed -E '/^complete -c/{s/ -l ([a-z-]+)/ --\1/g; s/ -o (n[sv])/ -\1/g}' "$file")
    # Not what only says which values an option takes.
    same "$file" "$options" "$(grep -vE '^(#| *--[^"]*\))' <<<"$written" | options_in)"
  done
  commands=$(sed -n '/^Commands:/,/\.$/p' <<<"$help" | sed 's/^Commands://; s/(.*)//' | tr -cs 'a-z\n' ' ')
  for command in $commands; do
    for file in "$page" completion/*/*"$name"{,.fish}; do
      [ ! -f "$file" ] || grep -qE "(^|[^a-z])$command([^a-z]|\$)" "$file" || complain "$file lacks the command $command"
    done
  done
done
exit $broken
