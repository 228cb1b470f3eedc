#!/usr/bin/env bash
# Builds and tests everything on Debian 12: installs what is missing, runs the rooms' own tests, the inspector and the
# fuzz targets under the address and undefined-behaviour sanitizers, builds the rooms without Qt and tries the inspector
# there, checks names, then runs the hostile texts, the quarantine, the windows and the real program without them, and
# the Agent with its services on Debian's own kernel and service manager, in a virtual machine (tests/vm/run). Each test is
# built and run once; only inspector, hostile texts and quarantine serve twice. No display needed.
#
#   ./test.sh              everything
#   ./test.sh quick        every test in one build: no sanitizers, no build without Qt, no check of names, no machine
#
# At last the Debian packages are made, held against Debian's rules, installed, started, upgraded and purged in a tree of
# their own (packaging/check-deb), unless more than 17 minutes have passed: the whole shall take 25 on two processors.
# VM=0 leaves the virtual machine out, PACKAGES=0 the packages. FUZZ_SECONDS (default 10) bounds each fuzz target; JOBS
# (default: number of processors) the parallel build.
set -euo pipefail
cd "$(dirname "$0")"
. packaging/prerequisites.sh
need_packages $build_packages $test_packages

jobs=${JOBS:-$(nproc)}
# The presets share what they compile alike: paths count from the build folder. What is new is compiled without
# being preprocessed first.
export CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1 CCACHE_DEPEND=1
export FUZZ_SECONDS=${FUZZ_SECONDS:-10}
latest_packages=1020  # seconds after the start
export QT_QPA_PLATFORM=offscreen TZ=UTC LC_ALL=C.UTF-8

# Locales that tests switch to, built privately so that the machine's own set does not matter.
locales=$PWD/build/locales
mkdir -p "$locales"
for name in en_US de_DE en_GB ja_JP; do
  [ -d "$locales/$name.UTF-8" ] || localedef -i $name -f UTF-8 "$locales/$name.UTF-8" || [ -d "$locales/$name.UTF-8" ]
done
export ZENDRIX_TEST_LOCPATH=$locales

# build PRESET [TARGET]...: configures and builds everything, or only these.
build() {
  local preset=$1 started=$SECONDS
  shift
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" -j "$jobs" ${1:+--target "$@"}
  echo "Built $preset in $((SECONDS - started)) s"
}

# run PRESET [CTEST ARGUMENT]...: runs the tests that are built, or some of them.
run() {
  local preset=$1 started=$SECONDS
  shift
  ctest --preset "$preset" -j "$jobs" "$@"
  echo "Ran $preset in $((SECONDS - started)) s"
}

# beside NAME COMMAND...: runs it while others wait; what it says goes to build/NAME.log.
beside() {
  local name=$1
  shift
  "$@" >"build/$name.log" 2>&1 &
  others[$name]=$!
}
declare -A others=()
trap 'kill "${others[@]}" 2>/dev/null || true' EXIT

# joined NAME LINES: waits for it and says the last of what it said, all when it failed. A part that this computer cannot
# run (77) says so loudly, and that is no failure.
joined() {
  local status=0
  wait "${others[$1]}" || status=$?
  unset "others[$1]"
  [ $status -eq 0 ] || [ $status -eq 77 ] || { cat "build/$1.log"; exit 1; }
  tail -n "$2" "build/$1.log"
}

packaging/house-rules.sh
if [ "${1:-}" = quick ]; then
  build dev
  run dev
else
  build asan
  run asan -LE '^fuzz$'
  # Its inspector is tried by the program that tried the one with the sanitizers.
  build whole-core programs
  ZENDRIX_TEST_INSPECTOR=$PWD/build/whole-core/bin/zendrix-inspect build/asan/bin/test_cli --gtest_brief=1
  packaging/tidy.sh
  build whole programs zendrix-vm-service tests_{hostile,quarantine,qt,e2e,desktop}
  # Tests of windows wait for much of their time: the fuzz targets and the virtual machine, whose clock counts its own
  # instructions, have the processors meanwhile.
  beside fuzz run asan -L '^fuzz$'
  [ "${VM:-1}" = 0 ] || beside vm tests/vm/run --build build/whole
  run whole -j "$((jobs + 1))" -L '^(hostile|quarantine|qt|e2e|desktop)$'
  joined fuzz 4
  [ "${VM:-1}" = 0 ] || joined vm 20
  # Last, and only where there is time: they are compiled twice.
  if [ "${PACKAGES:-1}" != 0 ]; then
    if [ $SECONDS -le $latest_packages ]; then
      packaging/check-deb || [ $? -eq 77 ]
    else
      printf '\n*** SKIPPED: the Debian packages: %s s have passed. packaging/check-deb tries them. ***\n\n' $SECONDS >&2
    fi
  fi
fi
