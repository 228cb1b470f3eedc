#!/usr/bin/env bash
# check-share.sh SHARE VERSION: holds what is installed beside the programs to the tools of those who read it, and to
# itself. SHARE is the folder share of a build.
set -euo pipefail
share=$(realpath "$1") version=$2
cd "$(dirname "$0")"
broken=0
complain() { echo "share: $1" >&2; broken=1; }
for tool in desktop-file-validate:desktop-file-utils appstreamcli:appstream man:man-db mandoc:mandoc python3:python3; do
  command -v "${tool%:*}" >/dev/null || { complain "${tool%:*} is missing (package ${tool#*:})"; exit 1; }
done
# silent WHAT COMMAND...: a tool that ends well and says nothing.
silent() {
  local what=$1 said
  shift
  said=$("$@" 2>&1) || said="${said:-status $?}"
  [ -z "$said" ] || complain "$what: $said"
}
value() { sed -n "s/^$2=//p" "$1" | head -n 1; }

metainfo=$share/metainfo/com.korvessa.zendrix.metainfo.xml

entries=$(cd "$share/applications" && echo ./*.desktop)
[ "$(echo "$entries" | wc -w)" = 2 ] || complain "not one desktop entry for each edition: $entries"
for entry in $entries; do
  entry=$share/applications/${entry#./} name=$(basename "$entry" .desktop)
  silent "$name" desktop-file-validate "$entry"
  # The window bears this name (src/app/prepare.cc), so that the desktop knows it as this entry's.
  [ "$(value "$entry" StartupWMClass)" = "$name" ] || complain "$name: StartupWMClass is another name"
  grep -qF "\"$name\"" ../src/app/prepare.cc || complain "$name is the name of no edition's window"
  [ -e "$share/icons/hicolor/scalable/apps/$(value "$entry" Icon).svg" ] || complain "$name: its icon is missing"
  grep -qxF "  <launchable type=\"desktop-id\">$name.desktop</launchable>" "$metainfo" || complain "$name: no launchable"
  while read -r command; do
    [[ "$command" =~ ^zendrix( --edition=(Home|Administrator))?$ ]] || complain "$name starts: $command"
  done < <(sed -n 's/^Exec=//p' "$entry")
done

# As it is, and as it is for a project that has a home.
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
links=$(sed 's,@ZENDRIX_[A-Z_]*@,https://zendrix.example.org,' metainfo/links.xml.in)
text=$(grep -vE '^  <(url|/?screenshots?)' "$metainfo")
echo "${text/  <supports>/$links$'\n'  <supports>}" >"$tree/com.korvessa.zendrix.metainfo.xml"
for text in "$metainfo" "$tree/com.korvessa.zendrix.metainfo.xml"; do
  said=$(appstreamcli validate --no-net --pedantic --no-color "$text" 2>&1) || complain "$said"
  [[ "$said" != *[EWIP]:\ * ]] || complain "$said"
done
newest=$(grep -o '<release version="[^"]*"' "$metainfo" | head -n 1 | cut -d'"' -f2)
[ "$newest" = "$version" ] || complain "the newest release of the metainfo is $newest, the program's version $version"
while IFS= read -r picture; do
  [ -e "../docs/guide/images/$picture" ] || complain "the screenshot $picture is no picture of the guide"
done < <(sed -n 's/.*@ZENDRIX_PICTURES@\/\([^<]*\)<.*/\1/p' metainfo/links.xml.in)

python3 - "$share/icons/hicolor" <<'EOF' || complain "an icon has not the size of its folder"
import pathlib, struct, sys
icons = sorted(pathlib.Path(sys.argv[1]).glob("*x*/apps/zendrix.png"))
edges = {int(icon.parts[-3].split("x")[0]) for icon in icons}
for icon in icons:
    data = icon.read_bytes()
    size = struct.unpack(">II", data[16:24])
    if data[:8] != b"\x89PNG\r\n\x1a\n" or f"{size[0]}x{size[1]}" != icon.parts[-3]:
        sys.exit(f"{icon} is {size}")
if not {16, 22, 24, 32, 48, 64, 128, 256} <= edges:
    sys.exit(f"sizes: {sorted(edges)}")
EOF
for page in "$share"/man/man?/*; do
  name=$(basename "$page")
  # Two formatters, and what makes the index of all pages (apropos). Lines of sources may be long.
  said=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -E UTF-8 -Tutf8 -Z -l "$page" 2>&1 >/dev/null) || true
  [ -z "$said" ] || complain "$name: $said"
  silent "$name" mandoc -T lint -W warning "$page"
  said=$(lexgrog "$page") || complain "$name: no line that tells its name and purpose"
  # What is told of a page is the name of its file.
  [[ "$said" == *"\"${name%.*} - "* ]] || complain "$name calls itself otherwise: $said"
  grep -qE "^\.TH [^ ]+ ${name##*.} " "$page" || complain "$name is of another section"
  # Pages of this product that it names are there.
  while read -r other; do
    [ -e "$share/man/man${other##* }/${other% *}.${other##* }" ] || complain "$name names a page that there is not: $other"
  done < <(sed -n 's/^\.BR \([A-Za-z\\.-]*\) (\([158]\)).*/\1 \2/p' "$page" | tr -d '\\' | grep -iE '^(zendrix|korvessa)')
done
while IFS='()' read -r name section _; do
  [ -e "$share/man/man$section/$name.$section" ] || complain "a unit names a page that there is not: $name($section)"
done < <(sed -n 's/^Documentation=man://p' systemd/*)
while read -r action; do
  grep -qxF ".B ${action//-/\\-}" "$share/man/man8/zendrix-act.8" || complain "zendrix-act(8) does not tell of $action"
done < <(sed -n 's/.*<action id="\([^"]*\)".*/\1/p' polkit/*.policy)
for program in zendrix zendrix-inspect zendrix-agent zendrix-act zendrix-mail; do
  pages=("$share"/man/man[18]/$program.?)
  [ -e "${pages[0]}" ] || complain "$program has no manual page"
done
exit $broken
