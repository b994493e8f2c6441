#!/usr/bin/env bash
# Installs packages of Debian's, or on macOS of Homebrew's: setup.sh [core | build | package | node | test | all | --help].
#   core     what the bridge without a window and the helper need
#   build    that, and what the window needs
#   package  what makes Debian packages and tarballs, besides one of these two
#   node     Node and npm, in which the official MCP tools run; any will do
#   test     build, and what the tests need
#   all      all of that, and what the checks of form and of the packages need; so does setup.sh alone
# Says first what it installs and how much that is. Does nothing when it is all there.
set -euo pipefail
cd "$(dirname "$0")/.."

# Debian 12 has two releases of Boost, of which the one without a number is too old, and Qt's reader of SVG pictures in its
# library's package.
boost=
svg=qt6-svg-plugins
if grep -qs '^VERSION_ID="12"' /etc/os-release; then
  boost=1.81
  svg=libqt6svg6
fi

# What the bridge without a window and the helper are built from and run with.
core_packages=(
  g++ cmake ninja-build pkg-config
  "libboost$boost-dev" "libboost-json$boost-dev" libicu-dev libcli11-dev libncurses-dev
  libpango1.0-dev libcairo2-dev libglib2.0-dev libpng-dev fontconfig fonts-dejavu-core
  tmux python3
)
window_packages=(
  qt6-base-dev qt6-declarative-dev qt6-svg-dev qt6-l10n-tools libgl-dev libxkbcommon-dev
  qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript qml6-module-qtquick
  qml6-module-qtquick-window qml6-module-qtquick-templates qml6-module-qtquick-controls qml6-module-qtquick-layouts
  qt6-wayland qt6-qpa-plugins "$svg"
)
packaging_packages=(debhelper dpkg-dev git xz-utils)
node_packages=(nodejs npm ca-certificates)
test_packages=(
  clang libclang-rt-dev git libgtest-dev libgmock-dev libbenchmark-dev qt6-base-private-dev
  qml6-module-qttest
  xvfb xauth xdotool openbox x11-utils dbus at-spi2-core python3-pyatspi python3-dbus-next fonts-noto-cjk
  procps python3-jsonschema bash bubblewrap dash zsh fish man-db less vim-tiny nano openssh-client sudo strace
  desktop-file-utils
)
check_packages=(clang-format clang-tidy shellcheck appstream lintian devscripts file gzip)
homebrew_packages=(
  cmake ninja pkg-config boost icu4c cli11 pango cairo libpng qt googletest google-benchmark tmux fish llvm shellcheck
)

# show HEADING PACKAGE...
show() {
  printf '\n%s: %s packages of Debian'\''s, besides what they need\n' "$1" $(($# - 1))
  shift
  echo "$*" | fold -s -w 96 | sed 's/^/  /; s/ *$//'
}

usage() {
  sed -n '2,/^set /s/^# \{0,1\}//p' "$0"
  show core "${core_packages[@]}"
  show 'build, after core' "${window_packages[@]}"
  show package "${packaging_packages[@]}"
  show node "${node_packages[@]}"
  show 'test, after build' "${test_packages[@]}"
  show 'all, after everything above' "${check_packages[@]}"
}

purpose=${1:-all}
case $purpose in
  core) debian_packages=("${core_packages[@]}") ;;
  build) debian_packages=("${core_packages[@]}" "${window_packages[@]}") ;;
  package) debian_packages=("${packaging_packages[@]}") ;;
  node) debian_packages=() ;;
  test) debian_packages=("${core_packages[@]}" "${window_packages[@]}" "${test_packages[@]}") ;;
  all) debian_packages=("${core_packages[@]}" "${window_packages[@]}" "${packaging_packages[@]}" "${test_packages[@]}" "${check_packages[@]}") ;;
  -h | --help)
    usage
    exit ;;
  *)
    echo "setup: $purpose is not core, build, package, node, test or all" >&2
    exit 2 ;;
esac
# A Node from elsewhere would be in the way of Debian's.
if [[ $purpose == node || $purpose == all ]] && ! { command -v node && command -v npm; } >/dev/null; then
  debian_packages+=("${node_packages[@]}")
fi

# The tests run an sshd of their own. It is unpacked, and not installed where it is not: a package would switch on the
# system's.
unpack_sshd() {
  local folder=build/openssh
  if [ -x /usr/sbin/sshd ] || [ -x "$folder/usr/sbin/sshd" ]; then return; fi
  echo "setup: unpacking openssh-server" >&2
  rm -rf "$folder"
  mkdir -p "$folder/packages"
  (cd "$folder/packages" && { download_sshd || { as_root apt-get update -qq && download_sshd; }; } >&2)
  local package
  for package in "$folder"/packages/*.deb; do dpkg -x "$package" "$folder"; done
}

# With the libraries that nothing else brings; from Debian 13 on they are two.
download_sshd() {
  local packages=(openssh-server libwrap0)
  if apt-cache show libwtmpdb0 >/dev/null 2>&1; then packages+=(libwtmpdb0); fi
  apt-get download -qq "${packages[@]}"
}

as_root() {
  if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

install_on_debian() {
  local missing=() package
  for package in "${debian_packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
  done
  if [ ${#missing[@]} = 0 ]; then return; fi
  local apt=(env DEBIAN_FRONTEND=noninteractive LC_ALL=C apt-get -o DPkg::Lock::Timeout=600)
  local install=(install --no-install-recommends "${missing[@]}")
  echo "setup: looking for ${#missing[@]} packages that are missing" >&2
  as_root "${apt[@]}" update -qq
  echo "setup: installing ${missing[*]}" >&2
  # With all that they need: how many, and how large. It ends with a failure because nobody says yes.
  { as_root "${apt[@]}" --assume-no "${install[@]}" || true; } 2>/dev/null |
    sed -n 's/^[0-9]* upgraded, .*\|^Need to get .*\|^After this operation.*/setup: &/p' >&2
  as_root "${apt[@]}" -y -qq "${install[@]}" >&2
}

case "$(uname -s)" in
  Linux)
    if ! command -v apt-get >/dev/null; then
      echo "setup: no apt-get here; install the equivalents of: ${debian_packages[*]}" >&2
      exit 1
    fi
    install_on_debian
    if [[ $purpose == test || $purpose == all ]]; then unpack_sshd; fi ;;
  Darwin)
    if ! command -v brew >/dev/null; then
      echo "setup: Homebrew is needed for: ${homebrew_packages[*]}" >&2
      exit 1
    fi
    brew install "${homebrew_packages[@]}" ;;
  *)
    echo "setup: $(uname -s) is not supported" >&2
    exit 1 ;;
esac
