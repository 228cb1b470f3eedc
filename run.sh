#!/usr/bin/env bash
# Sets up and starts the console on this computer's own events (Debian 12): installs what is missing, builds, has the
# Agent beside the console watch this host, and opens the console on what it writes.
#
#   ./run.sh             the Home console
#   ./run.sh --admin     the Administrator console
#   ./run.sh --watch     as root: the Agent uses everything that the kernel grants it, not only looks at files
#   --sample             beside either: not this computer, but a month of a made-up one that ends now; nothing is kept
#
# An Agent that this command started ends with it. Without a display it starts the console on a virtual one for a
# short while, prints the alerts or the Administrator's grid as JSON and leaves pictures of the windows in out/.
set -euo pipefail
cd "$(dirname "$0")"
. packaging/prerequisites.sh

edition=Home form=home shown=alerts sample= rights=--plain
for argument in "$@"; do
  case $argument in
    --admin) edition=Administrator form=admin shown=grid ;;
    --sample) sample=yes ;;
    --watch) rights= ;;
    *) sed -n '2,11p' "$0" | cut -c3-; exit 2 ;;
  esac
done
if [ -z "$rights" ] && [ "$(id -u)" != 0 ]; then
  echo "--watch needs root: the kernel tells an ordinary user nothing of others' programs." >&2
  exit 2
fi

need_packages $build_packages
export CCACHE_SLOPPINESS=pch_defines,time_macros CCACHE_BASEDIR="$PWD"
cmake --preset release >/dev/null
cmake --build --preset release -j "${JOBS:-$(nproc)}"

# The program folder of this run: the staged data with the recording beside it. Settings stay from run to run, but those
# of the sample go with it.
bin=$PWD/build/release/bin
if [ -n "$sample" ]; then
  folder=$(mktemp -d)
  trap '"$bin/zendrix-agent" --stop --folder "$folder"; rm -rf "$folder"' EXIT
  data/sample/copy-to $form "$folder"
else
  folder=$PWD/out/$form
  mkdir -p "$folder"
fi
cp -r "$bin"/KorvessaDesc*.kv? "$bin/Images" "$folder/"
if [ ! -e "$folder/zendrix.ini" ]; then  # the defaults, with their hash, so that the first start asks nothing
  "$bin/zendrix-inspect" --write --folder "$folder" settings >/dev/null
  "$bin/zendrix-inspect" --write --folder "$folder" settings save Misc DetSho 1 >/dev/null
fi

if [ -n "$sample" ]; then
  echo "A sample: a made-up computer, which nobody watches. [Enable] in the console would add what happens on this one."
else
  # The same road as [Enable] in the console takes. It says who watches, what is seen that way and what is not; 3 is an
  # Agent that was there before.
  status=0
  "$bin/zendrix-agent" --start --form $form --folder "$folder" --interval 3 $rights || status=$?
  case $status in
    0) trap '"$bin/zendrix-agent" --stop --folder "$folder"' EXIT ;;
    3) ;;
    *) exit $status ;;
  esac
fi

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  "$bin/zendrix" --edition=$edition --folder="$folder"
else
  echo "No display: starting the console on a virtual one; pictures go to out/."
  need_packages $screen_packages
  packaging/screenshots.sh "$bin/zendrix" $edition "$folder" out
  "$bin/zendrix-inspect" --folder "$folder" --edition $edition $shown
fi
