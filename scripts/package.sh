#!/usr/bin/env bash
# Sets up, builds what ships with Debian's own flags, and makes the Debian package of it; the last line is its path.
# Flags for CMake may follow: -DVELMORA_BUILD_APP=OFF makes a package without a window, which needs no Qt.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
export DEB_BUILD_MAINT_OPTIONS=hardening=+all
CXXFLAGS="$(dpkg-buildflags --get CXXFLAGS) $(dpkg-buildflags --get CPPFLAGS) -DNDEBUG"
LDFLAGS=$(dpkg-buildflags --get LDFLAGS)
# The package holds no debug information; without it the build takes half the time.
export CXXFLAGS=${CXXFLAGS/-g /} LDFLAGS
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake --preset package "${launcher[@]}" -DVELMORA_BUILD_APP=ON "$@" >&2
cmake --build --preset package >&2
cpack --config build/package/CPackConfig.cmake -B build/package >&2
realpath build/package/*.deb
