#!/usr/bin/env bash
# Sets up and makes the Debian packages of the tree as it is, with dpkg-buildpackage, in a copy of it: package.sh [FOLDER].
# The packages are put into FOLDER, build/package unless given; the last lines are their paths. With
# DEB_BUILD_PROFILES=pkg.velmora.noapp there is no package with the window, and Qt is not needed.
set -euo pipefail
cd "$(dirname "$0")/.."

folder=$(realpath -m "${1:-build/package}")
case " ${DEB_BUILD_PROFILES:-} " in
  *' pkg.velmora.noapp '*) scripts/setup.sh core ;;
  *) scripts/setup.sh build ;;
esac
scripts/setup.sh package

source=$folder/source
rm -rf "$source"
mkdir -p "$source"
rm -f "$folder"/velmora*.{deb,ddeb,changes,buildinfo}
git ls-files -z --deduplicate | xargs -0 ls -d 2>/dev/null | tar -c -T - | tar -x -C "$source" --no-same-owner
if command -v ccache >/dev/null; then
  # The build has a home of its own.
  CCACHE_DIR=$(ccache --get-config cache_dir)
  export CCACHE_DIR CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi
(cd "$source" && DEB_BUILD_OPTIONS="terse ${DEB_BUILD_OPTIONS:-}" dpkg-buildpackage -us -uc -b) >&2
rm -rf "$source"
realpath "$folder"/*.deb
