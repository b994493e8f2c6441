#!/usr/bin/env bash
# Checks a Debian package: package-check.sh [DEB]. Without one, makes it of what scripts/test.sh has built. Prints OK or
# FAIL a check; the last line counts them. Nothing outside a temporary folder is touched or installed.
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

make_package() {
  cmake --build --preset dev --target VelmoraHeadless VelmoraHelper VelmoraApp VelmoraInstalledFiles &&
    cpack --config build/dev/CPackConfig.cmake -B "$work/made"
}

contents() {
  dpkg-deb --fsys-tarfile "$deb" | tar -t | sed 's/^\.//' | grep -v '/$' | sort | diff tests/packaging/contents.txt -
}

owners() {
  dpkg-deb --contents "$deb" | awk '$2 != "root/root" || $1 !~ /^(drwxr-xr-x|-rw-r--r--|-rwxr-xr-x)$/ { print; bad = 1 } END { exit bad }'
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
  depends=$(dpkg-deb --field "$deb" Depends)
  for module in $(git ls-files 'VelmoraApp/*.qml' | xargs sed -nE 's/^import (Qt[A-Za-z.]+).*/\1/p' | sed 's/\.impl$//' | sort -u); do
    module=qml6-module-$(echo "$module" | tr '[:upper:].' '[:lower:]-')
    grep -qw "$module" <<<"$depends" || { echo "$module is not in: $depends"; missing=1; }
  done
  return "$missing"
}

errors_of_lintian() {
  lintian --allow-root --fail-on error --tag-display-limit 0 "$deb"
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
  dpkg --root="$admin" --force-depends --force-not-root --force-script-chrootless --no-triggers -i "$deb" &&
    dpkg --root="$admin" --force-not-root --force-script-chrootless --no-triggers --purge velmora &&
    find "$admin" -type f -not -path '*/var/*' | sort >"$work/left" &&
    echo "$admin/home/user/.local/share/Velmora/settings.json" | diff - "$work/left"
}

deb=${1:-}
if [ -z "$deb" ]; then
  check 'the package is made' make_package
  deb=$(echo "$work"/made/*.deb)
fi
mkdir -m 700 "$work/home" && dpkg-deb --extract "$deb" "$root"
check 'it holds these files and no others' contents
check 'everything is root'\''s and readable' owners
check 'the desktop file is valid' desktop-file-validate "$root/usr/share/applications/app.velmora.Velmora.desktop"
check 'the metainfo is valid' appstreamcli validate --no-net "$root/usr/share/metainfo/app.velmora.Velmora.metainfo.xml"
check 'the pictures have their sizes' pictures
check 'it depends on every QML module' qml_modules
check 'lintian finds no error' errors_of_lintian
check 'velmora says its version' version
check 'velmora names itself to clients' helper_names_itself
check 'velmora-headless serves velmora' serves velmora-headless
check 'velmora-app serves velmora' serves velmora-app
check 'the manuals can be read' manuals
check 'a purge leaves the user'\''s data and nothing else' removal
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
