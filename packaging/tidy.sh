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
# Small batches keep all processors busy to the end; the Qt room's files come ten in one.
{
  sed -nE 's/^ *"file": "(.*\/Unity\/.*\.cxx)",?$/\1/p' build/tidy/compile_commands.json
  find src agent bench data -name '*.cc' -not -path 'src/qt/*' | sort
} | xargs -P "${JOBS:-$(nproc)}" -n 4 \
  clang-tidy -p build/tidy --quiet "${checks[@]}" --extra-arg=-Wmissing-prototypes \
  2> >(grep -vE '^[0-9]+ warnings? generated' >&2)
