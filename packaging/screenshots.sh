#!/usr/bin/env bash
# screenshots.sh PROGRAM EDITION FOLDER OUT: starts the console on a virtual display, takes pictures of the splash and of
# the main window as it comes up and a while later, and ends it.
set -euo pipefail
program=$1 edition=$2 folder=$3 out=$4
mkdir -p "$out"
name=$(echo "$edition" | tr '[:upper:]' '[:lower:]')

take() {  # one picture of the whole screen, when something is on it
  import -display "$DISPLAY" -window root "$out/$1.png"
}
export -f take
export out name

xvfb-run -a -s "-screen 0 1280x860x24" bash -c '
  export QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-$(mktemp -d)}
  "$1" --edition="$2" --folder="$3" &
  console=$!
  trap "kill $console 2>/dev/null || true" EXIT
  sleep 0.6; take "$name-start"
  sleep 5; take "$name"
  sleep 6; take "$name-later"
' screenshots "$program" "$edition" "$folder"
ls "$out"/"$name"*.png
