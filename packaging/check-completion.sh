#!/usr/bin/env bash
# Types beginnings of commands and asks the real shells what they would complete: bash, zsh and fish.
set -euo pipefail
cd "$(dirname "$0")/completion"
broken=0
complain() { echo "completion: $*" >&2; broken=1; }
for tool in zsh fish; do
  command -v $tool >/dev/null || { complain "$tool is missing (package $tool)"; exit 1; }
done
[ -e /usr/share/bash-completion/bash_completion ] || { complain "the package bash-completion is missing"; exit 1; }
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export HOME=$folder

# What each shell offers for a line, one word a line. Each is started anew, without anybody's settings.
# readline parts words at "=" too.
in_bash() {
  bash --norc -c '
    . /usr/share/bash-completion/bash_completion
    . "$1"
    COMP_LINE=$2 COMP_POINT=${#2} COMP_WORDS=() COMPREPLY=()
    read -ra COMP_WORDS <<<"${2//=/ = }"
    [[ $2 != *[\ =] ]] || COMP_WORDS+=("")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    complete -p "$3" >/dev/null || exit
    function=$(complete -p "$3" | sed "s/.* -F \([^ ]*\) .*/\1/")
    # Outside a real line compopt has nothing to change.
    $function "$3" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}" 2>/dev/null
    printf "%s\n" "${COMPREPLY[@]%=}"
  ' bash "bash/$2" "$1" "$2"
}
# On a terminal of its own, in which what is offered is printed.
cat >"$folder/offered.zsh" <<'EOF'
zmodload zsh/zpty
zpty shell zsh -f -i
zpty -w shell "PROMPT=; fpath=($1 \$fpath); autoload -Uz compinit; compinit -u -D
  compadd() {
    if [[ \${@[1,(i)(-|--)]} == *-(O|A|D)\ * ]] { builtin compadd \"\$@\"; return }
    local -a hits; builtin compadd -A hits \"\$@\"; print -l BEGIN\$((0)) \$hits END\$((0))
  }
  print READY\$((0))"
while zpty -r shell line; do [[ $line == *READY0* ]] && break; done
# Keys before the line editor is there would be the terminal's: it says so when it takes over.
zpty -r shell line '*[?]2004h'
zpty -w -n shell "$2"$'\t'
zpty -w -n shell $'\x15'"print DONE\$((0))"$'\n'
inside=0
while zpty -r shell line; do
  line=${line%%[[:space:]]##}
  [[ $line == *DONE0 ]] && break
  [[ $line == *END0 ]] && inside=0
  (( inside )) && print -r -- ${line%=}
  [[ $line == *BEGIN0 ]] && inside=1
done
EOF
in_zsh() {
  timeout 30 zsh -f -o extendedglob "$folder/offered.zsh" "$PWD/zsh" "$1"
}
in_fish() {
  fish --no-config -c 'source fish/$argv[2].fish; complete -C $argv[1]' "$1" "$2" | cut -f 1 | sed 's/^--[a-z]*=\(.\)/\1/'
}

# offers LINE WORD...: each shell offers exactly these.
offers() {
  local line=$1 expected found shell
  shift
  expected=$(printf '%s\n' "$@" | sort -u)
  for shell in bash zsh fish; do
    found=$(in_$shell "$line" "${line%% *}" | sed '/^$/d' | sort -u)
    [ "$found" = "$expected" ] || complain "$shell offers for \"$line\":" ${found:-nothing}", not" $expected
  done
}
offers "zendrix --e" --edition
offers "zendrix --edition=A" Administrator
offers "zendrix -n" -ns -nv
offers "zendrix-agent e" explain
offers "zendrix-agent --sta" --start --status --state
offers "zendrix-agent --form " home admin
offers "zendrix-agent --interval "
offers "zendrix-inspect q" quarantine
offers "zendrix-inspect quarantine " list restore
offers "zendrix-inspect decide 7 " block allow
offers "zendrix-inspect --agent s" stopped
offers "zendrix-inspect --write grid f" follow filter find
offers "zendrix-inspect grid find word --t" --times
offers "zendrix-inspect grid slots --tchart " D T
offers "zendrix-inspect follow --" --live
exit $broken
