#!/usr/bin/env bash
# screenshots.sh PROGRAM EDITION FOLDER OUT: starts the console on a virtual display, takes pictures as it starts, when
# its window is open, and a while later, and ends it.
set -euo pipefail
program=$1 edition=$2 folder=$3 out=$4
mkdir -p "$out"
name=$(echo "$edition" | tr '[:upper:]' '[:lower:]')

xvfb-run -a -s "-screen 0 1280x860x24" bash -c '
  take() { import -window root "$1.png"; }
  export QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-$(mktemp -d)}
  "$1" --edition="$2" --folder="$3" &
  console=$!
  trap "kill $console 2>/dev/null || true; wait $console || true" EXIT
  sleep 1; take "$4-start"
  sleep 5; take "$4"
  sleep 6; take "$4-later"
' screenshots "$program" "$edition" "$folder" "$out/$name"
ls "$out/$name"*.png
