#!/usr/bin/env bash
# Holds the units, users and folders of an installed system to what systemd itself says of them, in a tree of their own:
# nothing of this computer is changed. Exit status 77 where systemd is missing.
#
#   packaging/check-units.sh [ROOT]    the sources, or what is installed below ROOT
set -euo pipefail
root=${1:+$(realpath "$1")}
cd "$(dirname "$0")"
units=systemd settings=.
[ -z "$root" ] || units=$root/lib/systemd/system settings=$root/usr/lib
for tool in systemd-analyze systemd-sysusers systemd-tmpfiles; do
  command -v $tool >/dev/null || { echo "SKIPPED: $tool is missing (package systemd)" >&2; exit 77; }
done
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
broken=0
complain() { echo "units: $1" >&2; broken=1; }

mkdir -p "$tree"/{etc/systemd/system,usr/lib/systemd,var/lib}
ln -s usr/lib "$tree/lib"
cp -r /lib/systemd/system "$tree/usr/lib/systemd/"
cp "$units"/* "$tree/etc/systemd/system/"
cp -r "$settings/sysusers.d" "$settings/tmpfiles.d" "$tree/usr/lib/"
# Only that the programs are there can be verified, not what they do.
for program in $(sed -n 's/^ExecStart=\([^ ]*\).*/\1/p' "$units"/*.service); do
  install -D -m 755 /dev/null "$tree$program"
done

for unit in "$units"/*; do
  said=$(systemd-analyze verify --root="$tree" --recursive-errors=no --man=no "$(basename "$unit")" 2>&1) || true
  [ -z "$said" ] || complain "$said"
done

# most UNIT EXPOSURE: systemd's own measure of what a service that was taken over could do, from 0 to 10.
most() {
  systemd-analyze security --root="$tree" --offline=yes --no-pager --threshold=$(awk "BEGIN {print $2 * 10}") "$1" >"$tree/said" 2>&1 ||
    complain "$1 is exposed more than $2: $(tail -n 1 "$tree/said")"
}
most zendrix.service 2.1
most zendrix-act.service 2.7
most zendrix-mail.service 1.3

# Rights are a promise, so a new one is to be noticed. Also what no measure counts.
has() { grep -qxF -- "$2" "$units/$1" || complain "$1 lost the line $2"; }
for line in User=zendrix ProtectSystem=strict ProtectHome=read-only NoNewPrivileges=yes MemoryDenyWriteExecute=yes \
  "RestrictAddressFamilies=AF_UNIX AF_NETLINK" IPAddressDeny=any \
  "CapabilityBoundingSet=CAP_BPF CAP_PERFMON CAP_SYS_PTRACE CAP_DAC_READ_SEARCH"; do
  has zendrix.service "$line"
done
has zendrix.service "SystemCallFilter=bpf prlimit64"
has zendrix-act.service PrivateNetwork=yes
has zendrix-mail.service CapabilityBoundingSet=
# E-mail starts with the computer and with its settings, and a service that was stopped stays so: what starts it whenever a
# file is there would start it again at once (systemd.path(5)).
has zendrix-mail.service WantedBy=multi-user.target
has zendrix-mail.path PathChanged=/etc/zendrix/KorvessaSMTPConfig.kvl
restarting=$(grep -lE '^(PathExists|PathExistsGlob|DirectoryNotEmpty)=' "$units"/*.path || true)
[ -z "$restarting" ] || complain "cannot be stopped: $restarting"
networked=$(grep -lE '^RestrictAddressFamilies=.*AF_INET' "$units"/*.service)
[ "$networked" = "$units/zendrix-mail.service" ] || complain "the network is reached by: $networked"

systemd-sysusers --root="$tree" zendrix.conf >"$tree/said" 2>&1 || complain "the users cannot be made: $(cat "$tree/said")"
id_of() { awk -F : -v name="$1" '$1 == name {print $3}' "$tree/etc/$2"; }
members_of() { awk -F : -v name="$1" '$1 == name {print $4}' "$tree/etc/group"; }
[ "$(members_of zendrix)" = zendrix-mail ] || complain "the group zendrix has the members $(members_of zendrix)"
[ "$(members_of zendrix-state)" = zendrix ] || complain "the group zendrix-state has the members $(members_of zendrix-state)"
if [ "$(id -u)" = 0 ]; then
  # Names in an access list are looked up on this computer and not in the tree.
  sed -i "s/user:zendrix-mail:/user:$(id_of zendrix-mail passwd):/" "$tree/usr/lib/tmpfiles.d/zendrix.conf"
  said=$(systemd-tmpfiles --root="$tree" --create zendrix.conf 2>&1) || complain "the folders cannot be made"
  # A second time over what is there, as at each start of the computer.
  said+=$(systemd-tmpfiles --root="$tree" --create zendrix.conf 2>&1) || complain "the folders cannot be made again"
  [ -z "$said" ] || complain "$said"
  agent=$(id_of zendrix passwd):$(id_of zendrix group) mail=$(id_of zendrix-mail passwd):$(id_of zendrix-mail group)
  while read -r path mode owner; do
    found=$(stat -c '%a %u:%g' "$tree$path")
    [ "$found" = "$mode $owner" ] || complain "$path is $found and not $mode $owner"
  done <<EOF
/var/lib/zendrix 1771 0:$(id_of zendrix-state group)
/var/lib/zendrix/home 2750 $agent
/var/lib/zendrix/admin 2750 $agent
/var/lib/zendrix/quarantine 700 0:0
/var/lib/zendrix/mail 700 $mail
/etc/zendrix 2750 0:$(id_of zendrix-mail group)
EOF
else
  echo "units: rights of folders are looked at only as root" >&2
fi
exit $broken
