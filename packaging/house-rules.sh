#!/usr/bin/env bash
# House rules that a script can hold: layering by includes, sizes of files, formatting. Prints the size figures;
# exits 1 when a rule is broken.
set -euo pipefail
cd "$(dirname "$0")/.."
broken=0

complain() { echo "house rules: $1" >&2; broken=1; }

if grep -rlE '#include <Q[A-Z]' src agent act mail bench --include='*.h' --include='*.cc' | grep -vE '^src/(qt|app)/'; then
  complain "Qt is included outside src/qt and src/app"
fi

# The rooms from left to right: each includes itself and what it is said to see here. The link lines hold the targets
# apart; this also holds apart what a header alone would carry over.
placed=" "
sees() {  # sees ROOM [PATHS]: the paths that the room may include beside its own, with "|" between them
  local room=$1 paths="$1/${2:+|$2}" others
  placed+="$room "
  [ -d "src/$room" ] || return 0
  others=$(grep -rnE '^ *# *include "[^"]*/' "src/$room" --include='*.h' --include='*.cc' | grep -vE "\"($paths)" || true)
  [ -z "$others" ] || { echo "$others" >&2; complain "src/$room includes what is not to its left"; }
}
sees family
sees widgets
sees platform "family/"
left="platform/|widgets/"
sees core "$left"; left+="|core/"
sees settings "$left"; left+="|settings/"
sees store "$left"; left+="|store/"
sees control "$left"
# One reading of a description for the page and for the quarantine: text in, text out, nothing of the family's calls.
sees alerts "$left|family/description_reading.h"; left+="|alerts/|control/"
sees home "$left"
sees admin "$left"; left+="|home/|admin/"
sees console "$left"; left+="|console/"
sees inspect "$left"
sees qt "$left"; left+="|qt/"
sees app "$left"
for room in src/*/; do
  [[ "$placed" == *" $(basename "$room") "* ]] || complain "$room has no place in the order of the rooms"
done
# Programs of their own beside the console's rooms.
alone() {  # alone FOLDER PATHS: includes of a folder that is no room of src
  local others
  others=$(grep -rnE '^ *# *include "[^"]*/' "$1" --include='*.h' --include='*.cc' | grep -vE "\"($2)" || true)
  [ -z "$others" ] || { echo "$others" >&2; complain "$1 includes what is not to its left"; }
}
alone agent "agent/|platform/"
alone act "act/|platform/|family/"
# What talks to the network sees nothing of the consoles and nothing of the Agent.
alone mail "mail/|platform/|core/|settings/"
if grep -rnE '#include "(qt|app|inspect)/' tests/flow tests/support 2>/dev/null; then
  complain "tests/flow and tests/support stand left of the windows"
fi

figures() {  # figures LABEL FILES...: median, 95th percentile and maximum of the line counts
  local label=$1; shift
  [ $# -gt 0 ] || return 0
  wc -l "$@" | awk '$2 != "total" {print $1}' | sort -n | awk -v label="$label" '
    {lines[NR] = $1} END {
      if (NR) printf "%s: %d files, median %d, 95th percentile %d, largest %d lines\n", label, NR,
        lines[int((NR + 1) / 2)], lines[int(NR * 0.95 + 0.95)], lines[NR]}'
}
mapfile -t headers < <(find src agent act mail bench data -name '*.h' | sort)
mapfile -t sources < <(find src agent act mail bench data tests -name '*.cc' | sort)
figures "headers" "${headers[@]}"
figures "sources" "${sources[@]}"
for file in "${headers[@]}" "${sources[@]}"; do
  [ "$(wc -l < "$file")" -le 1000 ] || complain "$file has more than 1,000 lines"
done

if command -v clang-format >/dev/null; then
  clang-format --dry-run -Werror "${headers[@]}" "${sources[@]}" 2>/dev/null || complain "run clang-format -i on the sources"
fi
exit $broken
