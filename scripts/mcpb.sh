#!/usr/bin/env bash
# Makes a bundle of the helper for MCP hosts (.mcpb); has the official tool judge its manifest, opens it, and has the helper in
# it answer a client. On Linux the helper holds all its libraries, so that it runs on any with this processor; elsewhere it
# holds Boost. The last line is its path.
# An argument is the https address of the folder where it will lie; then server.json, for the registry, is made beside it.
set -euo pipefail
cd "$(dirname "$0")/.."

folder=build/mcpb
rm -rf "$folder/bundle" "$folder/opened"
mkdir -p "$folder/bundle/bin"
if [ "$(uname -s)" = Linux ]; then
  scripts/static.sh VelmoraHelper
  helper=build/static/bin/velmora
  cp -r build/static/licenses "$folder/bundle/"
else
  scripts/setup.sh build
  cmake --preset package -B "$folder/build" -DVELMORA_BUILD_APP=OFF -DBoost_USE_STATIC_LIBS=ON -DCMAKE_CXX_FLAGS='-O2 -DNDEBUG' >&2
  cmake --build "$folder/build" --target VelmoraHelper >&2
  helper=$folder/build/bin/velmora
fi
install -m 755 -s "$helper" "$folder/bundle/bin/velmora"
cp LICENSE "$folder/bundle/"
packaging/mcp/describe.py manifest "$folder/bundle/bin/velmora" >"$folder/bundle/manifest.json"

scripts/setup.sh node
npm ci --prefix packaging/mcp --ignore-scripts --no-audit --no-fund --loglevel=error >&2
tool=packaging/mcp/node_modules/.bin/mcpb
version=$(sed -nE 's/^project\(Velmora VERSION ([^ ]+).*/\1/p' CMakeLists.txt)
bundle=$folder/velmora-$version-$(uname -s | tr '[:upper:]' '[:lower:]')-$(uname -m).mcpb
rm -f "$bundle"
"$tool" validate "$folder/bundle/manifest.json" >&2
"$tool" pack "$folder/bundle" "$bundle" >&2

# As a host does: unpack it, and launch what the manifest names.
"$tool" unpack "$bundle" "$folder/opened" >&2
packaging/mcp/describe.py manifest "$folder/opened/bin/velmora" | cmp - "$folder/opened/manifest.json"
if [ "$(uname -s)" = Linux ] && readelf --dynamic "$folder/opened/bin/velmora" | grep NEEDED; then
  echo 'mcpb: the helper in the bundle needs libraries from the system' >&2
  exit 1
fi
if [ $# -gt 0 ]; then packaging/mcp/describe.py server "$bundle" "${1%/}/${bundle##*/}" >"$folder/server.json"; fi
realpath "$bundle"
