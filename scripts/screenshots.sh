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
  local english=C.UTF-8 size=(--width 960 --height 600 --scenario kept)
  picture docs/images/dashboard.png $english "${size[@]}" --section dashboard
  picture docs/images/sessions-dark.png $english "${size[@]}" --section sessions --dark
  picture docs/images/history.png $english "${size[@]}" --section history
  picture docs/images/settings.png $english "${size[@]}" --section settings --page 1
}

# inEveryWindow NAME LOCALE OPTIONS...: in both sizes, light and dark.
inEveryWindow() {
  local name=$1 locale=$2 size shade shadeOption
  shift 2
  for size in 720x480 1200x800; do
    for shade in light dark; do
      shadeOption=()
      if [ $shade = dark ]; then shadeOption=(--dark); fi
      picture "$name-$size-$shade.png" "$locale" "${shadeOption[@]}" --width "${size%x*}" --height "${size#*x}" "$@"
    done
  done
}

# The help at its full length, and the introduction step by step, with the texts of both systems.
guides() {
  local folder=$1 language step
  for language in english korean; do
    inEveryWindow "$folder/help-linux-$language" C.UTF-8 --section help --language $language
    inEveryWindow "$folder/help-macOS-$language" C.UTF-8 --section help --language $language --scenario macOS
    picture "$folder/help-linux-$language-long.png" C.UTF-8 --section help --language $language --width 720 --height 3200
    picture "$folder/help-macOS-$language-long.png" C.UTF-8 --section help --language $language --scenario macOS \
      --width 720 --height 3200
  done
  for step in scope permission policy connection; do
    inEveryWindow "$folder/onboarding-linux-$step" C.UTF-8 --onboarding $step
    inEveryWindow "$folder/onboarding-macOS-$step" C.UTF-8 --onboarding $step --scenario firstRunMacOS
  done
}

# Every page of the settings, with English and Korean system fonts.
settings() {
  local folder=$1 page locale
  for page in 0 1 2; do
    for locale in C.UTF-8 ko_KR.UTF-8; do
      inEveryWindow "$folder/settings-$page-${locale%%[._]*}" "$locale" --section settings --page $page
    done
    picture "$folder/settings-$page-long.png" C.UTF-8 --section settings --page $page --width 720 --height 1600
  done
}

everything() {
  local folder=$1 section scenario locale
  mkdir -p "$folder"
  guides "$folder"
  settings "$folder"
  for section in dashboard sessions history; do
    for scenario in full empty paused denied long; do
      for locale in C.UTF-8 ko_KR.UTF-8; do
        inEveryWindow "$folder/$section-$scenario-${locale%%[._]*}" "$locale" --section "$section" --scenario "$scenario"
      done
    done
  done
  picture "$folder/clear.png" C.UTF-8 --section history --clear
  QT_SCALE_FACTOR=2 picture "$folder/double.png" C.UTF-8 --section sessions
}

if [ $# = 0 ]; then documents; else everything "$1"; fi
