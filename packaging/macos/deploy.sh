#!/usr/bin/env bash
# Puts into Velmora.app what it needs on a Mac without Homebrew: Qt, Sparkle and every other library. Runs on a Mac,
# after the build and before sign.sh; a bundle that is signed already has to be built anew.
#
#   deploy.sh Velmora.app [SPARKLE_FOLDER]
#
# SPARKLE_FOLDER holds Sparkle.framework; it is needed when the application was built with VELMORA_SPARKLE.
set -euo pipefail

if [ $# -lt 1 ] || [ ! -d "$1/Contents/MacOS" ]; then
  sed -n '2,7s/^# \{0,1\}//p' "$0" >&2
  exit 2
fi
app=${1%/}
sparkle=${2:-}
here=$(cd "$(dirname "$0")" && pwd)

# First, so that macdeployqt finds what the application loads. Its links are kept: they are part of a framework.
if [ -n "$sparkle" ]; then
  mkdir -p "$app/Contents/Frameworks"
  ditto "$sparkle/Sparkle.framework" "$app/Contents/Frameworks/Sparkle.framework"
fi

# It copies what the programs load, makes them look for it in the bundle, and finds Qt's plug-ins by what is imported.
# Signing is left to sign.sh.
macdeployqt "$app" -qmldir="$here/../../VelmoraApp" -no-codesign \
  -executable="$app/Contents/Helpers/velmora" -executable="$app/Contents/Helpers/velmora-watch" \
  -executable="$app/Contents/Helpers/velmora-script-host"

# The linker noted where it found libraries while building. A path that is not there is no error.
for program in "$app/Contents/MacOS/Velmora" "$app/Contents/Helpers"/*; do
  while IFS= read -r searched; do
    case $searched in
      @* | /usr/lib/* | /System/*) ;;
      *) install_name_tool -delete_rpath "$searched" "$program" ;;
    esac
  done < <(otool -l "$program" | sed -n '/cmd LC_RPATH/,/path /s/^ *path \(.*\) (offset [0-9]*)$/\1/p')
done

python3 "$here/checkBundle.py" "$app"
