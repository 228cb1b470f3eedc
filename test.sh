#!/usr/bin/env bash
# Builds and tests everything on Debian 12: installs what is missing, runs the toolkit-free rooms and the fuzz targets
# under the address and undefined-behaviour sanitizers, builds those rooms without Qt and tries the inspector there,
# checks names, then runs the whole suite, windows included. No display needed.
#
#   ./test.sh              everything
#   ./test.sh quick        only the whole suite: no sanitizers, no build without Qt, no check of names
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

packaging/house-rules.sh

if [ "${1:-}" != quick ]; then
  cmake --preset asan >/dev/null
  cmake --build --preset asan -j "$jobs"
  ctest --preset asan -j "$jobs"

  # All of its tests ran just now, and run once more below; the inspector, which links every room, stands for them here.
  cmake --preset core-only >/dev/null
  cmake --build --preset core-only -j "$jobs"
  ctest --preset core-only -j "$jobs" -L cli
fi

cmake --preset dev >/dev/null
cmake --build --preset dev -j "$jobs"
[ "${1:-}" = quick ] || packaging/tidy.sh
ctest --preset dev -j "$jobs"
