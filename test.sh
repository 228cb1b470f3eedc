#!/usr/bin/env bash
# Builds and tests everything on Debian 12: installs what is missing, runs the toolkit-free rooms and the fuzz targets
# under the address and undefined-behaviour sanitizers, then the whole suite, windows included. No display needed.
#
#   ./test.sh              everything
#   ./test.sh quick        only the whole suite, without sanitizers
#
# FUZZ_SECONDS (default 10) bounds each fuzz target; JOBS (default: number of processors) the parallel build.
set -euo pipefail
cd "$(dirname "$0")"
. packaging/prerequisites.sh
need_packages $build_packages $test_packages

jobs=${JOBS:-$(nproc)}
export CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_BASEDIR="$PWD"
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
fi

cmake --preset dev >/dev/null
cmake --build --preset dev -j "$jobs"
ctest --preset dev -j "$jobs"
