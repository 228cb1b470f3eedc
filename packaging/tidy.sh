#!/usr/bin/env bash
# tidy.sh [full]: clang-tidy over every source of all rooms: names by kind, and functions that no header declares though
# other files could call them. Any finding fails it. With `full` all the checks of .clang-tidy, which takes minutes and
# only tells. Compile commands come from the preset tidy, which is configured here and need not be built but for a made header.
set -euo pipefail
cd "$(dirname "$0")/.."

checks=(--checks=-*,readability-identifier-naming,clang-diagnostic-missing-prototypes --warnings-as-errors=*)
[ "${1:-}" = full ] && checks=()

cmake --preset tidy >/dev/null
# The one header that a build makes.
if grep -q zendrix_skeleton build/tidy/build.ninja; then cmake --build build/tidy --target zendrix_skeleton >/dev/null; fi
# Sources come several in one, and those once.
sed -nE 's/^ *"file": "(.*\.(cxx|cc))",?$/\1/p' build/tidy/compile_commands.json | grep -v '/cmake_pch\|/mocs_' | sort -u |
  xargs -P "${JOBS:-$(nproc)}" -n 1 \
  clang-tidy -p build/tidy --quiet "${checks[@]}" --extra-arg=-Wmissing-prototypes \
  2> >(grep -vE '^[0-9]+ warnings? generated' >&2)
