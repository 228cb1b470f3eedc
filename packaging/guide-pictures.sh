#!/usr/bin/env bash
# shellcheck disable=SC2016
# guide-pictures.sh BIN OUT: takes the pictures of the user guide, of both editions, on the sample history, on a virtual
# display and as an ordinary user, so that no picture shows a name or a path of this machine.
#
# BIN is a build's bin folder. Needs the screen packages of prerequisites.sh, openbox, xdotool and x11-utils.
set -euo pipefail
cd "$(dirname "$0")/.."
bin=$(realpath "$1") out=$(realpath -m "$2")
mkdir -p "$out"
whole=$(mktemp -d /tmp/zendrix-guide.XXXXXX)
trap 'rm -rf "$whole"' EXIT
mkdir -p "$whole/bin" "$whole/home/clara/Downloads"
cp "$bin"/{zendrix,zendrix-inspect,*.so} "$whole/bin/"
# A program folder for each edition, with settings that were saved before.
for form in home admin; do
  folder=$whole/home/$form
  mkdir -p "$folder"
  cp -r "$bin"/KorvessaDesc*.kv? "$bin/Images" "$folder/"
  data/sample/copy-to $form "$folder"
  "$bin/zendrix-inspect" --write --folder "$folder" settings >/dev/null
  for setting in "DetSho 1" "TTour Y" "TSurv Y"; do
    # shellcheck disable=SC2086
    "$bin/zendrix-inspect" --write --folder "$folder" settings save Misc $setting >/dev/null
  done
done
bin=$whole/bin
# Program folders and the file that goes into quarantine lie here. As root the folder stands in for /home, for these
# processes alone, so that paths look like anybody's.
home=$whole/home as_user=() apart=()
if [ "$(id -u)" = 0 ]; then
  chown -R 65534:65534 "$whole"
  home=/home
  apart=(unshare --mount sh -c 'mount --bind "$0" /home && exec "$@"' "$whole/home")
  as_user=(setpriv --reuid=65534 --regid=65534 --clear-groups)
fi

# scene FORM TITLE ARGUMENTS STEPS: starts the console on a desktop, takes the steps in it, and ends it.
scene() {
  "${apart[@]}" "${as_user[@]}" env HOME="$home/clara" TMPDIR="$whole" XDG_RUNTIME_DIR="$whole" LC_ALL=C.UTF-8 \
    QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 1060x760x24" bash -c '
    bin=$1 folder=$2 title=$3
    openbox & manager=$!
    sleep 1
    # shellcheck disable=SC2086
    "$bin/zendrix" --folder="$folder" $4 & console=$!
    trap "kill $console $manager 2>/dev/null || true; wait $console || true" EXIT
    find_window() { xdotool search --onlyvisible --name "$title" | tail -1; }
    for try in $(seq 1 100); do [ -z "$(find_window)" ] || break; sleep 0.2; done
    sleep 3
    xdotool windowmove "$(find_window)" 20 10 windowsize "$(find_window)" 1000 700
    sleep 1
    # What xdotool tells of a window counts its frame twice.
    place() {
      read -r X Y WIDTH HEIGHT < <(xwininfo -id "$1" | awk "
        /Absolute upper-left X/ {x = \$4} /Absolute upper-left Y/ {y = \$4} /Width:/ {w = \$2} /Height:/ {h = \$2}
        END {print x, y, w, h}")
    }
    # A place in the window, in pixels from its upper left corner.
    press() { place "${3:-$(find_window)}"; xdotool mousemove $((X + $1)) $((Y + $2)); sleep 0.3; xdotool click 1; sleep 2.5; }
    take() {
      place "${2:-$(find_window)}"
      import -window root -crop "${WIDTH}x$HEIGHT+$X+$Y" +repage "$folder/$1.png"
    }
    named() { for try in $(seq 1 50); do xdotool search --onlyvisible --name "$1" | tail -1 | grep . && return; sleep 0.2; done; }
    eval "$5"
  ' pictures "$bin" "$home/$1" "$2" "$3" "$4"
  cp "$whole/home/$1"/*.png "$out/"
}

scene home "Korvessa Zendrix Home Edition -" "-ns" '
  take summary
  press 80 184; take advanced
  press 80 228; take options
  press 80 272; take help
  press 80 140; take alerts
  press 748 93; window=$(named "Analisys Wizard"); sleep 3; take wizard "$window"
  xdotool key Escape; sleep 2; xdotool key alt+y; sleep 2

  # Something happens while the window is out of sight.
  file=$HOME/Downloads/Invoice_2291.run
  head -c 300000 /dev/zero >"$file"
  chmod 700 "$file"
  tell() { printf "%s,FAMILY-PC,2140,%s|0\r\n" "$(date +%s)" "$1" >>"$folder/KorvessaMonitoring.kvl"; }
  xdotool windowminimize "$(find_window)"
  sleep 2
  tell "Windows Folder|0|1|$file|observed|WF,801,9"
  tell "Aggregation|0.9560|0.9560|Windows Folder=$file;|none (the Agent only observes)|AG,01000000,9"
  tell "Community|0|0|reaction to AG_01000000_9|Windows Folder=failed (the Agent only observes)|CO,0,9"
  window=$(named "Suspicious Event"); sleep 2; take popup "$window"
  id=$("$bin/zendrix-inspect" --folder "$folder" alerts | grep -o "\"K[0-9]*\"" | head -1 | tr -dc 0-9)
  "$bin/zendrix-inspect" --write --folder "$folder" act "$id" do
  press 281 140 "$window"  # Details, which leads back to the window
  press 451 93; window=$(named "Quarantine"); sleep 2; take quarantine "$window"
'

scene admin "Korvessa Zendrix Administrator" "-ns --edition=Administrator" '
  press 300 250; take administrator
  press 700 560; window=$(named "Events x"); sleep 2; take timeline "$window"
  xdotool windowactivate "$window" key alt+F4; sleep 1
  xdotool windowactivate "$(find_window)" key ctrl+f; window=$(named "^Find$"); sleep 2
  xdotool windowactivate --sync "$window"; xdotool type invview; sleep 1; take find "$window"
  xdotool key Escape; sleep 1
  xdotool windowactivate "$(find_window)" key ctrl+shift+f; window=$(named "Filter Events"); sleep 2
  take filter "$window"
'
