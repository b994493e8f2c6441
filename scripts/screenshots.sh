#!/usr/bin/env bash
# Makes the pictures of the application again: the few in docs/images, or, given a folder, every screen there in light and
# dark, in two sizes, full and otherwise, with English and Korean system fonts. Needs no display.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset dev >/dev/null
cmake --build --preset dev --target VelmoraAppOffline >/dev/null

runtime=$(mktemp -d)
trap 'rm -rf "$runtime"' EXIT
export QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=$runtime DBUS_SESSION_BUS_ADDRESS=disabled: TZ=UTC

# picture FILE LOCALE OPTIONS...
picture() {
  local file=$1 locale=$2
  shift 2
  LC_ALL=$locale build/dev/bin/velmora-app-offline --picture "$file" "$@"
  echo "$file"
}

documents() {
  mkdir -p docs/images
  local english=C.UTF-8 size=(--width 960 --height 600)
  picture docs/images/dashboard.png $english "${size[@]}" --section dashboard
  picture docs/images/sessions-dark.png $english "${size[@]}" --section sessions --dark
  picture docs/images/history.png $english "${size[@]}" --section history
}

everything() {
  local folder=$1 section scenario size shade locale shadeOption
  mkdir -p "$folder"
  for section in dashboard sessions history; do
    for scenario in full empty paused denied long; do
      for size in 720x480 1200x800; do
        for shade in light dark; do
          for locale in C.UTF-8 ko_KR.UTF-8; do
            shadeOption=()
            if [ $shade = dark ]; then shadeOption=(--dark); fi
            picture "$folder/$section-$scenario-$size-$shade-${locale%%[._]*}.png" "$locale" "${shadeOption[@]}" \
              --section "$section" --scenario "$scenario" --width "${size%x*}" --height "${size#*x}"
          done
        done
      done
    done
  done
  picture "$folder/clear.png" C.UTF-8 --section history --clear
  QT_SCALE_FACTOR=2 picture "$folder/double.png" C.UTF-8 --section sessions
}

if [ $# = 0 ]; then documents; else everything "$1"; fi
