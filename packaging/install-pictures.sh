#!/usr/bin/env bash
# shellcheck disable=SC2016
# install-pictures.sh STAGE OUT: takes the pictures of the guide's chapter on installation: the menu, the first start, and a
# start of somebody who may not read what the Agent writes. They show the installed programs, as users that have just been
# made, on a computer of its own as far as a kernel gives one: nothing of this one is changed or shown.
#
# STAGE is what "DESTDIR=STAGE cmake --install BUILD --prefix /usr" made of a build for that prefix. Takes root, the screen
# packages of prerequisites.sh, openbox, xdotool, xfce4-appfinder, python3-dbus and python3-gi.
set -euo pipefail
cd "$(dirname "$0")"
[ "$(id -u)" = 0 ] || { echo "Only root can give the programs a computer of their own." >&2; exit 2; }
[ -z "${3:-}" ] || { echo "usage: install-pictures.sh STAGE OUT" >&2; exit 2; }
STAGE=$(realpath "$1") OUT=$(realpath -m "$2") SCRIPTS=$PWD
export STAGE OUT SCRIPTS
mkdir -p "$OUT"
OWN=$(mktemp -d /tmp/zendrix-install.XXXXXX)
export OWN
trap 'rmdir "$OWN"' EXIT

unshare --mount --pid --fork --uts --propagation private bash -euo pipefail -c '
  hostname FAMILY-PC
  mount -t proc proc /proc
  # What is written goes to memory, and away with it.
  mount -t tmpfs tmpfs "$OWN"
  mount -t overlay overlay -o "lowerdir=$STAGE/usr:/usr" /usr
  for folder in /etc /var/lib /home; do
    mkdir -p "$OWN$folder" "$OWN/work$folder"
    mount -t overlay overlay -o "lowerdir=$folder,upperdir=$OWN$folder,workdir=$OWN/work$folder" $folder
  done
  systemd-sysusers zendrix.conf
  systemd-tmpfiles --create zendrix.conf
  for user in clara paul; do useradd --create-home --shell /bin/bash "$user"; done
  gpasswd --add clara zendrix >/dev/null
  as() { setpriv --reuid="$1" --regid="$1" --init-groups --inh-caps=-all env HOME="/home/$1" USER="$1" LOGNAME="$1" "${@:2}"; }

  as zendrix /usr/bin/zendrix-agent --state /var/lib/zendrix --plain --interval 1 &
  for try in $(seq 1 100); do [ ! -s /var/lib/zendrix/home/KorvessaMonitoring.kvl ] || break; sleep 0.2; done

  # scene USER PICTURE COMMAND TITLE [KEYS]
  scene() {
    install -d -o "$1" -g "$1" -m 700 "$OWN/run-$1"
    as "$1" env -u DISPLAY XDG_RUNTIME_DIR="$OWN/run-$1" LC_ALL=C.UTF-8 QT_QPA_PLATFORM=xcb \
      dbus-run-session -- xvfb-run -a -s "-screen 0 1060x760x24" bash -c "
        openbox & sleep 1
        # No service manager runs here: this one says of the Agent what is true, that it runs.
        /usr/bin/python3 \"\$1/guide-services.py\" & sleep 1
        export DBUS_SYSTEM_BUS_ADDRESS=\$DBUS_SESSION_BUS_ADDRESS
        \$3 & program=\$!
        for try in \$(seq 1 100); do window=\$(xdotool search --onlyvisible --name \"\$4\" | tail -n 1); [ -z \"\$window\" ] || break; sleep 0.2; done
        sleep 5
        [ -z \"\$5\" ] || { xdotool type \"\$5\"; sleep 2; }
        window=\$(xdotool search --onlyvisible --name \"\$4\" | tail -n 1)
        read -r x y width height < <(xwininfo -id \"\$window\" | awk \"
          /Absolute upper-left X/ {x = \\\$4} /Absolute upper-left Y/ {y = \\\$4} /Width:/ {w = \\\$2} /Height:/ {h = \\\$2}
          END {print x, y, w, h}\")
        import -window root -crop \"\${width}x\$height+\$x+\$y\" +repage \"\$XDG_RUNTIME_DIR/\$2.png\"
        kill \$program
        wait \$program || true
      " scene "$SCRIPTS" "$2" "$3" "$4" "${5:-}"
    cp "$OWN/run-$1/$2.png" "$OUT/"
  }
  scene clara menu xfce4-appfinder "Application Finder" zendrix
  scene clara first-start "zendrix -ns" "Home Edition"
  scene paul not-a-member "zendrix -ns" "Home Edition"
'
