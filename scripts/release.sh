#!/usr/bin/env bash
# Makes every file of a release of what is committed, from a clean clone, with their checksums: release.sh [FOLDER [ADDRESS]],
# build/dist unless given. The debs are made twice, in two folders, and compared. ADDRESS is the https address of the folder
# where the files will lie; the registry's server.json is made for it. Ends with how many there are and what to do next;
# when something fails, nothing is put into FOLDER.
set -euo pipefail
cd "$(dirname "$0")/.."

folder=$(realpath -m "${1:-build/dist}")
address=${2:-}
if [ -n "$(git status --porcelain)" ]; then
  echo 'release: something here is not committed' >&2
  exit 1
fi
if [ -d "$folder" ] && [ -n "$(ls -A "$folder")" ]; then
  echo "release: $folder is not empty" >&2
  exit 1
fi
tree=$PWD
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
git clone --quiet . "$work/velmora"
cd "$work/velmora"
version=$(sed -nE 's/^project\(Velmora VERSION ([0-9.]+) .*/\1/p' CMakeLists.txt)
mkdir "$work/files"
scripts/setup.sh

# What makes files of a release: each is a command that puts its files into the folder that it is given.
source_tarball() { git archive --prefix "velmora-$version/" HEAD | xz -6 >"$1/velmora-$version.tar.xz"; }
debian_packages() {
  scripts/package-check.sh --reproducible
  cp build/package/*.deb "$1/"
}
mcp_bundle() {
  cp "$(scripts/mcpb.sh ${address:+"$address"} | tail -n 1)" "$1/"
  if [ -n "$address" ]; then cp build/mcpb/server.json "$1/"; fi
}
makers=(source_tarball debian_packages scripts/tarball.sh mcp_bundle)

for maker in "${makers[@]}"; do
  echo "=== $maker" >&2
  "$maker" "$work/files" >&2
done
(cd "$work/files" && sha256sum -- * >"$work/SHA256SUMS")
mkdir -p "$folder"
cp "$work"/files/* "$work/SHA256SUMS" "$folder/"
cat "$work/SHA256SUMS"
cat <<END
$(wc -l <"$work/SHA256SUMS") files of velmora $version in $folder, and their checksums in SHA256SUMS. Next:
  use them on systems that have nothing else (as root; debootstrap fetches those):
    $tree/scripts/package-root-check.sh $folder
    $tree/scripts/tarball-check.sh $folder/velmora-$version-linux-$(uname -m).tar.xz
  sign the checksums:   gpg --armor --detach-sign $folder/SHA256SUMS
  mark the commit:      git tag --sign v$version $(git rev-parse --short HEAD)
  publish the files, and then server.json with the registry of MCP servers$(
    [ -n "$address" ] || printf '; release.sh FOLDER ADDRESS makes it')
END
