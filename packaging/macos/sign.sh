#!/usr/bin/env bash
# Signs Velmora.app from the inside out, and has Apple notarise it when a keychain profile is given. Runs on a Mac.
#
#   sign.sh Velmora.app "Developer ID Application: NAME (TEAM)" [NOTARY_PROFILE]
#
# "-" as the identity signs for this Mac alone; every rebuild then loses the permissions that were granted to it.
# NOTARY_PROFILE is what `xcrun notarytool store-credentials` was given as its name.
set -euo pipefail

if [ $# -lt 2 ] || [ ! -d "$1/Contents/MacOS" ]; then
  sed -n '2,7s/^# \{0,1\}//p' "$0" >&2
  exit 2
fi
app=${1%/}
identity=$2
profile=${3:-}
here=$(cd "$(dirname "$0")" && pwd)

# The hardened runtime loads no library of another team, and an ad-hoc signature has none.
runtime=(--options runtime)
stamp=(--timestamp)
if [ "$identity" = - ]; then
  runtime=()
  stamp=(--timestamp=none)
fi

# sign PATH [OPTION...]: what does not exist is skipped, so that a build without Sparkle passes.
sign() {
  local path=$1
  shift
  if [ ! -e "$path" ]; then return; fi
  echo "sign: $path"
  codesign --force ${runtime[@]+"${runtime[@]}"} "${stamp[@]}" "$@" --sign "$identity" "$path"
}

# Never --deep: it would give every part the same options. What is inside comes before what holds it.
sparkle=$app/Contents/Frameworks/Sparkle.framework
sign "$sparkle/Versions/B/XPCServices/Installer.xpc"
sign "$sparkle/Versions/B/XPCServices/Downloader.xpc" --preserve-metadata=entitlements
sign "$sparkle/Versions/B/Autoupdate"
sign "$sparkle/Versions/B/Updater.app"
if [ -d "$app/Contents/Frameworks" ]; then
  while IFS= read -r -d '' part; do sign "$part"; done < <(
    find "$app/Contents/Frameworks" -maxdepth 1 \( -name '*.framework' -o -name '*.dylib' \) -print0)
fi
for folder in PlugIns Resources/qml; do
  if [ -d "$app/Contents/$folder" ]; then
    while IFS= read -r -d '' part; do sign "$part"; done < <(find "$app/Contents/$folder" -name '*.dylib' -print0)
  fi
done
# The helper sends no Apple events and gets no entitlement for them. Only the application has code that libraries of
# Qt may compile at run time.
sign "$app/Contents/Helpers/velmora" --identifier app.velmora.Velmora.helper
sign "$app/Contents/Helpers/velmora-watch" --identifier app.velmora.Velmora.watch
sign "$app/Contents/Helpers/velmora-script-host" --identifier app.velmora.Velmora.script-host \
  --entitlements "$here/ScriptHost.entitlements"
sign "$app" --entitlements "$here/Velmora.entitlements"
codesign --verify --strict --verbose=2 "$app"

if [ -z "$profile" ]; then exit 0; fi
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
ditto -c -k --keepParent "$app" "$folder/Velmora.zip"
xcrun notarytool submit "$folder/Velmora.zip" --keychain-profile "$profile" --wait
xcrun stapler staple "$app"
spctl --assess --type execute --verbose=2 "$app"
