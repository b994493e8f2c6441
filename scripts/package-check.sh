#!/usr/bin/env bash
# Checks the Debian packages: package-check.sh [--reproducible] [FOLDER]. Takes those that lie in FOLDER, or else makes them
# in build/package. With --reproducible makes them once more, in another folder, and compares. Prints OK or FAIL a check; the
# last line counts them. Nothing is installed.
set -uo pipefail
cd "$(dirname "$0")/.." || exit

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
root=$work/root
passed=0
failed=0

# check NAME COMMAND...: fails when the command does, and shows its output then.
check() {
  local name=$1 output
  shift
  if output=$("$@" 2>&1); then
    echo "OK    $name"
    passed=$((passed + 1))
  else
    echo "FAIL  $name"
    printf '%s\n' "$output" | head -n 40 | sed 's/^/      /'
    failed=$((failed + 1))
  fi
}

# contents PACKAGE
contents() {
  dpkg-deb --fsys-tarfile "$folder"/"$1"_*.deb | tar -t |
    sed -E 's/^\.//; s/-[0-9.]+\.so$/-VERSION.so/; s|(/doc/velmora/docs)/.*[^/]$|\1/ALL|' | grep -v '/$' | sort -u |
    diff "tests/packaging/contents-$1.txt" -
}

owners() {
  local deb
  for deb in "$folder"/velmora_*.deb "$folder"/velmora-app_*.deb; do dpkg-deb --contents "$deb"; done |
    awk '$2 != "root/root" || $1 !~ /^(drwxr-xr-x|-rw-r--r--|-rwxr-xr-x)$/ { print; bad = 1 } END { exit bad }'
}

# Debian's changelog, the one for users and the build name one version and one day.
changelogs() {
  local version users day
  version=$(sed -nE 's/^project\(Velmora VERSION ([0-9.]+) .*/\1/p' CMakeLists.txt)
  users=$(sed -nE 's/^## \[([0-9.]+)\] - ([0-9-]+)$/\1 \2/p' CHANGELOG.md | head -n 1)
  day=$(date --utc --date "$(dpkg-parsechangelog --show-field Date)" +%F)
  echo "built as $version; CHANGELOG.md: $users; debian/changelog: $(dpkg-parsechangelog --show-field Version) $day"
  [ "$users" = "$version $day" ] && [[ $(dpkg-parsechangelog --show-field Version) == "$version"-* ]]
}

# Every program and library, with what Debian knows against attacks on memory. Debian 12's own start-up code lacks what a
# file needs to be marked as protected against changed jumps and returns, so how they were compiled is read from the symbols.
hardening() {
  local file count=0 options producers
  while read -r file; do
    count=$((count + 1))
    options=(--nocfprotection)
    # What the library that draws calls has no form that checks lengths.
    if [[ $file == *.so ]]; then options+=(--nofortify); fi
    hardening-check "${options[@]}" "$file" || return 1
  done < <(find "$root/usr" -type f -exec sh -c 'head -c 4 "$1" | grep -q ELF' sh {} \; -print)
  [ "$count" = 5 ] || { echo "$count programs and libraries"; return 1; }
  for file in "$folder"/velmora*-dbgsym_*.deb; do dpkg-deb --extract "$file" "$work/symbols"; done
  producers=$(find "$work/symbols" -name '*.debug' -exec readelf --decompress --string-dump=.debug_str {} + | grep 'GNU C++20')
  echo "$producers"
  [ -n "$producers" ] && ! grep -v -e -fstack-clash-protection <<<"$producers" && ! grep -v -e -fcf-protection <<<"$producers"
}

# The window is of no use with another version of the bridge's programs.
versions() {
  local version
  version=$(dpkg-deb --field "$folder"/velmora_*.deb Version)
  dpkg-deb --field "$folder"/velmora-app_*.deb Depends | grep -F "velmora (= $version)"
}

debug_symbols() {
  local package
  for package in velmora velmora-app; do
    dpkg-deb --contents "$folder/$package"-dbgsym_*.deb | grep '/usr/lib/debug/.build-id/.*\.debug$' || return 1
  done
}

# Another folder, another hour and nothing from a cache: the same bytes.
reproducible() {
  local deb count=0
  (umask 002 && TZ=Asia/Seoul CCACHE_DISABLE=1 scripts/package.sh "$work/another/folder" >/dev/null) || return 1
  for deb in "$folder"/*.deb; do
    cmp "$deb" "$work/another/folder/${deb##*/}" || return 1
    count=$((count + 1))
  done
  [ "$count" = 4 ]
}

pictures() {
  local file size
  for file in "$root"/usr/share/icons/hicolor/*/apps/*.png; do
    size=$(basename "$(dirname "$(dirname "$file")")")
    file "$file" | grep -q "PNG image data, ${size%x*} x ${size#*x}," || { file "$file"; return 1; }
  done
}

# What a QML file imports must be named: nothing links it.
qml_modules() {
  local depends module missing=0
  depends=$(dpkg-deb --field "$folder"/velmora-app_*.deb Depends)
  for module in $(git ls-files 'VelmoraApp/*.qml' | xargs sed -nE 's/^import (Qt[A-Za-z.]+).*/\1/p' | sed 's/\.impl$//' | sort -u); do
    module=qml6-module-$(echo "$module" | tr '[:upper:].' '[:lower:]-')
    grep -qw "$module" <<<"$depends" || { echo "$module is not in: $depends"; missing=1; }
  done
  return "$missing"
}

lintian_is_content() {
  lintian --allow-root --pedantic --display-info --fail-on error,warning,info,pedantic --tag-display-limit 0 "$folder"/*.deb
}

# The source package, of the files as they are.
source_is_content() {
  local tree=$work/source/velmora
  mkdir -p "$tree"
  git ls-files -z --deduplicate | xargs -0 ls -d 2>/dev/null | tar -c -T - | tar -x -C "$tree" --no-same-owner
  tar -c --exclude velmora/debian -C "$work/source" velmora | xz -1 >"$work/source/velmora_$(sed -nE \
    's/^project\(Velmora VERSION ([0-9.]+) .*/\1/p' CMakeLists.txt).orig.tar.xz"
  (cd "$tree" && dpkg-buildpackage -us -uc -S -d -nc) &&
    lintian --allow-root --pedantic --display-info --fail-on error,warning,info,pedantic --tag-display-limit 0 "$work"/source/*.dsc
}

# The environment of somebody who has just logged in, at home in the temporary folder.
user=(env -i HOME="$work/home" XDG_RUNTIME_DIR="$work/home" TMUX_TMPDIR="$work/home" LC_ALL=C.UTF-8 SHELL=/bin/sh
  QT_QPA_PLATFORM=offscreen PATH="$root/usr/bin:/usr/bin:/bin")

version() {
  [ "$("${user[@]}" velmora --version)" = "velmora $(sed -nE 's/^project\(Velmora VERSION ([0-9.]+) .*/\1/p' CMakeLists.txt)" ]
}

# serves PROGRAM: it starts, the helper beside it finds it, and a termination ends it well.
serves() {
  local pid answered=1 status
  "${user[@]}" "$@" >"$work/log" 2>&1 &
  pid=$!
  for _ in $(seq 100); do
    if "${user[@]}" velmora status >"$work/status" 2>&1; then answered=0; break; fi
    sleep 0.1
  done
  kill -TERM "$pid"
  wait "$pid"
  status=$?
  cat "$work/log" "$work/status"
  echo "answered: $answered, ended with: $status"
  [ "$answered" = 0 ] && [ "$status" = 0 ]
}

# A bridge finds what draws where the package has put it.
draws() {
  local pid id='' drawn=1
  "${user[@]}" velmora-headless >"$work/log" 2>&1 &
  pid=$!
  for _ in $(seq 100); do
    id=$("${user[@]}" velmora call terminal_create_session 2>"$work/status" | sed -nE 's/.*"sessionId": "([^"]+)".*/\1/p')
    if [ -n "$id" ]; then break; fi
    sleep 0.1
  done
  if "${user[@]}" velmora call terminal_capture_screen "{\"sessionId\": \"$id\"}" >"$work/status" 2>&1; then drawn=0; fi
  "${user[@]}" tmux kill-server
  kill -TERM "$pid"
  wait "$pid"
  cat "$work/log" "$work/status"
  return "$drawn"
}

helper_names_itself() {
  "${user[@]}" velmora config cursor 2>/dev/null | grep -F "\"$root/usr/bin/velmora\""
}

manuals() {
  local page
  for page in "$root"/usr/share/man/man1/*.gz; do
    man --warnings=w -E ascii -l "$page" 2>&1 >"$work/page" | grep . && return 1
    grep -q VELMORA "$work/page" || return 1
  done
}

# After a purge nothing of it is left but what a user's programs wrote.
removal() {
  local admin=$work/admin
  mkdir -p "$admin"/var/lib/dpkg/{info,updates} "$admin/home/user/.local/share/Velmora"
  touch "$admin"/var/lib/dpkg/{status,available} "$admin/home/user/.local/share/Velmora/settings.json"
  dpkg --root="$admin" --force-depends --force-not-root --force-script-chrootless --no-triggers -i "$folder"/velmora_*.deb "$folder"/velmora-app_*.deb &&
    dpkg --root="$admin" --force-not-root --force-script-chrootless --no-triggers --purge velmora-app velmora &&
    find "$admin" -type f -not -path '*/var/*' | sort >"$work/left" &&
    echo "$admin/home/user/.local/share/Velmora/settings.json" | diff - "$work/left"
}

twice=no
if [ "${1:-}" = --reproducible ]; then
  twice=yes
  shift
fi
folder=${1:-}
if [ -z "$folder" ]; then
  folder=build/package
  check 'the packages are made' scripts/package.sh
fi
mkdir -m 700 "$work/home"
for package in velmora velmora-app; do
  dpkg-deb --extract "$folder/$package"_*.deb "$root"
  check "$package holds these files and no others" contents "$package"
done
check 'everything is root'\''s and readable' owners
check 'the packages depend on each other'\''s version' versions
check 'there are symbols for a debugger' debug_symbols
check 'the programs are hardened' hardening
check 'the changelogs agree' changelogs
check 'the desktop file is valid' desktop-file-validate "$root/usr/share/applications/app.velmora.Velmora.desktop"
check 'the metainfo is valid' appstreamcli validate --no-net "$root/usr/share/metainfo/app.velmora.Velmora.metainfo.xml"
check 'the pictures have their sizes' pictures
check 'it depends on every QML module' qml_modules
check 'lintian finds nothing' lintian_is_content
check 'lintian finds nothing in the source package' source_is_content
check 'velmora says its version' version
check 'velmora names itself to clients' helper_names_itself
check 'velmora-headless serves velmora' serves velmora-headless
check 'velmora-app serves velmora' serves velmora-app
check 'a picture can be taken' draws
check 'the manuals can be read' manuals
check 'a purge leaves the user'\''s data and nothing else' removal
if [ "$twice" = yes ]; then check 'made in another folder they are the same' reproducible; fi
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
