#!/usr/bin/env bash
# Builds and tests everything on Debian 12: installs what is missing, runs the rooms' own tests, the inspector and the
# fuzz targets under the address and undefined-behaviour sanitizers, builds the rooms without Qt and tries the inspector
# there, checks names, then runs the hostile texts, the windows and the real program. Each test is built and run once;
# only inspector and hostile texts serve twice. No display needed.
#
#   ./test.sh              everything
#   ./test.sh quick        every test in one build: no sanitizers, no build without Qt, no check of names
#
# FUZZ_SECONDS (default 10) bounds each fuzz target; JOBS (default: number of processors) the parallel build.
set -euo pipefail
cd "$(dirname "$0")"
. packaging/prerequisites.sh
need_packages $build_packages $test_packages

jobs=${JOBS:-$(nproc)}
# The presets share what they compile alike: paths count from the build folder.
export CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
export FUZZ_SECONDS=${FUZZ_SECONDS:-10}
export QT_QPA_PLATFORM=offscreen TZ=UTC LC_ALL=C.UTF-8

# Locales that tests switch to, built privately so that the machine's own set does not matter.
locales=$PWD/build/locales
mkdir -p "$locales"
for name in en_US de_DE en_GB ja_JP; do
  [ -d "$locales/$name.UTF-8" ] || localedef -i $name -f UTF-8 "$locales/$name.UTF-8" || [ -d "$locales/$name.UTF-8" ]
done
export ZENDRIX_TEST_LOCPATH=$locales

# try PRESET [SET]...: builds and runs everything, or all programs and only these folders of tests/.
try() {
  local preset=$1 started=$SECONDS
  shift
  local labels=$*
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -j "$jobs" ${labels:+--target programs} "${@/#/tests_}"
  echo "Built $preset in $((SECONDS - started)) s"
  started=$SECONDS
  ctest --preset "$preset" -j "$jobs" ${labels:+-L "^(${labels// /|})\$"}
  echo "Tried $preset in $((SECONDS - started)) s"
}

packaging/house-rules.sh
if [ "${1:-}" = quick ]; then
  try dev
else
  try asan
  try core-only cli
  packaging/tidy.sh
  try dev hostile qt e2e desktop
fi
