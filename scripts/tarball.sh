#!/usr/bin/env bash
# Makes velmora-VERSION-linux-CPU.tar.xz, the programs of scripts/static.sh for any Linux of this processor: tarball.sh
# [FOLDER]; the file is put into FOLDER, build/tarball unless given; the last line is its path.
set -euo pipefail
cd "$(dirname "$0")/.."

folder=$(realpath -m "${1:-build/tarball}")
version=$(sed -nE 's/^project\(Velmora VERSION ([0-9.]+) .*/\1/p' CMakeLists.txt)
name=velmora-$version-linux-$(uname -m)
build=$PWD/build/static
scripts/setup.sh package
scripts/static.sh

# As under /usr/local, where it is meant to be unpacked; it runs from everywhere.
rm -rf "$build/stage"
DESTDIR=$build/stage cmake --install "$build" --strip >/dev/null
top=$build/stage/usr/local
documents=$top/share/doc/velmora
mkdir -p "$documents"
cp -r README.md CHANGELOG.md LICENSE docs "$build/licenses" "$documents/"

mkdir -p "$folder"
tar --create --directory "$top" --sort=name --mtime="@$(git log -1 --format=%ct)" --owner=0 --group=0 --numeric-owner \
  --mode=u+rw,go+r-w,a+X --format=gnu --transform "s|^\.|$name|" . | xz -6 >"$folder/$name.tar.xz"
echo "$folder/$name.tar.xz"
