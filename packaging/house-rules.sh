#!/usr/bin/env bash
# House rules that a script can hold: layering by includes, sizes of files, formatting. Prints the size figures;
# exits 1 when a rule is broken.
set -euo pipefail
cd "$(dirname "$0")/.."
broken=0

complain() { echo "house rules: $1" >&2; broken=1; }

if grep -rlE '#include <Q[A-Z]' src recorder bench --include='*.h' --include='*.cc' | grep -vE '^src/(qt|app)/'; then
  complain "Qt is included outside src/qt and src/app"
fi

figures() {  # figures LABEL FILES...: median, 95th percentile and maximum of the line counts
  local label=$1; shift
  [ $# -gt 0 ] || return 0
  wc -l "$@" | awk '$2 != "total" {print $1}' | sort -n | awk -v label="$label" '
    {lines[NR] = $1} END {
      if (NR) printf "%s: %d files, median %d, 95th percentile %d, largest %d lines\n", label, NR,
        lines[int((NR + 1) / 2)], lines[int(NR * 0.95 + 0.95)], lines[NR]}'
}
mapfile -t headers < <(find src recorder bench -name '*.h' | sort)
mapfile -t sources < <(find src recorder bench tests -name '*.cc' | sort)
figures "headers" "${headers[@]}"
figures "sources" "${sources[@]}"
for file in "${headers[@]}" "${sources[@]}"; do
  [ "$(wc -l < "$file")" -le 1000 ] || complain "$file has more than 1,000 lines"
done

if command -v clang-format >/dev/null; then
  clang-format --dry-run -Werror "${headers[@]}" "${sources[@]}" 2>/dev/null || complain "run clang-format -i on the sources"
fi
exit $broken
