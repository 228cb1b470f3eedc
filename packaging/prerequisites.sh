# Sourced by run.sh and test.sh: installs what a bare Debian 12 lacks. Says nothing and costs a fraction of a
# second when everything is there.

build_packages="g++ cmake ninja-build ccache pkg-config qt6-base-dev qt6-charts-dev qt6-svg-dev qt6-webengine-dev libgl-dev libsdbus-c++-dev
  libssl-dev libsqlite3-dev libcli11-dev nlohmann-json3-dev librsvg2-bin clang libbpf-dev bpftool libcurl4-openssl-dev libsystemd-dev"
screen_packages="xvfb xauth imagemagick fonts-dejavu-core libqt6svg6 x11-utils dbus"
desktop_packages="at-spi2-core libatspi2.0-dev libx11-dev libxtst-dev openbox trayer"
# What puts Debian packages together and looks at them; a tree of its own is installed into.
package_packages="build-essential debhelper lintian debootstrap"
# What tells whether the things beside the programs are as those who read them expect.
looking_packages="appstream desktop-file-utils man-db mandoc bash-completion zsh fish python3 systemd"
test_packages="libclang-rt-14-dev clang-format clang-tidy libgtest-dev libgmock-dev locales python3-aiosmtpd openssl $looking_packages
  $screen_packages $desktop_packages"

# need_packages NAME...: installs those that are missing, as root or through sudo.
need_packages() {
  local missing=() name
  for name in "$@"; do
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null)" = installed ] || missing+=("$name")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  local root=()
  if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null || { echo "Missing packages: ${missing[*]} (install them as root, or install sudo)" >&2; return 1; }
    root=(sudo)
  fi
  echo "Installing: ${missing[*]}"
  "${root[@]}" apt-get update -qq
  "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}
