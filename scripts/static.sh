#!/usr/bin/env bash
# Builds the helper and the bridge without a window as programs that hold all their libraries, for any Linux of this
# processor, whatever C library it has: static.sh [TARGET...]. They lie in build/static/bin, and in build/static/licenses what
# the libraries' licences ask of those who hand them on. Such programs draw no pictures.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh core
flags="-O2 -DNDEBUG -ffile-prefix-map=$PWD=. -fstack-protector-strong -fstack-clash-protection -D_FORTIFY_SOURCE=2"
if [ "$(uname -m)" = x86_64 ]; then flags+=' -fcf-protection'; fi
options=()
command -v ccache >/dev/null && options=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake --preset package -B build/static -DCMAKE_PROJECT_Velmora_INCLUDE=packaging/linux/static.cmake -DVELMORA_BUILD_APP=OFF \
  -DCMAKE_INSTALL_PREFIX=/usr/local -DCMAKE_CXX_FLAGS="$flags" "${options[@]}" >&2
cmake --build build/static ${1:+--target "$@"} >&2

mkdir -p build/static/licenses
for library in libc.a libstdc++.a libboost_json.a libicuuc.a libncursesw.a; do
  package=$(dpkg -S "$(realpath "$(g++ -print-file-name="$library")")" | cut -d : -f 1)
  cp "/usr/share/doc/$package/copyright" "build/static/licenses/$package"
done
cp /usr/share/doc/libcli11-dev/copyright build/static/licenses/libcli11-dev
