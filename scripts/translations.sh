#!/usr/bin/env bash
# Brings the translations up to date with the texts in the source. Without a folder it writes translations/*.ts, where new
# texts are then marked as unfinished; with one it writes there instead: translations.sh [FOLDER]
set -euo pipefail
cd "$(dirname "$0")/.."

qt=/usr/lib/qt6/bin
if ! [ -d "$qt" ]; then qt=$(qmake6 -query QT_INSTALL_BINS); fi
folder=${1:-translations}
if [ "$folder" != translations ]; then cp translations/*.ts "$folder"; fi

# English stands in the source, but for its plurals.
"$qt/lupdate" -silent -no-obsolete -locations none -I . VelmoraApp -ts "$folder/velmora_ko.ts"
"$qt/lupdate" -silent -no-obsolete -locations none -pluralonly -I . VelmoraApp -ts "$folder/velmora_en.ts"
