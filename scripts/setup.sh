#!/usr/bin/env bash
# Installs what the build, the tests and the checks need: from Debian's packages on Linux, from Homebrew on macOS.
# Does nothing when it is all there.
set -euo pipefail

debian_packages=(
  g++ clang libclang-rt-14-dev cmake ninja-build pkg-config git ca-certificates
  libboost1.81-dev libboost-json1.81-dev libicu-dev libcli11-dev libspdlog-dev
  libpango1.0-dev libcairo2-dev libglib2.0-dev libpng-dev fontconfig fonts-dejavu-core
  qt6-base-dev qt6-declarative-dev qt6-svg-dev libgl-dev libxkbcommon-dev
  qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript qml6-module-qtquick
  qml6-module-qtquick-window qml6-module-qtquick-templates qml6-module-qtquick-controls qml6-module-qtquick-layouts
  qml6-module-qttest qt6-wayland qt6-qpa-plugins libqt6svg6
  libgtest-dev libgmock-dev libbenchmark-dev
  xvfb xauth xdotool openbox x11-utils dbus at-spi2-core python3-pyatspi python3-dbus-next fonts-noto-cjk
  tmux procps python3 python3-jsonschema bash dash zsh fish man-db less vim-tiny nano openssh-client sudo strace
  clang-format clang-tidy shellcheck
  desktop-file-utils appstream lintian dpkg-dev file gzip
)
homebrew_packages=(
  cmake ninja pkg-config boost icu4c cli11 spdlog pango cairo libpng qt googletest google-benchmark tmux fish llvm shellcheck
)

as_root() {
  if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

install_on_debian() {
  local missing=() package
  for package in "${debian_packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
  done
  # The official MCP SDK runs in Node; any Node will do.
  command -v node >/dev/null && command -v npm >/dev/null || missing+=(nodejs npm)
  if [ ${#missing[@]} = 0 ]; then return; fi
  echo "setup: installing ${missing[*]}" >&2
  as_root apt-get -o DPkg::Lock::Timeout=600 update -qq
  as_root env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=600 install -y -qq --no-install-recommends "${missing[@]}" >&2
}

case "$(uname -s)" in
  Linux)
    if ! command -v apt-get >/dev/null; then
      echo "setup: no apt-get here; install the equivalents of: ${debian_packages[*]}" >&2
      exit 1
    fi
    install_on_debian ;;
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
